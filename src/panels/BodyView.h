#pragma once

#include <QStackedWidget>

class BridgeLink;
class BridgeCommands;
class ListGroups;
class ListLights;
class ListScenes;
class QLabel;

/// The panel under the tabs: the lights, rooms or scenes list of the active panel, or a short hint when that
/// list is empty. The hint tells a program that is not paired yet (or whose bridge answers with an empty
/// list) from one whose bridge does not answer; its "settings" is a link to the connection settings. Each
/// list is built the first time it is shown and kept; the lists redraw themselves.
class BodyView final : public QStackedWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BodyView)

public:
    BodyView(BridgeLink& settings, BridgeCommands& commands, QWidget* parent = nullptr);

    /// The hint shown while there are no lights, no rooms or no scenes.
    static QString noLightsText();
    static QString noGroupsText();
    static QString noScenesText();
    /// The hint shown instead while the program is paired but its bridge does not answer.
    static QString unreachableText(const QString& bridge, const QString& what);

    /// The height that shows the whole current page without scrolling, at @p width.
    int naturalHeight(int width) const;

Q_SIGNALS:
    /// The user followed the "settings" link of a hint.
    void connectionSettingsRequested();

protected:
    void changeEvent(QEvent* event) override;

private:
    void onContentChanged();
    void onConnectionChanged();
    void applyColours();
    QLabel* emptyState(const QString& name);
    void showHint(QLabel* hint, const QString& text);

    BridgeLink& m_settings;
    BridgeCommands& m_commands;
    QLabel* m_noLights;
    QLabel* m_noGroups;
    QLabel* m_noScenes;
    ListLights* m_lights = nullptr; // built on first use
    ListGroups* m_groups = nullptr;
    ListScenes* m_scenes = nullptr;
};
