#include "BridgeSimulator.h"
#include "LoopbackServer.h"

#include "bridge/CodedRecords.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

// A small home of our own, so the expected ids, names and bodies do not depend on the simulator's default.
// The lamps are listed as "2", "10", "1": not sorted in any way, so the order seen must be the bridge's.
const QByteArray lightsBody = R"({
 "2": {"name": "Desk lamp", "type": "Extended color light", "modelid": "LCT015",
       "productname": "Hue color lamp", "uniqueid": "00:17:88:01:00:aa:bb:02-0b",
       "capabilities": {"control": {"ct": {"min": 153, "max": 500}}},
       "state": {"on": true, "bri": 200, "hue": 8000, "sat": 120, "ct": 300, "xy": [0.4, 0.4],
                 "colormode": "xy", "reachable": true}},
 "10": {"name": "Hall\u202e\u001b[2J", "type": "Color temperature light", "productname": "Hue ambiance lamp",
        "state": {"on": false, "bri": 1, "ct": 400, "colormode": "ct", "reachable": true}},
 "1": {"name": "Porch", "type": "Dimmable light", "productname": "Hue white lamp",
       "state": {"on": true, "bri": 254, "reachable": true}}})";
const QByteArray groupsBody = R"({"1": {"name": "Living room", "type": "Room", "class": "Living room",
 "lights": ["1", "2"], "state": {"all_on": false, "any_on": true}, "action": {"on": true, "bri": 120}},
 "8": {"name": "Downstairs", "type": "Zone", "lights": ["1"], "state": {"all_on": false, "any_on": false},
 "action": {"on": false, "bri": 10}}})";
const QByteArray scenesBody = R"({"abc-1": {"name": "Relax", "type": "GroupScene", "group": "1",
 "lights": ["1", "2"], "version": 2}, "def-2": {"name": "Glow", "type": "LightScene", "lights": ["2", "10"],
 "version": 2}})";

struct Run
{
    int exitCode = -1; ///< -1: did not start, crashed or hung
    QString out;
    QString err;
};

} // namespace

class TestGlowdeckCtl final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void listsAsJsonKeepTheBridgeOrderAndNotTheKey();
    void listsAsATableWithoutTerminalControls();
    void commandsSendTheirRequests_data();
    void commandsSendTheirRequests();
    void theBridgesCurrentInterfaceIsUsedWhereItIsOffered_data();
    void theBridgesCurrentInterfaceIsUsedWhereItIsOffered();
    void refusedCommandsChangeNothing_data();
    void refusedCommandsChangeNothing();
    void storedBridgeIsUsed();
    void helpFitsEightyColumns();
    void discoverAndPairStoreWhatTheyFind_data();
    void discoverAndPairStoreWhatTheyFind();
    void statusNeverShowsTheKey_data();
    void statusNeverShowsTheKey();
    void failedChangesFailTheRun_data();
    void failedChangesFailTheRun();
    void everyWaitIsBounded();
    void aSettingsFileThatCannotBeWrittenFailsTheRun_data();
    void aSettingsFileThatCannotBeWrittenFailsTheRun();
    void watchPrintsPushedChangesAndStatusSaysWhetherTheyArePushed();
    void theStoredKeyGoesOnlyToTheProvenBridge_data();
    void theStoredKeyGoesOnlyToTheProvenBridge();
    void everyPairedBridgeIsServed_data();
    void everyPairedBridgeIsServed();
    void storingABridgeKeepsTheOthers_data();
    void storingABridgeKeepsTheOthers();

private:
    /// Runs glowdeckctl ("light 2 on"); `nameSimulator` adds --bridge and --key for the simulator.
    /// "{sim}" stands for the address of the simulator.
    Run run(const QString& commandLine, bool nameSimulator = true);
    /// Starts several runs at once and waits for all of them.
    QList<Run> runAll(const QStringList& commandLines, bool nameSimulator = true);
    /// What every run gets: the test's own settings file, the loopback discovery service.
    QProcessEnvironment environment() const;
    QString settingsFile() const { return m_dir->filePath(QStringLiteral("settings.json")); }
    /// Writes the simulator's address as "bridgeIP" with its id, and, if `withKey`, its key as "bridgeUser".
    void storeSettings(bool withKey);
    QJsonObject storedSettings() const;
    /// Starts `m_upper`, a second home whose lamp "1" and room "1" repeat the first one's ids, and stores the
    /// simulator as "Ground floor" and, if `upperToo`, the second bridge, unnamed, in "bridges".
    void storeBridges(bool upperToo);
    /// The requests the simulator received as "METHOD path body", the path after "/api/<key>/" if it has one.
    QStringList received() const;
    /// The simulator's address, in clear: the tool asks nothing before it sends the key there.
    QString sim() const;

    std::unique_ptr<BridgeSimulator> m_sim;
    std::unique_ptr<BridgeSimulator> m_upper;
    std::unique_ptr<LoopbackServer> m_discovery;
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_key;
};

void TestGlowdeckCtl::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_sim = std::make_unique<BridgeSimulator>();
    QVERIFY(m_sim->listen(QHostAddress::LocalHost, 0));
    m_key = m_sim->addUser();
    m_sim->setRawResource(QStringLiteral("lights"), lightsBody);
    m_sim->setRawResource(QStringLiteral("groups"), groupsBody);
    m_sim->setRawResource(QStringLiteral("scenes"), scenesBody);
    m_discovery = std::make_unique<LoopbackServer>();
    QVERIFY(m_discovery->listen());
}

QString TestGlowdeckCtl::sim() const
{
    return QStringLiteral("http://") + m_sim->hostAndPort();
}

Run TestGlowdeckCtl::run(const QString& commandLine, bool nameSimulator)
{
    return runAll({commandLine}, nameSimulator).first();
}

QProcessEnvironment TestGlowdeckCtl::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("GLOWDECK_SETTINGS"), settingsFile());
    // Never the public discovery service: always the loopback stand-in.
    environment.insert(QStringLiteral("GLOWDECK_DISCOVERY_URL"), m_discovery->url().toString());
    // No session bus: these runs talk to the bridge, never to a Glowdeck running on the user's desktop.
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                       QStringLiteral("unix:path=") + m_dir->filePath(QStringLiteral("no-bus")));
    return environment;
}

QList<Run> TestGlowdeckCtl::runAll(const QStringList& commandLines, bool nameSimulator)
{
    std::vector<std::unique_ptr<QProcess>> processes;
    for (const QString& commandLine : commandLines) {
        QStringList arguments = commandLine.split(u' ', Qt::SkipEmptyParts);
        arguments.replaceInStrings(QStringLiteral("{sim}"), sim());
        if (nameSimulator)
            arguments << QStringLiteral("--bridge") << sim() << QStringLiteral("--key") << m_key;
        auto& process = processes.emplace_back(std::make_unique<QProcess>());
        process->setProcessEnvironment(environment());
        process->start(QStringLiteral(GLOWDECKCTL_PATH), arguments);
    }
    // The simulator answers on this thread: wait with the event loop running, never with waitForFinished.
    // Every wait of glowdeckctl ends within 15 s; these 20 s are only the harness's own limit.
    const auto allDone = [&] {
        return std::ranges::all_of(processes, [](auto& p) { return p->state() == QProcess::NotRunning; });
    };
    if (!QTest::qWaitFor(allDone, 20000))
        qWarning("glowdeckctl still runs after 20 s");
    QList<Run> runs;
    for (auto& process : processes) {
        if (process->state() != QProcess::NotRunning || process->exitStatus() != QProcess::NormalExit) {
            process->kill();
            process->waitForFinished();
            runs.append(Run{});
            continue;
        }
        runs.append(Run{process->exitCode(), QString::fromUtf8(process->readAllStandardOutput()),
                        QString::fromUtf8(process->readAllStandardError())});
    }
    return runs;
}

void TestGlowdeckCtl::storeSettings(bool withKey)
{
    // As pairing stores a bridge of the first generation, which offers plain HTTP only.
    QJsonObject settings{{"bridgeIP", sim()}, {"bridgeID", m_sim->bridgeId()}, {"bridgeTransport", "http"}};
    if (withKey)
        settings.insert("bridgeUser", m_key);
    QFile file(settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(settings).toJson()));
}

void TestGlowdeckCtl::storeBridges(bool upperToo)
{
    m_upper = std::make_unique<BridgeSimulator>(BridgeSimulator::Floor::Upper);
    QVERIFY(m_upper->listen());
    const QString upperKey = m_upper->addUser();
    QJsonArray bridges{QJsonObject{{"id", m_sim->bridgeId()},
                                   {"address", sim()},
                                   {"key", m_key},
                                   {"transport", "http"},
                                   {"certificate", ""},
                                   {"name", "Ground floor"}}};
    if (upperToo)
        bridges.append(QJsonObject{{"id", m_upper->bridgeId()},
                                   {"address", m_upper->httpAddress()},
                                   {"key", upperKey},
                                   {"transport", "http"},
                                   {"certificate", ""},
                                   {"name", ""}});
    QFile file(settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly) &&
            file.write(QJsonDocument(QJsonObject{{"bridges", bridges}}).toJson()));
}

QJsonObject TestGlowdeckCtl::storedSettings() const
{
    QFile file(settingsFile());
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

QStringList TestGlowdeckCtl::received() const
{
    QStringList sent;
    for (const auto& request : m_sim->requests())
        sent << (QString::fromLatin1(request.method) + u' ' +
                 QString(request.path).remove("/api/" + m_key + '/') + u' ' +
                 QString::fromUtf8(request.rawBody))
                    .trimmed();
    return sent;
}

void TestGlowdeckCtl::listsAsJsonKeepTheBridgeOrderAndNotTheKey()
{
    const Run result = run(QStringLiteral("lights --json"));
    QCOMPARE(result.exitCode, 0);
    QVERIFY(!result.out.contains(m_key)); // this output ends up in scripts and bug reports
    QCOMPARE(result.out.count(u'\n'), 1); // one line
    const QJsonArray lights = QJsonDocument::fromJson(result.out.toUtf8()).array();
    QStringList ids;
    for (const QJsonValue light : lights)
        ids << light[QLatin1String("lamp_id")].toString();
    QCOMPARE(ids, QStringList({"2", "10", "1"}));

    const QJsonObject desk = lights.at(0).toObject();
    QVERIFY(CodedRecords::readLight(desk).has_value()); // every coded key, each of the right type
    QCOMPARE(desk.size(), 20);
    // clang-format off
    const QJsonObject expected{{"name", "Desk lamp"}, {"product_name", "Hue color lamp"}, {"is_on", true},
                               {"brightness", 200}, {"allows_color", true}, {"ct_max", 500},
                               {"bridge_id", m_sim->bridgeId()}};
    // clang-format on
    for (auto it = expected.begin(); it != expected.end(); ++it)
        QCOMPARE(desk.value(it.key()), it.value());
    QVERIFY(result.out.startsWith(QStringLiteral(R"([{"lamp_id":"2","name":"Desk lamp","product_name")")));

    QVERIFY(!desk.contains(u"hue_key") && !desk.contains(u"hue_ip"));

    // A script that asked for the key is told where it is.
    const Run withKey = run(QStringLiteral("rooms --json --with-key"));
    QCOMPARE(withKey.exitCode, 2);
    QVERIFY2(withKey.err.contains(u"settings file"), qPrintable(withKey.err));
}

void TestGlowdeckCtl::listsAsATableWithoutTerminalControls()
{
    const Run result = run(QStringLiteral("lights"));
    QCOMPARE(result.exitCode, 0);
    // The bidirectional override would show the rest of the line backwards, the escape clear the screen.
    for (const char* text : {"Desk lamp", "colour", "Hall??[2J", "white tone", "dimmable"})
        QVERIFY2(result.out.contains(QLatin1String(text)), qPrintable(result.out));
    QVERIFY(!result.out.contains(QChar(0x202e)) && !result.out.contains(QChar(0x1b)));
    const QStringList lines = result.out.split(u'\n');
    QVERIFY(lines.at(0).startsWith(QStringLiteral("ID ")));
    QCOMPARE(lines.at(1).indexOf(QStringLiteral("Desk lamp")), lines.at(0).indexOf(QStringLiteral("NAME")));

    // Zones are listed as the bridge lists them, and say what they are.
    const Run rooms = run(QStringLiteral("rooms"));
    QCOMPARE(rooms.exitCode, 0);
    const QStringList roomLines = rooms.out.split(u'\n');
    QVERIFY2(roomLines.at(0).contains(QStringLiteral("TYPE")) &&
                 roomLines.at(1).contains(QStringLiteral(" room ")) &&
                 roomLines.at(2).contains(QStringLiteral("Downstairs")) &&
                 roomLines.at(2).contains(QStringLiteral(" zone ")),
             qPrintable(rooms.out));

    // Each scene with its room: a group scene's own, none for lamps of two rooms.
    const Run scenes = run(QStringLiteral("scenes"));
    const QStringList sceneLines = scenes.out.split(u'\n');
    QVERIFY2(sceneLines.at(0).contains(QStringLiteral(" ROOM ")) &&
                 sceneLines.at(1).contains(QStringLiteral("Relax  Living room  GroupScene")) &&
                 sceneLines.at(2).contains(QStringLiteral("Glow   -            LightScene")),
             qPrintable(scenes.out));
    const QJsonArray coded =
        QJsonDocument::fromJson(run(QStringLiteral("scenes --json")).out.toUtf8()).array();
    QCOMPARE(coded.at(0)[QLatin1String("group_id")].toString(), u"1"_qs);
    QCOMPARE(coded.at(1)[QLatin1String("group_id")].toString(), QString());

    // A 10 KB name is cut in its cell, and every row keeps its width.
    m_sim->setRawResource(QStringLiteral("lights"),
                          QByteArray(lightsBody).replace("Desk lamp", QByteArray(10240, 'D')));
    const QStringList cut = run(QStringLiteral("lights")).out.split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(cut.size(), 4);
    for (const QString& line : cut)
        QVERIFY2(line.size() < 150, qPrintable(line.left(200)));
    QVERIFY(cut.at(1).contains(QString(59, u'D') + u'\u2026'));
}

void TestGlowdeckCtl::commandsSendTheirRequests_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QStringList>("changes"); // as received(); "{key}" is the user key
    const auto row = [](const char* name, const char* commandLine, const QStringList& changes) {
        QTest::newRow(name) << QString::fromLatin1(commandLine) << changes;
    };
    row("light brightness", "light 10 brightness 4",
        {R"(PUT lights/10/state {"bri":4,"on":false,"transitiontime":2})"});
    row("light on", "light 1 on", {R"(PUT lights/1/state {"on":true})"});
    row("light hue", "light 2 hue 1000",
        {R"(PUT lights/2/state {"hue":1000,"sat":120,"on":true,"transitiontime":2})"});
    row("light ct", "light 10 ct 153", {R"(PUT lights/10/state {"ct":153,"on":true,"transitiontime":2})"});
    row("room off", "room 1 off", {R"(PUT groups/1/action {"on":false})"});
    // A busy bridge's 429 is waited out: the change goes again and the run succeeds.
    row("room off, the bridge busy at first", "room 1 off",
        {R"(PUT groups/1/action {"on":false})", R"(PUT groups/1/action {"on":false})"});
    row("room brighter", "room 1 brighter 254",
        {R"(PUT groups/1/action {"bri_inc":254,"transitiontime":1,"on":true})"});
    row("scene", "scene abc-1", {R"(PUT groups/0/action {"scene":"abc-1"})"});
    // Named by name, without regard to case; brightness and steps in per cent of 254.
    row("light by name, per cent", "light porch brightness 50%",
        {R"(PUT lights/1/state {"bri":127,"on":true,"transitiontime":2})"});
    row("zone by name", "room DOWNSTAIRS off", {R"(PUT groups/8/action {"on":false})"});
    row("room darker by per cent", "room 1 darker 10%",
        {R"(PUT groups/1/action {"bri_inc":-25,"transitiontime":1,"on":true})"});
    row("scene by name", "scene relax", {R"(PUT groups/0/action {"scene":"abc-1"})"});
    // One request to group 0 for every lamp of the bridge, however many there are.
    row("all-off", "all-off", {R"(PUT groups/0/action {"on":false})"});
    row("all-on", "all-on", {R"(PUT groups/0/action {"on":true})"});
    row("all-off in 5 minutes", "all-off --in 5",
        {R"(POST schedules {"name":"Glowdeck: lights off","command":{"address":"/api/{key}/groups/0/action",)"
         R"("method":"PUT","body":{"on":false}},"autodelete":true,"localtime":"PT00:05:00","recycle":true})"});
}

void TestGlowdeckCtl::commandsSendTheirRequests()
{
    QFETCH(QString, commandLine);
    QFETCH(QStringList, changes);
    if (QByteArray(QTest::currentDataTag()).contains("busy"))
        m_sim->setFault(BridgeSimulator::Fault::TooManyRequests, 1, "PUT");
    QCOMPARE(run(commandLine).exitCode, 0);
    const QStringList sent = received();
    // Who the bridge is, without the key, then a fresh list.
    QCOMPARE(sent.value(0), QStringLiteral("GET /api/config"));
    QVERIFY2(sent.value(1).startsWith(QStringLiteral("GET ")), qPrintable(sent.join(u'\n')));
    QCOMPARE(sent.mid(2), changes.replaceInStrings(QStringLiteral("{key}"), m_key));
}

void TestGlowdeckCtl::theBridgesCurrentInterfaceIsUsedWhereItIsOffered_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<bool>("v2");          // off: a bridge whose firmware predates the current interface
    QTest::addColumn<bool>("switchesOff"); // lamp 1, which is on before
    for (const bool v2 : {true, false}) {
        const auto row = [v2](const char* commandLine, bool switchesOff) {
            QTest::addRow("%s, %s", commandLine, v2 ? "v2" : "v1") << commandLine << v2 << switchesOff;
        };
        row("lights --json", false);
        row("rooms --json", false);
        row("scenes --json", false);
        row("light 1 off", true);
        row("room 1 off", true);
        row("scene relax", false);
        row("all-off", true);
        row("all-off --in 5", false);
    }
}

void TestGlowdeckCtl::theBridgesCurrentInterfaceIsUsedWhereItIsOffered()
{
    QFETCH(QString, commandLine);
    QFETCH(bool, v2);
    QFETCH(bool, switchesOff);
    QVERIFY(m_sim->listenTls());
    const QString authority = m_dir->filePath(QStringLiteral("authority.pem"));
    QVERIFY(m_sim->writeAuthority(authority));
    const QString overHttps = QStringLiteral(" --direct --bridge %1 --key %2 --trust-root %3")
                                  .arg(m_sim->httpsAddress(), m_key, authority);
    const auto lists = [this] {
        QStringList read;
        for (const SimulatedRequest& request : m_sim->requests()) {
            if (request.path.contains(QRegularExpression(u"^/api/[^/]+/(lights|groups|scenes)"_qs)))
                read << QString::fromLatin1(request.method) + u' ' + request.path;
        }
        return read;
    };

    m_sim->setV2Enabled(v2);
    QVERIFY(m_sim->light(u"1"_qs)[u"state"][u"on"].toBool());
    const Run result = run(commandLine + overHttps, false);
    QVERIFY2(result.exitCode == 0, qPrintable(result.err));
    // The first interface only for what the current one lacks (the switch-off timer), or for an older bridge.
    QVERIFY2(lists().isEmpty() == v2, qPrintable(lists().join(u'\n')));
    int changes = 0;
    for (const SimulatedRequest& request : m_sim->requests()) {
        if (request.method == "GET")
            continue;
        ++changes;
        if (request.method == "PUT")
            QVERIFY2(request.path.startsWith(v2 ? u"/clip/v2/"_qs : u"/api/"_qs), qPrintable(request.path));
    }
    const bool list = commandLine.endsWith(u"--json");
    QCOMPARE(changes, list ? 0 : 1);
    QCOMPARE(!m_sim->light(u"1"_qs)[u"state"][u"on"].toBool(), switchesOff);
    if (commandLine.startsWith(u"all-off --in"))
        QCOMPARE(m_sim->scheduleIds().size(), 1);
    if (!v2 || !list)
        return;

    // The same records over either interface, with the same ids and fields, in the same order; only a
    // scene of lamps without a room has no counterpart in the current interface.
    m_sim->setV2Enabled(false);
    const Run older = run(commandLine + overHttps, false);
    QCOMPARE(older.exitCode, 0);
    const QJsonArray current = QJsonDocument::fromJson(result.out.toUtf8()).array();
    QJsonArray first = QJsonDocument::fromJson(older.out.toUtf8()).array();
    if (commandLine.startsWith(u"scenes"))
        first.removeAt(1); // "Glow", of lamps in two rooms
    QVERIFY(!first.isEmpty());
    QCOMPARE(current.size(), first.size());
    for (qsizetype i = 0; i < first.size(); ++i) {
        QCOMPARE(current.at(i).toObject().keys(), first.at(i).toObject().keys());
        for (const char* field : {"lamp_id", "group_id", "scene_id", "name"})
            QCOMPARE(current.at(i)[QLatin1String(field)], first.at(i)[QLatin1String(field)]);
    }
}

void TestGlowdeckCtl::refusedCommandsChangeNothing_data()
{
    // The simulator is named unless the command line has a --bridge of its own.
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<BridgeSimulator::Fault>("fault");
    QTest::addColumn<int>("exitCode");    // 2: bad arguments, nothing sent at all
    QTest::addColumn<QString>("message"); // on either stream; "{sim}" is the simulator's address
    using Fault = BridgeSimulator::Fault;
    const QString hint = QStringLiteral("Try 'glowdeckctl --help'.");
    // Each is wrong in one way only, so only the check itself can stop it. discover, pair and status take
    // no --key, discover no --bridge.
    for (const char* line :
         {"", "lamps", "light 2 blink", "light 2 brightness 256", "light 2 ct 152", "room 1 brighter 255",
          "all-off --in 0", "light 2 on --json", "discover --bridge {sim}", "pair --bridge {sim} --wait 601",
          "status --bridge {sim} x", "light 2 brightness 101%", "room 1 brighter 0%", "light 2 hue 5%",
          "lights --direct --json --in 5"})
        QTest::newRow(*line ? line : "(nothing)") << line << Fault::None << 2 << hint;
    const QString undecodable = QStringLiteral("Error: Couldn't decode Hue data due to unknown JSON data.");
    const QString unreachable = QStringLiteral("Unable to connect to the Hue bridge at %1.");
    QTest::newRow("unknown light") << "light 99 on" << Fault::None << 1
                                   << "No light with the id or name 99 on this bridge.";
    // Two lamps called "desk" and "DESK": nothing is sent on a guess.
    QTest::newRow("ambiguous name") << "light Desk on" << Fault::None << 2
                                    << R"(The name Desk fits several: 2 "desk", 1 "DESK". Nothing was sent)";
    QTest::newRow("garbage") << "light 2 on" << Fault::GarbageBody << 1 << undecodable;
    QTest::newRow("error array") << "lights --json" << Fault::ErrorArray << 1
                                 << "refused to send the list: Internal error, 404.";
    QTest::newRow("HTTP error") << "rooms" << Fault::HttpError << 1
                                << "did not send a list that can be used (HTTP status 500).";
    QTest::newRow("dropped") << "all-off" << Fault::DropConnection << 1 << unreachable.arg("{sim}");
    QTest::newRow("refused") << "lights --bridge http://127.0.0.1:1 --key abc" << Fault::None << 1
                             << "The bridge at 127.0.0.1:1 does not answer.";
    QTest::newRow("nobody at a bare address") << "lights --bridge 127.0.0.1:1 --key abc" << Fault::None << 1
                                              << "The bridge at 127.0.0.1:1 does not answer.";
}

void TestGlowdeckCtl::refusedCommandsChangeNothing()
{
    QFETCH(QString, commandLine);
    QFETCH(BridgeSimulator::Fault, fault);
    QFETCH(int, exitCode);
    QFETCH(QString, message);
    // The bridge says who it is as usual; the fault hits the requests with the key.
    connect(m_sim.get(), &BridgeSimulator::requestReceived, this, [this, fault](const SimulatedRequest& r) {
        if (r.path != u"/api/config")
            m_sim->setFault(fault);
    });
    if (QByteArray(QTest::currentDataTag()).contains("ambiguous"))
        m_sim->setRawResource(QStringLiteral("lights"),
                              QByteArray(lightsBody).replace("Desk lamp", "desk").replace("Porch", "DESK"));
    const Run result = run(commandLine, !commandLine.contains(QStringLiteral("--bridge")));
    QCOMPARE(result.exitCode, exitCode);
    const QString printed = result.out + result.err;
    QVERIFY2(printed.contains(message.replace(QStringLiteral("{sim}"), sim())), qPrintable(printed));
    // A refused command line is said in one line and where the help is, not with the whole help.
    const bool badCommandLine = message.startsWith(QStringLiteral("Try "));
    if (badCommandLine)
        QCOMPARE(result.err.count(u'\n'), 2);
    for (const QString& request : received()) // bad arguments send nothing, failures no change
        QVERIFY2(!badCommandLine && request.startsWith(QStringLiteral("GET ")), qPrintable(request));
    QCOMPARE(m_discovery->requestCount(), 0);
    QVERIFY(!QFile::exists(settingsFile()));
}

void TestGlowdeckCtl::storedBridgeIsUsed()
{
    const Run missing = run(QStringLiteral("room 1 on"), false);
    QCOMPARE(missing.exitCode, 1);
    QVERIFY2(missing.err.contains(QStringLiteral("--bridge")), qPrintable(missing.err));
    QVERIFY(m_sim->requests().isEmpty());

    storeSettings(true);
    QCOMPARE(run(QStringLiteral("room 1 on"), false).exitCode, 0);
    QCOMPARE(received().size(), 2);
    QVERIFY2(received().at(1).startsWith(QStringLiteral("PUT groups/1/action ")),
             qPrintable(received().at(1)));
}

void TestGlowdeckCtl::helpFitsEightyColumns()
{
    const Run help = run(QStringLiteral("--help"), false);
    QCOMPARE(help.exitCode, 0);
    QVERIFY(help.out.contains(QStringLiteral("\n  all-on ")));
    for (const QString& line : help.out.split(u'\n'))
        QVERIFY2(line.size() <= 80, qPrintable(line));
}

void TestGlowdeckCtl::discoverAndPairStoreWhatTheyFind_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QByteArray>("discovered"); // the discovery service's answer
    QTest::addColumn<int>("pressAfter");        // the link button, in milliseconds after the start; -1 never
    QTest::addColumn<QString>("message");       // "Found ..." or "Paired ..." on success
    // The service names the simulator ("{host}"), which is asked who it is. No CI machine's ARP table holds a
    // Hue bridge, and the tests ask no mDNS service.
    const QByteArray one = R"({"id":"001788fffe6a3b2c","internalipaddress":"{host}","port":443})";
    const QString press = QStringLiteral("Bridge responded: Press LINK BUTTON and retry");
    const QString paired =
        QStringLiteral("Paired with bridge 001788FFFE6A3B2C at {sim} over plain HTTP (this "
                       "bridge offers no encryption): 3 lights, 1 room, 2 scenes.");
    // Only --pick stores what was found.
    QTest::newRow("discover one bridge")
        << "discover" << one << -1 << "Found a Hue bridge at {host}: Philips hue (001788FFFE6A3B2C).";
    QTest::newRow("discover as JSON") << "discover --json" << one << -1 << R"("address": "{host}")";
    QTest::newRow("discover, picked by its id")
        << "discover --pick 001788fffe6a3b2c" << one << -1 << "Found a Hue bridge at {host}: Philips hue";
    QTest::newRow("discover, another id picked")
        << "discover --pick 001788FFFE000001" << one << -1 << "No bridge 001788FFFE000001 answered";
    QTest::newRow("discover, the service's list with a broken entry")
        << "discover" << QByteArray('[' + one + R"(,{"internalipaddress":"a/b"}])") << -1
        << "Found a Hue bridge at {host}: Philips hue (001788FFFE6A3B2C).";
    QTest::newRow("discover no address") << "discover" << QByteArray(R"({"internalipaddress":"a/b"})") << -1
                                         << "No Hue bridge found on this network.";
    QTest::newRow("pair, no button") << "pair --bridge {sim}" << one << -1 << press;
    QTest::newRow("pair, button pressed") << "pair --bridge {sim}" << one << 0 << paired;
    QTest::newRow("pair, wait for the button") << "pair --bridge {sim} --wait 5" << one << 1500 << paired;
    QTest::newRow("pair, nobody there") << "pair --bridge 127.0.0.1:1" << one << -1
                                        << "Unable to connect to the Hue bridge. Is the IP address correct?";
}

void TestGlowdeckCtl::discoverAndPairStoreWhatTheyFind()
{
    QFETCH(QString, commandLine);
    QFETCH(QByteArray, discovered);
    QFETCH(int, pressAfter);
    QFETCH(QString, message);
    m_discovery->setAnswer(discovered.replace("{host}", m_sim->hostAndPort().toUtf8()));
    message.replace(QStringLiteral("{host}"), m_sim->hostAndPort());
    if (pressAfter >= 0)
        QTimer::singleShot(pressAfter, m_sim.get(), &BridgeSimulator::pressLinkButton);
    const Run result = run(commandLine, false);
    const bool found = message.startsWith(QStringLiteral("Found")) || commandLine.contains(u"--json");
    const bool paired = message.startsWith("Paired");
    const bool storing = paired || (found && commandLine.contains(u"--pick"));
    QCOMPARE(result.exitCode, found || paired ? 0 : 1);
    message.replace(QStringLiteral("{sim}"), sim());
    QVERIFY2((result.out + result.err).contains(message), qPrintable(result.out + result.err));
    QCOMPARE(m_discovery->requestCount(), commandLine.startsWith(u"discover") ? 1 : 0);
    QCOMPARE(m_sim->users().size(), paired ? 2 : 1);
    const QJsonObject stored = storedSettings();
    QCOMPARE(stored.value("bridgeIP").toString(), paired    ? sim()
                                                  : storing ? m_sim->hostAndPort()
                                                            : QString());
    QCOMPARE(stored.value("bridgeUser").toString(), paired ? m_sim->users().last() : QString());
    // The same bridge as one contact in the list, with what pairing learnt of it.
    const QJsonArray bridges = stored.value("bridges").toArray();
    QCOMPARE(bridges.size(), storing ? 1 : 0);
    if (paired) {
        const QJsonObject contact = bridges.first().toObject();
        QCOMPARE(contact.value("key").toString(), m_sim->users().last());
        QCOMPARE(contact.value("id").toString(), m_sim->bridgeId());
        QCOMPARE(contact.value("name").toString(), u"Philips hue"_qs);
    }
    QCOMPARE(QFile::exists(settingsFile()), storing); // only what stores creates the file
}

void TestGlowdeckCtl::statusNeverShowsTheKey_data()
{
    QTest::addColumn<bool>("keyStored");
    QTest::addColumn<QString>("bridgeLine");
    QTest::addColumn<QString>("request"); // the only one expected, as received()
    QTest::newRow("address and key") << true << "answers (3 lights)"
                                     << "GET /api/config,GET lights";
    QTest::newRow("no key") << false << "answers; no key yet"
                            << "GET /api/config";
}

void TestGlowdeckCtl::statusNeverShowsTheKey()
{
    QFETCH(bool, keyStored);
    QFETCH(QString, bridgeLine);
    QFETCH(QString, request);
    storeSettings(keyStored);
    const Run result = run(QStringLiteral("status"), false);
    QCOMPARE(result.exitCode, 0);
    const QRegularExpression lines(
        QStringLiteral("\nKey stored: +%1\\b.*\nBridge id: +001788FFFE6A3B2C\nTransport: +plain HTTP.*\n"
                       "Bridge: +%2")
            .arg(keyStored ? "yes" : "no", QRegularExpression::escape(bridgeLine)));
    QVERIFY2(result.out.contains(lines), qPrintable(result.out));
    QVERIFY(!(result.out + result.err).contains(m_key)); // whether there is a key, never the key
    QCOMPARE(received(), request.split(u','));
}

void TestGlowdeckCtl::failedChangesFailTheRun_data()
{
    QTest::addColumn<BridgeSimulator::Fault>("fault"); // on the change only: the list is read as usual
    QTest::addColumn<QString>("message");
    using Fault = BridgeSimulator::Fault;
    const QString change = QStringLiteral("The bridge at {sim} %1 PUT /lights/2/state");
    QTest::newRow("refused") << Fault::ErrorArray << change.arg("refused") + ": Internal error, 404.";
    QTest::newRow("HTTP error") << Fault::HttpError << change.arg("answered") + " with HTTP status 500.";
    QTest::newRow("garbage") << Fault::GarbageBody << change.arg("answered") + " with something that is not";
    QTest::newRow("dropped") << Fault::DropConnection << change.arg("did not answer") + ": ";
    QTest::newRow("drip-feed") << Fault::DripFeed
                               << change.arg("did not answer") + " in time (3 s without data, or 5 s in all)";
}

void TestGlowdeckCtl::failedChangesFailTheRun()
{
    QFETCH(BridgeSimulator::Fault, fault);
    QFETCH(QString, message);
    m_sim->setDripFeed(2, 1000);
    m_sim->setFault(fault, -1, "PUT");
    const Run result = run(QStringLiteral("light 2 off"));
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.err.contains(message.replace(QStringLiteral("{sim}"), sim())), qPrintable(result.err));
    QCOMPARE(result.err.count(u'\n'), 1); // said once, on standard error only
    QVERIFY2(result.out.isEmpty(), qPrintable(result.out));
}

void TestGlowdeckCtl::everyWaitIsBounded()
{
    // A bridge that sends a byte every half second never trips a time-out without data: only the deadlines
    // end these runs. They run side by side, so the slowest (15 s) bounds the test.
    m_sim->setDripFeed(1, 500);
    m_sim->setFault(BridgeSimulator::Fault::DripFeed);
    storeSettings(true);
    const QString discovery = QStringLiteral("discover --discovery-url http://{sim}/api/config");
    const QList<Run> runs = runAll({QStringLiteral("lights"), QStringLiteral("status"),
                                    QStringLiteral("pair --bridge {sim}"), discovery},
                                   false);
    const QStringList messages{"did not send the list in time (4 s without data, or 10 s in all)",
                               "answers too slowly",
                               "Unable to connect to the Hue bridge. Is the IP address correct?",
                               "No Hue bridge found on this network."};
    for (qsizetype i = 0; i < runs.size(); ++i) {
        QCOMPARE(runs[i].exitCode, 1);
        QVERIFY2((runs[i].out + runs[i].err).contains(messages[i]), qPrintable(runs[i].out + runs[i].err));
    }
}

void TestGlowdeckCtl::aSettingsFileThatCannotBeWrittenFailsTheRun_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QString>("message");
    QTest::newRow("pair") << "pair --bridge {sim}"
                          << "The key was not stored, so it is lost";
    QTest::newRow("discover") << "discover --pick 001788FFFE6A3B2C"
                              << "Its address was not stored";
}

void TestGlowdeckCtl::aSettingsFileThatCannotBeWrittenFailsTheRun()
{
    QFETCH(QString, commandLine);
    QFETCH(QString, message);
    // A folder where the file should be: reported, left as it is, and nothing can be stored.
    QVERIFY(QDir().mkpath(settingsFile()));
    const QFile::Permissions before = QFile::permissions(settingsFile());
    m_sim->pressLinkButton();
    m_discovery->setAnswer(
        QStringLiteral(R"({"internalipaddress":"%1"})").arg(m_sim->hostAndPort()).toUtf8());
    const Run result = run(commandLine, false);
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.err.contains(message) && result.err.contains(QStringLiteral("is a folder")),
             qPrintable(result.err));
    QVERIFY(QFileInfo(settingsFile()).isDir());
    QCOMPARE(QFile::permissions(settingsFile()), before);
}

void TestGlowdeckCtl::watchPrintsPushedChangesAndStatusSaysWhetherTheyArePushed()
{
    // The bridge pushes its changes over HTTPS only, with a certificate from an authority this test trusts.
    QVERIFY(m_sim->listenTls());
    const QString authority = m_dir->filePath(QStringLiteral("authority.pem"));
    QVERIFY(m_sim->writeAuthority(authority));
    const QString overHttps =
        QStringLiteral(" --bridge %1 --key %2 --trust-root %3").arg(m_sim->httpsAddress(), m_key, authority);

    const QString overHttp = QStringLiteral(" --bridge {sim} --key ") + m_key;
    const QList<Run> first = runAll({QStringLiteral("status") + overHttps,
                                     QStringLiteral("status") + overHttp, QStringLiteral("watch") + overHttp},
                                    false);
    QCOMPARE(first[0].exitCode, 0);
    // The authority given with --trust-root is named: the bridge maker did not sign this bridge.
    QVERIFY2(first[0].out.contains(QRegularExpression(QStringLiteral(
                 "\nTransport: +HTTPS \\(certificate signed by Glowdeck test bridge authority, an "
                 "authority added to the trusted ones, not by the bridge maker\\)\n"))),
             qPrintable(first[0].out));
    QVERIFY2(first[0].out.contains(
                 QRegularExpression(QStringLiteral("\nBridge: +answers \\(3 lights\\)\nInterface: +interface "
                                                   "v2\nUpdates: +live updates \\(the bridge "
                                                   "pushes its changes\\)\n$"))),
             qPrintable(first[0].out));
    QVERIFY2(first[1].out.contains(QRegularExpression(
                 QStringLiteral("\nUpdates: +reading every 3.5 s \\(no event stream over plain "
                                "HTTP\\)\n$"))),
             qPrintable(first[1].out));
    QCOMPARE(first[2].exitCode, 1);
    QVERIFY2(
        first[2].err.contains(QStringLiteral("is reached over plain HTTP, and its event stream needs HTTPS")),
        qPrintable(first[2].err));

    // Two paired bridges, both watched. Another app switches a lamp off on each: the lines come while watch
    // still runs, so they were not left in a buffer, and each names its bridge.
    storeBridges(false);
    QVERIFY(m_upper->listenTls());
    const QString upperAuthority = m_dir->filePath(QStringLiteral("upper.pem"));
    QVERIFY(m_upper->writeAuthority(upperAuthority));
    QJsonArray bridges;
    for (BridgeSimulator* bridge : {m_sim.get(), m_upper.get()})
        bridges.append(QJsonObject{{"id", bridge->bridgeId()},
                                   {"address", bridge->httpsAddress()},
                                   {"key", bridge == m_sim.get() ? m_key : bridge->users().constFirst()},
                                   {"transport", "https"}});
    QFile file(settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly) &&
            file.write(QJsonDocument(QJsonObject{{"bridges", bridges}}).toJson()));
    file.close();
    QProcess watch;
    watch.setProcessEnvironment(environment());
    watch.start(QStringLiteral(GLOWDECKCTL_PATH),
                {QStringLiteral("watch"), QStringLiteral("--json"), QStringLiteral("--trust-root"), authority,
                 QStringLiteral("--trust-root"), upperAuthority});
    QTRY_COMPARE_WITH_TIMEOUT(m_sim->eventStreamListeners(), 1, 20000);
    QTRY_COMPARE_WITH_TIMEOUT(m_upper->eventStreamListeners(), 1, 20000);
    QNetworkAccessManager network;
    QStringList lines;
    for (BridgeSimulator* bridge : {m_sim.get(), m_upper.get()}) {
        // The ground floor's lamp 1 goes off, the upper floor's on.
        const bool on = bridge == m_upper.get();
        QNetworkRequest request(
            QUrl(bridge->httpAddress() + QStringLiteral("/__control/external/lights/1/state")));
        request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
        const std::unique_ptr<QNetworkReply> change(network.post(
            request, on ? QByteArrayLiteral(R"({"on":true})") : QByteArrayLiteral(R"({"on":false})")));
        QTRY_VERIFY_WITH_TIMEOUT(change->isFinished(), 20000);
        QCOMPARE(change->error(), QNetworkReply::NoError);
        const QString line = QStringLiteral(R"({"type":"light","lamp_id":"1","is_on":%1,"bridge_id":"%2"})")
                                 .arg(on ? "true" : "false", bridge->bridgeId()) +
                             u'\n';
        // Its rooms may follow in lines of their own.
        QTRY_VERIFY_WITH_TIMEOUT(
            [&] {
                while (watch.canReadLine())
                    lines << QString::fromUtf8(watch.readLine());
                return lines.contains(line);
            }(),
            20000);
    }
    QCOMPARE(watch.state(), QProcess::Running);
    watch.terminate();
    QTRY_COMPARE_WITH_TIMEOUT(watch.state(), QProcess::NotRunning, 20000);
    QCOMPARE(watch.exitStatus(), QProcess::NormalExit);
    QCOMPARE(watch.exitCode(), 0);

    // A bridge with older firmware has no stream: status says the lamps are read, and why; watch ends.
    m_sim->setEventStreamMode(BridgeSimulator::EventStreamMode::Off);
    const QList<Run> without =
        runAll({QStringLiteral("status") + overHttps, QStringLiteral("watch") + overHttps}, false);
    QVERIFY2(without[0].out.contains(
                 QStringLiteral("reading every 3.5 s (the bridge has no event stream (HTTP 404))")),
             qPrintable(without[0].out));
    QCOMPARE(without[1].exitCode, 1);
    QVERIFY2(
        without[1].err.contains(QStringLiteral("the bridge offers no event stream (the bridge has no event "
                                               "stream (HTTP 404)); glowdeckctl lists show its state")),
        qPrintable(without[1].err));
    QVERIFY(without[1].out.isEmpty());
}

void TestGlowdeckCtl::theStoredKeyGoesOnlyToTheProvenBridge_data()
{
    // The settings file holds the simulator, paired over HTTPS. "{https}" and "{http}" are another host.
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<bool>("claimsTheId"); // the other host says it is the paired bridge
    QTest::addColumn<QString>("message");
    const QString certificate =
        QStringLiteral("presented a certificate for another bridge (001788FFFE000001).");
    const QString inClear = QStringLiteral("The key of bridge 001788FFFE6A3B2C is not sent over plain HTTP");
    const auto row = [](const char* name, const char* commandLine, bool claims, const QString& message) {
        QTest::newRow(name) << QString::fromLatin1(commandLine) << claims << message;
    };
    row("lists, another bridge's certificate", "lights --bridge {https}", false, certificate);
    row("changes, another bridge's certificate", "all-off --bridge {https}", false, certificate);
    row("status, another bridge's certificate", "status --bridge {https}", false, certificate);
    row("watch, another bridge's certificate", "watch --bridge {https}", false, certificate);
    row("lists in clear", "lights --bridge {http}", false, inClear);
    row("a light in clear", "light 1 off --bridge {http}", false, inClear);
    row("all-off in clear", "all-off --bridge {http}", false, inClear);
    row("status in clear", "status --bridge {http}", false, inClear);
    // The bridge's port refuses TLS and a host answers there in clear: pairing again goes nowhere.
    row("pairing again, in clear at the bridge's port", "pair", false,
        QStringLiteral("does not answer over HTTPS as it did before; it may be off or restarting."));
    // A host claiming the paired bridge's id in clear is no bridge at all, and never stored.
    row("discover, the id claimed in clear", "discover", true,
        QStringLiteral("No Hue bridge found on this network."));
}

void TestGlowdeckCtl::theStoredKeyGoesOnlyToTheProvenBridge()
{
    QFETCH(QString, commandLine);
    QFETCH(bool, claimsTheId);
    QFETCH(QString, message);
    QVERIFY(m_sim->listenTls());
    BridgeSimulator other;
    other.setBridgeId(claimsTheId ? m_sim->bridgeId() : u"001788FFFE000001"_qs);
    other.setAcceptPairingAtOnce(true);
    QVERIFY(other.listen() && other.listenTls());
    // The maker signs every bridge: both certificates are of a trusted authority.
    QStringList trust;
    for (BridgeSimulator* bridge : {m_sim.get(), &other}) {
        trust << m_dir->filePath(bridge->tlsHostAndPort().replace(u':', u'_') + QStringLiteral(".pem"));
        QVERIFY(bridge->writeAuthority(trust.last()));
    }
    // Pairing again is asked at the address the bridge was paired at, where the other host now answers.
    const bool pairing = commandLine == u"pair";
    const QJsonObject stored{{"bridgeIP", pairing ? other.hostAndPort() : m_sim->tlsHostAndPort()},
                             {"bridgeUser", m_key},
                             {"bridgeID", m_sim->bridgeId()},
                             {"bridgeTransport", "https"}};
    QFile file(settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(stored).toJson()));
    file.close();
    m_discovery->setAnswer(QJsonDocument(QJsonObject{{"internalipaddress", other.hostAndPort()}}).toJson());

    commandLine.replace(u"{https}"_qs, other.httpsAddress()).replace(u"{http}"_qs, other.httpAddress());
    const Run result = run(commandLine + u" --trust-root "_qs + trust.join(u" --trust-root "_qs), false);
    QCOMPARE(result.exitCode, 1);
    QVERIFY2((result.out + result.err).contains(message), qPrintable(result.out + result.err));
    for (const SimulatedRequest& request : other.requests()) {
        QVERIFY2(!request.path.contains(m_key) && !request.path.startsWith(u"/eventstream"),
                 qPrintable(request.path));
        QVERIFY2(!pairing, qPrintable(request.path)); // not even asked who it is
    }
    for (auto it = stored.begin(); it != stored.end(); ++it)
        QCOMPARE(storedSettings().value(it.key()), it.value());
}

void TestGlowdeckCtl::everyPairedBridgeIsServed_data()
{
    // Two paired bridges: the simulator ("Ground floor") and a second home without a stored name, both with
    // a lamp "1" and a room "1" "Living room". "{first}" and "{upper}" are their ids.
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<bool>("firstStopped");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QStringList>("printed"); // each on standard output or error
    QTest::addColumn<int>("firstChanges");    // requests other than GET each bridge received
    QTest::addColumn<int>("upperChanges");
    const auto row = [](const char* name, const char* commandLine, bool stopped, int exitCode,
                        const QStringList& printed, int first = 0, int upper = 0) {
        QTest::newRow(name) << QString::fromLatin1(commandLine) << stopped << exitCode << printed << first
                            << upper;
    };
    row("lists as JSON", "lights --json", false, 0,
        {R"({"lamp_id":"2","name":"Desk lamp")", R"("bridge_id":"{first}"})",
         R"({"lamp_id":"1","name":"Floor lamp")", R"("bridge_id":"{upper}"})"});
    // The bridge's name, or its id when it has none stored.
    row("lists as a table", "rooms", false, 0,
        {"BRIDGE        ", "\nGround floor      1   Living room", "\n{upper}  1   Living room"});
    row("a change of an id on both bridges", "light 1 on", false, 2,
        {"There is a light 1 on several paired bridges: Ground floor ({first}), {upper} ({upper}). Nothing "
         "was sent; name one with --bridge-id ID."});
    row("a change on the bridge picked", "light 1 on --bridge-id {upper-lower}", false, 0, {}, 0, 1);
    row("a change of an id on one bridge", "light 10 off", false, 0, {}, 1, 0);
    row("all-off on every bridge", "all-off --in 5", false, 0, {"The lights go off at "}, 1, 1);
    row("all-on on every bridge", "all-on", false, 0, {}, 1, 1);
    row("a bridge id not paired", "lights --bridge-id 001788FFFE000001", false, 2,
        {"No bridge 001788FFFE000001 is paired in ", "paired: {first} (Ground floor), {upper}."});
    row("status", "status", false, 0,
        {"\nBridge name:    Ground floor\nBridge address: {sim}\nKey stored:     yes\nBridge id:      "
         "{first}",
         "\n\nBridge address: http://{upper-host}\nKey stored:     yes\nBridge id:      {upper}\n"
         "Transport:      plain HTTP"});
    row("status as JSON", "status --json", false, 0,
        {R"("bridge_id": "{upper}",)", R"("name": "Ground floor",)", R"("reachable": true,)",
         R"("records_version": 1,)", R"("glowdeck_running": false,)"});
    // The bridge that answers is served; the other is named, and the run fails.
    row("lists, one bridge stopped", "lights", true, 1,
        {"\n{upper}  1   Floor lamp", "Unable to connect to the Hue bridge at {sim}.",
         "Bridge Ground floor is missing from the list."});
    row("a change, one bridge stopped", "light 1 on", true, 1,
        {"Nothing was sent: a bridge that did not answer may have a light 1 too"});
    row("status, one bridge stopped", "status", true, 1,
        {"Bridge id:      {first}\nBridge:         The bridge at", "answers (5 lights)"});
}

void TestGlowdeckCtl::everyPairedBridgeIsServed()
{
    QFETCH(QString, commandLine);
    QFETCH(bool, firstStopped);
    QFETCH(int, exitCode);
    QFETCH(QStringList, printed);
    QFETCH(int, firstChanges);
    QFETCH(int, upperChanges);
    storeBridges(true);
    const auto expand = [this](QString text) {
        return text.replace(u"{first}"_qs, m_sim->bridgeId())
            .replace(u"{upper-lower}"_qs, m_upper->bridgeId().toLower())
            .replace(u"{upper-host}"_qs, m_upper->hostAndPort())
            .replace(u"{upper}"_qs, m_upper->bridgeId())
            .replace(u"{sim}"_qs, sim());
    };
    commandLine = expand(commandLine);
    std::ranges::transform(printed, printed.begin(), expand);
    if (firstStopped)
        m_sim->close();
    const Run result = run(commandLine, false);
    const QString output = result.out + result.err;
    QCOMPARE(result.exitCode, exitCode);
    for (const QString& text : std::as_const(printed))
        QVERIFY2(output.contains(text), qPrintable(output));
    const auto changes = [](const BridgeSimulator& bridge) {
        const QList<SimulatedRequest> requests = bridge.requests();
        return std::ranges::count_if(requests, [](const SimulatedRequest& r) { return r.method != "GET"; });
    };
    QCOMPARE(changes(*m_sim), firstChanges);
    QCOMPARE(changes(*m_upper), upperChanges);
    if (upperChanges > 0 && commandLine.startsWith(u"light 1 on"))
        // The change reached the lamp of the bridge picked, not the one of the same id on the other.
        QCOMPARE(m_upper->light(u"1"_qs)["state"].toObject()["on"], QJsonValue(true));
}

void TestGlowdeckCtl::storingABridgeKeepsTheOthers_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<bool>("upperStored"); // before pairing
    QTest::addColumn<int>("paired");       // the entry written; the other stays as it was
    QTest::newRow("a bridge found is added") << "pair --pick {upper}" << false << 1;
    QTest::newRow("a paired bridge again, in its own place") << "pair --bridge-id {first}" << true << 0;
    // Found only: its address is stored, without a key, and the paired bridge keeps its own.
    QTest::newRow("a bridge discovered is added") << "discover --pick {upper}" << false << 1;
}

void TestGlowdeckCtl::storingABridgeKeepsTheOthers()
{
    QFETCH(QString, commandLine);
    QFETCH(bool, upperStored);
    QFETCH(int, paired);
    storeBridges(upperStored);
    BridgeSimulator& bridge = paired == 0 ? *m_sim : *m_upper;
    bridge.pressLinkButton();
    m_discovery->setAnswer(QStringLiteral(R"([{"internalipaddress":"%1"},{"internalipaddress":"%2"}])")
                               .arg(m_sim->hostAndPort(), m_upper->hostAndPort())
                               .toUtf8());
    const QJsonArray before = storedSettings().value("bridges").toArray();
    commandLine.replace(u"{upper}"_qs, m_upper->bridgeId()).replace(u"{first}"_qs, m_sim->bridgeId());
    const Run result = run(commandLine, false);
    QCOMPARE(result.exitCode, 0);
    const QJsonArray after = storedSettings().value("bridges").toArray();
    QCOMPARE(after.size(), 2);
    QCOMPARE(after.at(1 - paired), before.at(1 - paired));
    QCOMPARE(after.at(paired)["id"].toString(), bridge.bridgeId());
    if (commandLine.startsWith(u"pair"))
        QCOMPARE(after.at(paired)["key"].toString(), bridge.users().last());
    else
        QCOMPARE(after.at(paired)["address"].toString(), bridge.hostAndPort());
}

QTEST_GUILESS_MAIN(TestGlowdeckCtl)
#include "tst_glowdeckctl.moc"
