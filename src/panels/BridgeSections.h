#pragma once

#include "state/MainPanels.h"

#include <QList>
#include <QScrollArea>

class BridgeSession;
class BridgeSessions;
class QLabel;
class QToolButton;
class QVBoxLayout;

/// One bridge's part of a panel when several bridges are paired: a heading with the bridge's name, which
/// folds the part away and opens it again, over that bridge's lights, rooms or scenes (or a line saying there
/// are none, or that the bridge does not answer).
class BridgeSection final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BridgeSection)

public:
    BridgeSection(BridgeSessions& sessions, BridgeSession& session, MainPanels panel,
                  QWidget* parent = nullptr);

    BridgeSession& session() const { return m_session; }
    /// The heading: a button that folds the section.
    QToolButton* heading() const { return m_heading; }
    /// The list under the heading; null while the bridge has nothing to list.
    QWidget* list() const { return m_list; }
    bool isFolded() const;

    void onNameChanged();

private:
    void onContentChanged();

    BridgeSessions& m_sessions;
    BridgeSession& m_session;
    MainPanels m_panel;
    QToolButton* m_heading;
    QLabel* m_empty;
    QWidget* m_list = nullptr; // built when the bridge first has something to list
    QVBoxLayout* m_layout;
};

/// A panel of the drop-down window with several bridges paired: one section per bridge, in the order the
/// bridges are stored, in one scrolling column. Sessions added or removed later are followed.
class BridgeSections final : public QScrollArea
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BridgeSections)

public:
    BridgeSections(BridgeSessions& sessions, MainPanels panel, QWidget* parent = nullptr);

    QList<BridgeSection*> sections() const { return m_sections; }
    /// Names every section anew (a bridge's name may now repeat another's, or no longer).
    void rename();
    /// The height that shows every section without scrolling.
    int naturalHeight() const;

private:
    void rebuild();

    BridgeSessions& m_sessions;
    MainPanels m_panel;
    QVBoxLayout* m_column;
    QList<BridgeSection*> m_sections;
};
