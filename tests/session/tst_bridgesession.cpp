#include "TestSupport.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeCommands.h"
#include "bridge/BridgeNetwork.h"
#include "connection/BridgeConnection.h"
#include "connection/LiveUpdates.h"
#include "session/BridgeSession.h"
#include "simulator/BridgeSimulator.h"
#include "state/ActivityLog.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <QJsonObject>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <memory>

/// One bridge's session against the simulator, over the bridge's current interface where it offers it.
class TestBridgeSession final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void readsAndControlsABridgeOverItsCurrentInterfaceOnly();
    void usesTheFirstInterfaceWhereTheCurrentOneIsMissing_data();
    void usesTheFirstInterfaceWhereTheCurrentOneIsMissing();
    void tellsWhatBecameOfAChange_data();
    void tellsWhatBecameOfAChange();
    void appliesEventsByTheResourcesUuid();

private:
    /// Pairs with the simulator over HTTPS (or plain HTTP) and waits for the lamps.
    void connect(bool https = true);
    BridgeLink& link() { return m_state->settings(); }
    /// The requests of the first interface that read a list.
    QStringList listReads() const;

    std::unique_ptr<BridgeSimulator> m_bridge;
    std::unique_ptr<TestSettings> m_state;
    std::unique_ptr<BridgeNetwork> m_network;
    std::unique_ptr<BridgeSession> m_session;
};

void TestBridgeSession::init()
{
    m_bridge = std::make_unique<BridgeSimulator>();
    QVERIFY(m_bridge->listen());
    QVERIFY(m_bridge->listenTls());
    m_state = std::make_unique<TestSettings>();
    m_network = std::make_unique<BridgeNetwork>();
    m_network->addTrustRoots({m_bridge->authorityCertificate()});
    m_session = std::make_unique<BridgeSession>(link(), *m_network);
}

void TestBridgeSession::cleanup()
{
    m_session->suspend();
    m_session.reset();
    m_network.reset();
    m_state.reset();
    m_bridge.reset();
}

void TestBridgeSession::connect(bool https)
{
    link().setHueIP(https ? m_bridge->httpsAddress() : m_bridge->httpAddress());
    link().setBridgeContact(https ? QStringLiteral("https") : QStringLiteral("http"), m_bridge->bridgeId(),
                            {});
    link().setHueKey(m_bridge->addUser());
    m_session->connectToBridge();
    QTRY_VERIFY_WITH_TIMEOUT(!link().home().lights().isEmpty(), 10000);
    QTRY_VERIFY(!link().home().groups().isEmpty());
    QTRY_VERIFY(!link().home().scenes().isEmpty());
}

QStringList TestBridgeSession::listReads() const
{
    static const QRegularExpression list(QStringLiteral("^/api/[^/]+/(lights|groups|scenes)$"));
    QStringList reads;
    for (const SimulatedRequest& request : m_bridge->requests()) {
        if (request.method == "GET" && list.match(request.path).hasMatch())
            reads.append(request.path);
    }
    return reads;
}

void TestBridgeSession::readsAndControlsABridgeOverItsCurrentInterfaceOnly()
{
    connect();
    QCOMPARE(link().bridgeInterface(), BridgeInterface::v2);
    const HueLight lamp = link().home().lights().first();
    const HueGroup room = link().home().groups().first();
    QVERIFY(!lamp.v2_id.isEmpty());
    QVERIFY(!room.grouped_light_id.isEmpty());
    // Stored choices name lamps and rooms by the first interface's numbers: those stay the records' ids.
    QCOMPARE(lamp.v2_id, m_bridge->v2Id(QStringLiteral("light"), u"/lights/"_qs + lamp.lamp_id));

    BridgeCommands& commands = m_session->commands();
    commands.setLightOn(lamp, !lamp.is_on);
    commands.setLightBrightness(lamp, 127);
    commands.setGroupOn(room, true);
    commands.increaseGroupBrightness(room, 25);
    commands.recallScene(link().home().scenes().first().scene_id);
    commands.switchEverythingOff();
    QSignalSpy drained(&m_session->queue(), &ActionQueue::drained);
    QVERIFY(drained.wait(15000));

    QStringList changes;
    for (const SimulatedRequest& request : m_bridge->requests()) {
        if (request.method != "GET")
            changes.append(QString::fromLatin1(request.method) + u' ' + request.path);
    }
    const QString home = link().homeGroupedLight();
    QVERIFY(!home.isEmpty());
    // Lamps and scenes go past a room's change while it waits for its second.
    const QString light = u"PUT /clip/v2/resource/light/"_qs + lamp.v2_id;
    const QString grouped = u"PUT /clip/v2/resource/grouped_light/"_qs;
    QCOMPARE(changes, QStringList({light, light, grouped + room.grouped_light_id,
                                   u"PUT /clip/v2/resource/scene/"_qs + link().home().scenes().first().v2_id,
                                   grouped + room.grouped_light_id, grouped + home}));
    // In the current interface's units: 127 of 254 is 50 per cent, a step of 25 is 9.84 per cent up.
    QList<QJsonObject> bodies;
    for (const SimulatedRequest& request : m_bridge->requests()) {
        if (request.method == "PUT")
            bodies.append(request.body);
    }
    QCOMPARE(bodies.at(1).value(u"dimming").toObject().value(u"brightness").toDouble(), 50.0);
    QCOMPARE(bodies.at(4).value(u"dimming_delta").toObject(),
             QJsonObject({{"action", "up"}, {"brightness_delta", 9.84}}));
    QCOMPARE(bodies.at(3), QJsonObject({{"recall", QJsonObject({{"action", "active"}})}}));
    // Not one list read over the first interface, from the connect to the end.
    QCOMPARE(listReads(), QStringList());
    QCOMPARE(link().home().liveUpdates(), true);
    QTRY_VERIFY(std::ranges::none_of(link().home().lights(), [](const HueLight& l) { return l.is_on; }));
}

void TestBridgeSession::usesTheFirstInterfaceWhereTheCurrentOneIsMissing_data()
{
    QTest::addColumn<bool>("https");
    QTest::newRow("404 on /clip/v2/ (older firmware)") << true;
    QTest::newRow("plain HTTP (first generation)") << false;
}

void TestBridgeSession::usesTheFirstInterfaceWhereTheCurrentOneIsMissing()
{
    QFETCH(bool, https);
    m_bridge->setV2Enabled(false);
    connect(https);
    QCOMPARE(link().bridgeInterface(), BridgeInterface::v1);
    QVERIFY(link().home().lights().first().v2_id.isEmpty());
    QVERIFY(listReads().size() >= 3);
    // Plain HTTP is not even asked.
    const bool asked = std::ranges::any_of(m_bridge->requests(), [](const SimulatedRequest& r) {
        return r.path.startsWith(QLatin1String("/clip/"));
    });
    QCOMPARE(asked, https);

    m_session->commands().setLightOn(link().home().lights().first(), false);
    QSignalSpy drained(&m_session->queue(), &ActionQueue::drained);
    QVERIFY(drained.wait(10000));
    QVERIFY(m_bridge->requests().last().path.endsWith(u"/lights/"_qs +
                                                      link().home().lights().first().lamp_id + u"/state"_qs));
}

void TestBridgeSession::tellsWhatBecameOfAChange_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("notice");
    using Kind = WriteOutcome::Kind;
    QTest::newRow("success") << "" << int(Kind::accepted) << "";
    QTest::newRow("errors") << "errors" << int(Kind::refused)
                            << "The bridge refused the change: invalid value for dimming";
    QTest::newRow("207") << "207" << int(Kind::partly) << "The bridge took only part of the change: ";
    QTest::newRow("429") << "429" << int(Kind::httpError) << "";
}

void TestBridgeSession::tellsWhatBecameOfAChange()
{
    QFETCH(QString, fault);
    QFETCH(int, kind);
    QFETCH(QString, notice);
    connect();
    const HueGroup room = link().home().groups().first();
    if (fault == u"errors")
        m_bridge->setV2WriteError(400, QStringLiteral("invalid value for dimming"));
    if (fault == u"207") {
        m_bridge->setV2PartialSuccess(true);
        QVERIFY(m_bridge->setLightReachable(room.lights.first(), false));
    }
    if (fault == u"429")
        m_bridge->setV2Busy(429, 600);
    QSignalSpy answered(&m_session->queue(), &ActionQueue::answered);
    m_session->commands().setGroupOn(room, !room.is_on);
    QVERIFY(answered.wait(10000));
    const WriteOutcome outcome = answered.first().at(1).value<WriteOutcome>();
    QVERIFY2(int(outcome.kind) == kind, qPrintable(outcome.detail));
    QCOMPARE(outcome.status, fault == u"429" ? 429 : fault == u"207" ? 207 : fault.isEmpty() ? 200 : 400);
    if (!notice.isEmpty())
        QVERIFY2(link().activity().notice().startsWith(notice), qPrintable(link().activity().notice()));
    // A busy bridge gets the change again after its pause, and takes it then.
    QCOMPARE(answered.first().at(2).toBool(), fault == u"429");
    if (fault == u"429") {
        QTRY_COMPARE_WITH_TIMEOUT(answered.size(), 2, 10000);
        QVERIFY(answered.last().at(1).value<WriteOutcome>().ok());
    }
}

void TestBridgeSession::appliesEventsByTheResourcesUuid()
{
    connect();
    const HueLight lamp = link().home().lights().first();
    const HueGroup room = link().home().groups().first();
    m_session->queue().setLastUserActionAt(QDateTime::currentDateTimeUtc().addSecs(-60));
    // Resources without a first-interface id (a zone, a lamp added over the current interface) are found all
    // the same; a number alone finds nothing among records read over the current interface.
    BridgeEventBatch batch;
    batch.lights = {{.resourceId = lamp.v2_id, .on = !lamp.is_on, .brightness = 200},
                    {.lampId = lamp.lamp_id, .resourceId = u"not-this-lamp"_qs, .brightness = 9}};
    batch.groups = {{.resourceId = room.grouped_light_id, .anyOn = !room.any_on}};
    m_session->connection().liveUpdates().apply(batch);
    const HueLight after = link().home().lights().first();
    QCOMPARE(after.is_on, !lamp.is_on);
    QCOMPARE(after.brightness, 200);
    QCOMPARE(link().home().groups().first().any_on, !room.any_on);
}

QTEST_GUILESS_MAIN(TestBridgeSession)
#include "tst_bridgesession.moc"
