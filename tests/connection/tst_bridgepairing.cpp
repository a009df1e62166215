#include "TestSupport.h"
#include "bridge/BridgeNetwork.h"
#include "connection/BridgePairing.h"
#include "simulator/BridgeSimulator.h"
#include "state/SettingsKeys.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QSignalSpy>
#include <QSysInfo>
#include <QTest>

#include <memory>

class TestBridgePairing final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void asksForTheLinkButtonUntilItIsPressed();
    void namesTheDeviceAfterTheHost_data();
    void namesTheDeviceAfterTheHost();
    void readsOnlyTheFirstResultOfTheAnswer_data();
    void readsOnlyTheFirstResultOfTheAnswer();
    void failedPairingKeepsThePreviousKey_data();
    void failedPairingKeepsThePreviousKey();
    void pairingSetsTheKeyButLeavesTheStoredOneAlone();

private:
    /// Runs one key request to its answer.
    QString requestKey(const QString& ip);

    std::unique_ptr<BridgeSimulator> m_bridge;
    std::unique_ptr<TestSettings> m_state;
    std::unique_ptr<QNetworkAccessManager> m_network;
    std::unique_ptr<BridgePairing> m_pairing;
};

void TestBridgePairing::init()
{
    m_bridge = std::make_unique<BridgeSimulator>();
    QVERIFY(m_bridge->listen());
    m_state = std::make_unique<TestSettings>();
    m_state->settings().setHueIP(m_bridge->hostAndPort());
    m_network = std::make_unique<BridgeNetwork>();
    m_pairing = std::make_unique<BridgePairing>(m_state->settings(), *m_network);
}

void TestBridgePairing::cleanup()
{
    m_pairing.reset();
    m_network.reset();
    m_state.reset();
    m_bridge.reset();
}

QString TestBridgePairing::requestKey(const QString& ip)
{
    auto answers = std::make_shared<QStringList>();
    m_pairing->requestApiKey(ip,
                             [answers](const PairingOutcome& answer) { answers->append(answer.outcome); });
    if (!QTest::qWaitFor([&] { return !answers->isEmpty(); }, 10000))
        return QStringLiteral("<no answer>");
    return answers->first();
}

void TestBridgePairing::asksForTheLinkButtonUntilItIsPressed()
{
    QCOMPARE(requestKey(m_bridge->hostAndPort()), BridgePairing::pressButton);
    // Its public configuration first, to learn who it is; then the key request.
    QCOMPARE(m_bridge->requests().size(), 2);
    QCOMPARE(m_bridge->requests().first().path, QStringLiteral("/api/config"));
    const SimulatedRequest request = m_bridge->requests().last();
    QCOMPARE(request.method, QByteArray("POST"));
    QCOMPARE(request.path, QStringLiteral("/api"));
    const QString deviceType = BridgePairing::deviceType(QSysInfo::machineHostName());
    QCOMPARE(request.rawBody,
             QJsonDocument(QJsonObject{{"devicetype", deviceType}}).toJson(QJsonDocument::Compact));
    QVERIFY(m_bridge->users().isEmpty());
}

void TestBridgePairing::namesTheDeviceAfterTheHost_data()
{
    QTest::addColumn<QString>("hostName");
    QTest::addColumn<QString>("deviceType");

    QTest::newRow("host name") << "kitchen-pc"
                               << "glowdeck#kitchen-pc";
    QTest::newRow("domain name") << "desk_7.example.org"
                                 << "glowdeck#desk_7.example.org";
    QTest::newRow("just fits") << QString(31, u'h') << "glowdeck#" + QString(31, u'h');
    QTest::newRow("cut to the bridge's 40") << "a-very-long-host-name-in-a-big-office.example.org"
                                            << "glowdeck#a-very-long-host-name-in-a-big-";
    QTest::newRow("empty") << ""
                           << "glowdeck#linux";
    QTest::newRow("space") << "my laptop"
                           << "glowdeck#linux";
    QTest::newRow("not ASCII") << u"büro"_qs << "glowdeck#linux";
    QTest::newRow("hash") << "a#b"
                          << "glowdeck#linux";
    QTest::newRow("quote") << R"(a"b)"
                           << "glowdeck#linux";
}

void TestBridgePairing::namesTheDeviceAfterTheHost()
{
    QFETCH(QString, hostName);
    QFETCH(QString, deviceType);
    QCOMPARE(BridgePairing::deviceType(hostName), deviceType);
    QVERIFY(deviceType.size() <= BridgePairing::deviceTypeLimit);
}

void TestBridgePairing::readsOnlyTheFirstResultOfTheAnswer_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("outcome");

    const QString press = BridgePairing::pressButton;
    const QString none = BridgePairing::noConnection;
    QTest::newRow("link button not pressed")
        << QByteArray(R"([{"error":{"type":101,"address":"","description":"link button not pressed"}}])")
        << press;
    QTest::newRow("unauthorized") << QByteArray(R"([{"error":{"type":1}}])") << press;
    QTest::newRow("other error") << QByteArray(R"([{"error":{"type":7}}])") << none;
    QTest::newRow("success") << QByteArray(R"([{"success":{"username":"abc"}}])") << "abc";
    QTest::newRow("error before success")
        << QByteArray(R"([{"error":{"type":101}},{"success":{"username":"abc"}}])") << press;
    QTest::newRow("success before error")
        << QByteArray(R"([{"success":{"username":"abc"}},{"error":{"type":101}}])") << "abc";
    QTest::newRow("empty array") << QByteArray("[]") << none;
    QTest::newRow("object instead of array") << QByteArray("{}") << none;
    QTest::newRow("empty body") << QByteArray() << none;
    QTest::newRow("garbage") << QByteArray("<html>no</html>") << none;
}

void TestBridgePairing::readsOnlyTheFirstResultOfTheAnswer()
{
    QFETCH(QByteArray, answer);
    QFETCH(QString, outcome);
    QCOMPARE(BridgePairing::outcomeOf(QString::fromUtf8(answer)), outcome);
}

void TestBridgePairing::failedPairingKeepsThePreviousKey_data()
{
    QTest::addColumn<bool>("reachable");
    QTest::addColumn<QString>("message");

    QTest::newRow("link button not pressed") << true << "Bridge responded: Press LINK BUTTON and retry";
    QTest::newRow("nobody listening")
        << false << "Unable to connect to the Hue bridge. Is the IP address correct?";
}

void TestBridgePairing::failedPairingKeepsThePreviousKey()
{
    QFETCH(bool, reachable);
    QFETCH(QString, message);
    BridgeLink& settings = m_state->settings();
    settings.setHueKey(QStringLiteral("previous-key"));
    if (!reachable)
        settings.setHueIP(QStringLiteral("127.0.0.1:1"));
    QSignalSpy finished(m_pairing.get(), &BridgePairing::pairingFinished);
    QSignalSpy paired(m_pairing.get(), &BridgePairing::paired);
    m_pairing->pairWithBridge();
    QVERIFY(finished.wait(10000));
    QCOMPARE(settings.home().connectionErrorMessage(), message);
    QCOMPARE(settings.hueKey(), QStringLiteral("previous-key"));
    QCOMPARE(paired.size(), 0);
}

void TestBridgePairing::pairingSetsTheKeyButLeavesTheStoredOneAlone()
{
    m_state->store().writeString(SettingsKeys::bridgeUser, QStringLiteral("stored-key"));
    m_bridge->pressLinkButton();
    QSignalSpy finished(m_pairing.get(), &BridgePairing::pairingFinished);
    QSignalSpy paired(m_pairing.get(), &BridgePairing::paired);
    m_pairing->pairWithBridge();
    QVERIFY(paired.wait(10000));
    QCOMPARE(paired.size(), 1);
    const QString key = m_state->settings().hueKey();
    QVERIFY2(m_bridge->users().contains(key), qPrintable(key));
    QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(finished.first().first().toString(), key);
    QCOMPARE(m_state->store().readString(SettingsKeys::bridgeUser), QStringLiteral("stored-key"));
    // What was learnt of the bridge goes with the key, its own name too.
    QCOMPARE(m_state->settings().contact().name, u"Philips hue"_qs);
}

QTEST_GUILESS_MAIN(TestBridgePairing)
#include "tst_bridgepairing.moc"
