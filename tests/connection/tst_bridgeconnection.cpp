#include "BridgeBench.h"
#include "bridge/ActionQueue.h"
#include "connection/BridgeConnection.h"
#include "connection/BridgePairing.h"
#include "state/SettingsKeys.h"

#include <QNetworkReply>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <memory>

namespace Keys = SettingsKeys;

/// Watches the three list reads of one connection.
struct ListReads final
{
    explicit ListReads(BridgeConnection* c)
        : spies{{c, &BridgeConnection::lightsRefreshed},
                {c, &BridgeConnection::groupsRefreshed},
                {c, &BridgeConnection::scenesRefreshed}}
    {}
    qsizetype count() const { return spies[0].size() + spies[1].size() + spies[2].size(); }
    bool waitForAll()
    {
        return QTest::qWaitFor([this] { return std::ranges::none_of(spies, &QSignalSpy::isEmpty); }, 10000);
    }

    QSignalSpy spies[3];
};

class TestBridgeConnection final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void readsTheListsBeforeStoringTheBridge();
    void pairsFirstWithoutAKey_data();
    void pairsFirstWithoutAKey();
    void failedLightReadStoresNothing_data();
    void failedLightReadStoresNothing();
    void failedGroupAndSceneReadsChangeNothing();
    void putsTheStoredLightOrderFirst();
    void refreshTickSkipsAfterUserActionsAndReadsScenesQuarterHourly_data();
    void refreshTickSkipsAfterUserActionsAndReadsScenesQuarterHourly();
    void disconnectForgetsTheKeyButKeepsAddressScenesAndTimer();
    void keepsOneRefresherAndStopsIt();
    void disconnectDropsTheReadsUnderWay();
    void anUnchangedAnswerChangesNothingAndAChangedOneIsRead();
    void recoversWithinTwoTicksOfTheBridgeHealing_data();
    void recoversWithinTwoTicksOfTheBridgeHealing();

private:
    BridgeLink& settings() { return m_bench->settings(); }
    SettingsStore& store() { return m_bench->store(); }
    /// Connects and waits until all three list reads have answered.
    bool connectAndWait();
    /// The lists read with GET since the last clearRequests(), in arrival order.
    QStringList listsRead() const;
    int activeTimers() const;
    int repliesInFlight() const;

    std::unique_ptr<BridgeBench> m_bench;
    std::unique_ptr<BridgePairing> m_pairing;
    std::unique_ptr<ActionQueue> m_queue;
    std::unique_ptr<BridgeConnection> m_connection;
    QString m_key;
};

void TestBridgeConnection::init()
{
    m_bench = std::make_unique<BridgeBench>();
    QVERIFY(m_bench->start());
    m_key = m_bench->key();
    m_pairing = std::make_unique<BridgePairing>(settings(), m_bench->network());
    m_queue = std::make_unique<ActionQueue>(settings(), m_bench->network());
    m_connection = std::make_unique<BridgeConnection>(settings(), m_bench->network(), *m_pairing, *m_queue);
}

void TestBridgeConnection::cleanup()
{
    m_connection->stopBridgeStateRefresher();
    QVERIFY(QTest::qWaitFor([this] { return repliesInFlight() == 0; }, 10000));
    m_connection.reset();
    m_queue.reset();
    m_pairing.reset();
    m_bench.reset();
}

bool TestBridgeConnection::connectAndWait()
{
    ListReads reads(m_connection.get());
    m_connection->connectToBridge();
    return reads.waitForAll();
}

QStringList TestBridgeConnection::listsRead() const
{
    QStringList lists;
    for (const SimulatedRequest& request : m_bench->bridge().requests()) {
        if (request.method == "GET")
            lists.append(request.path.section(u'/', 3));
    }
    return lists;
}

int TestBridgeConnection::activeTimers() const
{
    return int(std::ranges::count_if(m_connection->findChildren<QTimer*>(), &QTimer::isActive));
}

int TestBridgeConnection::repliesInFlight() const
{
    return int(std::ranges::count_if(m_bench->network().findChildren<QNetworkReply*>(),
                                     [](QNetworkReply* r) { return !r->isFinished(); }));
}

void TestBridgeConnection::readsTheListsBeforeStoringTheBridge()
{
    settings().home().setConnectionErrorMessage(QStringLiteral("earlier trouble"));
    ListReads reads(m_connection.get());
    m_connection->connectToBridge();
    // The log is kept and sent with reports: the key's last four characters only.
    QVERIFY(settings().activity().log().contains(
        QStringLiteral("Connecting to Bridge... [\u2026%1]").arg(m_key.right(4))));
    QVERIFY(!settings().activity().log().join(u'\n').contains(m_key));
    QVERIFY(!store().contains(Keys::bridgeIP) && !store().contains(Keys::bridgeUser));
    QVERIFY(reads.waitForAll());
    QCOMPARE(listsRead(), (QStringList{"lights", "groups", "scenes"}));
    QCOMPARE(m_bench->bridge().requests().first().path, QStringLiteral("/api/%1/lights").arg(m_key));
    QVERIFY(!settings().home().lights().isEmpty() && !settings().home().groups().isEmpty() &&
            !settings().home().scenes().isEmpty());
    QVERIFY(settings().home().bridgeConnected() && m_connection->isRefreshing());
    QCOMPARE(settings().home().connectionErrorMessage(), QString());
    QCOMPARE(store().readString(Keys::bridgeIP), QStringLiteral("http://") + m_bench->bridge().hostAndPort());
    QCOMPARE(store().readString(Keys::bridgeUser), m_key);
}

void TestBridgeConnection::pairsFirstWithoutAKey_data()
{
    QTest::addColumn<bool>("buttonPressed");
    QTest::newRow("link button pressed") << true;
    QTest::newRow("link button not pressed") << false;
}

void TestBridgeConnection::pairsFirstWithoutAKey()
{
    QFETCH(bool, buttonPressed);
    settings().setHueKey(QString());
    if (buttonPressed)
        m_bench->bridge().pressLinkButton();
    QSignalSpy finished(m_pairing.get(), &BridgePairing::pairingFinished);
    m_connection->connectToBridge();
    QVERIFY(
        settings().activity().log().contains(QStringLiteral("We have a Bridge IP, but no API key yet...")));
    QVERIFY(finished.wait(10000));
    // Who the bridge is, then the key request to it.
    const SimulatedRequest first = m_bench->bridge().requests().at(0);
    QCOMPARE(first.method + ' ' + first.path.toUtf8(), "GET /api/config");
    const SimulatedRequest second = m_bench->bridge().requests().at(1);
    QCOMPARE(second.method + ' ' + second.path.toUtf8(), "POST /api");
    if (!buttonPressed) {
        QVERIFY(settings().hueKey().isEmpty() && settings().home().lights().isEmpty());
        QVERIFY(!store().contains(Keys::bridgeUser));
        return;
    }
    QTRY_VERIFY(!settings().home().lights().isEmpty());
    QVERIFY(m_bench->bridge().users().contains(settings().hueKey()));
    QTRY_COMPARE(store().readString(Keys::bridgeUser), settings().hueKey());
}

void TestBridgeConnection::failedLightReadStoresNothing_data()
{
    QTest::addColumn<BridgeSimulator::Fault>("fault");
    QTest::addColumn<QByteArray>("lights"); // the bridge's lamp list, when not the home's
    QTest::addColumn<QString>("message");   // what the user reads: an answer that came is never "unreachable"
    using Fault = BridgeSimulator::Fault;
    const QString earlier = QStringLiteral("earlier trouble");
    QByteArray tooMany = "{";
    for (int i = 1; i <= 1001; ++i)
        tooMany += (i > 1 ? ",\"" : "\"") + QByteArray::number(i) + R"(":{"name":"x","state":{"on":true}})";
    tooMany += '}';
    QTest::newRow("error answer") << Fault::ErrorArray << QByteArray()
                                  << u"The bridge refused to list the lights: Internal error, 404"_qs;
    QTest::newRow("unknown key")
        << Fault::None
        << QByteArray(R"([{"error":{"type":1,"address":"/","description":"unauthorized user"}}])")
        << u"The bridge does not know Glowdeck's key: press its link button, then Connect"_qs;
    QTest::newRow("HTTP 500") << Fault::HttpError << QByteArray()
                              << u"The bridge answered with an error (HTTP 500)"_qs;
    QTest::newRow("not a list") << Fault::None << QByteArray("[1, 2]")
                                << u"The bridge's answer could not be read"_qs;
    QTest::newRow("1,001 lights") << Fault::None << tooMany << u"The bridge sent more than 1,000 lights"_qs;
    QTest::newRow("dropped connection") << Fault::DropConnection << QByteArray() << earlier;
    QTest::newRow("nobody listening") << Fault::None << QByteArray() << earlier;
}

void TestBridgeConnection::failedLightReadStoresNothing()
{
    QFETCH(BridgeSimulator::Fault, fault);
    QFETCH(QByteArray, lights);
    QFETCH(QString, message);
    if (!lights.isEmpty())
        m_bench->bridge().setRawResource(QStringLiteral("lights"), lights);
    else if (fault == BridgeSimulator::Fault::None)
        settings().setHueIP(QStringLiteral("http://127.0.0.1:1"));
    m_bench->bridge().setFault(fault);
    settings().home().setBridgeConnected(true);
    settings().home().setConnectionErrorMessage(QStringLiteral("earlier trouble"));
    QVERIFY(connectAndWait());
    QVERIFY(!settings().home().bridgeConnected());
    QCOMPARE(settings().home().connectionErrorMessage(), message);
    if (message != u"earlier trouble"_qs) // the log and the debug report say why, too
        QVERIFY(settings().activity().log().contains(message));
    QVERIFY(!store().contains(Keys::bridgeIP) && !store().contains(Keys::bridgeUser));
}

void TestBridgeConnection::failedGroupAndSceneReadsChangeNothing()
{
    HueGroup group;
    group.group_id = QStringLiteral("77");
    HueScene scene;
    scene.scene_id = QStringLiteral("kept");
    settings().home().setGroups({group});
    settings().home().setScenes({scene});
    m_bench->bridge().setRawResource(QStringLiteral("groups"), "garbage");
    m_bench->bridge().setRawResource(QStringLiteral("scenes"), R"([{"error":{"type":901}}])");
    QVERIFY(connectAndWait());
    QCOMPARE(settings().home().groups(), QList<HueGroup>{group});
    QCOMPARE(settings().home().scenes(), QList<HueScene>{scene});
    QVERIFY(settings().home().bridgeConnected());
    QCOMPARE(store().readString(Keys::bridgeUser), m_key);
}

void TestBridgeConnection::putsTheStoredLightOrderFirst()
{
    store().writeString(QStringLiteral("lightOrder"), QStringLiteral("3,1"));
    QStringList expected{"3", "1"};
    for (const QString& id : m_bench->bridge().lightIds()) {
        const bool reachable =
            m_bench->bridge().light(id).value(u"state").toObject().value(u"reachable").toBool();
        if (reachable && !expected.contains(id))
            expected.append(id);
    }
    QVERIFY(connectAndWait());
    QStringList ids;
    for (const HueLight& light : settings().home().lights())
        ids.append(light.lamp_id);
    QCOMPARE(ids, expected);
}

void TestBridgeConnection::refreshTickSkipsAfterUserActionsAndReadsScenesQuarterHourly_data()
{
    QTest::addColumn<QTime>("now");
    QTest::addColumn<int>("sinceUserAction"); // milliseconds
    QTest::addColumn<QStringList>("lists");

    const QStringList both{"groups", "lights"};
    const QStringList all{"groups", "lights", "scenes"};
    QTest::newRow("3 s after a user action") << QTime(12, 16, 10) << 3000 << QStringList();
    QTest::newRow("3.5 s after a user action") << QTime(12, 16, 10) << 3500 << both;
    QTest::newRow("user action in the future") << QTime(12, 16, 10) << -10000 << QStringList();
    QTest::newRow("minute 15") << QTime(12, 15, 10) << 4000 << all;
    QTest::newRow("minute 14, last second") << QTime(12, 14, 59) << 4000 << both;
    QTest::newRow("minute 45, last second") << QTime(12, 45, 59) << 4000 << all;
    QTest::newRow("minute 46") << QTime(12, 46, 0) << 4000 << both;
}

void TestBridgeConnection::refreshTickSkipsAfterUserActionsAndReadsScenesQuarterHourly()
{
    QFETCH(QTime, now);
    QFETCH(int, sinceUserAction);
    QFETCH(QStringList, lists);
    QVERIFY(connectAndWait()); // a first light read would bring the scenes along
    m_connection->stopBridgeStateRefresher();
    const QDateTime clock(QDate(2024, 5, 6), now);
    m_connection->setClock([clock] { return clock; });
    m_queue->setLastUserActionAt(clock.addMSecs(-sinceUserAction));
    ListReads reads(m_connection.get());
    m_bench->bridge().clearRequests();
    m_connection->refreshTick();
    // Every read of the tick is under way once it returns, so a skipped tick shows here at once.
    QCOMPARE(repliesInFlight(), lists.size());
    QTRY_COMPARE(reads.count(), lists.size());
    QStringList read = listsRead();
    read.sort();
    QCOMPARE(read, lists);
}

void TestBridgeConnection::disconnectForgetsTheKeyButKeepsAddressScenesAndTimer()
{
    QVERIFY(connectAndWait());
    const QList<HueScene> scenes = settings().home().scenes();
    m_connection->disconnectFromBridge();
    QVERIFY(settings().home().lights().isEmpty() && settings().home().groups().isEmpty() &&
            settings().hueKey().isEmpty());
    QCOMPARE(store().readString(Keys::bridgeUser), QString(""));
    QVERIFY(!settings().home().bridgeConnected() && m_connection->isRefreshing());
    QCOMPARE(store().readString(Keys::bridgeIP), QStringLiteral("http://") + m_bench->bridge().hostAndPort());
    QCOMPARE(settings().home().scenes(), scenes);
    QCOMPARE(activeTimers(), 1);
    // The timer keeps running, but without a key its ticks send nothing.
    const QDateTime clock = QDateTime::currentDateTime();
    m_connection->setClock([clock] { return clock; });
    m_queue->setLastUserActionAt(clock.addSecs(-3600));
    m_bench->bridge().clearRequests();
    QSignalSpy read(m_connection.get(), &BridgeConnection::lightsRefreshed);
    m_connection->refreshTick();
    QTest::qWait(200);
    QVERIFY(m_bench->bridge().requests().isEmpty() && read.isEmpty());
}

void TestBridgeConnection::keepsOneRefresherAndStopsIt()
{
    QVERIFY(connectAndWait());
    QVERIFY(connectAndWait());
    m_connection->startBridgeStateRefresher();
    QVERIFY(m_connection->isRefreshing());
    QCOMPARE(activeTimers(), 1);
    m_connection->stopBridgeStateRefresher();
    QVERIFY(!m_connection->isRefreshing() && activeTimers() == 0);
}

void TestBridgeConnection::disconnectDropsTheReadsUnderWay()
{
    m_bench->bridge().setLatency(300);
    m_connection->connectToBridge();
    m_connection->disconnectFromBridge();
    // Nothing is left that could answer later: no light list, no key stored as one that works.
    QCOMPARE(repliesInFlight(), 0);
    QVERIFY(settings().home().lights().isEmpty() && !settings().home().bridgeConnected());
}

void TestBridgeConnection::anUnchangedAnswerChangesNothingAndAChangedOneIsRead()
{
    QVERIFY(connectAndWait());
    const QList<HueGroup> rooms = settings().home().groups();
    const qsizetype lamps = settings().home().lights().size();
    QSignalSpy roomsChanged(&settings().home(), &BridgeHome::groupsChanged);
    QSignalSpy lightsChanged(&settings().home(), &BridgeHome::lightsChanged);

    // The same bytes again: the rooms keep their list identities, so nothing downstream is told.
    ListReads reads(m_connection.get());
    m_connection->refreshTick();
    QVERIFY(QTest::qWaitFor([&] { return !reads.spies[0].isEmpty() && !reads.spies[1].isEmpty(); }, 10000));
    QCOMPARE(settings().home().groups(), rooms);
    QCOMPARE(roomsChanged.size(), 0);
    QCOMPARE(lightsChanged.size(), 0);

    // A lamp unplugged at the wall changes the answer, which is read as usual.
    QVERIFY(m_bench->bridge().setLightReachable(m_bench->bridge().lightIds().first(), false));
    m_connection->refreshTick();
    QTRY_COMPARE(settings().home().lights().size(), lamps - 1);
}

void TestBridgeConnection::recoversWithinTwoTicksOfTheBridgeHealing_data()
{
    QTest::addColumn<BridgeSimulator::Fault>("fault");
    using Fault = BridgeSimulator::Fault;
    QTest::newRow("error array") << Fault::ErrorArray;
    QTest::newRow("garbage") << Fault::GarbageBody;
    QTest::newRow("HTTP error") << Fault::HttpError;
    QTest::newRow("dropped connection") << Fault::DropConnection;
    QTest::newRow("drip-feed") << Fault::DripFeed;
}

void TestBridgeConnection::recoversWithinTwoTicksOfTheBridgeHealing()
{
    QFETCH(BridgeSimulator::Fault, fault);
    // Minute 16: no tick reads the scenes by the clock, only the recovery does.
    const QDateTime clock(QDate(2024, 5, 6), QTime(12, 16, 10));
    m_connection->setClock([clock] { return clock; });
    m_queue->setLastUserActionAt(clock.addSecs(-60));
    m_bench->bridge().setDripFeed(1, 500); // slow enough to be useless, fast enough never to look silent
    m_bench->bridge().setFault(fault);

    // The application starts while the bridge misbehaves; the test runs the ticks itself.
    const bool trickles = fault == BridgeSimulator::Fault::DripFeed;
    ListReads reads(m_connection.get());
    m_connection->connectToBridge();
    m_connection->stopBridgeStateRefresher();
    if (!trickles) // a trickling read only ends when the next one replaces it
        QVERIFY(reads.waitForAll());
    m_connection->refreshTick();
    // One read per list (the scenes are still trickling); a bridge that stopped answering is first asked who
    // it is, and read once it has said.
    const bool dropped = fault == BridgeSimulator::Fault::DropConnection;
    QCOMPARE(repliesInFlight(), trickles ? 3 : dropped ? 1 : 2);
    QVERIFY(!reads.spies[0].isEmpty() || reads.spies[0].wait(5000));
    QVERIFY(!reads.spies[0].last().first().value<LightsResult>().ok());
    QVERIFY(!settings().home().bridgeConnected());
    QVERIFY(settings().home().lights().isEmpty() && settings().home().scenes().isEmpty());

    m_bench->bridge().setFault(BridgeSimulator::Fault::None);
    const auto recovered = [this] {
        return settings().home().bridgeConnected() && !settings().home().lights().isEmpty() &&
               !settings().home().groups().isEmpty() && !settings().home().scenes().isEmpty();
    };
    int ticks = 0;
    while (ticks < 2 && !recovered()) {
        m_connection->refreshTick();
        ++ticks;
        (void)QTest::qWaitFor(recovered, int(BridgeConnection::refreshInterval.count()));
    }
    QVERIFY2(recovered(), "not recovered within two ticks");
    QCOMPARE(ticks, 1);
}

QTEST_GUILESS_MAIN(TestBridgeConnection)
#include "tst_bridgeconnection.moc"
