#include "BridgeSimulator.h"
#include "DiscoveryServer.h"

#include "bridge/CodedRecords.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <memory>

namespace {

// A small home of our own, so the expected ids, names and bodies do not depend on the simulator's default.
// The lamps are listed as "2", "10", "1": not sorted in any way, so the order seen must be the bridge's.
const QByteArray lightsBody = R"({
 "2": {"name": "Desk lamp", "type": "Extended color light", "modelid": "LCT015",
       "productname": "Hue color lamp", "uniqueid": "00:17:88:01:00:aa:bb:02-0b",
       "capabilities": {"control": {"ct": {"min": 153, "max": 500}}},
       "state": {"on": true, "bri": 200, "hue": 8000, "sat": 120, "ct": 300, "xy": [0.4, 0.4],
                 "colormode": "xy", "reachable": true}},
 "10": {"name": "Hall", "type": "Color temperature light", "productname": "Hue ambiance lamp",
        "state": {"on": false, "bri": 1, "ct": 400, "colormode": "ct", "reachable": true}},
 "1": {"name": "Porch", "type": "Dimmable light", "productname": "Hue white lamp",
       "state": {"on": true, "bri": 254, "reachable": true}}})";
const QByteArray groupsBody = R"({"1": {"name": "Living room", "type": "Room", "class": "Living room",
 "lights": ["1", "2"], "state": {"all_on": false, "any_on": true}, "action": {"on": true, "bri": 120}}})";
const QByteArray scenesBody = R"({"abc-1": {"name": "Relax", "type": "GroupScene", "lights": ["1", "2"],
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
    void listsAsJsonKeepTheBridgeOrder();
    void listsAsTables_data();
    void listsAsTables();
    void commandsSendTheirRequests_data();
    void commandsSendTheirRequests();
    void badArgumentsSendNothing_data();
    void badArgumentsSendNothing();
    void failuresExitOne_data();
    void failuresExitOne();
    void storedBridgeIsUsed();
    void missingBridgeSendsNothing();
    void discover_data();
    void discover();
    void pair_data();
    void pair();
    void status_data();
    void status();

private:
    /// Runs glowdeckctl ("light 2 on"); `nameSimulator` adds --bridge and --key for the simulator.
    /// "{sim}" and "{discovery}" stand for the addresses of the simulator and the discovery server.
    Run run(const QString& commandLine, bool nameSimulator = true);
    QString settingsFile() const { return m_dir->filePath(QStringLiteral("settings.json")); }
    /// Writes the simulator's address as "bridgeIP" and its key as "bridgeUser", those of `keys` only.
    void storeSettings(const QStringList& keys);
    QJsonObject storedSettings() const;

    std::unique_ptr<BridgeSimulator> m_sim;
    std::unique_ptr<DiscoveryServer> m_discovery;
    QString m_discoveryUrl; ///< GLOWDECK_DISCOVERY_URL of the child; empty switches the service off
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
    m_discovery = std::make_unique<DiscoveryServer>();
    QVERIFY(m_discovery->listen());
    m_discoveryUrl.clear();
}

Run TestGlowdeckCtl::run(const QString& commandLine, bool nameSimulator)
{
    QStringList arguments = commandLine.split(u' ', Qt::SkipEmptyParts);
    arguments.replaceInStrings(QStringLiteral("{sim}"), m_sim->hostAndPort());
    arguments.replaceInStrings(QStringLiteral("{discovery}"), m_discovery->url().toString());
    if (nameSimulator)
        arguments << QStringLiteral("--bridge") << m_sim->hostAndPort() << QStringLiteral("--key") << m_key;
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("GLOWDECK_SETTINGS"), settingsFile());
    // Never the public discovery service: the loopback stand-in or none.
    environment.insert(QStringLiteral("GLOWDECK_DISCOVERY_URL"), m_discoveryUrl);
    process.setProcessEnvironment(environment);
    QSignalSpy finished(&process, &QProcess::finished);
    process.start(QStringLiteral(GLOWDECKCTL_PATH), arguments);
    // The simulator answers on this thread: wait with the event loop running, never with waitForFinished.
    if (!finished.wait(20000) || process.exitStatus() != QProcess::NormalExit) {
        process.kill();
        return {};
    }
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

void TestGlowdeckCtl::storeSettings(const QStringList& keys)
{
    const QJsonObject all{{"bridgeIP", m_sim->hostAndPort()}, {"bridgeUser", m_key}};
    QJsonObject settings;
    for (const QString& key : keys)
        settings.insert(key, all.value(key));
    QFile file(settingsFile());
    QVERIFY(keys.isEmpty() ||
            (file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(settings).toJson())));
}

QJsonObject TestGlowdeckCtl::storedSettings() const
{
    QFile file(settingsFile());
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

void TestGlowdeckCtl::listsAsJsonKeepTheBridgeOrder()
{
    const Run result = run(QStringLiteral("lights --json"));
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.out.endsWith(u'\n'));
    QCOMPARE(result.out.count(u'\n'), 1);
    const QJsonArray lights = QJsonDocument::fromJson(result.out.toUtf8()).array();
    QStringList ids;
    for (const QJsonValue light : lights)
        ids << light[QLatin1String("lamp_id")].toString();
    QCOMPARE(ids, QStringList({"2", "10", "1"}));

    const QJsonObject desk = lights.at(0).toObject();
    QVERIFY(CodedRecords::readLight(desk).has_value()); // every coded key, each of the right type
    QCOMPARE(desk.size(), 19);
    // clang-format off
    const QJsonObject expected{{"name", "Desk lamp"}, {"product_name", "Hue color lamp"}, {"is_on", true},
                               {"brightness", 200}, {"allows_color", true}, {"ct_max", 500},
                               {"hue_ip", m_sim->hostAndPort()}, {"hue_key", m_key}};
    // clang-format on
    for (auto it = expected.begin(); it != expected.end(); ++it)
        QCOMPARE(desk.value(it.key()), it.value());
    QVERIFY(result.out.startsWith(QStringLiteral(R"([{"lamp_id":"2","name":"Desk lamp","product_name")")));
}

void TestGlowdeckCtl::listsAsTables_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QStringList>("expected"); // the name in the first row first
    QTest::newRow("lights") << "lights"
                            << QStringList{"Desk lamp", "colour", "Hall", "white tone", "dimmable"};
    QTest::newRow("rooms") << "rooms" << QStringList{"Living room", "120", "1,2"};
    QTest::newRow("scenes") << "scenes" << QStringList{"Relax", "abc-1", "GroupScene"};
}

void TestGlowdeckCtl::listsAsTables()
{
    QFETCH(QString, command);
    QFETCH(QStringList, expected);
    const Run result = run(command);
    QCOMPARE(result.exitCode, 0);
    for (const QString& text : expected)
        QVERIFY2(result.out.contains(text), qPrintable(text + QStringLiteral(" missing in:\n") + result.out));
    const QStringList lines = result.out.split(u'\n');
    QVERIFY(lines.at(0).startsWith(QStringLiteral("ID ")));
    QCOMPARE(lines.at(1).indexOf(expected.first()), lines.at(0).indexOf(QStringLiteral("NAME"))); // aligned
}

void TestGlowdeckCtl::commandsSendTheirRequests_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QStringList>("changes"); // method, path after /api/<key>/, body; "{key}" is the user key
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
    row("room darker", "room 1 darker 30",
        {R"(PUT groups/1/action {"bri_inc":-30,"transitiontime":1,"on":true})"});
    row("room brighter", "room 1 brighter 255",
        {R"(PUT groups/1/action {"bri_inc":255,"transitiontime":1,"on":true})"});
    row("scene", "scene abc-1", {R"(PUT groups/0/action {"scene":"abc-1"})"});
    // One request per lamp, in the bridge's order.
    row("all-off", "all-off",
        {R"(PUT lights/2/state {"on":false})", R"(PUT lights/10/state {"on":false})",
         R"(PUT lights/1/state {"on":false})"});
    row("all-off in 5 minutes", "all-off --in 5",
        {R"(POST schedules {"command":{"address":"/api/{key}/groups/0/action","method":"PUT",)"
         R"("body":{"on":false}},"autodelete":true,"localtime":"PT00:05:00","recycle":true})"});
}

void TestGlowdeckCtl::commandsSendTheirRequests()
{
    QFETCH(QString, commandLine);
    QFETCH(QStringList, changes);
    QCOMPARE(run(commandLine).exitCode, 0);
    const auto requests = m_sim->requests();
    QVERIFY(!requests.isEmpty());
    QCOMPARE(requests.at(0).method, QByteArray("GET")); // a fresh list read first
    QStringList sent;
    for (const auto& request : requests.mid(1))
        sent << QString::fromLatin1(request.method) + u' ' + request.path.section(u'/', 3) + u' ' +
                    QString::fromUtf8(request.rawBody);
    QCOMPARE(sent, changes.replaceInStrings(QStringLiteral("{key}"), m_key));
}

void TestGlowdeckCtl::badArgumentsSendNothing_data()
{
    QTest::addColumn<QString>("commandLine");
    // Each is wrong in one way only; the simulator is named as well, so only the check itself can stop it.
    // clang-format off
    const char* const commandLines[] = {
        "", "lamps", "lights --colour", "lights 2",
        "light", "light 2", "light 2 brightness", "light 2 blink",
        "light 2 brighter 5", "light 2 brightness half", "light 2 brightness 4.5", "light 2 brightness -1",
        "light 2 brightness 256", "room 1 hue 65536", "light 2 ct 152", "room 1 ct 501",
        "room 1 darker 0", "room 1 brighter 256", "room 1 off now", "scene",
        "all-off --in 0", "all-off --in 1441", "all-off --in 2.5", "lights --in 5",
        "light 2 on --json", "lights --bridge 127.0.0.1:80", "lights --wait 5",
        "lights --discovery-url {discovery}"};
    // discover, pair and status take no --key, discover no --bridge: these name the simulator themselves.
    const char* const connectionLines[] = {
        "discover x", "discover --wait 5", "discover --bridge {sim}",
        "discover --discovery-url ftp://127.0.0.1/", "discover --discovery-url",
        "pair --bridge {sim} --wait 0", "pair --bridge {sim} --wait 601", "pair --bridge {sim} --wait soon",
        "pair --bridge {sim} --key abc", "pair --bridge {sim} now", "pair --discovery-url {discovery}",
        "status --bridge {sim} --wait 5", "status --bridge {sim} x"};
    // clang-format on
    QTest::addColumn<bool>("named");
    for (const char* line : commandLines)
        QTest::newRow(*line ? line : "(nothing)") << QString::fromLatin1(line) << true;
    for (const char* line : connectionLines)
        QTest::newRow(line) << QString::fromLatin1(line) << false;
}

void TestGlowdeckCtl::badArgumentsSendNothing()
{
    QFETCH(QString, commandLine);
    QFETCH(bool, named);
    m_discoveryUrl = m_discovery->url().toString(); // so that a discover run would ask it
    const Run result = run(commandLine, named);
    QCOMPARE(result.exitCode, 2);
    QVERIFY2(result.err.contains(QStringLiteral("Usage: glowdeckctl")), qPrintable(result.err));
    QVERIFY(result.out.isEmpty());
    QCOMPARE(m_sim->requests().size(), 0);
    QCOMPARE(m_discovery->requestCount(), 0);
    QVERIFY(!QFile::exists(settingsFile()));
}

void TestGlowdeckCtl::failuresExitOne_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<BridgeSimulator::Fault>("fault");
    QTest::addColumn<QByteArray>("lights"); // served instead of the lamps unless empty
    QTest::addColumn<QString>("message");   // on either stream; "{bridge}" is the simulator's address
    const QString undecodable = QStringLiteral("Error: Couldn't decode Hue data due to unknown JSON data.");
    const QString unreachable = QStringLiteral("Unable to connect to the Hue bridge at %1.");
    using Fault = BridgeSimulator::Fault;
    const auto row = [](const char* name, const char* commandLine, Fault fault, const QString& message,
                        const QByteArray& lights = {}) {
        QTest::newRow(name) << QString::fromLatin1(commandLine) << fault << lights << message;
    };
    row("unknown light", "light 99 on", Fault::None, QStringLiteral("No light with id 99 on this bridge."));
    row("unknown room", "room 0 off", Fault::None, QStringLiteral("No room with id 0 on this bridge."));
    row("unknown scene", "scene nope", Fault::None, QStringLiteral("No scene with id nope on this bridge."));
    row("not JSON", "lights", Fault::None, undecodable, "<html>not JSON</html>");
    row("garbage", "light 2 on", Fault::GarbageBody, undecodable);
    row("error array", "lights --json", Fault::ErrorArray, undecodable);
    row("dropped", "all-off", Fault::DropConnection, unreachable.arg("{bridge}"));
    row("refused", "lights --bridge 127.0.0.1:1 --key abc", Fault::None, unreachable.arg("127.0.0.1:1"));
}

void TestGlowdeckCtl::failuresExitOne()
{
    QFETCH(QString, commandLine);
    QFETCH(BridgeSimulator::Fault, fault);
    QFETCH(QByteArray, lights);
    QFETCH(QString, message);
    m_sim->setFault(fault);
    if (!lights.isEmpty())
        m_sim->setRawResource(QStringLiteral("lights"), lights);
    const Run result = run(commandLine, !commandLine.contains(QStringLiteral("--bridge")));
    QCOMPARE(result.exitCode, 1);
    const QString printed = result.out + result.err;
    QVERIFY2(printed.contains(message.replace(QStringLiteral("{bridge}"), m_sim->hostAndPort())),
             qPrintable(printed));
    for (const auto& request : m_sim->requests())
        QCOMPARE(request.method, QByteArray("GET")); // no change was sent
}

void TestGlowdeckCtl::storedBridgeIsUsed()
{
    storeSettings({"bridgeIP", "bridgeUser"});
    QCOMPARE(run(QStringLiteral("room 1 on"), false).exitCode, 0);
    const auto requests = m_sim->requests();
    QCOMPARE(requests.size(), 2);
    QCOMPARE(requests.at(1).path, QStringLiteral("/api/%1/groups/1/action").arg(m_key));
}

void TestGlowdeckCtl::missingBridgeSendsNothing()
{
    const Run result = run(QStringLiteral("lights"), false);
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(result.err.contains(QStringLiteral("--bridge")), qPrintable(result.err));
    QCOMPARE(m_sim->requests().size(), 0);
    QVERIFY(!QFile::exists(settingsFile())); // a run never creates the settings file
}

void TestGlowdeckCtl::discover_data()
{
    // Without --discovery-url the service is named by the environment.
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("message"); // "Found ..." when a bridge is found
    // 192.0.2.7 is only stored, never contacted. No CI machine's ARP table holds a Hue bridge.
    const QByteArray one = R"({"id":"001788fffe0a0b0c","internalipaddress":"192.0.2.7","port":443})";
    const QString found = QStringLiteral("Found a Hue bridge at 192.0.2.7.");
    const QString none = QStringLiteral("No Hue bridge found on this network.");
    QTest::newRow("service") << "discover" << one << found;
    QTest::newRow("--discovery-url") << "discover --discovery-url {discovery}" << one << found;
    QTest::newRow("several bridges") << "discover" << QByteArray('[' + one + ']') << none;
    QTest::newRow("not an address") << "discover" << QByteArray(R"({"internalipaddress":"a/b"})")
                                    << QStringLiteral("not HOST[:PORT]; nothing was stored");
    QTest::newRow("service off") << "discover --discovery-url=" << one << none;
}

void TestGlowdeckCtl::discover()
{
    QFETCH(QString, commandLine);
    QFETCH(QByteArray, answer);
    QFETCH(QString, message);
    m_discovery->setAnswer(answer);
    if (!commandLine.contains(QStringLiteral("--discovery-url")))
        m_discoveryUrl = m_discovery->url().toString();
    const Run result = run(commandLine, false);
    const bool found = message.startsWith(QStringLiteral("Found"));
    QCOMPARE(result.exitCode, found ? 0 : 1);
    QVERIFY2((result.out + result.err).contains(message), qPrintable(result.out + result.err));
    QCOMPARE(m_discovery->requestCount(), commandLine.endsWith(u'=') ? 0 : 1);
    QCOMPARE(storedSettings().value("bridgeIP").toString(), found ? QStringLiteral("192.0.2.7") : QString());
}

void TestGlowdeckCtl::pair_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QStringList>("stored"); // settings written before the run
    QTest::addColumn<int>("pressAfter");     // the link button, in milliseconds after the start; -1 never
    QTest::addColumn<QString>("message");    // "Paired ..." on success
    const QString paired = QStringLiteral("Paired with the bridge at {sim}: 3 lights, 1 room, 1 scene.");
    const QString press = QStringLiteral("Bridge responded: Press LINK BUTTON and retry");
    const QString nobody = QStringLiteral("Unable to connect to the Hue bridge. Is the IP address correct?");
    const QStringList none;
    QTest::newRow("no button") << "pair --bridge {sim}" << none << -1 << press;
    QTest::newRow("button pressed") << "pair --bridge {sim}" << none << 0 << paired;
    QTest::newRow("stored address") << "pair" << QStringList{"bridgeIP"} << 0 << paired;
    QTest::newRow("wait for the button") << "pair --bridge {sim} --wait 5" << none << 1500 << paired;
    QTest::newRow("wait runs out") << "pair --bridge {sim} --wait 2" << none << -1 << press;
    QTest::newRow("nobody there") << "pair --bridge 127.0.0.1:1" << none << -1 << nobody;
    QTest::newRow("no address") << "pair" << none << -1 << QStringLiteral("No bridge address stored");
}

void TestGlowdeckCtl::pair()
{
    QFETCH(QString, commandLine);
    QFETCH(QStringList, stored);
    QFETCH(int, pressAfter);
    QFETCH(QString, message);
    storeSettings(stored);
    if (pressAfter >= 0)
        QTimer::singleShot(pressAfter, m_sim.get(), &BridgeSimulator::pressLinkButton);
    const Run result = run(commandLine, false);
    const bool paired = message.startsWith(QStringLiteral("Paired"));
    QCOMPARE(result.exitCode, paired ? 0 : 1);
    message.replace(QStringLiteral("{sim}"), m_sim->hostAndPort());
    QVERIFY2((result.out + result.err).contains(message), qPrintable(result.out + result.err));
    const QStringList users = m_sim->users();
    QCOMPARE(users.size(), paired ? 2 : 1);
    QCOMPARE(storedSettings().value("bridgeUser").toString(), paired ? users.last() : QString());
    const bool addressStored = paired || !stored.isEmpty(); // a failed pairing creates no file
    QCOMPARE(storedSettings().value("bridgeIP").toString(), addressStored ? m_sim->hostAndPort() : QString());
    QCOMPARE(QFile::exists(settingsFile()), addressStored);
}

void TestGlowdeckCtl::status_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QStringList>("stored"); // settings written before the run
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("bridgeLine");
    QTest::addColumn<QString>("request"); // the only one expected; "{key}" is the simulator's key
    const QStringList both{"bridgeIP", "bridgeUser"};
    const auto row = [](const char* name, const char* commandLine, const QStringList& stored, int exitCode,
                        const char* bridgeLine, const char* request) {
        QTest::newRow(name) << QString::fromLatin1(commandLine) << stored << exitCode << bridgeLine
                            << request;
    };
    row("address and key", "status", both, 0, "answers (3 lights)", "GET /api/{key}/lights");
    row("no key", "status", {"bridgeIP"}, 0, "answers; no key yet", "GET /api/config");
    row("unknown key", "status --key nobody", both, 1, "answers, but sent no lamps",
        "GET /api/nobody/lights");
    row("nobody there", "status --bridge 127.0.0.1:1", both, 1, "does not answer", "");
    row("no address", "status", {}, 1, "no bridge address stored; run glowdeckctl discover", "");
}

void TestGlowdeckCtl::status()
{
    QFETCH(QString, commandLine);
    QFETCH(QStringList, stored);
    QFETCH(int, exitCode);
    QFETCH(QString, bridgeLine);
    QFETCH(QString, request);
    storeSettings(stored);
    const Run result = run(commandLine, false);
    QCOMPARE(result.exitCode, exitCode);
    const QString keyStored = stored.contains(QStringLiteral("bridgeUser")) ? "yes" : "no";
    const QRegularExpression lines(QStringLiteral("\nKey stored: +%1\\b.*\n(.*\n)?Bridge: +%2")
                                       .arg(keyStored, QRegularExpression::escape(bridgeLine)));
    QVERIFY2(result.out.contains(lines), qPrintable(result.out));
    QVERIFY(!(result.out + result.err).contains(m_key)); // whether there is a key, never the key
    QStringList sent;
    for (const auto& r : m_sim->requests())
        sent << QString::fromLatin1(r.method) + u' ' + r.path;
    QCOMPARE(sent, request.isEmpty() ? QStringList() : QStringList{request.replace("{key}", m_key)});
}

QTEST_GUILESS_MAIN(TestGlowdeckCtl)
#include "tst_glowdeckctl.moc"
