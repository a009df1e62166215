#include "BridgeBench.h"
#include "bridge/ActionQueue.h"
#include "bridge/CodedRecords.h"
#include "commands/HomeCommands.h"
#include "dbus/BusNames.h"
#include "dbus/DesktopBusService.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

#include <memory>

/// Collects the interface's signals as the client connection receives them.
class SignalCatcher final : public QObject
{
    Q_OBJECT

public:
    QList<QDBusMessage> caught;

public Q_SLOTS:
    void onSignal(const QDBusMessage& message) { caught.append(message); }
};

class TestDesktopBusService final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void introspectionOffersEveryMethodAndSignal();
    void listsGiveThePlainRecordsOfEveryBridge();
    void changesGoThroughTheQueueAndShowAtOnce_data();
    void changesGoThroughTheQueueAndShowAtOnce();
    void badArgumentsGetAnErrorAndSendNothing_data();
    void badArgumentsGetAnErrorAndSendNothing();
    void signalsTellOnlyWhatChangedElsewhere();
    void theDesktopOpensTheWindowAndRunsTheEntrysActions();

private:
    /// Calls `method` over the bus from the client connection and waits for the reply.
    QDBusMessage call(const QString& method, const QVariantList& arguments = {});
    /// The records a list method returns.
    QList<QVariantMap> records(const QString& method);
    /// The changes `bench`'s bridge received, as "PUT lights/1/state {...}" (the path after the key).
    static QStringList changes(BridgeBench& bench);

    std::unique_ptr<BridgeBench> m_ground;
    std::unique_ptr<BridgeBench> m_upper;
    std::unique_ptr<BridgeSessions> m_sessions;
    std::unique_ptr<HomeCommands> m_commands;
    std::unique_ptr<DesktopBusService> m_service;
    std::unique_ptr<QDBusConnection> m_client;
    int m_run = 0;
};

void TestDesktopBusService::initTestCase()
{
    // Never the user's own session bus: the name would sit beside (or fail against) a running Glowdeck.
    if (qgetenv("GLOWDECK_PRIVATE_SESSION_BUS") != "1")
        QSKIP("needs a private session bus; ctest runs this test under dbus-run-session");
    QVERIFY(QDBusConnection::sessionBus().isConnected());
    qDBusRegisterMetaType<QList<QVariantMap>>();
}

void TestDesktopBusService::init()
{
    m_ground = std::make_unique<BridgeBench>();
    m_upper = std::make_unique<BridgeBench>(BridgeSimulator::Floor::Upper);
    QVERIFY(m_ground->start() && m_upper->start());
    m_sessions = std::make_unique<BridgeSessions>();
    for (BridgeBench* bench : {m_ground.get(), m_upper.get()}) {
        // Lamp "1" and room "1" on both bridges; "Sofa", the plug and scene "Relax" on the ground floor only.
        const bool ground = bench == m_ground.get();
        bench->settings().home().setLights({HueLight{.lamp_id = u"1"_qs,
                                                     .name = ground ? u"Sofa"_qs : u"Desk"_qs,
                                                     .is_on = true,
                                                     .brightness = 100,
                                                     .xy_x = 0.25F},
                                            HueLight{.lamp_id = u"2"_qs,
                                                     .name = ground ? u"Plug"_qs : u"Lamp"_qs,
                                                     .allows_brightness = !ground}});
        bench->settings().home().setGroups({HueGroup{.group_id = u"1"_qs,
                                                     .name = u"Living room"_qs,
                                                     .lights = {u"1"_qs, u"2"_qs},
                                                     .type = u"Room"_qs,
                                                     .any_on = true,
                                                     .brightness = 100}});
        if (ground)
            bench->settings().home().setScenes({HueScene{.scene_id = u"abc-1"_qs,
                                                         .name = u"Relax"_qs,
                                                         .lights = {u"1"_qs},
                                                         .type = u"LightScene"_qs}});
        m_sessions->add(std::make_unique<BridgeSession>(bench->settings(), bench->network()));
    }
    m_commands = std::make_unique<HomeCommands>(*m_sessions);
    m_service =
        std::make_unique<DesktopBusService>(*m_sessions, *m_commands, QStringLiteral("/settings.json"));
    QString problem;
    QVERIFY2(m_service->publish(QDBusConnection::sessionBus(), &problem), qPrintable(problem));
    // A connection of its own, as gdbus or a script has: every call goes over the bus.
    m_client = std::make_unique<QDBusConnection>(
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("script %1").arg(++m_run)));
    QVERIFY(m_client->isConnected());
}

void TestDesktopBusService::cleanup()
{
    if (m_client)
        QDBusConnection::disconnectFromBus(m_client->name());
    m_client.reset();
    QDBusConnection::sessionBus().unregisterService(BusNames::service);
    QDBusConnection::sessionBus().unregisterObject(BusNames::path);
    m_service.reset();
    m_commands.reset();
    m_sessions.reset();
    m_upper.reset();
    m_ground.reset();
}

QDBusMessage TestDesktopBusService::call(const QString& method, const QVariantList& arguments)
{
    // "org.freedesktop.Application.Activate": a method of that interface.
    const qsizetype dot = method.lastIndexOf(u'.');
    QDBusMessage message =
        QDBusMessage::createMethodCall(BusNames::service, BusNames::path,
                                       dot < 0 ? BusNames::interface : method.left(dot), method.mid(dot + 1));
    message.setArguments(arguments);
    // The service answers on this thread: wait with the event loop running.
    QDBusPendingCall pending = m_client->asyncCall(message);
    if (!QTest::qWaitFor([&] { return pending.isFinished(); }, 10000))
        qWarning("no reply to %s", qPrintable(method));
    return pending.reply();
}

QList<QVariantMap> TestDesktopBusService::records(const QString& method)
{
    const QDBusMessage reply = call(method);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != u"aa{sv}")
        return {};
    return qdbus_cast<QList<QVariantMap>>(reply.arguments().constFirst());
}

QStringList TestDesktopBusService::changes(BridgeBench& bench)
{
    QStringList lines;
    for (const SimulatedRequest& request : bench.changes())
        lines << QString::fromLatin1(request.method) + u' ' + request.path.section(u'/', 3) + u' ' +
                     QString::fromUtf8(request.rawBody);
    return lines;
}

void TestDesktopBusService::introspectionOffersEveryMethodAndSignal()
{
    const QDBusMessage reply =
        m_client->call(QDBusMessage::createMethodCall(BusNames::service, BusNames::path,
                                                      QStringLiteral("org.freedesktop.DBus.Introspectable"),
                                                      QStringLiteral("Introspect")),
                       QDBus::BlockWithGui);
    // BlockWithGui runs the event loop, so the service in this thread can answer.
    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    const QString xml = reply.arguments().constFirst().toString();
    for (const char* expected :
         {R"(<interface name="com.brambleworks.Glowdeck">)", R"(<method name="ListLights">)",
          R"(<method name="ListRooms">)", R"(<method name="ListScenes">)", R"(<method name="SetLight">)",
          R"(<method name="SetRoom">)", R"(<method name="RecallScene">)", R"(<method name="AllOn">)",
          R"(<method name="AllOff">)", R"(<method name="SwitchOffIn">)", R"(<method name="CancelSwitchOff">)",
          R"(<method name="OpenWindow">)", R"(<signal name="LightsChanged">)",
          R"(<signal name="RoomsChanged">)", R"(<signal name="ConnectionChanged">)",
          R"(<arg name="change" type="a{sv}" direction="in"/>)", R"(<arg type="aa{sv}" direction="out"/>)",
          R"(<property name="SettingsFile" type="s")"})
        QVERIFY2(xml.contains(QLatin1String(expected)), expected);
}

void TestDesktopBusService::listsGiveThePlainRecordsOfEveryBridge()
{
    const QList<QVariantMap> lights = records(QStringLiteral("ListLights"));
    QCOMPARE(lights.size(), 4);
    // The records' own field names, as glowdeckctl lights --json prints them, and the bridge of each.
    const QJsonObject coded = QJsonDocument::fromJson(CodedRecords::encode(HueLight{})).object();
    QStringList expectedKeys = coded.keys();
    expectedKeys << u"bridge_id"_qs;
    expectedKeys.sort();
    for (const QVariantMap& light : lights) {
        QCOMPARE(light.keys(), expectedKeys);
        // Plain values, one type per field: a coordinate of 0 is a double too.
        for (auto it = light.begin(); it != light.end(); ++it) {
            const int type = it.value().typeId();
            QVERIFY2(type == QMetaType::QString || type == QMetaType::LongLong || type == QMetaType::Double ||
                         type == QMetaType::Bool,
                     qPrintable(it.key()));
        }
        QCOMPARE(light.value(u"xy_y"_qs).typeId(), QMetaType::Double);
    }
    QCOMPARE(lights.at(0).value(u"bridge_id"_qs).toString(), m_ground->bridge().bridgeId());
    QCOMPARE(lights.at(3).value(u"bridge_id"_qs).toString(), m_upper->bridge().bridgeId());
    QCOMPARE(lights.at(0).value(u"name"_qs).toString(), u"Sofa"_qs);
    QCOMPARE(lights.at(0).value(u"brightness"_qs).toLongLong(), 100);

    const QList<QVariantMap> rooms = records(QStringLiteral("ListRooms"));
    QCOMPARE(rooms.size(), 2);
    QCOMPARE(rooms.at(0).value(u"lights"_qs).toStringList(), QStringList({u"1"_qs, u"2"_qs}));
    // A light scene is in the room that holds all of its lamps, as glowdeckctl scenes lists it.
    const QList<QVariantMap> scenes = records(QStringLiteral("ListScenes"));
    QCOMPARE(scenes.size(), 1);
    QCOMPARE(scenes.at(0).value(u"group_id"_qs).toString(), u"1"_qs);
}

void TestDesktopBusService::changesGoThroughTheQueueAndShowAtOnce_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments"); // "{ground}" as a bridge_id is the ground floor's id
    QTest::addColumn<QStringList>("ground");     // the changes each bridge receives, as changes()
    QTest::addColumn<QStringList>("upper");
    QTest::addColumn<bool>("lampOneOn"); // the ground floor's lamp 1 as the window shows it right after
    const QVariantMap ground{{u"bridge_id"_qs, u"{ground}"_qs}};
    const auto with = [&ground](QVariantMap change) {
        change.insert(ground);
        return change;
    };
    // The whole home: one request per bridge, whatever the number of lamps.
    QTest::newRow("AllOff") << u"AllOff"_qs << QVariantList()
                            << QStringList{R"(PUT groups/0/action {"on":false})"}
                            << QStringList{R"(PUT groups/0/action {"on":false})"} << false;
    QTest::newRow("AllOn") << u"AllOn"_qs << QVariantList()
                           << QStringList{R"(PUT groups/0/action {"on":true})"}
                           << QStringList{R"(PUT groups/0/action {"on":true})"} << true;
    QTest::newRow("a lamp by name, off")
        << u"SetLight"_qs << QVariantList{u"sofa"_qs, QVariantMap{{"on", false}}}
        << QStringList{R"(PUT lights/1/state {"on":false})"} << QStringList() << false;
    // The plug is renamed "1" for this row: the id wins, so lamp 1 is switched, not the plug.
    QTest::newRow("an id before a name")
        << u"SetLight"_qs << QVariantList{u"1"_qs, with({{"on", false}})}
        << QStringList{R"(PUT lights/1/state {"on":false})"} << QStringList() << false;
    QTest::newRow("brightness in per cent")
        << u"SetLight"_qs << QVariantList{u"1"_qs, with({{"brightness", 50}})}
        << QStringList{R"(PUT lights/1/state {"bri":127,"on":true,"transitiontime":2})"} << QStringList()
        << true;
    QTest::newRow("1 % switches off")
        << u"SetLight"_qs << QVariantList{u"1"_qs, with({{"brightness", 1.0}})}
        << QStringList{R"(PUT lights/1/state {"bri":3,"on":false,"transitiontime":2})"} << QStringList()
        << false;
    QTest::newRow("a colour by xy")
        << u"SetLight"_qs
        << QVariantList{u"1"_qs, with({{"xy", QVariant::fromValue(QList<double>{0.3, 0.4})}})}
        << QStringList{R"(PUT lights/1/state {"xy":[0.3,0.4],"on":true,"transitiontime":2})"} << QStringList()
        << true;
    QTest::newRow("a room darker")
        << u"SetRoom"_qs << QVariantList{u"Living room"_qs, with({{"brightness_step", -10}})}
        << QStringList{R"(PUT groups/1/action {"bri_inc":-25,"transitiontime":1,"on":true})"} << QStringList()
        << true;
    QTest::newRow("a room's white")
        << u"SetRoom"_qs << QVariantList{u"1"_qs, QVariantMap{{"mirek", 300}, {"bridge_id", u"{upper}"_qs}}}
        << QStringList() << QStringList{R"(PUT groups/1/action {"ct":300,"on":true,"transitiontime":2})"}
        << true;
    QTest::newRow("a scene by name") << u"RecallScene"_qs << QVariantList{u"relax"_qs, QVariantMap()}
                                     << QStringList{R"(PUT groups/0/action {"scene":"abc-1"})"}
                                     << QStringList() << true;
}

void TestDesktopBusService::changesGoThroughTheQueueAndShowAtOnce()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QStringList, ground);
    QFETCH(QStringList, upper);
    QFETCH(bool, lampOneOn);
    for (QVariant& argument : arguments) {
        if (argument.typeId() != QMetaType::QVariantMap)
            continue;
        QVariantMap map = argument.toMap();
        map[u"bridge_id"_qs].toString() == u"{ground}"  ? map[u"bridge_id"_qs] = m_ground->bridge().bridgeId()
        : map[u"bridge_id"_qs].toString() == u"{upper}" ? map[u"bridge_id"_qs] = m_upper->bridge().bridgeId()
                                                        : map.remove(u"bridge_id"_qs);
        argument = map;
    }
    if (QByteArray(QTest::currentDataTag()).contains("before a name"))
        m_ground->settings().home().updateLight(u"2"_qs, [](HueLight& plug) { plug.name = u"1"_qs; });
    const QDBusMessage reply = call(method, arguments);
    QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(reply.errorMessage()));
    // Shown at once: before the queue has sent anything.
    QCOMPARE(m_ground->settings().home().lights().at(0).is_on, lampOneOn);
    for (BridgeBench* bench : {m_ground.get(), m_upper.get()}) {
        const QStringList expected = bench == m_ground.get() ? ground : upper;
        QTRY_COMPARE(changes(*bench), expected);
    }
    // Nothing more follows.
    for (BridgeSession* session : m_sessions->all())
        QTRY_VERIFY(!session->queue().isProcessing());
    QCOMPARE(changes(*m_ground).size() + changes(*m_upper).size(), ground.size() + upper.size());
}

void TestDesktopBusService::badArgumentsGetAnErrorAndSendNothing_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("message"); // a part of it
    const QString invalid = BusNames::invalidArgs;
    const auto setLight = [](const QString& id, const QVariantMap& change) {
        return QVariantList{id, change};
    };
    QTest::newRow("brightness over 100") << u"SetLight"_qs << setLight(u"Sofa"_qs, {{"brightness", 101}})
                                         << invalid << u"brightness takes a number from 0 to 100"_qs;
    QTest::newRow("on as a string") << u"SetLight"_qs << setLight(u"Sofa"_qs, {{"on", u"yes"_qs}}) << invalid
                                    << u"on takes a boolean"_qs;
    QTest::newRow("one coordinate") << u"SetLight"_qs
                                    << setLight(u"Sofa"_qs, {{"xy", QVariant::fromValue(QList<double>{0.3})}})
                                    << invalid << u"xy takes two numbers"_qs;
    QTest::newRow("an unknown field")
        << u"SetLight"_qs << setLight(u"Sofa"_qs, {{"blink", true}}) << invalid << u"Unknown field blink"_qs;
    QTest::newRow("no change") << u"SetLight"_qs << setLight(u"Sofa"_qs, {}) << invalid
                               << u"changes nothing"_qs;
    QTest::newRow("a plug dimmed") << u"SetLight"_qs << setLight(u"Plug"_qs, {{"brightness", 50}}) << invalid
                                   << u"cannot be dimmed"_qs;
    QTest::newRow("no such lamp") << u"SetLight"_qs << setLight(u"99"_qs, {{"on", true}})
                                  << BusNames::noSuchTarget << u"No lamp has the id or name 99"_qs;
    QTest::newRow("an id on both bridges") << u"SetLight"_qs << setLight(u"1"_qs, {{"on", true}})
                                           << BusNames::ambiguous << u"1 names several"_qs;
    QTest::newRow("a bridge not served")
        << u"SetRoom"_qs << setLight(u"1"_qs, {{"on", true}, {"bridge_id", u"001788FFFE000001"_qs}})
        << BusNames::noSuchTarget << u"No bridge 001788FFFE000001"_qs;
    QTest::newRow("minutes out of range")
        << u"SwitchOffIn"_qs << QVariantList{0} << invalid << u"1 to 1440"_qs;
    QTest::newRow("a scene option") << u"RecallScene"_qs
                                    << QVariantList{u"abc-1"_qs, QVariantMap{{"fade", 1}}} << invalid
                                    << u"Unknown option fade"_qs;
}

void TestDesktopBusService::badArgumentsGetAnErrorAndSendNothing()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, error);
    QFETCH(QString, message);
    const QList<HueLight> before = m_ground->settings().home().lights();
    const QDBusMessage reply = call(method, arguments);
    QCOMPARE(reply.type(), QDBusMessage::ErrorMessage);
    QCOMPARE(reply.errorName(), error);
    QVERIFY2(reply.errorMessage().contains(message), qPrintable(reply.errorMessage()));
    // Nothing queued, nothing shown: the service still answers the next call.
    for (BridgeSession* session : m_sessions->all())
        QVERIFY(!session->queue().isProcessing());
    QCOMPARE(m_ground->settings().home().lights(), before);
    QCOMPARE(records(QStringLiteral("ListLights")).size(), 4);
}

void TestDesktopBusService::signalsTellOnlyWhatChangedElsewhere()
{
    SignalCatcher catcher;
    for (const char* name : {"LightsChanged", "RoomsChanged", "ConnectionChanged"})
        QVERIFY(m_client->connect(BusNames::service, BusNames::path, BusNames::interface, QLatin1String(name),
                                  &catcher, SLOT(onSignal(QDBusMessage))));
    // A refresh from the bridge: the ground floor's sofa went off in another app, the upper room dimmed.
    m_ground->settings().home().updateLight(u"1"_qs, [](HueLight& light) { light.is_on = false; });
    m_upper->settings().home().updateGroup(u"1"_qs, [](HueGroup& room) { room.brightness = 40; });
    m_ground->settings().home().setBridgeConnected(true);
    QTRY_COMPARE(catcher.caught.size(), 3);

    const auto fields = [](const QDBusMessage& message) {
        const QVariant first = message.arguments().constFirst();
        return message.signature() == u"a{sv}" ? QList<QVariantMap>{qdbus_cast<QVariantMap>(first)}
                                               : qdbus_cast<QList<QVariantMap>>(first);
    };
    QCOMPARE(catcher.caught.at(0).member(), u"LightsChanged"_qs);
    QCOMPARE(fields(catcher.caught.at(0)),
             QList<QVariantMap>(
                 {{{"lamp_id", u"1"_qs}, {"is_on", false}, {"bridge_id", m_ground->bridge().bridgeId()}}}));
    QCOMPARE(catcher.caught.at(1).member(), u"RoomsChanged"_qs);
    QCOMPARE(fields(catcher.caught.at(1)),
             QList<QVariantMap>({{{"group_id", u"1"_qs},
                                  {"brightness", qint64(40)},
                                  {"bridge_id", m_upper->bridge().bridgeId()}}}));
    QCOMPARE(catcher.caught.at(2).member(), u"ConnectionChanged"_qs);
    const QVariantMap connection = fields(catcher.caught.at(2)).constFirst();
    QCOMPARE(connection.value(u"connected"_qs), QVariant(true));
    QCOMPARE(connection.value(u"bridge_id"_qs).toString(), m_ground->bridge().bridgeId());

    // A change that changes nothing tells nothing.
    m_ground->settings().home().setLights(m_ground->settings().home().lights());
    QCOMPARE(call(QStringLiteral("ListBridges")).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(catcher.caught.size(), 3);
}

void TestDesktopBusService::theDesktopOpensTheWindowAndRunsTheEntrysActions()
{
    QSignalSpy windowRequested(m_service.get(), &DesktopBusService::windowRequested);
    const QString application = QStringLiteral("org.freedesktop.Application.");
    QCOMPARE(call(application + u"Activate"_qs, {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(call(u"OpenWindow"_qs).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(windowRequested.size(), 2);
    // The desktop entry's "All lights off": the whole home, one request per bridge.
    QCOMPARE(call(application + u"ActivateAction"_qs, {u"all-off"_qs, QVariantList(), QVariantMap()}).type(),
             QDBusMessage::ReplyMessage);
    QTRY_COMPARE(changes(*m_ground), QStringList{R"(PUT groups/0/action {"on":false})"});
    QTRY_COMPARE(changes(*m_upper), QStringList{R"(PUT groups/0/action {"on":false})"});
}

QTEST_GUILESS_MAIN(TestDesktopBusService)
#include "tst_desktopbusservice.moc"
