#pragma once

#include "FakeCommands.h"
#include "LoopbackServer.h"
#include "TestSupport.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeNetwork.h"
#include "connection/BridgeConnection.h"
#include "connection/BridgeDiscovery.h"
#include "connection/BridgePairing.h"
#include "preferences/panes/DebugReport.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "simulator/BridgeSimulator.h"

#include <QNetworkAccessManager>
#include <QTest>

#include <memory>
#include <vector>

/// What the preference panes talk to, as in the running program: the shared state on a fresh settings file,
/// a session for the first bridge (its pairing and connection real, against a simulated bridge on loopback)
/// and room for more, the real discovery, a stand-in discovery service and a fake shell.
class PaneBench final
{
public:
    PaneBench()
    {
        m_session = &m_sessions.add(std::make_unique<BridgeSession>(settings(), m_network));
        m_discovery = std::make_unique<BridgeDiscovery>(commands, m_network);
        m_discovery->setArpCommand(QStringLiteral("arp")); // the fake table
        m_discovery->setServiceUrl(QUrl());                // switched off unless a test starts the stand-in
        m_discovery->setOwnNetworks([] { return ownNetworks(); });
        m_debugReport = std::make_unique<DebugReport>(settings(), commands, m_state.fileName(), QUrl());
    }

    bool start() { return m_bridge.listen() && service.listen(); }

    /// Pairs for real (the link button pressed) and waits until the lights are in.
    bool connect() { return connect(*m_session, m_bridge); }
    /// ... the session with `bridge`.
    static bool connect(BridgeSession& session, BridgeSimulator& bridge)
    {
        session.link().setHueIP(bridge.hostAndPort());
        session.link().setBridgeContact(QStringLiteral("http"), {}, {});
        bridge.pressLinkButton();
        session.connectToBridge();
        return QTest::qWaitFor([&session] { return session.link().home().bridgeConnected(); }, 10000);
    }

    /// An empty session for one more bridge, with a home of its own, as the application adds one.
    BridgeSession& addSession()
    {
        m_homes.push_back(std::make_unique<BridgeHome>());
        auto link =
            std::make_unique<BridgeLink>(settings().preferences(), settings().activity(), *m_homes.back());
        link->load({}, -1);
        return m_sessions.add(std::make_unique<BridgeSession>(std::move(link), m_network));
    }
    /// Forgets the bridge as the application does: its entry and its session; the last one is emptied.
    void removeSession(BridgeSession& session)
    {
        session.link().forgetStoredEntry();
        if (m_sessions.size() == 1)
            session.link().load({}, -1);
        else
            m_sessions.remove(&session);
    }

    BridgeLink& settings() { return m_state.settings(); }
    BridgeNetwork& network() { return m_network; }
    SettingsStore& store() { return m_state.store(); }
    TestSettings& state() { return m_state; }
    BridgeSimulator& bridge() { return m_bridge; }
    BridgeDiscovery& discovery() { return *m_discovery; }
    BridgeSessions& sessions() { return m_sessions; }
    /// The first bridge's session, over settings().
    BridgeSession& session() { return *m_session; }
    BridgePairing& pairing() { return m_session->pairing(); }
    BridgeConnection& connection() { return m_session->connection(); }
    ActionQueue& queue() { return m_session->queue(); }
    DebugReport& debugReport() { return *m_debugReport; }

    FakeCommands commands;
    LoopbackServer service;

private:
    TestSettings m_state;
    BridgeSimulator m_bridge;
    BridgeNetwork m_network;
    std::vector<std::unique_ptr<BridgeHome>> m_homes; // of the sessions added; they outlive the sessions
    BridgeSessions m_sessions;
    BridgeSession* m_session;
    std::unique_ptr<BridgeDiscovery> m_discovery;
    std::unique_ptr<DebugReport> m_debugReport;
};
