#pragma once

#include <QWidget>

#include <functional>

class BridgeDiscovery;
class BridgeSession;
class BridgeSessions;
class ConnectionView;
class DebugReport;
class PairedBridgeList;
class QVBoxLayout;

/// The connection pane ("advanced"): the paired bridges on top and, below them, the connection of the one
/// selected, built anew for each. "Add a bridge…" shows an empty session there, so that Detect or an address
/// and Connect pair one more bridge; "Remove" asks first. A session that ends takes its view with it.
class ConnectionPane final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ConnectionPane)

public:
    /// Makes a session for one more bridge, to be paired, and hands it over.
    using AddBridge = std::function<BridgeSession&()>;
    /// Forgets a bridge: its stored entry and its session (the last one is emptied instead).
    using RemoveBridge = std::function<void(BridgeSession&)>;

    ConnectionPane(BridgeSessions& sessions, BridgeDiscovery& discovery, DebugReport& debugReport,
                   AddBridge addBridge, RemoveBridge removeBridge, QWidget* parent = nullptr);

    PairedBridgeList& bridgeList() const { return *m_list; }
    /// The view of the selected bridge; null only while there is no session at all.
    ConnectionView* connectionView() const { return m_view; }

    /// What "Remove" asks before the bridge called `name` is forgotten.
    static QString removeQuestion(const QString& name);

private:
    /// Replaces the view below the list by one for `session` (none: no view).
    void showSession(BridgeSession* session);
    void onAdd();
    void onPairAgain(BridgeSession* session);
    void onRemove(BridgeSession* session);
    void onRemoved(BridgeSession* session);

    BridgeSessions& m_sessions;
    BridgeDiscovery& m_discovery;
    DebugReport& m_debugReport;
    AddBridge m_addBridge;
    RemoveBridge m_removeBridge;
    PairedBridgeList* m_list;
    QVBoxLayout* m_layout;
    ConnectionView* m_view = nullptr; ///< owned through the layout; deleted with its session
};
