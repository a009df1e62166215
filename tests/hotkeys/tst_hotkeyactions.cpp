#include "BridgeBench.h"
#include "HotkeyBench.h"
#include "hotkeys/HotkeyNames.h"
#include "state/SettingsKeys.h"

#include <QJsonDocument>
#include <QTest>

#include <limits>
#include <memory>

using Shortcut = GlobalHotkeys::Shortcut;

class TestHotkeyActions final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void everyWholeHomeActionChangesTheRecordsAndSendsItsCommands_data();
    void everyWholeHomeActionChangesTheRecordsAndSendsItsCommands();
    void aCustomShortcutReadsTheSlotOneBelowItsNumber();
    void aCustomSlotActsOnEveryRoomWithItsId_data();
    void aCustomSlotActsOnEveryRoomWithItsId();
    void whatCannotBeDoneSendsNothing_data();
    void whatCannotBeDoneSendsNothing();
    void brightnessStepsPassOverRoomsOfPlugsAndZones();
    void aShortcutReachesTheBridgesItConcerns_data();
    void aShortcutReachesTheBridgesItConcerns();
    void offersFourChoicesPerRoomAfterNoAction();
    void namesTheBridgeOfARoomNameOnSeveralBridges();
    void storesTheStepAndTheChoice();

private:
    /// Presses the shortcut of `name` as the desktop would, then lets the posted action run.
    void press(const GlobalHotkeys::Name& name);
    std::unique_ptr<HotkeyBench> m_bench;
};

void TestHotkeyActions::init()
{
    // The commands' requests are their own tests' business: these go to a port where nobody listens.
    m_bench = std::make_unique<HotkeyBench>();
    m_bench->setBridge(QStringLiteral("127.0.0.1:9"), QStringLiteral("hotkey-bench-key"));

    // Every name gets a combination of its own, then the handlers, as at start-up.
    const QList<GlobalHotkeys::Name>& names = HotkeyNames::all();
    for (qsizetype i = 0; i < names.size(); ++i)
        m_bench->hotkeys().setShortcut(Shortcut{i, Shortcut::control | Shortcut::option}, names.at(i));
    m_bench->actions().registerHandlers(m_bench->hotkeys());
    // All but "Open Glowdeck", whose window is the application's.
    QCOMPARE(m_bench->fake().registered().size(), names.size() - 1);
}

void TestHotkeyActions::cleanup()
{
    m_bench.reset();
}

void TestHotkeyActions::press(const GlobalHotkeys::Name& name)
{
    const QList<HueGroup> before = m_bench->settings().home().groups();
    QVERIFY(m_bench->fake().press(*m_bench->hotkeys().getShortcut(name)));
    // The action waits for the event loop: nothing has changed yet.
    QCOMPARE(m_bench->settings().home().groups(), before);
    QCoreApplication::processEvents();
}

void TestHotkeyActions::everyWholeHomeActionChangesTheRecordsAndSendsItsCommands_data()
{
    QTest::addColumn<GlobalHotkeys::Name>("name");
    QTest::addColumn<QString>("body");
    QTest::addColumn<bool>("isOn");
    QTest::addColumn<qint64>("hue");
    QTest::addColumn<qint64>("saturation");
    QTest::addColumn<qint64>("brightness");

    // On and off go to group 0, every lamp of the bridge, in one request; the others to each room.
    QTest::newRow("on") << HotkeyNames::allLightsOn() << R"(0:{"on":true})" << true << 500LL << 10LL << 100LL;
    QTest::newRow("off") << HotkeyNames::allLightsOff() << R"(0:{"on":false})" << false << 500LL << 10LL
                         << 100LL;
    QTest::newRow("brighter by the step")
        << HotkeyNames::allLightsBrighter() << R"({"bri_inc":25,"transitiontime":1,"on":true})" << true
        << 500LL << 10LL << 125LL;
    // Marked on although it only dims, like brighter.
    QTest::newRow("darker by the step")
        << HotkeyNames::allLightsDarker() << R"({"bri_inc":-25,"transitiontime":1,"on":true})" << true
        << 500LL << 10LL << 75LL;
    QTest::newRow("red") << HotkeyNames::allLightsRed()
                         << R"({"hue":1913,"sat":255,"on":true,"transitiontime":2})" << true << 1913LL
                         << 255LL << 100LL;
    QTest::newRow("blue") << HotkeyNames::allLightsBlue()
                          << R"({"hue":47058,"sat":255,"on":true,"transitiontime":2})" << true << 47058LL
                          << 255LL << 100LL;
    QTest::newRow("white") << HotkeyNames::allLightsWhite()
                           << R"({"hue":43413,"sat":0,"on":true,"transitiontime":2})" << true << 43413LL
                           << 0LL << 100LL;
}

void TestHotkeyActions::everyWholeHomeActionChangesTheRecordsAndSendsItsCommands()
{
    QFETCH(GlobalHotkeys::Name, name);
    QFETCH(QString, body);
    QFETCH(bool, isOn);
    QFETCH(qint64, hue);
    QFETCH(qint64, saturation);
    QFETCH(qint64, brightness);

    m_bench->setRooms({QStringLiteral("1"), QStringLiteral("2")});
    m_bench->settings().preferences().setKeyIncrement(25);
    press(name);
    for (const HueGroup& room : m_bench->settings().home().groups()) {
        QCOMPARE(room.is_on, isOn);
        QCOMPARE(room.hue, hue);
        QCOMPARE(room.saturation, saturation);
        QCOMPARE(room.brightness, brightness);
    }
    const QStringList expected =
        body.startsWith(u"0:") ? QStringList{u"groups/0/action "_qs + body.mid(2)}
                               : QStringList{u"groups/1/action "_qs + body, u"groups/2/action "_qs + body};
    QTRY_COMPARE(m_bench->sent(), expected);
    QTRY_VERIFY(!m_bench->queue().isProcessing());
    QCOMPARE(m_bench->sent(), expected);
}

void TestHotkeyActions::aCustomShortcutReadsTheSlotOneBelowItsNumber()
{
    m_bench->setRooms({QStringLiteral("1"), QStringLiteral("2")});
    SettingsStore& store = m_bench->store();
    store.writeString(QStringLiteral("hotkeyCustomGroupAction0"), QStringLiteral("2_on"));
    store.writeString(QStringLiteral("hotkeyCustomGroupAction1"), QStringLiteral("1_off"));
    store.writeString(QStringLiteral("hotkeyCustomGroupAction4"), QStringLiteral("1_brighter"));

    press(HotkeyNames::customGroup(1));
    QTRY_COMPARE(m_bench->sent(), QStringList{QStringLiteral(R"(groups/2/action {"on":true})")});
    press(HotkeyNames::customGroup(5));
    QTRY_COMPARE(m_bench->sent().size(), 2);
    QCOMPARE(m_bench->sent().last(),
             QStringLiteral(R"(groups/1/action {"bri_inc":50,"transitiontime":1,"on":true})"));
    // Nothing is stored under a fifth slot number: custom shortcut 5 read slot 4.
    QVERIFY(!store.contains(QStringLiteral("hotkeyCustomGroupAction5")));
}

void TestHotkeyActions::aCustomSlotActsOnEveryRoomWithItsId_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QList<bool>>("isOn");
    QTest::addColumn<QString>("request");

    QTest::newRow("on") << "3_on" << QList<bool>{false, true, true} << R"(groups/3/action {"on":true})";
    QTest::newRow("off") << "1_off" << QList<bool>{false, false, false} << R"(groups/1/action {"on":false})";
    // A room listed twice gets the step twice, on the wire as in the record (100 - 2 x 50 leaves it off):
    // the queue adds a waiting step to the next.
    QTest::newRow("darker") << "3_darker" << QList<bool>{false, false, false}
                            << R"(groups/3/action {"bri_inc":-100,"on":false,"transitiontime":1})";
}

void TestHotkeyActions::aCustomSlotActsOnEveryRoomWithItsId()
{
    QFETCH(QString, stored);
    QFETCH(QList<bool>, isOn);
    QFETCH(QString, request);

    m_bench->setRooms({QStringLiteral("1"), QStringLiteral("3"), QStringLiteral("3")});
    m_bench->store().writeString(QStringLiteral("hotkeyCustomGroupAction2"), stored);
    press(HotkeyNames::customGroup(3));
    const QList<HueGroup> rooms = m_bench->settings().home().groups();
    QCOMPARE((QList<bool>{rooms.at(0).is_on, rooms.at(1).is_on, rooms.at(2).is_on}), isOn);
    QTRY_COMPARE(m_bench->sent(), QStringList{request});
}

void TestHotkeyActions::whatCannotBeDoneSendsNothing_data()
{
    QTest::addColumn<QStringList>("rooms");
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<int>("number");

    const QStringList rooms{QStringLiteral("1"), QStringLiteral("3")};
    QTest::newRow("no action") << rooms << QVariant(QStringLiteral("no_action")) << 1;
    QTest::newRow("nothing stored") << rooms << QVariant() << 1;
    QTest::newRow("a bare group id") << rooms << QVariant(QStringLiteral("3")) << 1;
    QTest::newRow("an unknown verb") << rooms << QVariant(QStringLiteral("3_dim")) << 1;
    QTest::newRow("an extra part") << rooms << QVariant(QStringLiteral("3_on_x")) << 1;
    QTest::newRow("no group id") << rooms << QVariant(QStringLiteral("_on")) << 1;
    QTest::newRow("no bridge id") << rooms << QVariant(QStringLiteral("/3_on")) << 1;
    QTest::newRow("two bridge ids") << rooms << QVariant(QStringLiteral("001788FFFE6A3B2C/x/3_on")) << 1;
    QTest::newRow("a bridge not served") << rooms << QVariant(QStringLiteral("001788FFFE000000/3_on")) << 1;
    QTest::newRow("a number, not text") << rooms << QVariant(3) << 1;
    QTest::newRow("a room that is gone") << rooms << QVariant(QStringLiteral("7_on")) << 1;
    // All On and All Off (0 and 1) go to group 0, which every bridge has, with rooms or without.
    for (int number = 2; number < 12; ++number)
        QTest::addRow("no rooms, shortcut %d", number)
            << QStringList() << QVariant(QStringLiteral("1_on")) << -number;
}

void TestHotkeyActions::whatCannotBeDoneSendsNothing()
{
    QFETCH(QStringList, rooms);
    QFETCH(QVariant, stored);
    QFETCH(int, number); // 1: custom shortcut 1; 0 and below: the name at that place, negated

    m_bench->setRooms(rooms);
    if (stored.isValid())
        m_bench->store().setValue(QStringLiteral("hotkeyCustomGroupAction0"), stored);
    press(number > 0 ? HotkeyNames::customGroup(number) : HotkeyNames::all().at(-number));
    // Every command starts the queue's timer at once; none runs.
    QVERIFY(!m_bench->queue().isProcessing());
    QVERIFY(m_bench->queue().pending().isEmpty());
}

void TestHotkeyActions::brightnessStepsPassOverRoomsOfPlugsAndZones()
{
    // Room 1 holds a plug only, room 2 a plug and a lamp, room 3 lamps the bridge has not listed yet.
    m_bench->setRooms({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")});
    QList<HueGroup> rooms = m_bench->settings().home().groups();
    rooms[0].lights = {QStringLiteral("9")};
    rooms[1].lights = {QStringLiteral("9"), QStringLiteral("4")};
    rooms[2].lights = {QStringLiteral("5")};
    // A zone holds lamps of rooms already stepped: the whole-home shortcuts leave it alone.
    rooms.append(
        {.group_id = QStringLiteral("7"), .lights = {QStringLiteral("4")}, .type = QStringLiteral("Zone")});
    m_bench->settings().home().setGroups(rooms);
    m_bench->settings().home().setLights(
        {{.lamp_id = QStringLiteral("9"), .allows_brightness = false}, {.lamp_id = QStringLiteral("4")}});
    m_bench->store().writeString(QStringLiteral("hotkeyCustomGroupAction0"), QStringLiteral("1_brighter"));

    press(HotkeyNames::allLightsBrighter());
    press(HotkeyNames::customGroup(1));
    QTRY_COMPARE(m_bench->sent().size(), 2);
    QCOMPARE(m_bench->sent().filter(QStringLiteral("groups/1/")), QStringList());
    QCOMPARE(m_bench->sent().filter(QStringLiteral("groups/7/")), QStringList());
    QVERIFY(!m_bench->settings().home().groups().at(0).is_on); // not shown as brightened either
}

void TestHotkeyActions::aShortcutReachesTheBridgesItConcerns_data()
{
    QTest::addColumn<GlobalHotkeys::Name>("name");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<bool>("reachesGround"); // the first bridge
    QTest::addColumn<bool>("reachesUpper");
    QTest::addColumn<QString>("sent"); // by each bridge reached

    const GlobalHotkeys::Name custom = HotkeyNames::customGroup(1);
    // One request per bridge to group 0, every lamp of the bridge, not one per room.
    QTest::newRow("every lamp on") << HotkeyNames::allLightsOn() << QString() << true << true
                                   << R"(PUT groups/0/action {"on":true})";
    QTest::newRow("every lamp off") << HotkeyNames::allLightsOff() << QString() << true << true
                                    << R"(PUT groups/0/action {"on":false})";
    const QString roomOn = R"(PUT groups/1/action {"on":true})";
    QTest::newRow("the upper living room") << custom << "001788FFFE9C4D5E/1_on" << false << true << roomOn;
    QTest::newRow("the ground living room") << custom << "001788FFFE6A3B2C/1_on" << true << false << roomOn;
    QTest::newRow("a bridge id in lower case")
        << custom << "001788fffe9c4d5e/1_on" << false << true << roomOn;
    QTest::newRow("the older form: the first bridge") << custom << "1_on" << true << false << roomOn;
}

void TestHotkeyActions::aShortcutReachesTheBridgesItConcerns()
{
    QFETCH(GlobalHotkeys::Name, name);
    QFETCH(QString, stored);
    QFETCH(bool, reachesGround);
    QFETCH(bool, reachesUpper);
    QFETCH(QString, sent);

    // Two bridges on two simulators, each with a room "1" named "Living room".
    BridgeSimulator ground;
    QVERIFY(ground.listen());
    m_bench->setBridge(ground.hostAndPort(), ground.addUser());
    m_bench->setRooms({u"1"_qs, u"2"_qs}, {u"Living room"_qs, u"Kitchen"_qs});
    BridgeBench upper(BridgeSimulator::Floor::Upper);
    QVERIFY(upper.start());
    upper.settings().home().setGroups({{.group_id = u"1"_qs, .name = u"Living room"_qs, .brightness = 100},
                                       {.group_id = u"2"_qs, .name = u"Bathroom"_qs, .brightness = 100}});
    BridgeSession& upperSession =
        m_bench->sessions().add(std::make_unique<BridgeSession>(upper.settings(), upper.network()));
    if (!stored.isEmpty())
        m_bench->store().writeString(u"hotkeyCustomGroupAction0"_qs, stored);

    press(name);
    const auto changed = [](const ActionQueue& queue) {
        return queue.isProcessing() || !queue.pending().isEmpty();
    };
    QCOMPARE(changed(m_bench->queue()), reachesGround);
    QCOMPARE(changed(upperSession.queue()), reachesUpper);
    const auto received = [](const QList<SimulatedRequest>& requests) {
        QStringList lines;
        for (const SimulatedRequest& request : requests) {
            if (request.method != "GET")
                lines << QString::fromLatin1(request.method) + u' ' + request.path.section(u'/', 3) + u' ' +
                             QString::fromUtf8(QJsonDocument(request.body).toJson(QJsonDocument::Compact));
        }
        return lines;
    };
    for (const ActionQueue* queue : {&m_bench->queue(), &upperSession.queue()})
        QTRY_VERIFY(!queue->isProcessing() && queue->requestsInFlight() == 0);
    QCOMPARE(received(ground.requests()), reachesGround ? QStringList{sent} : QStringList());
    QCOMPARE(received(upper.bridge().requests()), reachesUpper ? QStringList{sent} : QStringList());
}

void TestHotkeyActions::offersFourChoicesPerRoomAfterNoAction()
{
    QCOMPARE(HotkeyActions::options({}),
             (QList<GroupActionOption>{{QStringLiteral("no_action"), QStringLiteral("(No action)")}}));
    const QList<HueGroup> rooms{{.group_id = QStringLiteral("1"), .name = QStringLiteral("Kitchen")},
                                {.group_id = QStringLiteral("2"), .name = QStringLiteral("Hall")}};
    QStringList ids;
    QStringList titles;
    for (const GroupActionOption& option : HotkeyActions::options({{u"B1"_qs, u"Home"_qs, rooms}})) {
        ids << option.id;
        titles << option.title;
    }
    QCOMPARE(ids, (QStringList{"no_action", "B1/1_on", "B1/1_off", "B1/1_brighter", "B1/1_darker", "B1/2_on",
                               "B1/2_off", "B1/2_brighter", "B1/2_darker"}));
    QCOMPARE(titles, (QStringList{"(No action)", "Kitchen On", "Kitchen Off", "Kitchen Brighter",
                                  "Kitchen Darker", "Hall On", "Hall Off", "Hall Brighter", "Hall Darker"}));
    // A zone may be picked too, and says it is one.
    const QList<HueGroup> zone{{.group_id = QStringLiteral("7"),
                                .name = QStringLiteral("Downstairs"),
                                .type = QStringLiteral("Zone")}};
    QCOMPARE(HotkeyActions::options({{u"B1"_qs, u"Home"_qs, zone}}).at(1).title,
             QStringLiteral("Downstairs (zone) On"));
}

void TestHotkeyActions::namesTheBridgeOfARoomNameOnSeveralBridges()
{
    const auto titles = [](const QList<BridgeRooms>& bridges) {
        QStringList list;
        for (const GroupActionOption& option : HotkeyActions::options(bridges)) {
            if (option.id.endsWith(u"_on"_qs))
                list << option.id + u' ' + option.title;
        }
        return list;
    };
    const HueGroup living{.group_id = u"1"_qs, .name = u"Living room"_qs};
    const HueGroup kitchen{.group_id = u"2"_qs, .name = u"Kitchen"_qs};
    const HueGroup bath{.group_id = u"2"_qs, .name = u"Bathroom"_qs};
    const HueGroup upperLiving{.group_id = u"1"_qs, .name = u"living room"_qs};
    QCOMPARE(titles({{u"A"_qs, u"Philips hue"_qs, {living, kitchen}},
                     {u"B"_qs, u"Upstairs"_qs, {upperLiving, bath}}}),
             (QStringList{"A/1_on Living room (Philips hue) On", "A/2_on Kitchen On",
                          "B/1_on living room (Upstairs) On", "B/2_on Bathroom On"}));
    // Two bridges of one name are told apart by their ids; a room twice on one bridge is left as it is.
    QCOMPARE(
        titles({{u"A"_qs, u"Philips hue"_qs, {living}}, {u"B"_qs, u"Philips hue"_qs, {living, living}}}),
        (QStringList{"A/1_on Living room (A) On", "B/1_on Living room (B) On", "B/1_on Living room (B) On"}));
    QCOMPARE(titles({{u"A"_qs, u"Philips hue"_qs, {kitchen, kitchen}}}),
             (QStringList{"A/2_on Kitchen On", "A/2_on Kitchen On"}));
    // A first bridge that has not proved its id offers its rooms in the older form.
    QCOMPARE(titles({{QString(), u"192.168.1.5"_qs, {kitchen}}}), QStringList{"2_on Kitchen On"});
}

void TestHotkeyActions::storesTheStepAndTheChoice()
{
    m_bench->actions().storeStep(10);
    QCOMPARE(m_bench->settings().preferences().keyIncrement(), 10);
    QCOMPARE(m_bench->store().readInt(SettingsKeys::keyIncrement), 10);

    QCOMPARE(m_bench->actions().currentChoice(3), QStringLiteral("no_action"));
    m_bench->actions().storeChoice(3, QStringLiteral("2_darker"));
    QCOMPARE(m_bench->actions().currentChoice(3), QStringLiteral("2_darker"));
    QCOMPARE(m_bench->actions().customGroupAction(3),
             (GroupHotkeyAction{GroupHotkeyAction::Kind::darker, "2"}));
    m_bench->actions().storeChoice(3, QStringLiteral("001788FFFE9C4D5E/2_darker"));
    QCOMPARE(m_bench->actions().customGroupAction(3),
             (GroupHotkeyAction{GroupHotkeyAction::Kind::darker, "2", "001788FFFE9C4D5E"}));

    // A step that cannot be negated: darker says so and sends nothing, instead of a wrong step.
    m_bench->setRooms({QStringLiteral("1")});
    m_bench->settings().preferences().setKeyIncrement(std::numeric_limits<qint64>::min());
    PrintedLines printed;
    press(HotkeyNames::allLightsDarker());
    QVERIFY(!m_bench->queue().isProcessing());
    QCOMPARE(printed.lines().size(), 1);
}

QTEST_GUILESS_MAIN(TestHotkeyActions)
#include "tst_hotkeyactions.moc"
