#pragma once

#include "model/BridgeContact.h"

#include <QObject>
#include <QString>

#include <memory>

class ActionQueue;
class BridgeLink;
class BridgeCommands;
class BridgeConnection;
class BridgeDiscovery;
class BridgeNetwork;
class BridgePairing;
class QNetworkAccessManager;

/// Everything that keeps one bridge in step with Glowdeck: its connection (probe, reads, refresh timer, the
/// search for a bridge that moved), its live updates, its pairing, and its queue of changes with the
/// commands that fill it. Requests are built from the bridge's contact when they are queued
/// or sent; the contact is saved, in one write, once the bridge has answered with it. A contact stored by
/// another program (glowdeckctl pair while this runs) is taken in and the bridge reached anew with it.
/// Given a BridgeNetwork, the session opens the event stream through one of its own with the same trust, so
/// that the requests' kept connections can be let go while the stream stays open.
class BridgeSession final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BridgeSession)

public:
    /// A session for the bridge whose contact and home `link` holds.
    BridgeSession(BridgeLink& link, QNetworkAccessManager& network, QObject* parent = nullptr);
    /// ... which it owns.
    BridgeSession(std::unique_ptr<BridgeLink> link, QNetworkAccessManager& network,
                  QObject* parent = nullptr);
    ~BridgeSession() override;

    /// Its bridge id, upper case; empty until the bridge has proved it.
    QString bridgeId() const;
    const BridgeContact& contact() const;
    /// Writes the contact to the settings file, in one save.
    void saveContact();

    /// The bridge's contact and its home as the views show it.
    BridgeLink& link() const { return m_link; }
    QNetworkAccessManager& network() const { return m_network; }
    ActionQueue& queue() const { return *m_queue; }
    BridgeCommands& commands() const { return *m_commands; }
    BridgePairing& pairing() const { return *m_pairing; }
    BridgeConnection& connection() const { return *m_connection; }

    /// What looks for the bridge when it moved to another address; none: it is only waited for.
    void setBridgeFinder(BridgeDiscovery* finder);
    /// Reaches the bridge with the contact (or pairs, without a key) and keeps it in step from then on.
    void connectToBridge();

    /// Sends the queued changes and keeps the bridge in step again (after a wake).
    void resume();
    /// Stops every timer (sleep, quit); queued changes stay queued.
    void suspend();

private:
    std::unique_ptr<BridgeLink> m_ownLink; // null when the link is lent
    BridgeLink& m_link;
    QNetworkAccessManager& m_network;
    std::unique_ptr<BridgeNetwork> m_streamNetwork; // the event stream's, when `m_network` is a BridgeNetwork
    std::unique_ptr<ActionQueue> m_queue;
    std::unique_ptr<BridgeCommands> m_commands;
    std::unique_ptr<BridgePairing> m_pairing;
    std::unique_ptr<BridgeConnection> m_connection;
};
