#include "TestSupport.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeNetwork.h"
#include "bridge/UpdateBodies.h"
#include "connection/BridgeConnection.h"
#include "connection/BridgeEventStream.h"
#include "connection/BridgePairing.h"
#include "connection/LiveUpdates.h"
#include "simulator/BridgeSimulator.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <QJsonDocument>
#include <QJsonObject>
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
    void anEventDoesNotUndoWhatTheUsersChangeWrites_data();
    void anEventDoesNotUndoWhatTheUsersChangeWrites();
    void aLostStreamMeansReadingUntilItIsBackWithAFreshRead();
    void withoutAStreamTheBridgeIsReadEvery3500Ms_data();
    void withoutAStreamTheBridgeIsReadEvery3500Ms();

private:
    BridgeLink& settings() { return m_state->settings(); }
    void connectOverHttps();
    /// Changes the bridge as another app would: PUT `body` to the version-1 `path` ("lights/1/state").
    void changeElsewhere(const QString& path, const QByteArray& body);
    HueLight light(const QString& id) const;
    /// The switch or the brightness of "lights/N" or "groups/N" as the shared state shows it.
    int shown(const QString& record, const QString& field) const;
    int lightReads() const;

    std::unique_ptr<BridgeSimulator> m_bridge;
    std::unique_ptr<TestSettings> m_state;
    std::unique_ptr<BridgeNetwork> m_network;
    std::unique_ptr<BridgePairing> m_pairing;
    std::unique_ptr<ActionQueue> m_queue;
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
    m_queue = std::make_unique<ActionQueue>(settings(), *m_network);
    m_connection = std::make_unique<BridgeConnection>(settings(), *m_network, *m_pairing, *m_queue);
    m_connection->liveUpdates().stream().setTimings(
        {.firstRetry = std::chrono::milliseconds(100), .longestRetry = std::chrono::milliseconds(400)});
}

void TestLiveUpdates::cleanup()
{
    m_connection->stopBridgeStateRefresher();
    m_connection.reset();
    m_queue.reset();
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
    QTRY_VERIFY(!settings().home().lights().isEmpty());
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
    for (const HueLight& light : m_state->settings().home().lights()) {
        if (light.lamp_id == id)
            return light;
    }
    return {};
}

int TestLiveUpdates::lightReads() const
{
    const QList<SimulatedRequest> requests = m_bridge->requests();
    return int(std::ranges::count_if(requests, [](const SimulatedRequest& request) {
        // The lamps come with the whole home over the bridge's current interface.
        return request.method == "GET" && (request.path.endsWith(QLatin1String("/lights")) ||
                                           request.path == QLatin1String("/clip/v2/resource"));
    }));
}

void TestLiveUpdates::changesMadeElsewhereShowWithoutReadingTheLists()
{
    QSignalSpy answers(m_connection.get(), &BridgeConnection::lightsRefreshed);
    connectOverHttps();
    QTRY_VERIFY(settings().home().liveUpdates());
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
    const QString room = settings().home().groups().first().group_id;
    changeElsewhere(QStringLiteral("groups/%1/action").arg(room), R"({"on":false})");
    QTRY_VERIFY(!settings().home().groups().first().any_on && !settings().home().groups().first().is_on);
    QCOMPARE(lightReads(), reads);

    // What an event cannot say lamp by lamp (a new name) is read, once.
    changeElsewhere(QStringLiteral("lights/1"), R"({"name":"Reading corner"})");
    QTRY_COMPARE(light(QStringLiteral("1")).name, QStringLiteral("Reading corner"));
    QCOMPARE(lightReads(), reads + 1);
}

int TestLiveUpdates::shown(const QString& record, const QString& field) const
{
    const QString id = record.section(u'/', 1);
    if (record.startsWith(u"lights/")) {
        const HueLight lamp = light(id);
        return int(field == u"on" ? lamp.is_on : lamp.brightness);
    }
    for (const HueGroup& group : m_state->settings().home().groups()) {
        if (group.group_id == id)
            return int(field == u"on" ? group.is_on : group.brightness);
    }
    return -1;
}

void TestLiveUpdates::anEventDoesNotUndoWhatTheUsersChangeWrites_data()
{
    QTest::addColumn<QString>("target");              // "lights/N" or "groups/N" ("{room}": the first room)
    QTest::addColumn<QString>("property");            // the queue's name for the change
    QTest::addColumn<QByteArray>("body");             // what the change really writes
    QTest::addColumn<QString>("watched");             // the record an event then tells of
    QTest::addColumn<QString>("field");               // "on" or "bri"
    QTest::addColumn<QList<QByteArray>>("elsewhere"); // changes made meanwhile by another app, in order
    QTest::addColumn<int>("expected");                // what the record shows before the user lets go

    const QList<QByteArray> switchedOn{R"({"on":false})", R"({"on":true})"};
    const QList<QByteArray> switchedOff{R"({"on":true})", R"({"on":false})"};
    // A room's slider sends the switch with the brightness: the room was dimmed off, an older "on" follows.
    QTest::newRow("a lamp's brightness holds it")
        << "lights/2"
        << "brightness" << HueLampBrightnessUpdate{200, true, 2}.encode() << "lights/2"
        << "bri" << QList<QByteArray>{R"({"bri":20})"} << 200;
    QTest::newRow("a room's brightness holds its switch")
        << "groups/{room}"
        << "brightness" << HueGroupBrightnessUpdate{1, false, 2}.encode() << "groups/{room}"
        << "on" << switchedOn << 0;
    QTest::newRow("a lamp's colour holds its switch")
        << "lights/1"
        << "hue" << HueLampHueSatUpdate{1000, 200, true, 2}.encode() << "lights/1"
        << "on" << switchedOff << 1;
    QTest::newRow("switching everything off holds every lamp's switch")
        << "groups/0"
        << "on" << HueLampOnOffUpdate{false}.encode() << "lights/2"
        << "on" << switchedOn << 0;
    QTest::newRow("switching everything off holds every room's switch")
        << "groups/0"
        << "on" << HueLampOnOffUpdate{false}.encode() << "groups/{room}"
        << "on" << switchedOn << 0;
    QTest::newRow("a lamp's white tone leaves its brightness to the bridge")
        << "lights/1"
        << "ct" << HueLampTemperatureUpdate{300, true, 2}.encode() << "lights/1"
        << "bri" << QList<QByteArray>{R"({"bri":50})"} << 50;
}

void TestLiveUpdates::anEventDoesNotUndoWhatTheUsersChangeWrites()
{
    QFETCH(QString, target);
    QFETCH(QString, property);
    QFETCH(QByteArray, body);
    QFETCH(QString, watched);
    QFETCH(QString, field);
    QFETCH(QList<QByteArray>, elsewhere);
    QFETCH(int, expected);
    connectOverHttps();
    QTRY_VERIFY(settings().home().liveUpdates());
    const QString room = settings().home().groups().first().group_id;
    target.replace(u"{room}"_qs, room);
    watched.replace(u"{room}"_qs, room);
    const bool watchedIsRoom = watched.startsWith(u"groups/");

    // The user's change is shown at once and waits in the queue.
    const auto show = [&](auto& record) {
        if (field == u"on")
            record.is_on = expected != 0;
        else
            record.brightness = expected;
    };
    if (watchedIsRoom)
        settings().home().updateGroup(watched.section(u'/', 1), [&](HueGroup& g) { show(g); });
    else
        settings().home().updateLight(watched.section(u'/', 1), [&](HueLight& l) { show(l); });
    // The queue holds it (its timer stopped, as before its first tick) and tells the live updates.
    ActionQueueItem item;
    item.target =
        target.startsWith(u"lights/") ? ActionQueueItem::Target::light : ActionQueueItem::Target::group;
    item.item_id = target.section(u'/', 1);
    item.property = property;
    item.body = body;
    item.url = QUrl(m_bridge->httpsAddress() + u"/api/key/"_qs + target);
    m_queue->enqueue(item);
    m_queue->stopProcessor();
    QTRY_COMPARE(m_queue->pending().size(), 1);

    // Meanwhile the bridge tells of states from before it; a lamp dimmed after them shows they all came.
    const QString stateOf = watchedIsRoom ? u"%1/action"_qs : u"%1/state"_qs;
    for (const QByteArray& change : elsewhere)
        changeElsewhere(stateOf.arg(watched), change);
    const QString marker = settings().home().lights().last().lamp_id;
    QVERIFY(u"lights/"_qs + marker != watched);
    changeElsewhere(u"lights/%1/state"_qs.arg(marker), R"({"bri":33})");
    QTRY_COMPARE(light(marker).brightness, 33);
    QCOMPARE(shown(watched, field), expected);

    // Once the user has let go, the bridge's word is read.
    const QJsonObject last = QJsonDocument::fromJson(elsewhere.last()).object();
    QTRY_COMPARE_WITH_TIMEOUT(shown(watched, field), last.value(field).toVariant().toInt(), 10000);
}

void TestLiveUpdates::aLostStreamMeansReadingUntilItIsBackWithAFreshRead()
{
    connectOverHttps();
    QTRY_VERIFY(settings().home().liveUpdates());
    m_bridge->setEventStreamMode(BridgeSimulator::EventStreamMode::Malformed);
    changeElsewhere(QStringLiteral("lights/1/state"), R"({"bri":50})");
    // A broken event drops the stream: reading every 3.5 s until it is back.
    QTRY_VERIFY(!settings().home().liveUpdates());
    QCOMPARE(m_connection->currentRefreshInterval(), BridgeConnection::refreshInterval);
    QVERIFY(settings().home().bridgeConnected());

    m_bridge->setEventStreamMode(BridgeSimulator::EventStreamMode::Normal);
    m_bridge->clearRequests();
    // Changed while no stream was open: only the read after it reopened can tell.
    changeElsewhere(QStringLiteral("lights/1/state"), R"({"bri":60})");
    QTRY_VERIFY(settings().home().liveUpdates());
    QTRY_COMPARE(light(QStringLiteral("1")).brightness, 60);
    QVERIFY(lightReads() >= 1);

    // A bridge that restarts drops every stream; it comes back the same way.
    m_bridge->dropEventStreams();
    QTRY_VERIFY(!settings().home().liveUpdates());
    QTRY_VERIFY(settings().home().liveUpdates());
    // Sleep closes it, waking opens it again.
    m_connection->stopBridgeStateRefresher();
    QVERIFY(!settings().home().liveUpdates());
    QTRY_COMPARE(m_bridge->eventStreamListeners(), 0);
    m_connection->startBridgeStateRefresher();
    QTRY_VERIFY(settings().home().liveUpdates());
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
        QTRY_VERIFY(!settings().home().lights().isEmpty());
    } else {
        m_bridge->setEventStreamMode(BridgeSimulator::EventStreamMode::Off);
        m_connection->liveUpdates().stream().setTimings({}); // asked again a minute later only
        connectOverHttps();
    }
    QTest::qWait(500);
    QVERIFY(!settings().home().liveUpdates());
    QCOMPARE(m_connection->currentRefreshInterval(), BridgeConnection::refreshInterval);
    const QList<SimulatedRequest> requests = m_bridge->requests();
    const auto streams = std::ranges::count_if(
        requests, [](const SimulatedRequest& r) { return r.path.startsWith(QLatin1String("/eventstream")); });
    // Over plain HTTP the key never goes into a stream request; a bridge without one is asked once.
    QCOMPARE(streams, plainHttp ? 0 : 1);
}

QTEST_GUILESS_MAIN(TestLiveUpdates)
#include "tst_liveupdates.moc"
