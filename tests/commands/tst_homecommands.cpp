#include "BridgeBench.h"
#include "bridge/ActionQueue.h"
#include "commands/HomeCommands.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <functional>
#include <memory>

using Command = std::function<void(HomeCommands&)>;
Q_DECLARE_METATYPE(Command)

class TestHomeCommands final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aWholeHomeActionReachesEveryBridge_data();
    void aWholeHomeActionReachesEveryBridge();
    void aRoomChangeAfterAllOffStillReachesTheBridge();
    void aBusyBridgeDoesNotHoldBackTheOther();
    void theSwitchOffTimerIsSetAndCancelledOnEveryBridge();

private:
    /// The changes `bench`'s bridge received, as "PUT groups/1/action {...}" (the path after the key).
    static QStringList changes(BridgeBench& bench);

    std::unique_ptr<BridgeBench> m_upstairs;
    std::unique_ptr<BridgeBench> m_downstairs;
    std::unique_ptr<BridgeSessions> m_sessions;
    std::unique_ptr<HomeCommands> m_commands;
};

void TestHomeCommands::init()
{
    m_upstairs = std::make_unique<BridgeBench>(BridgeSimulator::Floor::Upper);
    m_downstairs = std::make_unique<BridgeBench>();
    QVERIFY(m_upstairs->start() && m_downstairs->start());
    m_sessions = std::make_unique<BridgeSessions>();
    m_commands = std::make_unique<HomeCommands>(*m_sessions);
    for (BridgeBench* bench : {m_upstairs.get(), m_downstairs.get()}) {
        // Two rooms and a zone on each bridge, one lamp on and one off.
        bench->settings().home().setGroups(
            {HueGroup{.group_id = u"1"_qs, .type = u"Room"_qs, .any_on = true, .brightness = 100},
             HueGroup{.group_id = u"2"_qs, .type = u"Room"_qs, .brightness = 100},
             HueGroup{.group_id = u"7"_qs, .type = u"Zone"_qs}});
        bench->settings().home().setLights(
            {HueLight{.lamp_id = u"1"_qs, .is_on = true}, HueLight{.lamp_id = u"2"_qs}});
        m_sessions->add(std::make_unique<BridgeSession>(bench->settings(), bench->network()));
    }
}

void TestHomeCommands::cleanup()
{
    m_commands.reset();
    m_sessions.reset();
    m_downstairs.reset();
    m_upstairs.reset();
}

QStringList TestHomeCommands::changes(BridgeBench& bench)
{
    QStringList lines;
    for (const SimulatedRequest& request : bench.changes()) {
        lines << QString::fromLatin1(request.method) + u' ' + request.path.section(u'/', 3) + u' ' +
                     QString::fromUtf8(QJsonDocument(request.body).toJson(QJsonDocument::Compact));
    }
    return lines;
}

void TestHomeCommands::aWholeHomeActionReachesEveryBridge_data()
{
    QTest::addColumn<Command>("command");
    QTest::addColumn<QString>("sent");
    QTest::addColumn<bool>("on");
    // Group 0 holds every lamp of a bridge: one request each, however many rooms it has.
    QTest::newRow("all lights off") << Command([](HomeCommands& c) { c.allLightsOff(); })
                                    << R"(PUT groups/0/action {"on":false})" << false;
    QTest::newRow("all lights on") << Command([](HomeCommands& c) { c.allLightsOn(); })
                                   << R"(PUT groups/0/action {"on":true})" << true;
    QTest::newRow("darkness") << Command([](HomeCommands& c) { c.switchEverythingOff(); })
                              << R"(PUT groups/0/action {"on":false})" << false;
}

void TestHomeCommands::aWholeHomeActionReachesEveryBridge()
{
    QFETCH(Command, command);
    QFETCH(QString, sent);
    QFETCH(bool, on);
    command(*m_commands);
    // Shown at once, before any request leaves.
    for (BridgeBench* bench : {m_upstairs.get(), m_downstairs.get()}) {
        for (const HueLight& light : bench->settings().home().lights())
            QCOMPARE(light.is_on, on);
        for (const HueGroup& group : bench->settings().home().groups())
            QVERIFY(group.is_on == on && group.any_on == on);
    }
    for (BridgeSession* session : m_sessions->all())
        QTRY_VERIFY(!session->queue().isProcessing() && session->queue().requestsInFlight() == 0);
    for (BridgeBench* bench : {m_upstairs.get(), m_downstairs.get()})
        QCOMPARE(changes(*bench), QStringList{sent});
}

void TestHomeCommands::aRoomChangeAfterAllOffStillReachesTheBridge()
{
    // Group 0 covers every room, but only changes older than itself: the room switched on after it stays on.
    m_commands->allLightsOff();
    m_commands->runRoomAction({RoomAction::Kind::on, u"1"_qs, m_upstairs->bridge().bridgeId()});
    QVERIFY(m_upstairs->settings().home().groups().at(0).is_on);
    QTRY_COMPARE(changes(*m_upstairs),
                 (QStringList{R"(PUT groups/0/action {"on":false})", R"(PUT groups/1/action {"on":true})"}));
    BridgeSimulator& bridge = m_upstairs->bridge();
    const QJsonArray inRoom = bridge.group(u"1"_qs).value(u"lights").toArray();
    QVERIFY(!inRoom.isEmpty());
    for (const QString& id : bridge.lightIds()) {
        QCOMPARE(bridge.light(id).value(u"state").toObject().value(u"on").toBool(),
                 inRoom.contains(QJsonValue(id)));
    }
}

void TestHomeCommands::aBusyBridgeDoesNotHoldBackTheOther()
{
    // Upstairs takes the first change, then refuses every other for a minute, as a bridge kept busy by
    // another application; its queue waits and tries again, downstairs' goes on.
    m_upstairs->bridge().setBusyAfterChange(60000);
    m_commands->allLightsOff();
    QTRY_COMPARE(changes(*m_upstairs).size(), 1);
    QTRY_COMPARE(changes(*m_downstairs).size(), 1);
    m_commands->allLightsOn();
    QTRY_VERIFY(changes(*m_upstairs).size() >= 2); // refused
    QTRY_COMPARE(changes(*m_downstairs),
                 (QStringList{R"(PUT groups/0/action {"on":false})", R"(PUT groups/0/action {"on":true})"}));
}

void TestHomeCommands::theSwitchOffTimerIsSetAndCancelledOnEveryBridge()
{
    const QDateTime at = m_commands->switchOffIn(30);
    QVERIFY(at.isValid());
    QCOMPARE(m_commands->switchOffAt(), at);
    for (BridgeBench* bench : {m_upstairs.get(), m_downstairs.get()})
        QTRY_COMPARE(bench->bridge().scheduleIds().size(), 1);

    m_commands->cancelSwitchOff();
    QVERIFY(!m_commands->switchOffAt().isValid());
    for (BridgeBench* bench : {m_upstairs.get(), m_downstairs.get()})
        QTRY_VERIFY(bench->bridge().scheduleIds().isEmpty());

    // A bridge whose session ends takes its timer along.
    m_commands->switchOffIn(5);
    m_sessions->remove(m_sessions->first());
    QVERIFY(m_commands->switchOffAt().isValid());
    QCOMPARE(m_sessions->size(), 1);
}

QTEST_GUILESS_MAIN(TestHomeCommands)
#include "tst_homecommands.moc"
