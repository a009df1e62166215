#include "session/BridgeSession.h"

#include "bridge/ActionQueue.h"
#include "bridge/BridgeCommands.h"
#include "connection/BridgeConnection.h"
#include "connection/BridgePairing.h"
#include "state/BridgeLink.h"

BridgeSession::BridgeSession(BridgeLink& state, QNetworkAccessManager& network, QObject* parent)
    : QObject(parent), m_state(state), m_network(network),
      m_queue(std::make_unique<ActionQueue>(state, network)),
      m_commands(std::make_unique<BridgeCommands>(state, *m_queue)),
      m_pairing(std::make_unique<BridgePairing>(state, network)),
      m_connection(std::make_unique<BridgeConnection>(state, network, *m_pairing, *m_queue))
{
    // "glowdeckctl pair" while this runs: its key is used at once, and never overwritten with the old one.
    connect(&m_state, &BridgeLink::bridgeChangedElsewhere, this, [this] {
        if (!m_state.hueIP().isEmpty() && !m_state.hueKey().isEmpty())
            m_connection->connectToBridge();
    });
}

BridgeSession::~BridgeSession() = default;

QString BridgeSession::bridgeId() const
{
    return m_state.bridgeID();
}

const BridgeContact& BridgeSession::contact() const
{
    return m_state.contact();
}

void BridgeSession::saveContact()
{
    m_state.persistBridge();
}

void BridgeSession::setBridgeFinder(BridgeDiscovery* finder)
{
    m_connection->setBridgeFinder(finder);
}

void BridgeSession::connectToBridge()
{
    m_connection->connectToBridge();
}

void BridgeSession::resume()
{
    m_queue->startProcessor();
    m_connection->startBridgeStateRefresher();
}

void BridgeSession::suspend()
{
    m_queue->stopProcessor();
    m_connection->stopBridgeStateRefresher();
}
