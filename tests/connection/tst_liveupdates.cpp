#include "TestSupport.h"
#include "bridge/BridgeNetwork.h"
#include "connection/BridgeConnection.h"
#include "connection/BridgeEventStream.h"
#include "connection/BridgePairing.h"
#include "connection/LiveUpdates.h"
#include "simulator/BridgeSimulator.h"
#include "state/AppSettings.h"

#include <QJsonDocument>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTest>

#include <memory>

/// The connection with a bridge that pushes its changes: the simulator over HTTPS, its event stream, and
/// changes made by "another app" through the simulator's control request.
class TestLiveUpdates final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void changesMadeElsewhereShowWithoutReadingTheLists();
    void theUsersPendingChangeIsNotUndoneByAnEvent();
    void aLostStreamMeansReadingUntilItIsBackWithAFreshRead();
    void withoutAStreamTheBridgeIsReadEvery3500Ms_data();
    void withoutAStreamTheBridgeIsReadEvery3500Ms();

private:
    AppSettings& settings() { return m_state->settings(); }
    void connectOverHttps();
    /// Changes the bridge as another app would: PUT `body` to the version-1 `path` ("lights/1/state").
    void changeElsewhere(const QString& path, const QByteArray& body);
    HueLight light(const QString& id) const;
    int lightReads() const;

    std::unique_ptr<BridgeSimulator> m_bridge;
    std::unique_ptr<TestSettings> m_state;
    std::unique_ptr<BridgeNetwork> m_network;
    std::unique_ptr<BridgePairing> m_pairing;
    std::unique_ptr<BridgeConnection> m_connection;
};

void TestLiveUpdates::init()
{
    m_bridge = std::make_unique<BridgeSimulator>();
    QVERIFY(m_bridge->listen());
    QVERIFY(m_bridge->listenTls());
    m_state = std::make_unique<TestSettings>();
    m_network = std::make_unique<BridgeNetwork>();
    m_network->addTrustRoots({m_bridge->authorityCertificate()});
    m_pairing = std::make_unique<BridgePairing>(settings(), *m_network);
    m_connection = std::make_unique<BridgeConnection>(settings(), *m_network, *m_pairing);
    m_connection->liveUpdates().stream().setTimings(
        {.firstRetry = std::chrono::milliseconds(100), .longestRetry = std::chrono::milliseconds(400)});
}

void TestLiveUpdates::cleanup()
{
    m_connection->stopBridgeStateRefresher();
    m_connection.reset();
    m_pairing.reset();
    m_network.reset();
    m_state.reset();
    m_bridge.reset();
}

void TestLiveUpdates::connectOverHttps()
{
    settings().setHueIP(m_bridge->httpsAddress());
    settings().setBridgeContact(QStringLiteral("https"), m_bridge->bridgeId(), {});
    settings().setHueKey(m_bridge->addUser());
    m_connection->connectToBridge();
    QTRY_VERIFY(!settings().lights().isEmpty());
}

void TestLiveUpdates::changeElsewhere(const QString& path, const QByteArray& body)
{
    QNetworkAccessManager network;
    QNetworkRequest request(QUrl(m_bridge->httpAddress() + QStringLiteral("/__control/external/") + path));
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    QNetworkReply* reply = network.post(request, body);
    QTRY_VERIFY(reply->isFinished());
    QCOMPARE(reply->error(), QNetworkReply::NoError);
    reply->deleteLater();
}

HueLight TestLiveUpdates::light(const QString& id) const
{
    for (const HueLight& light : m_state->settings().lights()) {
        if (light.lamp_id == id)
            return light;
    }
    return {};
}

int TestLiveUpdates::lightReads() const
{
    const QList<SimulatedRequest> requests = m_bridge->requests();
    return int(std::ranges::count_if(requests, [](const SimulatedRequest& request) {
        return request.method == "GET" && request.path.endsWith(QLatin1String("/lights"));
    }));
}

void TestLiveUpdates::changesMadeElsewhereShowWithoutReadingTheLists()
{
    QSignalSpy answers(m_connection.get(), &BridgeConnection::lightsRefreshed);
    connectOverHttps();
    QTRY_VERIFY(settings().liveUpdates());
    // The read after the stream opened waited for the first one instead of cutting it off.
    QTRY_VERIFY(answers.size() >= 2);
    for (const QList<QVariant>& read : answers)
        QVERIFY(read.at(0).value<LightsResult>().ok());
    QCOMPARE(m_connection->currentRefreshInterval(), BridgeConnection::safetyNetInterval);
    QTRY_COMPARE(m_bridge->eventStreamListeners(), 1);
    // The fresh read after the stream opened is done; from here on nothing is read.
    QTest::qWait(300);
    const int reads = lightReads();

    changeElsewhere(QStringLiteral("lights/1/state"), R"({"on":true,"bri":100,"xy":[0.6,0.3]})");
    QTRY_COMPARE(light(QStringLiteral("1")).brightness, 100);
    QVERIFY(light(QStringLiteral("1")).is_on);
    QCOMPARE(light(QStringLiteral("1")).xy_x, 0.6f);
    changeElsewhere(QStringLiteral("lights/1/state"), R"({"ct":300})");
    QTRY_COMPARE(light(QStringLiteral("1")).color_temperature, 300);
    changeElsewhere(QStringLiteral("lights/1/state"), R"({"bri":1})");
    QTRY_COMPARE(light(QStringLiteral("1")).brightness, 1);
    const QString room = settings().groups().first().group_id;
    changeElsewhere(QStringLiteral("groups/%1/action").arg(room), R"({"on":false})");
    QTRY_VERIFY(!settings().groups().first().any_on && !settings().groups().first().is_on);
    QCOMPARE(lightReads(), reads);

    // What an event cannot say lamp by lamp (a new name) is read, once.
    changeElsewhere(QStringLiteral("lights/1"), R"({"name":"Reading corner"})");
    QTRY_COMPARE(light(QStringLiteral("1")).name, QStringLiteral("Reading corner"));
    QCOMPARE(lightReads(), reads + 1);
}

void TestLiveUpdates::theUsersPendingChangeIsNotUndoneByAnEvent()
{
    connectOverHttps();
    QTRY_VERIFY(settings().liveUpdates());
    // The user drags lamp 2's brightness to 200; the change waits in the queue.
    settings().updateLight(QStringLiteral("2"), [](HueLight& l) { l.brightness = 200; });
    settings().setLastUserActionAt(QDateTime::currentDateTime());
    ActionQueueItem item;
    item.is_light_update = true;
    item.item_id = QStringLiteral("2");
    item.property = QStringLiteral("brightness");
    settings().setActionQueue({item});

    // Meanwhile another app dims it and switches it on: the switch follows, the brightness stays the user's.
    changeElsewhere(QStringLiteral("lights/2/state"), R"({"on":true,"bri":20})");
    QTRY_VERIFY(light(QStringLiteral("2")).is_on);
    QCOMPARE(light(QStringLiteral("2")).brightness, 200);
    // Once the user has let go, the bridge's word is read.
    settings().setActionQueue({});
    m_bridge->clearRequests();
    QTRY_VERIFY_WITH_TIMEOUT(lightReads() == 1, 5000);
    QTRY_COMPARE(light(QStringLiteral("2")).brightness, 20);
}

void TestLiveUpdates::aLostStreamMeansReadingUntilItIsBackWithAFreshRead()
{
    connectOverHttps();
    QTRY_VERIFY(settings().liveUpdates());
    m_bridge->setEventStreamMode(BridgeSimulator::EventStreamMode::Malformed);
    changeElsewhere(QStringLiteral("lights/1/state"), R"({"bri":50})");
    // A broken event drops the stream: reading every 3.5 s until it is back.
    QTRY_VERIFY(!settings().liveUpdates());
    QCOMPARE(m_connection->currentRefreshInterval(), BridgeConnection::refreshInterval);
    QVERIFY(settings().bridgeConnected());

    m_bridge->setEventStreamMode(BridgeSimulator::EventStreamMode::Normal);
    m_bridge->clearRequests();
    // Changed while no stream was open: only the read after it reopened can tell.
    changeElsewhere(QStringLiteral("lights/1/state"), R"({"bri":60})");
    QTRY_VERIFY(settings().liveUpdates());
    QTRY_COMPARE(light(QStringLiteral("1")).brightness, 60);
    QVERIFY(lightReads() >= 1);

    // A bridge that restarts drops every stream; it comes back the same way.
    m_bridge->dropEventStreams();
    QTRY_VERIFY(!settings().liveUpdates());
    QTRY_VERIFY(settings().liveUpdates());
    // Sleep closes it, waking opens it again.
    m_connection->stopBridgeStateRefresher();
    QVERIFY(!settings().liveUpdates());
    QTRY_COMPARE(m_bridge->eventStreamListeners(), 0);
    m_connection->startBridgeStateRefresher();
    QTRY_VERIFY(settings().liveUpdates());
}

void TestLiveUpdates::withoutAStreamTheBridgeIsReadEvery3500Ms_data()
{
    QTest::addColumn<bool>("plainHttp");
    QTest::newRow("a bridge over plain HTTP") << true;
    QTest::newRow("a bridge without the stream") << false;
}

void TestLiveUpdates::withoutAStreamTheBridgeIsReadEvery3500Ms()
{
    QFETCH(bool, plainHttp);
    if (plainHttp) {
        settings().setHueIP(m_bridge->httpAddress());
        settings().setBridgeContact(QStringLiteral("http"), m_bridge->bridgeId(), {});
        settings().setHueKey(m_bridge->addUser());
        m_connection->connectToBridge();
        QTRY_VERIFY(!settings().lights().isEmpty());
    } else {
        m_bridge->setEventStreamMode(BridgeSimulator::EventStreamMode::Off);
        m_connection->liveUpdates().stream().setTimings({}); // asked again a minute later only
        connectOverHttps();
    }
    QTest::qWait(500);
    QVERIFY(!settings().liveUpdates());
    QCOMPARE(m_connection->currentRefreshInterval(), BridgeConnection::refreshInterval);
    const QList<SimulatedRequest> requests = m_bridge->requests();
    const auto streams = std::ranges::count_if(
        requests, [](const SimulatedRequest& r) { return r.path.startsWith(QLatin1String("/eventstream")); });
    // Over plain HTTP the key never goes into a stream request; a bridge without one is asked once.
    QCOMPARE(streams, plainHttp ? 0 : 1);
}

QTEST_GUILESS_MAIN(TestLiveUpdates)
#include "tst_liveupdates.moc"
