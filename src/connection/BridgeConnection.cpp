#include "connection/BridgeConnection.h"

#include "bridge/ActionQueue.h"
#include "bridge/BridgeUrl.h"
#include "bridge/HttpExchange.h"
#include "connection/BridgeDiscovery.h"
#include "connection/BridgePairing.h"
#include "connection/BridgeProbe.h"
#include "connection/LiveUpdates.h"
#include "state/ActivityLog.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/LightOrder.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>

void askBridgeInterface(QNetworkAccessManager& network, const QString& endpoint, const QString& key,
                        const BridgeIdentity& identity, QObject* context,
                        std::function<void(std::optional<BridgeInterface>, const HttpResult&)> done)
{
    // The current interface is served over HTTPS only.
    if (!endpoint.startsWith(BridgeAddress::https + u':')) {
        QMetaObject::invokeMethod(
            context, [done] { done(BridgeInterface::v1, HttpResult{.status = 0}); }, Qt::QueuedConnection);
        return;
    }
    QNetworkRequest request(bridgeClipUrl(endpoint, {QStringLiteral("bridge")}));
    request.setRawHeader(QByteArrayLiteral("hue-application-key"), key.toUtf8());
    BridgeNetwork::prepare(request, identity);
    sendHttpRequest(network, request, QByteArrayLiteral("GET"), {}, {fetchTimeout, fetchDeadline},
                    [guard = QPointer(context), done](const HttpResult& answer) {
                        if (!guard)
                            return;
                        if (answer.transportFailed || answer.status == 429 || answer.status == 503)
                            return done(std::nullopt, answer);
                        done(answer.status >= 200 && answer.status <= 299 ? BridgeInterface::v2
                                                                          : BridgeInterface::v1,
                             answer);
                    });
}

BridgeConnection::BridgeConnection(BridgeLink& settings, QNetworkAccessManager& network,
                                   BridgePairing& pairing, const ActionQueue& queue,
                                   QNetworkAccessManager* streamNetwork, QObject* parent)
    : QObject(parent), m_settings(settings), m_network(network), m_pairing(pairing), m_queue(queue),
      m_live(new LiveUpdates(settings, streamNetwork ? *streamNetwork : network, queue, this))
{
    // Pairing that succeeds comes back here, now with a key.
    connect(&m_pairing, &BridgePairing::paired, this, &BridgeConnection::connectToBridge);
    connect(m_live, &LiveUpdates::readRequested, this, &BridgeConnection::readAfresh);
    // Changes made while no stream was open are not told: read what is there now.
    connect(m_live, &LiveUpdates::streamOpened, this,
            [this] { readAfresh(LiveUpdates::lights | LiveUpdates::groups); });
    connect(&m_settings.home(), &BridgeHome::liveUpdatesChanged, this, [this] {
        if (m_refresher)
            m_refresher->setInterval(currentRefreshInterval());
    });
}

void BridgeConnection::connectToBridge()
{
    if (m_settings.hueKey().isEmpty()) {
        m_settings.activity().addLogLine(QStringLiteral("We have a Bridge IP, but no API key yet..."));
        m_pairing.pairWithBridge();
        return;
    }
    // Enough of the key to tell two apart, not enough to use it.
    m_settings.activity().addLogLine(QStringLiteral("Connecting to Bridge... [\u2026") +
                                     m_settings.hueKey().right(4) + u']');
    m_reached = false;
    // Asked again at every connect: the bridge may have been updated, or replaced by an older one.
    m_settings.setBridgeInterface(BridgeInterface::unknown);
    reach();
    startBridgeStateRefresher();
}

void BridgeConnection::reach()
{
    if (m_reaching)
        return;
    const std::optional<BridgeAddress> address = BridgeAddress::parse(m_settings.hueIP());
    if (!address) {
        m_settings.home().setBridgeConnected(false);
        return;
    }
    if (!m_mustAsk && !needsProbe(*address, m_settings.bridgeTransport(), m_settings.bridgeID())) {
        if (m_settings.bridgeTransport().isEmpty())
            m_settings.setBridgeContact(address->scheme, m_settings.bridgeID(),
                                        m_settings.bridgeCertificateKey());
        onReached();
        return;
    }
    m_reaching = true;
    const ProbeKnowledge knowledge{m_settings.bridgeTransport(), m_settings.bridgeIdentity(), false};
    const QString at = address->hostAndPort();
    probeBridge(m_network, *address, knowledge, this, [this, at](const ProbeResult& result) {
        m_reaching = false;
        if (!result.contact) {
            // After a few misses the bridge is looked for elsewhere, in case it was given another address.
            logRepeating(
                result.silent
                    ? QStringLiteral("The bridge at %1 does not answer; looking for it on your network")
                          .arg(at)
                    : result.problem);
            // Not answering is what the refresh retries quietly; a bridge that is not the one paired is said.
            if (result.refused)
                m_settings.home().setConnectionErrorMessage(result.problem);
            m_settings.home().setBridgeReach(result.refused ? BridgeHome::Reach::refused
                                                            : BridgeHome::Reach::notAnswering);
            m_settings.home().setBridgeConnected(false);
            onMissed();
            return;
        }
        const ProbedBridge& contact = *result.contact;
        flushRepeats();
        // A settings file of an older version holds an address and a key but no id: the bridge at that
        // address is taken for the paired one, once, and held to its id from then on.
        if (m_settings.bridgeID().isEmpty())
            m_settings.activity().addLogLine(QStringLiteral("Learnt the id of the bridge at %1: %2")
                                                 .arg(m_settings.hueIP(), contact.bridgeId));
        if (contact.transport != m_settings.bridgeTransport() || contact.bridgeId != m_settings.bridgeID() ||
            contact.signer != m_settings.bridgeSigner())
            m_settings.activity().addLogLine(QStringLiteral("Reached bridge %1 at %2 over %3")
                                                 .arg(contact.bridgeId, contact.endpoint,
                                                      describeTransport(contact.transport, contact.signer)));
        m_mustAsk = false;
        m_settings.home().setBridgeReach(BridgeHome::Reach::answering);
        m_settings.setHueIP(addressAfter(m_settings.hueIP(), contact));
        m_settings.setBridgeContact(contact.transport, contact.bridgeId, contact.pinnedKey);
        m_settings.setBridgeSigner(contact.signer);
        if (!contact.name.isEmpty())
            m_settings.setBridgeName(contact.name);
        onReached();
    });
}

void BridgeConnection::onReached()
{
    m_reached = true;
    if (m_settings.bridgeInterface() == BridgeInterface::unknown)
        learnInterface();
    else
        readEverything();
    // Once the bridge proved who it is, and only then, may the key go into a stream to it.
    if (m_refresher)
        m_live->start();
}

bool BridgeConnection::overClip() const
{
    return m_settings.bridgeInterface() == BridgeInterface::v2;
}

void BridgeConnection::readEverything()
{
    if (overClip())
        return refreshHome();
    refreshLights();
    refreshGroups();
    refreshScenes();
}

void BridgeConnection::learnInterface()
{
    if (m_learning)
        return;
    // Nothing to ask over plain HTTP: the lists are read at once, as they always were.
    if (m_settings.bridgeTransport() != BridgeAddress::https) {
        m_settings.setBridgeInterface(BridgeInterface::v1);
        m_settings.activity().addLogLine(
            QStringLiteral("Bridge %1 is read over its %2: it offers no HTTPS")
                .arg(m_settings.bridgeID(), describeInterface(BridgeInterface::v1)));
        return readEverything();
    }
    m_learning = true;
    const QString key = m_settings.hueKey();
    askBridgeInterface(
        m_network, m_settings.bridgeEndpoint(), key, m_settings.bridgeIdentity(), this,
        [this, key](std::optional<BridgeInterface> interface, const HttpResult& answer) {
            m_learning = false;
            // Disconnected or paired anew meanwhile: the next connect asks again.
            if (m_settings.hueKey() != key || !m_reached)
                return;
            if (answer.transportFailed) {
                LightsResult failed;
                failed.error = LightsError::connectionFailed;
                failed.connectionError = answer.error;
                failed.timedOut = answer.timedOut;
                failed.refusal = answer.refusal;
                return onLights(failed, ++m_readsStarted);
            }
            // Busy: asked again at the next tick rather than settling for the older interface.
            if (!interface)
                return;
            m_settings.setBridgeInterface(*interface);
            const QString why =
                answer.status == 404 ? QStringLiteral(": it has no current interface (older firmware)")
                : *interface == BridgeInterface::v1
                    ? QStringLiteral(" (it answered the current one with HTTP %1)").arg(answer.status)
                    : QString();
            m_settings.activity().addLogLine(
                QStringLiteral("Bridge %1 is read over its %2%3")
                    .arg(m_settings.bridgeID(), describeInterface(*interface), why));
            readEverything();
        });
}

void BridgeConnection::refreshHome()
{
    const quint64 order = ++m_readsStarted;
    const quint64 serial = m_lightsRead.next(order);
    m_lightsRead.reply =
        HomeRead{m_settings.bridgeEndpoint(), m_settings.hueKey(), m_homeMemo, m_settings.bridgeIdentity()}
            .fetch(m_network, [self = QPointer(this), serial, order](const HomeResult& result) {
                if (!self || !self->m_lightsRead.take(serial))
                    return;
                self->onHome(result, order);
                if (std::exchange(self->m_lightsRead.again, false) && !self->m_lightsRead.pending())
                    self->refreshHome();
            });
}

void BridgeConnection::onHome(const HomeResult& result, quint64 order)
{
    // One answer holds every list: the rooms and scenes are taken with the lamps, and fail with them.
    if (result.ok()) {
        m_settings.setHomeGroupedLight(result.homeGroupedLight);
        m_settings.home().setGroups(result.groups);
    }
    Q_EMIT groupsRefreshed(result.groupsResult());
    onScenes(result.scenesResult());
    onLights(result, order);
}

void BridgeConnection::disconnectFromBridge()
{
    // A read still under way would bring the lights back, and store an empty key as one that works.
    for (ListRead* read : {&m_lightsRead, &m_groupsRead, &m_scenesRead})
        read->forget();
    *m_lightsMemo = {};
    *m_groupsMemo = {};
    *m_scenesMemo = {};
    *m_homeMemo = {};
    m_live->stop();
    m_settings.home().setLights({});
    m_settings.home().setGroups({});
    m_settings.setHueKey(QString());
    m_settings.forgetStoredKey();
    m_settings.home().setBridgeConnected(false);
    m_settings.home().setBridgeReach(BridgeHome::Reach::unknown);
}

quint64 BridgeConnection::ListRead::next(quint64 order)
{
    startedAt = order;
    // A trickling answer would otherwise hold its connection until its deadline, and a healed bridge would
    // wait for it. The abort answers at once, as a failed connection.
    if (reply && reply->isRunning())
        reply->abort();
    return ++started;
}

void BridgeConnection::ListRead::forget()
{
    if (reply && reply->isRunning())
        reply->abort();
    answered = started;
    again = false;
}

void BridgeConnection::readAfresh(int lists)
{
    // Like the refresh, no read while the user is still changing things: its answer would undo them.
    const qint64 sinceUser = m_queue.lastUserActionAt().msecsTo(m_now());
    const qint64 quiet = qint64(std::chrono::milliseconds(quietAfterUserAction).count());
    if (!lists)
        return;
    if (sinceUser < quiet) {
        // One timer for all that wait.
        if (std::exchange(m_deferredReads, m_deferredReads | lists) == 0)
            QTimer::singleShot(quiet - sinceUser, this,
                               [this] { readAfresh(std::exchange(m_deferredReads, 0)); });
        return;
    }
    const auto read = [](ListRead& list, auto start) {
        if (list.pending())
            list.again = true;
        else
            start();
    };
    if (overClip())
        return read(m_lightsRead, [this] { refreshHome(); });
    if (lists & LiveUpdates::lights)
        read(m_lightsRead, [this] { refreshLights(); });
    if (lists & LiveUpdates::groups)
        read(m_groupsRead, [this] { refreshGroups(); });
    if (lists & LiveUpdates::scenes)
        read(m_scenesRead, [this] { refreshScenes(); });
}

bool BridgeConnection::ListRead::take(quint64 serial)
{
    // Answers are decoded on worker threads: an older one may come in after a newer one.
    if (serial <= answered)
        return false;
    answered = serial;
    return true;
}

void BridgeConnection::refreshLights()
{
    if (m_settings.bridgeInterface() == BridgeInterface::unknown)
        return learnInterface();
    if (overClip())
        return refreshHome();
    const quint64 order = ++m_readsStarted;
    const quint64 serial = m_lightsRead.next(order);
    // A reply can arrive after this object is gone (the application quits mid-read): guard on it.
    m_lightsRead.reply =
        LightsRead{m_settings.bridgeEndpoint(), m_settings.hueKey(), m_lightsMemo,
                   m_settings.bridgeIdentity()}
            .fetch(m_network, [self = QPointer(this), serial, order](const LightsResult& result) {
                if (!self || !self->m_lightsRead.take(serial))
                    return;
                self->onLights(result, order);
                if (std::exchange(self->m_lightsRead.again, false) && !self->m_lightsRead.pending())
                    self->refreshLights();
            });
}

void BridgeConnection::refreshGroups()
{
    if (m_settings.bridgeInterface() == BridgeInterface::unknown)
        return learnInterface();
    if (overClip())
        return refreshHome();
    const quint64 serial = m_groupsRead.next(++m_readsStarted);
    m_groupsRead.reply =
        GroupsRead{m_settings.bridgeEndpoint(), m_settings.hueKey(), m_groupsMemo,
                   m_settings.bridgeIdentity()}
            .fetch(m_network, [self = QPointer(this), serial](const GroupsResult& result) {
                if (!self || !self->m_groupsRead.take(serial))
                    return;
                // A failed room read is silent: the rooms shown stay until a read succeeds.
                if (result.ok())
                    self->m_settings.home().setGroups(result.records);
                Q_EMIT self->groupsRefreshed(result);
                if (std::exchange(self->m_groupsRead.again, false) && !self->m_groupsRead.pending())
                    self->refreshGroups();
            });
}

void BridgeConnection::refreshScenes()
{
    if (m_settings.bridgeInterface() == BridgeInterface::unknown)
        return learnInterface();
    if (overClip())
        return refreshHome();
    const quint64 serial = m_scenesRead.next(++m_readsStarted);
    m_scenesRead.reply =
        ScenesRead{m_settings.bridgeEndpoint(), m_settings.hueKey(), m_scenesMemo,
                   m_settings.bridgeIdentity()}
            .fetch(m_network, [self = QPointer(this), serial](const ScenesResult& result) {
                if (!self || !self->m_scenesRead.take(serial))
                    return;
                self->onScenes(result);
                if (std::exchange(self->m_scenesRead.again, false) && !self->m_scenesRead.pending())
                    self->refreshScenes();
            });
}

void BridgeConnection::onLights(const LightsResult& result, quint64 order)
{
    using Reach = BridgeHome::Reach;
    if (result.error == LightsError::noDevices) {
        m_settings.home().setBridgeReach(Reach::answering);
        m_settings.home().setConnectionErrorMessage(
            QCoreApplication::translate("BridgeConnection", "We were unable to find any devices"));
    } else if (!result.ok()) {
        if (!result.refusal.isEmpty())
            m_settings.home().setConnectionErrorMessage(result.refusal);
        // It answered: saying it cannot be reached, or asking for the link button, would send the user
        // after the wrong fault.
        if (result.error == LightsError::invalidData)
            reportUnusableAnswer(result);
        // A bridge that stopped answering may answer elsewhere or otherwise (plain HTTP only, say): the next
        // tick asks it who it is before it is read again.
        if (result.error == LightsError::connectionFailed) {
            m_reached = false;
            m_mustAsk = true;
            m_settings.home().setBridgeReach(result.refusal.isEmpty() ? Reach::notAnswering : Reach::refused);
            onMissed();
        } else {
            m_settings.home().setBridgeReach(Reach::answering);
        }
        m_settings.home().setBridgeConnected(false);
        m_scenesStale = true;
    } else {
        m_misses = 0;
        m_settings.home().setBridgeReach(Reach::answering);
        // A bridge read without asking it who it is first tells who vouched for it here.
        if (result.signer.kind != CertificateSigner::Kind::unknown)
            m_settings.setBridgeSigner(result.signer);
        m_settings.home().setLights(LightOrder::apply(result.records, m_settings.lightOrder()));
        m_settings.home().setBridgeConnected(true);
        m_settings.home().setConnectionErrorMessage(QString());
        // Only an address and key the bridge has just answered with are worth keeping.
        if (!m_settings.hueIP().isEmpty())
            m_settings.persistBridge();
        // Scenes are read four minutes an hour; after a start without the bridge, or an outage, the panel
        // would stay empty or stale until then. A scene read started along with this light read is left to
        // finish; one from before (still trickling from the outage) is replaced.
        const bool scenesUnderWay = m_scenesRead.pending() && m_scenesRead.startedAt > order;
        // Over the current interface the scenes came with the lamps.
        if (std::exchange(m_scenesStale, false) && !scenesUnderWay && !overClip())
            refreshScenes();
    }
    Q_EMIT lightsRefreshed(result);
}

void BridgeConnection::reportUnusableAnswer(const LightsResult& result)
{
    QString message;
    if (result.bridgeErrors.contains(QLatin1String("unauthorized user")))
        message = tr("The bridge does not know Glowdeck's key: press its link button, then Connect");
    else if (!result.bridgeErrors.isEmpty())
        message = tr("The bridge refused to list the lights: %1")
                      .arg(result.bridgeErrors.join(QStringLiteral("; ")));
    else if (result.httpStatus != 0 && (result.httpStatus < 200 || result.httpStatus > 299))
        message = tr("The bridge answered with an error (HTTP %1)").arg(result.httpStatus);
    else if (result.tooMany > 0)
        message = tr("The bridge sent more than 1,000 lights");
    else
        message = tr("The bridge's answer could not be read");
    if (message != m_settings.home().connectionErrorMessage())
        m_settings.activity().addLogLine(message);
    m_settings.home().setConnectionErrorMessage(message);
}

void BridgeConnection::setBridgeFinder(BridgeDiscovery* finder)
{
    m_finder = finder;
}

void BridgeConnection::onMissed()
{
    if (++m_misses >= missesBeforeSearch)
        searchForBridge();
}

void BridgeConnection::searchForBridge()
{
    const QDateTime now = m_now();
    // Only a bridge known by its id can be told from any other at a new address.
    if (!m_finder || m_searching || m_settings.bridgeID().isEmpty() || m_settings.hueKey().isEmpty() ||
        (m_lastSearch.isValid() &&
         m_lastSearch.secsTo(now) < qint64(std::chrono::seconds(searchInterval).count())))
        return;
    m_searching = true;
    m_lastSearch = now;
    const QString from = m_settings.hueIP();
    const QString bridgeId = m_settings.bridgeID();
    m_settings.activity().addLogLine(
        QStringLiteral("Bridge %1 does not answer at %2; looking for it on the network").arg(bridgeId, from));
    // The finder asks each address who it is before anything else: the key goes only to this bridge.
    const ProbeKnowledge knowledge{m_settings.bridgeTransport(), m_settings.bridgeIdentity(), false};
    m_finder->findBridge(knowledge, [self = QPointer(this), from,
                                     bridgeId](const std::optional<BridgeDiscovery::Whereabouts>& found) {
        if (!self)
            return;
        self->m_searching = false;
        BridgeLink& settings = self->m_settings;
        // Disconnected, paired anew or given another address meanwhile: what was found is no longer asked
        // for.
        if (settings.hueIP() != from || settings.bridgeID() != bridgeId || settings.hueKey().isEmpty())
            return;
        if (!found || found->address == from) {
            settings.activity().addLogLine(
                QStringLiteral("Bridge %1 was not found elsewhere; still trying %2").arg(bridgeId, from));
            return;
        }
        settings.activity().addLogLine(
            QStringLiteral("Bridge %1 moved from %2 to %3").arg(bridgeId, from, found->address));
        settings.setHueIP(found->address);
        settings.setBridgeContact(found->contact.transport, found->contact.bridgeId,
                                  found->contact.pinnedKey);
        settings.setBridgeSigner(found->contact.signer);
        if (!found->contact.name.isEmpty())
            settings.setBridgeName(found->contact.name);
        self->m_mustAsk = false;
        self->m_misses = 0;
        Q_EMIT self->bridgeMoved(bridgeId, from, found->address);
        self->onReached();
    });
}

void BridgeConnection::logRepeating(const QString& line)
{
    const QDateTime now = m_now();
    if (line == m_repeats.line && m_repeats.loggedAt.isValid() &&
        m_repeats.loggedAt.secsTo(now) < qint64(std::chrono::seconds(repeatsLoggedEvery).count())) {
        ++m_repeats.since;
        return;
    }
    if (line == m_repeats.line && m_repeats.loggedAt.isValid()) {
        m_settings.activity().addLogLine(QStringLiteral("%1 (%2 times in the last minute)")
                                             .arg(line, QString::number(m_repeats.since + 1)));
    } else {
        flushRepeats();
        m_settings.activity().addLogLine(line);
    }
    m_repeats = {line, now, 0};
}

void BridgeConnection::flushRepeats()
{
    if (m_repeats.since > 0)
        m_settings.activity().addLogLine(QStringLiteral("%1 (%2 more times in the last minute)")
                                             .arg(m_repeats.line, QString::number(m_repeats.since)));
    m_repeats = {};
}

void BridgeConnection::onScenes(const ScenesResult& result)
{
    if (result.ok()) {
        m_settings.home().setScenes(result.records);
        m_scenesStale = false;
    }
    Q_EMIT scenesRefreshed(result);
}

void BridgeConnection::startBridgeStateRefresher()
{
    if (m_refresher)
        return;
    m_refresher = new QTimer(this);
    m_refresher->setInterval(currentRefreshInterval());
    connect(m_refresher, &QTimer::timeout, this, &BridgeConnection::refreshTick);
    m_refresher->start();
    if (m_reached)
        m_live->start();
}

std::chrono::milliseconds BridgeConnection::currentRefreshInterval() const
{
    return m_settings.home().liveUpdates() ? safetyNetInterval : refreshInterval;
}

void BridgeConnection::stopBridgeStateRefresher()
{
    m_live->stop();
    if (!m_refresher)
        return;
    m_refresher->stop();
    m_refresher->deleteLater();
    m_refresher = nullptr;
}

void BridgeConnection::refreshTick()
{
    // Without a key (disconnected, or never paired) there is nothing to read: the timer runs, the bridge
    // hears nothing until a key is stored again.
    if (m_settings.hueKey().isEmpty())
        return;
    const QDateTime now = m_now();
    // Leave the bridge alone while the user is still changing things, or the refresh would undo them.
    if (now.msecsTo(m_queue.lastUserActionAt()) >= -qint64(quietAfterUserAction.count()) * 1000)
        return;
    if (!m_reached)
        return reach();
    if (m_settings.bridgeInterface() == BridgeInterface::unknown)
        return learnInterface();
    // One request brings everything, the scenes too.
    if (overClip())
        return refreshHome();
    refreshLights();
    refreshGroups();
    // Scenes rarely change: refresh them only during four minutes of every hour.
    if (now.toLocalTime().time().minute() % 15 == 0)
        refreshScenes();
}
