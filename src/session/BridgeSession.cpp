#include "session/BridgeSession.h"

#include "bridge/ActionQueue.h"
#include "bridge/BridgeCommands.h"
#include "bridge/BridgeNetwork.h"
#include "connection/BridgeConnection.h"
#include "connection/BridgePairing.h"
#include "state/BridgeLink.h"

BridgeSession::BridgeSession(std::unique_ptr<BridgeLink> link, QNetworkAccessManager& network,
                             QObject* parent)
    : BridgeSession(*link, network, parent)
{
    m_ownLink = std::move(link);
}

BridgeSession::BridgeSession(BridgeLink& link, QNetworkAccessManager& network, QObject* parent)
    : QObject(parent), m_link(link), m_network(network),
      m_streamNetwork(qobject_cast<BridgeNetwork*>(&network)
                          ? static_cast<BridgeNetwork&>(network).withSameTrust()
                          : nullptr),
      m_queue(std::make_unique<ActionQueue>(link, network)),
      m_commands(std::make_unique<BridgeCommands>(link, *m_queue)),
      m_pairing(std::make_unique<BridgePairing>(link, network)),
      m_connection(
          std::make_unique<BridgeConnection>(link, network, *m_pairing, *m_queue, m_streamNetwork.get()))
{
    // "glowdeckctl pair" while this runs: its key is used at once, and never overwritten with the old one.
    connect(&m_link, &BridgeLink::bridgeChangedElsewhere, this, [this] {
        if (!m_link.hueIP().isEmpty() && !m_link.hueKey().isEmpty())
            m_connection->connectToBridge();
    });
}

BridgeSession::~BridgeSession() = default;

QString BridgeSession::bridgeId() const
{
    return m_link.bridgeID();
}

const BridgeContact& BridgeSession::contact() const
{
    return m_link.contact();
}

void BridgeSession::saveContact()
{
    m_link.persistBridge();
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
