// The CPU one refresh tick costs the program: BridgeConnection::refreshTick() against a glowdeck-simulator
// process of its own (so the bridge's work is not counted), waiting for both the light and the room answer
// before the next tick. Prints one line per home; docs/performance.md records the figures.
//
// Usage: bench_refresh [--simulator PATH] [--ticks N] [--lights N] [--memory-store] [--https]
//                     [--interval MS]
//        bench_refresh --lights N --save-home FILE
//   --lights 0 (the default) uses the simulator's default home; a positive count generates a large home.
//   --save-home writes that large home as a simulator home file and does nothing else.
//   --https reads over HTTPS as from a current bridge, its certificate checked, instead of plain HTTP.
//   --interval pauses between ticks as the program does (3500), so each tick starts with cold caches.

#include "LargeHome.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeNetwork.h"
#include "bridge/ResourceFetch.h"
#include "connection/BridgeConnection.h"
#include "connection/BridgePairing.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/JsonSettingsStore.h"
#include "state/MemorySettingsStore.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTimer>

#include <sys/resource.h>

#include <cstdio>
#include <memory>

namespace {

const QString benchKey = QStringLiteral("benchrefreshkey0123456789");
constexpr int warmUpTicks = 5;

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) { return double(t.tv_sec) + double(t.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Runs the ticks one after another once the simulator says where it listens.
class RefreshBench final : public QObject
{
public:
    RefreshBench(const QString& address, const QString& bridgeId, int ticks, const QString& settingsFile,
                 const QList<QSslCertificate>& trustRoots, int intervalMs)
        // Without a file: what a tick costs without the settings file's writes.
        : m_network(std::make_unique<BridgeNetwork>()),
          m_store(settingsFile.isEmpty()
                      ? std::unique_ptr<SettingsStore>(std::make_unique<MemorySettingsStore>())
                      : std::make_unique<JsonSettingsStore>(settingsFile)),
          m_settings(*m_store), m_pairing(m_settings, *m_network), m_queue(m_settings, *m_network),
          m_connection(m_settings, *m_network, m_pairing, m_queue), m_ticks(ticks), m_intervalMs(intervalMs)
    {
        m_network->addTrustRoots(trustRoots);
        m_settings.setHueIP(address);
        m_settings.setHueKey(benchKey);
        if (!bridgeId.isEmpty())
            m_settings.setBridgeContact(QStringLiteral("https"), bridgeId, {});
        // Minute 1 of the hour: no scene read; the last user action long past: no tick is skipped.
        const QDateTime now(QDate(2026, 1, 5), QTime(12, 1));
        m_connection.setClock([now] { return now; });
        m_queue.setLastUserActionAt(now.addSecs(-3600));
        connect(&m_connection, &BridgeConnection::lightsRefreshed, this, &RefreshBench::onLights);
        connect(&m_connection, &BridgeConnection::groupsRefreshed, this, &RefreshBench::onGroups);
        // A bridge that is never read (refused, or not reached) ends the run instead of hanging it.
        m_watchdog.setSingleShot(true);
        m_watchdog.setInterval(10000);
        connect(&m_watchdog, &QTimer::timeout, this, [this] {
            std::fprintf(stderr, "bench_refresh: no answer within 10 s: %s\n",
                         qPrintable(m_settings.home().connectionErrorMessage()));
            m_failed = true;
            QCoreApplication::exit(1);
        });
    }

    void start() { tick(); }

    bool failed() const { return m_failed; }
    int lightCount() const { return int(m_settings.home().lights().size()); }
    int groupCount() const { return int(m_settings.home().groups().size()); }
    double cpuPerTick() const { return m_cpu / m_ticks; }
    double wallPerTick() const { return double(m_wall) / m_ticks; }

private:
    void tick()
    {
        m_lightsDone = m_groupsDone = false;
        m_watchdog.start();
        m_connection.refreshTick();
    }

    void onLights(const LightsResult& result)
    {
        m_failed = m_failed || !result.ok();
        m_lightsDone = true;
        onAnswer();
    }

    void onGroups(const GroupsResult& result)
    {
        m_failed = m_failed || !result.ok();
        m_groupsDone = true;
        onAnswer();
    }

    void onAnswer()
    {
        if (!m_lightsDone || !m_groupsDone)
            return;
        m_watchdog.stop();
        ++m_done;
        if (m_done == warmUpTicks) {
            m_cpuStart = cpuSeconds();
            m_clock.start();
        } else if (m_done == warmUpTicks + m_ticks) {
            m_cpu = cpuSeconds() - m_cpuStart;
            m_wall = m_clock.elapsed();
            QCoreApplication::quit();
            return;
        }
        if (m_failed) {
            QCoreApplication::exit(1);
            return;
        }
        // The next tick from the event loop, as the timer would run it, not from inside a reply's signal.
        QTimer::singleShot(m_intervalMs, this, &RefreshBench::tick);
    }

    std::unique_ptr<BridgeNetwork> m_network;
    std::unique_ptr<SettingsStore> m_store;
    BridgeLink m_settings;
    BridgePairing m_pairing;
    ActionQueue m_queue;
    BridgeConnection m_connection;
    const int m_ticks;
    const int m_intervalMs;
    int m_done = 0;
    bool m_lightsDone = false;
    bool m_groupsDone = false;
    bool m_failed = false;
    double m_cpuStart = 0;
    double m_cpu = 0;
    qint64 m_wall = 0;
    QElapsedTimer m_clock;
    QTimer m_watchdog;
};

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption simulatorOption(QStringLiteral("simulator"),
                                             QStringLiteral("The glowdeck-simulator program."),
                                             QStringLiteral("PATH"), QStringLiteral(GLOWDECK_SIMULATOR_PATH));
    const QCommandLineOption ticksOption(QStringLiteral("ticks"), QStringLiteral("Ticks to measure."),
                                         QStringLiteral("N"), QStringLiteral("200"));
    const QCommandLineOption lightsOption(QStringLiteral("lights"),
                                          QStringLiteral("Lights of a generated home (0: the default home)."),
                                          QStringLiteral("N"), QStringLiteral("0"));
    parser.addHelpOption();
    const QCommandLineOption memoryOption(QStringLiteral("memory-store"),
                                          QStringLiteral("Keep the settings in memory instead of a file."));
    const QCommandLineOption saveOption(QStringLiteral("save-home"),
                                        QStringLiteral("Write the large home for the simulator and stop."),
                                        QStringLiteral("FILE"));
    const QCommandLineOption httpsOption(QStringLiteral("https"),
                                         QStringLiteral("Read over HTTPS, the certificate checked."));
    const QCommandLineOption intervalOption(
        QStringLiteral("interval"),
        QStringLiteral("Pause between ticks, as the program's timer makes (0: none)."), QStringLiteral("MS"),
        QStringLiteral("0"));
    parser.addOptions(
        {simulatorOption, ticksOption, lightsOption, memoryOption, saveOption, httpsOption, intervalOption});
    parser.process(app);
    const int ticks = parser.value(ticksOption).toInt();
    const int lights = parser.value(lightsOption).toInt();
    if (parser.isSet(saveOption)) {
        if (lights > 0 && LargeHome::writeSimulatorHome(parser.value(saveOption), lights))
            return 0;
        std::fprintf(stderr, "bench_refresh: --save-home needs --lights N and a writable file\n");
        return 1;
    }
    if (ticks < 1 || lights < 0) {
        std::fprintf(stderr, "bench_refresh: --ticks needs a positive number, --lights zero or more\n");
        return 2;
    }

    QTemporaryDir dir;
    QStringList simulatorArguments{QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--user"),
                                   benchKey};
    const bool https = parser.isSet(httpsOption);
    const QString authorityFile = dir.filePath(QStringLiteral("authority.pem"));
    if (https)
        simulatorArguments << QStringLiteral("--no-http") << QStringLiteral("--tls-port")
                           << QStringLiteral("0") << QStringLiteral("--write-authority") << authorityFile;
    if (lights > 0) {
        const QString homeFile = dir.filePath(QStringLiteral("home.json"));
        if (!LargeHome::writeSimulatorHome(homeFile, lights)) {
            std::fprintf(stderr, "bench_refresh: cannot write %s\n", qPrintable(homeFile));
            return 1;
        }
        simulatorArguments << QStringLiteral("--home") << homeFile;
    }

    QProcess simulator;
    simulator.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    std::unique_ptr<RefreshBench> bench;
    QObject::connect(&simulator, &QProcess::readyReadStandardOutput, &app, [&] {
        if (bench || !simulator.canReadLine())
            return;
        static const QRegularExpression listening(
            QStringLiteral("listening (?:for HTTPS )?on (127\\.0\\.0\\.1:\\d+)(?: \\(bridge (\\w+)\\))?"));
        const QRegularExpressionMatch match = listening.match(QString::fromUtf8(simulator.readLine()));
        QString problem;
        const QList<QSslCertificate> roots =
            https ? BridgeNetwork::readRoots(authorityFile, &problem) : QList<QSslCertificate>();
        if (!match.hasMatch() || !problem.isEmpty()) {
            std::fprintf(stderr, "bench_refresh: the simulator does not say where it listens %s\n",
                         qPrintable(problem));
            QCoreApplication::exit(1);
            return;
        }
        const bool inMemory = parser.isSet(memoryOption);
        bench = std::make_unique<RefreshBench>(
            (https ? QStringLiteral("https://") : QString()) + match.captured(1), match.captured(2), ticks,
            inMemory ? QString() : dir.filePath(QStringLiteral("settings.json")), roots,
            parser.value(intervalOption).toInt());
        bench->start();
    });
    QObject::connect(&simulator, &QProcess::errorOccurred, &app, [&](QProcess::ProcessError) {
        std::fprintf(stderr, "bench_refresh: %s\n", qPrintable(simulator.errorString()));
        QCoreApplication::exit(1);
    });
    QObject::connect(&simulator, &QProcess::finished, &app, [&] {
        if (!bench) {
            std::fprintf(stderr, "bench_refresh: the simulator quit before it listened\n");
            QCoreApplication::exit(1);
        }
    });
    simulator.start(parser.value(simulatorOption), simulatorArguments);

    const int code = app.exec();
    simulator.disconnect(&app);
    simulator.terminate();
    simulator.waitForFinished(3000);
    if (code != 0 || !bench || bench->failed()) {
        if (bench)
            std::fprintf(stderr, "bench_refresh: a refresh failed\n");
        return 1;
    }
    std::printf(
        "refresh tick, %d lights, %d rooms, settings %s, %s: %.1f us CPU per tick, %.2f ms wall per tick "
        "(%d ticks)\n",
        bench->lightCount(), bench->groupCount(), parser.isSet(memoryOption) ? "in memory" : "in a file",
        https ? "HTTPS" : "plain HTTP", bench->cpuPerTick() * 1e6, bench->wallPerTick(), ticks);
    return 0;
}
