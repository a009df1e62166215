#pragma once

#include "TestSupport.h"
#include "bridge/BridgeNetwork.h"
#include "simulator/BridgeSimulator.h"

#include <QTest>

/// What the bridge client works with, as in the running program: a simulated bridge on loopback with one
/// paired user, the shared state on a fresh settings file pointed at it over plain HTTP, and the
/// application's network access.
class BridgeBench final
{
public:
    BridgeBench() = default;
    /// With the built-in home of `floor`: BridgeBench(BridgeSimulator::Floor::Upper) is a second bridge.
    explicit BridgeBench(BridgeSimulator::Floor floor) : m_bridge(floor) {}

    /// Listens and points the state at the bridge; false when the bridge cannot listen.
    bool start()
    {
        if (!m_bridge.listen())
            return false;
        m_key = m_bridge.addUser();
        settings().setHueIP(QStringLiteral("http://") + m_bridge.hostAndPort());
        settings().setBridgeContact(QStringLiteral("http"), m_bridge.bridgeId(), {});
        settings().setHueKey(m_key);
        return true;
    }

    BridgeSimulator& bridge() { return m_bridge; }
    QString key() const { return m_key; }
    TestSettings& state() { return m_state; }
    BridgeLink& settings() { return m_state.settings(); }
    JsonSettingsStore& store() { return m_state.store(); }
    BridgeNetwork& network() { return m_network; }

    /// The requests other than reads that reached the bridge, in order.
    QList<SimulatedRequest> changes() const
    {
        QList<SimulatedRequest> sent = m_bridge.requests();
        sent.removeIf([](const SimulatedRequest& r) { return r.method == "GET"; });
        return sent;
    }

private:
    BridgeSimulator m_bridge;
    QString m_key;
    TestSettings m_state;
    BridgeNetwork m_network;
};
