#include "BridgeSimulator.h"

#include "dbus/BusNames.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

const QByteArray lightsBody = R"({
 "2": {"name": "Desk lamp", "type": "Extended color light", "modelid": "LCT015",
       "productname": "Hue color lamp", "uniqueid": "00:17:88:01:00:aa:bb:02-0b",
       "capabilities": {"control": {"ct": {"min": 153, "max": 500}}},
       "state": {"on": true, "bri": 200, "hue": 8000, "sat": 120, "ct": 300, "xy": [0.4, 0.4],
                 "colormode": "xy", "reachable": true}},
 "1": {"name": "Porch", "type": "Dimmable light", "productname": "Hue white lamp",
       "state": {"on": true, "bri": 254, "reachable": true}}})";

struct Run
{
    int exitCode = -1; ///< -1: did not start, crashed or hung
    QString out;
    QString err;
};

QSet<QString> keysOf(const QJsonObject& object)
{
    const QStringList keys = object.keys();
    return {keys.begin(), keys.end()};
}

} // namespace

/// The real program on a private session bus with a simulated bridge, and the real glowdeckctl beside it:
/// what goes through the program, what goes to the bridge directly, and the one shape of their records.
class TestGlowdeckctlThroughGlowdeck final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void listsAndChangesGoThroughTheRunningGlowdeck();
    void theListsTheEventsAndTheBusShareOneShape();

private:
    Run run(const QStringList& arguments);
    QList<QVariantMap> busLights();
    QString settingsFile() const { return m_dir->filePath(QStringLiteral("settings.json")); }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<BridgeSimulator> m_sim;
    std::unique_ptr<QProcess> m_glowdeck;
    QProcessEnvironment m_environment;
};

void TestGlowdeckctlThroughGlowdeck::initTestCase()
{
    // Never the user's own session bus: the program would take the name of the Glowdeck running there.
    if (qgetenv("GLOWDECK_PRIVATE_SESSION_BUS") != "1")
        QSKIP("needs a private session bus; ctest runs this test under dbus-run-session");
    qDBusRegisterMetaType<QList<QVariantMap>>();
}

void TestGlowdeckctlThroughGlowdeck::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_sim = std::make_unique<BridgeSimulator>();
    QVERIFY(m_sim->listen(QHostAddress::LocalHost, 0));
    QVERIFY(m_sim->listenTls());
    const QString key = m_sim->addUser();
    m_sim->setRawResource(QStringLiteral("lights"), lightsBody);
    const QJsonObject settings{
        {"hasSeenWelcomeScreen", true},
        {"bridges", QJsonArray{QJsonObject{{"id", m_sim->bridgeId()},
                                           {"address", QStringLiteral("http://") + m_sim->hostAndPort()},
                                           {"key", key},
                                           {"transport", "http"},
                                           {"certificate", ""},
                                           {"name", "Ground floor"}}}}};
    QFile file(settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(settings).toJson()));
    file.close();
    QFile::setPermissions(settingsFile(), QFile::ReadOwner | QFile::WriteOwner);

    m_environment = QProcessEnvironment::systemEnvironment();
    // Sockets, crash reports and the rest of a run's files stay in the test's folder.
    for (const char* name : {"XDG_RUNTIME_DIR", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        m_environment.insert(QString::fromLatin1(name), m_dir->path());
    m_environment.insert(QStringLiteral("GLOWDECK_SETTINGS"), settingsFile());
    m_glowdeck = std::make_unique<QProcess>();
    m_glowdeck->setProcessEnvironment(m_environment);
    m_glowdeck->start(QStringLiteral(GLOWDECK_PROGRAM), {QStringLiteral("--settings"), settingsFile()});
    // Up once it is on the bus and has read the bridge.
    QTRY_VERIFY_WITH_TIMEOUT(busLights().size() == 2, 20000);
}

void TestGlowdeckctlThroughGlowdeck::cleanup()
{
    if (m_glowdeck) {
        m_glowdeck->terminate();
        if (!QTest::qWaitFor([this] { return m_glowdeck->state() == QProcess::NotRunning; }, 5000))
            m_glowdeck->kill();
        m_glowdeck->waitForFinished();
    }
    m_glowdeck.reset();
    m_sim.reset();
    m_dir.reset();
}

QList<QVariantMap> TestGlowdeckctlThroughGlowdeck::busLights()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.interface()->isServiceRegistered(BusNames::service))
        return {};
    QDBusPendingCall pending = bus.asyncCall(QDBusMessage::createMethodCall(
        BusNames::service, BusNames::path, BusNames::interface, QStringLiteral("ListLights")));
    // The simulator answers the program on this thread: wait with the event loop running.
    QTest::qWaitFor([&] { return pending.isFinished(); }, 5000);
    if (pending.isError() || pending.reply().arguments().isEmpty())
        return {};
    return qdbus_cast<QList<QVariantMap>>(pending.reply().arguments().constFirst());
}

Run TestGlowdeckctlThroughGlowdeck::run(const QStringList& arguments)
{
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.start(QStringLiteral(GLOWDECKCTL_PATH), arguments);
    if (!QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 20000)) {
        process.kill();
        process.waitForFinished();
        return {};
    }
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

void TestGlowdeckctlThroughGlowdeck::listsAndChangesGoThroughTheRunningGlowdeck()
{
    const Run status = run({QStringLiteral("status"), QStringLiteral("--json")});
    QCOMPARE(QJsonDocument::fromJson(status.out.toUtf8())["glowdeck_running"].toBool(), true);

    // All off: one request to the whole home, from the program's queue.
    const int before = int(m_sim->requests().size());
    QCOMPARE(run({QStringLiteral("all-off")}).exitCode, 0);
    for (const QVariantMap& light : busLights())
        QCOMPARE(light.value(u"is_on"_qs), QVariant(false));
    QTRY_VERIFY_WITH_TIMEOUT(
        [&] {
            const QList<SimulatedRequest> requests = m_sim->requests().mid(before);
            return std::any_of(requests.begin(), requests.end(),
                               [](const SimulatedRequest& r) { return r.path.endsWith("/groups/0/action"); });
        }(),
        10000);
    int changes = 0;
    for (const SimulatedRequest& request : m_sim->requests().mid(before))
        changes += request.method != "GET";
    QCOMPARE(changes, 1);

    // The bridge stops answering: the program's live state still lists the lamps, and takes the change into
    // its queue, showing it at once; only --direct asks the bridge, and fails.
    m_sim->setFault(BridgeSimulator::Fault::HttpError);
    const Run lights = run({QStringLiteral("lights")});
    QCOMPARE(lights.exitCode, 0);
    QVERIFY2(lights.out.contains(QStringLiteral("Porch")), qPrintable(lights.out + lights.err));
    QCOMPARE(run({QStringLiteral("lights"), QStringLiteral("--direct")}).exitCode, 1);

    const Run change = run({QStringLiteral("light"), QStringLiteral("porch"), QStringLiteral("brightness"),
                            QStringLiteral("50%")});
    QCOMPARE(change.exitCode, 0);
    const QList<QVariantMap> after = busLights();
    QCOMPARE(after.at(1).value(u"lamp_id"_qs).toString(), u"1"_qs);
    QCOMPARE(after.at(1).value(u"brightness"_qs).toLongLong(), 127);

    // A name several lamps answer to is refused by the program's lookup as by the direct one.
    m_sim->setFault(BridgeSimulator::Fault::None);
    const Run missing = run({QStringLiteral("scene"), QStringLiteral("nowhere")});
    QCOMPARE(missing.exitCode, 1);
    QVERIFY2(missing.err.contains(QStringLiteral("No scene with the id or name nowhere")),
             qPrintable(missing.err));
}

void TestGlowdeckctlThroughGlowdeck::theListsTheEventsAndTheBusShareOneShape()
{
    const Run direct = run({QStringLiteral("lights"), QStringLiteral("--json"), QStringLiteral("--direct")});
    const Run through = run({QStringLiteral("lights"), QStringLiteral("--json")});
    QCOMPARE(direct.exitCode, 0);
    QCOMPARE(through.out, direct.out);
    const QJsonArray records = QJsonDocument::fromJson(direct.out.toUtf8()).array();
    QCOMPARE(records.size(), 2);
    const QSet<QString> fields = keysOf(records.first().toObject());
    QVERIFY(fields.contains(u"lamp_id"_qs) && fields.contains(u"bridge_id"_qs));
    for (const QVariantMap& light : busLights()) {
        const QStringList keys = light.keys();
        QCOMPARE(QSet<QString>(keys.begin(), keys.end()), fields);
    }

    // An event names only what changed, with the names of the records.
    const QString authority = m_dir->filePath(QStringLiteral("authority.pem"));
    QVERIFY(m_sim->writeAuthority(authority));
    QProcess watch;
    watch.setProcessEnvironment(m_environment);
    watch.start(QStringLiteral(GLOWDECKCTL_PATH),
                {QStringLiteral("watch"), QStringLiteral("--json"), QStringLiteral("--bridge"),
                 m_sim->httpsAddress(), QStringLiteral("--key"), m_sim->users().constFirst(),
                 QStringLiteral("--trust-root"), authority});
    QByteArray said;
    QTRY_VERIFY2_WITH_TIMEOUT((said += watch.readAllStandardError()).contains("watching"), said.constData(),
                              20000);
    QNetworkAccessManager network;
    QNetworkRequest request(
        QUrl(m_sim->httpAddress() + QStringLiteral("/__control/external/lights/2/state")));
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    const std::unique_ptr<QNetworkReply> change(
        network.post(request, QByteArrayLiteral(R"({"bri":90,"xy":[0.3,0.3],"ct":250})")));
    QTRY_VERIFY_WITH_TIMEOUT(watch.canReadLine(), 20000);
    const QJsonObject event = QJsonDocument::fromJson(watch.readLine()).object();
    watch.kill();
    watch.waitForFinished();
    QCOMPARE(event.value(u"lamp_id"_qs).toString(), u"2"_qs);
    QVERIFY(event.contains(u"brightness"_qs) && event.contains(u"xy_x"_qs));
    for (const QString& key : event.keys())
        QVERIFY2(key == u"type" || fields.contains(key), qPrintable(key));
}

QTEST_GUILESS_MAIN(TestGlowdeckctlThroughGlowdeck)
#include "tst_glowdeckctlthroughglowdeck.moc"
