#include "BridgeBench.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeCommands.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

#include <memory>

class TestBridgeCommands final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void buildsTheRightRequest_data();
    void buildsTheRightRequest();
    void everythingOffShowsEveryLampAndRoomOff();
    void switchesOffAtTheBrightnessThreshold_data();
    void switchesOffAtTheBrightnessThreshold();
    void clampsTheLocalBrightnessOfAnIncrease_data();
    void clampsTheLocalBrightnessOfAnIncrease();
    void sendsTheSwitchOffSchedule();
    void keepsEachIdOnePathSegment_data();
    void keepsEachIdOnePathSegment();

private:
    ActionQueueItem queued();

    std::unique_ptr<BridgeBench> m_bench;
    std::unique_ptr<ActionQueue> m_queue;
    std::unique_ptr<BridgeCommands> m_commands;
    HueLight m_light;
    HueGroup m_room;
};

void TestBridgeCommands::init()
{
    m_bench = std::make_unique<BridgeBench>();
    QVERIFY(m_bench->start());
    m_queue = std::make_unique<ActionQueue>(m_bench->settings(), m_bench->network());
    m_commands = std::make_unique<BridgeCommands>(m_bench->settings(), *m_queue);

    BridgeLink& settings = m_bench->settings();
    m_light = {.lamp_id = QStringLiteral("3"), .is_on = true, .brightness = 100, .saturation = 140};
    m_room = {.group_id = QStringLiteral("2"), .is_on = true, .brightness = 100, .saturation = 77};
    settings.home().setLights({m_light});
    settings.home().setGroups({m_room});
}

void TestBridgeCommands::cleanup()
{
    m_commands.reset();
    m_queue.reset();
    m_bench.reset();
}

ActionQueueItem TestBridgeCommands::queued()
{
    // Insertion runs after the current event; an empty item makes the caller's comparisons fail.
    (void)QTest::qWaitFor([this] { return !m_queue->pending().isEmpty(); }, 1000);
    const QList<ActionQueueItem> queue = m_queue->pending();
    return queue.size() == 1 ? queue.first() : ActionQueueItem{};
}

void TestBridgeCommands::buildsTheRightRequest_data()
{
    QTest::addColumn<std::function<void(BridgeCommands&, HueLight, HueGroup)>>("command");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("property"); // "light:" or "group:" or "" before the property

    using Command = std::function<void(BridgeCommands&, HueLight, HueGroup)>;
    QTest::newRow("light on") << Command(
                                     [](BridgeCommands& h, HueLight l, HueGroup) { h.setLightOn(l, false); })
                              << "lights/3/state" << QByteArray(R"({"on":false})") << "light:on";
    QTest::newRow("light hue keeps the record's saturation")
        << Command([](BridgeCommands& h, HueLight l, HueGroup) { h.setLightHue(l, 65535); })
        << "lights/3/state" << QByteArray(R"({"hue":65535,"sat":140,"on":true,"transitiontime":2})")
        << "light:hue";
    QTest::newRow("light colour temperature")
        << Command([](BridgeCommands& h, HueLight l, HueGroup) { h.setLightColorTemperature(l, 366); })
        << "lights/3/state" << QByteArray(R"({"ct":366,"on":true,"transitiontime":2})") << "light:ct";
    QTest::newRow("room on") << Command(
                                    [](BridgeCommands& h, HueLight, HueGroup g) { h.setGroupOn(g, true); })
                             << "groups/2/action" << QByteArray(R"({"on":true})") << "group:on";
    QTest::newRow("room brightness") << Command([](BridgeCommands& h, HueLight, HueGroup g) {
        h.setGroupBrightness(g, 255);
    }) << "groups/2/action" << QByteArray(R"({"bri":255,"on":true,"transitiontime":2})")
                                     << "group:brightness";
    QTest::newRow("room hue") << Command([](BridgeCommands& h, HueLight, HueGroup g) { h.setGroupHue(g, 0); })
                              << "groups/2/action"
                              << QByteArray(R"({"hue":0,"sat":77,"on":true,"transitiontime":2})")
                              << "group:hue";
    QTest::newRow("room colour temperature")
        << Command([](BridgeCommands& h, HueLight, HueGroup g) { h.setGroupColorTemperature(g, 153); })
        << "groups/2/action" << QByteArray(R"({"ct":153,"on":true,"transitiontime":2})") << "group:ct";
    QTest::newRow("room increase") << Command([](BridgeCommands& h, HueLight, HueGroup g) {
        h.increaseGroupBrightness(g, -50);
    }) << "groups/2/action" << QByteArray(R"({"bri_inc":-50,"transitiontime":1,"on":true})")
                                   << "group:brightness_increase";
    QTest::newRow("scene recall goes through group 0")
        << Command([](BridgeCommands& h, HueLight, HueGroup) { h.recallScene(QStringLiteral("Abc-123")); })
        << "groups/0/action" << QByteArray(R"({"scene":"Abc-123"})") << ":scene";
    QTest::newRow("everything off in one request to group 0")
        << Command([](BridgeCommands& h, HueLight, HueGroup) { h.switchEverythingOff(); })
        << "groups/0/action" << QByteArray(R"({"on":false})") << "all:on";
}

void TestBridgeCommands::buildsTheRightRequest()
{
    QFETCH(std::function<void(BridgeCommands&, HueLight, HueGroup)>, command);
    QFETCH(QString, target);
    QFETCH(QByteArray, body);
    QFETCH(QString, property);

    command(*m_commands, m_light, m_room);
    const ActionQueueItem item = queued();
    const BridgeLink& settings = m_bench->settings();
    QCOMPARE(item.url.toString(),
             settings.bridgeEndpoint() + QStringLiteral("/api/%1/").arg(settings.hueKey()) + target);
    QCOMPARE(item.body, body);
    const QString kind = property.section(u':', 0, 0);
    using Target = ActionQueueItem::Target;
    QCOMPARE(item.target, kind == u"light"                     ? Target::light
                          : kind == u"group" || kind == u"all" ? Target::group
                                                               : Target::scene);
    QCOMPARE(item.property, property.section(u':', 1));
    QCOMPARE(item.item_id, kind == u"light"   ? u"3"_qs
                           : kind == u"group" ? u"2"_qs
                           : kind == u"all"   ? u"0"_qs
                                              : u"Abc-123"_qs);
}

void TestBridgeCommands::everythingOffShowsEveryLampAndRoomOff()
{
    m_room.any_on = true;
    m_bench->settings().home().setGroups({m_room, m_room});
    m_commands->switchEverythingOff();
    for (const HueLight& light : m_bench->settings().home().lights())
        QVERIFY(!light.is_on);
    for (const HueGroup& room : m_bench->settings().home().groups())
        QVERIFY(!room.is_on && !room.any_on);
    // The bridge switches every lamp at once.
    QTRY_COMPARE(m_bench->changes().size(), 1);
    for (const QString& id : m_bench->bridge().lightIds())
        QCOMPARE(m_bench->bridge().light(id).value(u"state").toObject().value(u"on"), QJsonValue(false));
}

void TestBridgeCommands::switchesOffAtTheBrightnessThreshold_data()
{
    QTest::addColumn<qint64>("brightness");
    QTest::addColumn<bool>("on");
    QTest::newRow("0") << qint64(0) << false;
    QTest::newRow("4") << qint64(4) << false;
    QTest::newRow("5") << qint64(5) << true;
    QTest::newRow("255") << qint64(255) << true;
}

void TestBridgeCommands::switchesOffAtTheBrightnessThreshold()
{
    QFETCH(qint64, brightness);
    QFETCH(bool, on);
    m_bench->settings().home().updateLight(m_light.lamp_id, [on](HueLight& l) { l.is_on = !on; });
    m_commands->setLightBrightness(m_light, brightness);
    QCOMPARE(m_bench->settings().home().lights().first().is_on, on); // shown at once, before the queue runs
    QCOMPARE(QJsonDocument::fromJson(queued().body).object(),
             (QJsonObject{{"bri", brightness}, {"on", on}, {"transitiontime", 2}}));

    m_commands->setGroupBrightness(m_room, brightness);
    QCOMPARE(m_bench->settings().home().groups().first().is_on, on);
}

void TestBridgeCommands::clampsTheLocalBrightnessOfAnIncrease_data()
{
    QTest::addColumn<QString>("groupId");
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("delta");
    QTest::addColumn<qint64>("shown");
    QTest::addColumn<bool>("on");

    QTest::newRow("+50 at 230") << "2" << qint64(230) << qint64(50) << qint64(255) << true;
    QTest::newRow("-300 at 100") << "2" << qint64(100) << qint64(-300) << qint64(0) << false;
    QTest::newRow("down to 4 is off") << "2" << qint64(54) << qint64(-50) << qint64(4) << false;
    QTest::newRow("unknown room sends on and changes nothing")
        << "9" << qint64(100) << qint64(-300) << qint64(100) << true;
}

void TestBridgeCommands::clampsTheLocalBrightnessOfAnIncrease()
{
    QFETCH(QString, groupId);
    QFETCH(qint64, start);
    QFETCH(qint64, delta);
    QFETCH(qint64, shown);
    QFETCH(bool, on);

    m_bench->settings().home().updateGroup(m_room.group_id, [start](HueGroup& g) { g.brightness = start; });
    HueGroup target = m_room;
    target.group_id = groupId;
    m_commands->increaseGroupBrightness(target, delta);
    QCOMPARE(m_bench->settings().home().groups().first().brightness, shown);
    QCOMPARE(QJsonDocument::fromJson(queued().body).object(),
             (QJsonObject{{"bri_inc", delta}, {"transitiontime", 1}, {"on", on}}));
}

void TestBridgeCommands::sendsTheSwitchOffSchedule()
{
    const BridgeLink& settings = m_bench->settings();
    m_commands->switchAllOffAfterMinutes(5);
    QTRY_COMPARE(m_bench->bridge().requests().size(), 1);
    const SimulatedRequest request = m_bench->bridge().requests().first();
    QCOMPARE(request.method, QByteArray("POST"));
    QCOMPARE(request.path, QStringLiteral("/api/%1/schedules").arg(settings.hueKey()));
    const QJsonObject expected{
        {"name", "Glowdeck: lights off"},
        {"command", QJsonObject{{"address", QStringLiteral("/api/%1/groups/0/action").arg(settings.hueKey())},
                                {"method", "PUT"},
                                {"body", QJsonObject{{"on", false}}}}},
        {"autodelete", true},
        {"localtime", "PT00:05:00"},
        {"recycle", true}};
    QCOMPARE(request.body, expected);

    m_commands->switchAllOffAfterMinutes(90); // hours and minutes, as the bridge takes them
    QTRY_COMPARE(m_bench->bridge().requests().size(), 2);
    QCOMPARE(m_bench->bridge().requests().last().body.value(u"localtime").toString(),
             QStringLiteral("PT01:30:00"));
}

void TestBridgeCommands::keepsEachIdOnePathSegment_data()
{
    QTest::addColumn<QString>("id");      // a lamp id as a hostile bridge may send it
    QTest::addColumn<QByteArray>("path"); // as sent after "/api/<key>"; empty: nothing sent
    QTest::newRow("climbing out") << "1/../../config" << QByteArray("/lights/1%2F..%2F..%2Fconfig/state");
    QTest::newRow("query and fragment") << "2?x=1#y" << QByteArray("/lights/2%3Fx%3D1%23y/state");
    QTest::newRow("spaces and non-ASCII") << "l\u00e4mp 3" << QByteArray("/lights/l%C3%A4mp%203/state");
    QTest::newRow("parent") << ".." << QByteArray();
    QTest::newRow("empty") << "" << QByteArray();
}

void TestBridgeCommands::keepsEachIdOnePathSegment()
{
    QFETCH(QString, id);
    QFETCH(QByteArray, path);
    HueLight light = m_light;
    light.lamp_id = id;
    m_commands->setLightOn(light, true);
    if (path.isEmpty()) {
        QTRY_COMPARE(m_bench->settings().activity().log().size(), 1);
        QVERIFY2(m_bench->settings().activity().log().first().contains(
                     QStringLiteral("cannot form a request address")),
                 qPrintable(m_bench->settings().activity().log().first()));
        QVERIFY(m_queue->pending().isEmpty());
        return;
    }
    QTRY_COMPARE(m_bench->bridge().requests().size(), 1);
    QCOMPARE(m_bench->bridge().requests().first().target,
             "/api/" + m_bench->settings().hueKey().toLatin1() + path);
}

QTEST_GUILESS_MAIN(TestBridgeCommands)
#include "tst_bridgecommands.moc"
