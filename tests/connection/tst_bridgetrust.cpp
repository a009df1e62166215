#include "FakeCommands.h"
#include "FakeLocalNetwork.h"
#include "TestSupport.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeCommands.h"
#include "bridge/BridgeNetwork.h"
#include "bridge/HttpExchange.h"
#include "connection/BridgeConnection.h"
#include "connection/BridgeDiscovery.h"
#include "connection/BridgePairing.h"
#include "simulator/BridgeSimulator.h"
#include "state/SettingsKeys.h"

#include <QNetworkReply>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

#include <memory>

using Kind = BridgeSimulator::CertificateKind;

/// Who gets the key: pairing over HTTPS learns the bridge's identity, and every later request goes only to a
/// bridge that proves it, over HTTPS wherever the bridge offers it.
class TestBridgeTrust final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void pairingTrustsOnlyABridgesCertificate_data();
    void pairingTrustsOnlyABridgesCertificate();
    void aPairedBridgeMustKeepProvingItself_data();
    void aPairedBridgeMustKeepProvingItself();
    void plainHttpIsLeftForHttpsWhereverTheBridgeOffersIt();
    void aBridgeThatMovedIsFoundByItsIdAndNoOtherGetsTheKey();
    void aProblemThatComesBackAtEveryTickIsLoggedOnceAMinute_data();
    void aProblemThatComesBackAtEveryTickIsLoggedOnceAMinute();
    void aRequestWithTheKeyGoesOnlyWhereTheIdIsProved_data();
    void aRequestWithTheKeyGoesOnlyWhereTheIdIsProved();
    void anOlderSettingsFileLearnsTheIdBeforeTheKeyGoes_data();
    void anOlderSettingsFileLearnsTheIdBeforeTheKeyGoes();
    void aBridgeKnownOverHttpsIsNeverPairedInClear_data();
    void aBridgeKnownOverHttpsIsNeverPairedInClear();

private:
    /// Pairs with the bridge at `address` (link button pressed) and waits for the outcome.
    QString pair(const QString& address);
    /// Connects with the key and waits for the first light read.
    bool connectAndRead();
    /// Requests that carried the key (anything below "/api/<key>").
    QList<SimulatedRequest> requestsWithKey() const;

    BridgeLink& settings() { return m_state->settings(); }

    std::unique_ptr<BridgeSimulator> m_bridge;
    std::unique_ptr<TestSettings> m_state;
    std::unique_ptr<BridgeNetwork> m_network;
    std::unique_ptr<BridgePairing> m_pairing;
    std::unique_ptr<ActionQueue> m_queue;
    std::unique_ptr<BridgeConnection> m_connection;
};

void TestBridgeTrust::init()
{
    m_bridge = std::make_unique<BridgeSimulator>();
    QVERIFY(m_bridge->listen());
    QVERIFY(m_bridge->listenTls());
    m_bridge->setAcceptPairingAtOnce(true);
    m_state = std::make_unique<TestSettings>();
    m_network = std::make_unique<BridgeNetwork>();
    m_network->addTrustRoots({m_bridge->authorityCertificate()});
    m_pairing = std::make_unique<BridgePairing>(settings(), *m_network);
    m_queue = std::make_unique<ActionQueue>(settings(), *m_network);
    m_connection = std::make_unique<BridgeConnection>(settings(), *m_network, *m_pairing, *m_queue);
}

void TestBridgeTrust::cleanup()
{
    m_connection.reset();
    m_queue.reset();
    m_pairing.reset();
    m_network.reset();
    m_state.reset();
    m_bridge.reset();
}

QString TestBridgeTrust::pair(const QString& address)
{
    settings().setHueIP(address);
    QSignalSpy finished(m_pairing.get(), &BridgePairing::pairingFinished);
    m_pairing->pairWithBridge();
    return finished.wait(10000) ? finished.first().first().toString() : QStringLiteral("<no answer>");
}

bool TestBridgeTrust::connectAndRead()
{
    QSignalSpy read(m_connection.get(), &BridgeConnection::lightsRefreshed);
    m_connection->connectToBridge();
    // A refused bridge gets no read at all: its message is the outcome. A read aborted by this connect (the
    // one pairing started) does not count.
    const auto succeeded = [&] {
        for (const QList<QVariant>& arguments : read) {
            if (arguments.first().value<LightsResult>().ok())
                return true;
        }
        return false;
    };
    if (!QTest::qWaitFor([&] { return succeeded() || !settings().home().connectionErrorMessage().isEmpty(); },
                         10000))
        return false;
    return succeeded();
}

QList<SimulatedRequest> TestBridgeTrust::requestsWithKey() const
{
    QList<SimulatedRequest> keyed;
    for (const SimulatedRequest& request : m_bridge->requests()) {
        // The current interface takes the key in a header: every request of it carries one.
        if ((request.path.startsWith(QStringLiteral("/api/")) && request.path != u"/api/config") ||
            request.path.startsWith(QStringLiteral("/clip/v2/")))
            keyed.append(request);
    }
    return keyed;
}

void TestBridgeTrust::pairingTrustsOnlyABridgesCertificate_data()
{
    QTest::addColumn<Kind>("certificate");
    QTest::addColumn<QString>("refusal"); // empty: pairs, and over HTTPS
    QTest::newRow("signed by the maker") << Kind::Signed << QString();
    QTest::newRow("self-signed, trusted on first use") << Kind::SelfSigned << QString();
    QTest::newRow("another bridge's")
        << Kind::OtherBridge << "presented a certificate for another bridge (001788FFFE000BAD).";
    QTest::newRow("unknown authority")
        << Kind::UnknownAuthority << "presented a certificate that is not a Hue bridge's.";
    QTest::newRow("expired") << Kind::Expired << "presented an expired certificate.";
}

void TestBridgeTrust::pairingTrustsOnlyABridgesCertificate()
{
    QFETCH(Kind, certificate);
    QFETCH(QString, refusal);
    m_bridge->setCertificate(certificate);
    const QString outcome = pair(m_bridge->tlsHostAndPort());
    if (!refusal.isEmpty()) {
        QCOMPARE(outcome, BridgePairing::noConnection);
        QCOMPARE(settings().home().connectionErrorMessage(),
                 QStringLiteral("The bridge at %1 ").arg(m_bridge->tlsHostAndPort()) + refusal);
        // Nothing but the public configuration was asked, if anything got through the handshake at all.
        for (const SimulatedRequest& request : m_bridge->requests())
            QCOMPARE(request.method + ' ' + request.path.toUtf8(), QByteArray("GET /api/config"));
        QVERIFY(settings().hueKey().isEmpty());
        return;
    }
    QVERIFY(outcome != BridgePairing::noConnection);
    QCOMPARE(settings().bridgeTransport(), QStringLiteral("https"));
    QCOMPARE(settings().bridgeID(), m_bridge->bridgeId());
    QCOMPARE(settings().bridgeCertificateKey().isEmpty(), certificate == Kind::Signed);
    QVERIFY(connectAndRead());
    QVERIFY(!requestsWithKey().isEmpty());
    for (const SimulatedRequest& request : requestsWithKey())
        QVERIFY(request.encrypted);
    // What was learnt is kept with the key.
    QCOMPARE(m_state->store().readString(SettingsKeys::bridgeID), m_bridge->bridgeId());
    QCOMPARE(m_state->store().readString(SettingsKeys::bridgeTransport), QStringLiteral("https"));
}

void TestBridgeTrust::aPairedBridgeMustKeepProvingItself_data()
{
    QTest::addColumn<Kind>("pairedWith");
    QTest::addColumn<int>("change"); // 0: another certificate kind, 1: a new self-signed key, 2: plain only
    QTest::addColumn<Kind>("then");
    QTest::addColumn<QString>("refusal");
    QTest::newRow("signed, then another bridge's")
        << Kind::Signed << 0 << Kind::OtherBridge
        << "presented a certificate for another bridge (001788FFFE000BAD).";
    QTest::newRow("signed, then self-signed")
        << Kind::Signed << 0 << Kind::SelfSigned
        << "presented a certificate that is not signed by the bridge maker: pair again to trust it.";
    QTest::newRow("self-signed, then another key")
        << Kind::SelfSigned << 1 << Kind::SelfSigned
        << "presented a different certificate than when it was paired: pair again to trust it.";
    QTest::newRow("HTTPS, then plain HTTP only")
        << Kind::Signed << 2 << Kind::Signed
        << "does not answer over HTTPS as it did before; it may be off or restarting. Glowdeck waits for it "
           "there and does not use plain HTTP with it.";
}

void TestBridgeTrust::aPairedBridgeMustKeepProvingItself()
{
    QFETCH(Kind, pairedWith);
    QFETCH(int, change);
    QFETCH(Kind, then);
    QFETCH(QString, refusal);
    m_bridge->setCertificate(pairedWith);
    // A bare address, as a user types it: over HTTPS first.
    const QString address = QStringLiteral("127.0.0.1:%1").arg(m_bridge->tlsPort());
    QVERIFY(pair(address) != BridgePairing::noConnection);
    QVERIFY(connectAndRead());

    if (change == 2) {
        // The same bridge, answering only in clear at the same port: a downgrade, or somebody else.
        const quint16 port = m_bridge->tlsPort();
        m_bridge->close();
        QVERIFY(m_bridge->listen(QHostAddress::LocalHost, port));
    } else if (change == 1) {
        m_bridge->renewSelfSignedKey();
    } else {
        m_bridge->setCertificate(then);
    }
    m_bridge->clearRequests();
    settings().home().setConnectionErrorMessage(QString());
    QVERIFY(!connectAndRead());
    // Said at once, or at the next tick, which asks a bridge that stopped answering who it is.
    QTRY_COMPARE_WITH_TIMEOUT(settings().home().connectionErrorMessage(),
                              QStringLiteral("The bridge at %1 ").arg(address) + refusal, 10000);
    QVERIFY(!settings().home().bridgeConnected());
    QVERIFY(requestsWithKey().isEmpty()); // the key went nowhere
}

void TestBridgeTrust::plainHttpIsLeftForHttpsWhereverTheBridgeOffersIt()
{
    // The newest bridge: plain HTTP only sends clients on to HTTPS.
    m_bridge->setRedirectHttpToHttps(true);
    QVERIFY(pair(m_bridge->httpAddress()) != BridgePairing::noConnection);
    QVERIFY(connectAndRead());
    QCOMPARE(settings().hueIP(), m_bridge->httpsAddress());
    QCOMPARE(settings().bridgeTransport(), QStringLiteral("https"));
    for (const SimulatedRequest& request : requestsWithKey())
        QVERIFY2(request.encrypted, qPrintable(request.path));

    // A bridge of the first generation: plain HTTP only, and said so.
    m_bridge->close();
    m_bridge->setRedirectHttpToHttps(false);
    QVERIFY(m_bridge->listen());
    settings().setBridgeContact({}, {}, {});
    QVERIFY(pair(m_bridge->hostAndPort()) != BridgePairing::noConnection);
    QCOMPARE(settings().bridgeTransport(), QStringLiteral("http"));
    QVERIFY(connectAndRead());

    // ... until it offers HTTPS: the next connect moves it there by itself.
    const quint16 port = m_bridge->port();
    m_bridge->close();
    QVERIFY(m_bridge->listenTls(QHostAddress::LocalHost, port));
    m_bridge->clearRequests();
    QVERIFY(connectAndRead());
    QCOMPARE(settings().bridgeTransport(), QStringLiteral("https"));
    QVERIFY(!requestsWithKey().isEmpty());
    for (const SimulatedRequest& request : requestsWithKey())
        QVERIFY(request.encrypted);
}

void TestBridgeTrust::aBridgeThatMovedIsFoundByItsIdAndNoOtherGetsTheKey()
{
    QVERIFY(pair(m_bridge->httpsAddress()) != BridgePairing::noConnection);
    QVERIFY(connectAndRead());
    const QString key = settings().hueKey();
    const QString bridgeId = m_bridge->bridgeId();
    const QString before = settings().hueIP();

    // The router hands the bridge another address, and its old one to another bridge.
    const quint16 port = m_bridge->tlsPort();
    m_bridge->close();
    BridgeSimulator neighbour;
    neighbour.setBridgeId(u"001788FFFE000001"_qs);
    m_network->addTrustRoots({neighbour.authorityCertificate()}); // as the maker signs every bridge
    QVERIFY(neighbour.listenTls(QHostAddress::LocalHost, port));
    QVERIFY(m_bridge->listenTls(QHostAddress(u"127.0.0.2"_qs), 0));
    const QString after = u"127.0.0.2:%1"_qs.arg(m_bridge->tlsPort());

    FakeCommands commands;
    FakeLocalNetwork localNetwork;
    BridgeDiscovery finder(commands, *m_network);
    finder.setServiceUrl(QUrl());
    finder.setLocalNetworkBrowser(&localNetwork);
    finder.setOwnNetworks([] { return ownNetworks(); });
    m_connection->setBridgeFinder(&finder);
    QDateTime now = QDateTime::currentDateTime().addSecs(60);
    m_connection->setClock([&now] { return now; });
    QSignalSpy moved(m_connection.get(), &BridgeConnection::bridgeMoved);
    const auto tick = [&](int times) {
        for (int i = 0; i < times && moved.isEmpty(); ++i) {
            m_connection->refreshTick();
            QTest::qWait(300);
        }
    };

    // Not announced yet: one search, and no other within the minute however often the bridge is missed.
    tick(2 * BridgeConnection::missesBeforeSearch);
    QCOMPARE(localNetwork.asked, 1);
    QVERIFY(moved.isEmpty());

    // Then the local network announces the neighbour without an id, and the bridge with its own.
    localNetwork.announced = {{u"127.0.0.1"_qs, port, QString()},
                              {u"127.0.0.2"_qs, m_bridge->tlsPort(), bridgeId}};
    now = now.addSecs(61);
    tick(2);
    QCOMPARE(moved.size(), 1);
    QCOMPARE(moved.first(), (QList<QVariant>{bridgeId, before, after}));
    QCOMPARE(localNetwork.asked, 2);
    QTRY_VERIFY(settings().home().bridgeConnected());
    QCOMPARE(settings().hueKey(), key); // nothing paired again
    QTRY_COMPARE(m_state->store().readString(SettingsKeys::bridgeIP), after);
    QVERIFY(!settings()
                 .activity()
                 .log()
                 .filter(u"Bridge %1 moved from %2 to %3"_qs.arg(bridgeId, before, after))
                 .isEmpty());
    // The neighbour refused at the handshake: nothing with the key ever reached it.
    for (const SimulatedRequest& request : neighbour.requests())
        QVERIFY2(!request.path.contains(key), qPrintable(request.path));
}

void TestBridgeTrust::aProblemThatComesBackAtEveryTickIsLoggedOnceAMinute_data()
{
    QTest::addColumn<bool>("refused"); // else the bridge does not answer at all
    QTest::newRow("another bridge's certificate") << true;
    QTest::newRow("not answering") << false;
}

void TestBridgeTrust::aProblemThatComesBackAtEveryTickIsLoggedOnceAMinute()
{
    QFETCH(bool, refused);
    QVERIFY(pair(m_bridge->httpsAddress()) != BridgePairing::noConnection);
    QVERIFY(connectAndRead());
    const quint16 port = m_bridge->tlsPort();
    if (refused)
        m_bridge->setCertificate(Kind::OtherBridge);
    else
        m_bridge->close();
    QDateTime now = QDateTime::currentDateTime();
    m_connection->setClock([&now] { return now; });
    m_queue->setLastUserActionAt(now.addSecs(-3600));
    const auto busy = [this] {
        const QList<QNetworkReply*> replies = m_network->findChildren<QNetworkReply*>();
        return std::ranges::any_of(replies, [](QNetworkReply* r) { return !r->isFinished(); });
    };
    // The ticks come every 3.5 s; once a read failed, each asks the bridge who it is.
    const auto tick = [&](int times) {
        for (int i = 0; i < times; ++i) {
            now = now.addMSecs(BridgeConnection::refreshInterval.count());
            m_connection->refreshTick();
            QTRY_VERIFY_WITH_TIMEOUT(!busy(), 10000);
        }
    };
    const QString at = u"The bridge at 127.0.0.1:%1 "_qs.arg(port);
    const auto told = [&] {
        return settings().activity().log().filter(
            QRegularExpression(u"^"_qs + QRegularExpression::escape(at)));
    };
    for (int i = 0; i < 3 && told().isEmpty(); ++i)
        tick(1);
    QCOMPARE(told().size(), 1);
    const QString problem = told().first();

    // 17 more within the minute are counted, the 18th is said with the count.
    tick(17);
    QCOMPARE(told(), QStringList{problem});
    tick(1);
    QCOMPARE(told(), (QStringList{problem, problem + u" (18 times in the last minute)"_qs}));

    // Two more, then the bridge is itself again: how often it came since is said once.
    tick(2);
    if (refused)
        m_bridge->setCertificate(Kind::Signed);
    else
        QVERIFY(m_bridge->listenTls(QHostAddress::LocalHost, port));
    now = now.addMSecs(BridgeConnection::refreshInterval.count());
    m_connection->refreshTick();
    QTRY_VERIFY_WITH_TIMEOUT(settings().home().bridgeConnected(), 10000);
    QCOMPARE(told(), (QStringList{problem, problem + u" (18 times in the last minute)"_qs,
                                  problem + u" (2 more times in the last minute)"_qs}));
}

void TestBridgeTrust::aRequestWithTheKeyGoesOnlyWhereTheIdIsProved_data()
{
    QTest::addColumn<bool>("overHttps");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("keyHeader");
    QTest::addColumn<int>("mark"); // 0: none, 1: an empty id, 2: the bridge's id, 3: its id, paired in clear
    QTest::addColumn<bool>("sent");
    QTest::newRow("a list, unmarked") << false << "/api/secret/lights" << false << 0 << false;
    QTest::newRow("a list, no id to check") << true << "/api/secret/lights" << false << 1 << false;
    QTest::newRow("a list, the id checked") << true << "/api/secret/lights" << false << 2 << true;
    QTest::newRow("a list in clear, paired over HTTPS")
        << false << "/api/secret/lights" << false << 2 << false;
    QTest::newRow("a list in clear, paired in clear") << false << "/api/secret/lights" << false << 3 << true;
    QTest::newRow("a path the server reads as a list")
        << true << "/API//./secret/lights" << false << 1 << false;
    QTest::newRow("the stream's header, no id to check")
        << true << "/eventstream/clip/v2" << true << 1 << false;
    QTest::newRow("the public configuration") << true << "/api/config" << false << 1 << true;
    QTest::newRow("the link request, in clear") << false << "/api" << false << 0 << true;
}

void TestBridgeTrust::aRequestWithTheKeyGoesOnlyWhereTheIdIsProved()
{
    QFETCH(bool, overHttps);
    QFETCH(QString, path);
    QFETCH(bool, keyHeader);
    QFETCH(int, mark);
    QFETCH(bool, sent);
    QNetworkRequest request(QUrl((overHttps ? m_bridge->httpsAddress() : m_bridge->httpAddress()) + path));
    if (keyHeader)
        request.setRawHeader("hue-application-key", "secret");
    if (mark > 0)
        BridgeNetwork::prepare(request, {mark == 1 ? QString() : m_bridge->bridgeId(), {}, false, mark == 3});
    std::optional<HttpResult> result;
    sendHttpRequest(*m_network, request, "GET", {}, {std::chrono::seconds(5), std::chrono::seconds(5)},
                    [&result](const HttpResult& answer) { result = answer; });
    QTRY_VERIFY_WITH_TIMEOUT(result.has_value(), 10000);
    QCOMPARE(m_bridge->requests().size(), sent ? 1 : 0);
    if (!sent) {
        QVERIFY(result->transportFailed);
        QVERIFY2(result->refusal.startsWith(QStringLiteral("The bridge's key was not sent to 127.0.0.1:")),
                 qPrintable(result->refusal));
    }
}

void TestBridgeTrust::anOlderSettingsFileLearnsTheIdBeforeTheKeyGoes_data()
{
    QTest::addColumn<Kind>("certificate");
    QTest::newRow("the bridge paired with") << Kind::Signed;
    QTest::newRow("another bridge's certificate") << Kind::OtherBridge;
}

void TestBridgeTrust::anOlderSettingsFileLearnsTheIdBeforeTheKeyGoes()
{
    QFETCH(Kind, certificate);
    m_bridge->setCertificate(certificate);
    // A file of an older version: reached over HTTPS, but no bridge id stored.
    const QString address = m_bridge->tlsHostAndPort();
    const QString key = m_bridge->addUser();
    m_state->store().writeString(SettingsKeys::bridgeIP, address);
    m_state->store().writeString(SettingsKeys::bridgeUser, key);
    m_state->store().writeString(SettingsKeys::bridgeTransport, QStringLiteral("https"));
    settings().load();
    QVERIFY(settings().bridgeID().isEmpty());

    // A hot key pressed at once, before the connection has asked the bridge who it is.
    ActionQueue& queue = *m_queue;
    BridgeCommands commands(settings(), queue);
    commands.switchEverythingOff();
    m_connection->connectToBridge();
    if (certificate == Kind::Signed) {
        // Held, not lost: it goes once the id is learnt, and the log says where it was learnt.
        const auto changed = [this] {
            const QList<SimulatedRequest> keyed = requestsWithKey();
            return std::any_of(keyed.cbegin(), keyed.cend(), [](const SimulatedRequest& r) {
                return r.path.endsWith(u"/groups/0/action");
            });
        };
        QTRY_VERIFY_WITH_TIMEOUT(changed(), 10000);
        QCOMPARE(settings().bridgeID(), m_bridge->bridgeId());
        QVERIFY(!settings()
                     .activity()
                     .log()
                     .filter(u"Learnt the id of the bridge at %1"_qs.arg(address))
                     .isEmpty());
        return;
    }
    QTRY_VERIFY_WITH_TIMEOUT(!settings().home().connectionErrorMessage().isEmpty(), 10000);
    QVERIFY2(settings().home().connectionErrorMessage().contains(u"a certificate for another bridge"_qs),
             qPrintable(settings().home().connectionErrorMessage()));
    // The change waits for an id that never comes; nothing with the key went out.
    QTRY_VERIFY(!queue.isProcessing());
    QCOMPARE(queue.pending().size(), 1);
    QVERIFY(requestsWithKey().isEmpty());
}

void TestBridgeTrust::aBridgeKnownOverHttpsIsNeverPairedInClear_data()
{
    QTest::addColumn<bool>("impostor"); // in clear at the bridge's port, with another id
    QTest::newRow("its port closed") << false;
    QTest::newRow("its port closed, a plain-HTTP host there") << true;
}

void TestBridgeTrust::aBridgeKnownOverHttpsIsNeverPairedInClear()
{
    QFETCH(bool, impostor);
    const QString address = m_bridge->tlsHostAndPort();
    QVERIFY(pair(address) != BridgePairing::noConnection);
    QVERIFY(connectAndRead());
    const QString key = settings().hueKey();

    const quint16 port = m_bridge->tlsPort();
    m_bridge->close();
    BridgeSimulator other;
    other.setBridgeId(u"001788FFFE000001"_qs);
    other.setAcceptPairingAtOnce(true);
    if (impostor)
        QVERIFY(other.listen(QHostAddress::LocalHost, port));
    settings().home().setConnectionErrorMessage(QString());
    QCOMPARE(pair(address), BridgePairing::noConnection);
    // Most often a bridge that is restarting: said calmly, and nothing was tried in clear.
    QCOMPARE(settings().home().connectionErrorMessage(),
             u"The bridge at %1 does not answer over HTTPS as it did before; it may be off or restarting. "
             "Glowdeck waits for it there and does not use plain HTTP with it."_qs.arg(address));
    QVERIFY(other.requests().isEmpty());
    QCOMPARE(settings().hueKey(), key);
    QCOMPARE(settings().bridgeTransport(), QStringLiteral("https"));
    QCOMPARE(m_state->store().readString(SettingsKeys::bridgeUser), key);
    if (impostor)
        return;
    // Where plain HTTP is tried too (a bridge of the first generation) and nothing answers, the log says the
    // bridge is looked for, not that anything was refused.
    settings().setBridgeContact(QStringLiteral("http"), m_bridge->bridgeId(), {});
    m_connection->connectToBridge();
    const QString silent =
        u"The bridge at %1 does not answer; looking for it on your network"_qs.arg(address);
    QTRY_VERIFY_WITH_TIMEOUT(!settings().activity().log().filter(silent).isEmpty(), 10000);
}

QTEST_GUILESS_MAIN(TestBridgeTrust)
#include "tst_bridgetrust.moc"
