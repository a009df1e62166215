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
#include "simulator/BridgeSimulator.h"

#include <QNetworkAccessManager>
#include <QTest>

#include <memory>

/// What the preference panes talk to, as in the running program: the shared state on a fresh settings file,
/// the real discovery, pairing and connection against a simulated bridge on loopback, a stand-in discovery
/// service and a fake shell.
class PaneBench final
{
public:
    PaneBench()
    {
        m_pairing = std::make_unique<BridgePairing>(settings(), m_network);
        m_queue = std::make_unique<ActionQueue>(settings(), m_network);
        m_connection = std::make_unique<BridgeConnection>(settings(), m_network, *m_pairing, *m_queue);
        m_discovery = std::make_unique<BridgeDiscovery>(commands, m_network);
        m_discovery->setArpCommand(QStringLiteral("arp")); // the fake table
        m_discovery->setServiceUrl(QUrl());                // switched off unless a test starts the stand-in
        m_discovery->setOwnNetworks([] { return ownNetworks(); });
        m_debugReport = std::make_unique<DebugReport>(settings(), commands, m_state.fileName(), QUrl());
    }

    bool start() { return m_bridge.listen() && service.listen(); }

    /// Pairs for real (the link button pressed) and waits until the lights are in.
    bool connect()
    {
        settings().setHueIP(m_bridge.hostAndPort());
        settings().setBridgeContact(QStringLiteral("http"), {}, {});
        m_bridge.pressLinkButton();
        m_connection->connectToBridge();
        return QTest::qWaitFor([this] { return settings().home().bridgeConnected(); }, 10000);
    }

    BridgeLink& settings() { return m_state.settings(); }
    BridgeNetwork& network() { return m_network; }
    SettingsStore& store() { return m_state.store(); }
    TestSettings& state() { return m_state; }
    BridgeSimulator& bridge() { return m_bridge; }
    BridgeDiscovery& discovery() { return *m_discovery; }
    BridgePairing& pairing() { return *m_pairing; }
    BridgeConnection& connection() { return *m_connection; }
    ActionQueue& queue() { return *m_queue; }
    DebugReport& debugReport() { return *m_debugReport; }

    FakeCommands commands;
    LoopbackServer service;

private:
    TestSettings m_state;
    BridgeSimulator m_bridge;
    BridgeNetwork m_network;
    std::unique_ptr<BridgePairing> m_pairing;
    std::unique_ptr<ActionQueue> m_queue;
    std::unique_ptr<BridgeConnection> m_connection;
    std::unique_ptr<BridgeDiscovery> m_discovery;
    std::unique_ptr<DebugReport> m_debugReport;
};
