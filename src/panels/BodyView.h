#pragma once

#include "state/MainPanels.h"

#include <QList>
#include <QMetaObject>
#include <QStackedWidget>

class BridgeSection;
class BridgeSections;
class BridgeSession;
class BridgeSessions;
class Preferences;
class ListGroups;
class ListLights;
class ListScenes;
class QLabel;

/// The panel under the tabs: the lights, rooms or scenes list of the active panel, or a short hint when that
/// list is empty. The hint tells a program that is not paired yet (or whose bridge answers with an empty
/// list) from one whose bridge does not answer; its "settings" is a link to the connection settings. Each
/// list is built the first time it is shown and kept; the lists redraw themselves. With several bridges
/// paired, each panel lists them one after the other, each under its bridge's name (BridgeSections); with one
/// it shows that bridge's list alone.
class BodyView final : public QStackedWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BodyView)

public:
    BodyView(Preferences& preferences, BridgeSessions& sessions, QWidget* parent = nullptr);

    /// The hint shown while there are no lights, no rooms or no scenes.
    static QString noLightsText();
    static QString noGroupsText();
    static QString noScenesText();
    /// The hint shown instead while the program is paired but its bridge does not answer.
    static QString unreachableText(const QString& bridge, const QString& what);

    /// The height that shows the whole current page without scrolling, at @p width.
    int naturalHeight(int width) const;
    /// Empties every filter field of the lists, so the next opening shows whole lists.
    void clearFilters();
    /// The bridges' sections of the current page; none while one bridge is paired.
    QList<BridgeSection*> sections() const;

Q_SIGNALS:
    /// The user followed the "settings" link of a hint.
    void connectionSettingsRequested();

protected:
    void changeEvent(QEvent* event) override;

private:
    void onContentChanged();
    void onConnectionChanged();
    /// Follows the first session: the one shown while it is the only one.
    void followFirstSession();
    void dropLists();
    void applyColours();
    QLabel* emptyState(const QString& name);
    void showHint(QLabel* hint, const QString& text);

    Preferences& m_preferences;
    BridgeSessions& m_sessions;
    BridgeSession* m_first = nullptr;
    QList<QMetaObject::Connection> m_firstConnections;
    QLabel* m_noLights;
    QLabel* m_noGroups;
    QLabel* m_noScenes;
    ListLights* m_lights = nullptr; // built on first use
    ListGroups* m_groups = nullptr;
    ListScenes* m_scenes = nullptr;
    BridgeSections* m_sectionedLights = nullptr; // built on first use with several bridges
    BridgeSections* m_sectionedGroups = nullptr;
    BridgeSections* m_sectionedScenes = nullptr;
};
