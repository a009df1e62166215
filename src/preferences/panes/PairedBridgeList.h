#pragma once

#include <QList>
#include <QWidget>

class BridgeSession;
class BridgeSessions;
class QPushButton;
class QTreeWidget;

/// The bridges Glowdeck serves, one row each: its name, id, address, transport and how it stands, following
/// every change. Shown while at least one bridge is paired. Under the rows, "Add a bridge…" and, for the
/// selected bridge, "Pair again" and "Remove"; what the buttons start is the connection pane's.
class PairedBridgeList final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PairedBridgeList)

public:
    explicit PairedBridgeList(BridgeSessions& sessions, QWidget* parent = nullptr);

    /// The session of the selected row; null when none is selected.
    BridgeSession* selected() const;
    /// Selects the row of `session`, announced with `selectionChanged` when another row was selected.
    void select(BridgeSession* session);

    /// How the bridge stands, in a word or two: "live" while its event stream is open, "reading" while it is
    /// connected without one, "not answering", "not trusted", "not paired" without a key.
    static QString stateOf(const BridgeSession& session);

Q_SIGNALS:
    void selectionChanged(BridgeSession* session);
    void addRequested();
    void pairAgainRequested(BridgeSession* session);
    void removeRequested(BridgeSession* session);

private:
    void onAdded(BridgeSession* session);
    void onRemoved(BridgeSession* session);
    void onCurrentRowChanged();
    void updateRow(const BridgeSession* session);
    /// Shows the list while a bridge is paired, as tall as its rows.
    void updateShape();

    BridgeSessions& m_sessions;
    QList<BridgeSession*> m_rows; ///< the session of each row, in the order of the rows
    QTreeWidget* m_list;
    QPushButton* m_add;
    QPushButton* m_pairAgain;
    QPushButton* m_remove;
};
