// How soon a change made by another app reaches the shared state: a glowdeck-simulator process of its own
// serves a large home over HTTPS, the bench changes one lamp's brightness after another through the
// simulator's control request (as the phone app would) and times each until BridgeLink holds the new value.
// Run it once as it is (the bridge pushes its changes over its event stream) and once with
// GLOWDECK_EVENT_STREAM=off (read every 3.5 s); docs/performance.md records the figures.
//
// Usage: bench_events [--simulator PATH] [--lights N] [--changes N]

#include "LargeHome.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeNetwork.h"
#include "connection/BridgeConnection.h"
#include "connection/BridgePairing.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/MemorySettingsStore.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QNetworkReply>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

const QString benchKey = QStringLiteral("benchEventsKey0123456789");

class EventsBench final : public QObject
{
public:
    EventsBench(const QString& https, const QString& http, const QString& bridgeId,
                const QList<QSslCertificate>& roots, int changes)
        : m_settings(m_store), m_pairing(m_settings, m_network), m_queue(m_settings, m_network),
          m_connection(m_settings, m_network, m_pairing, m_queue),
          m_control(QStringLiteral("http://") + http + QStringLiteral("/__control/external/lights/")),
          m_changes(changes)
    {
        m_network.addTrustRoots(roots);
        m_settings.setHueIP(QStringLiteral("https://") + https);
        m_settings.setBridgeContact(QStringLiteral("https"), bridgeId, {});
        m_settings.setHueKey(benchKey);
        m_queue.setLastUserActionAt(QDateTime::currentDateTime().addSecs(-3600));
        connect(&m_settings.home(), &BridgeHome::lightsChanged, this, &EventsBench::onLights);
    }

    void start()
    {
        m_connection.connectToBridge();
        // Settled: the lists read, the stream (if any) open and its fresh read done.
        QTimer::singleShot(5000, this, &EventsBench::next);
    }

    const QList<double>& latencies() const { return m_latencies; }
    bool live() const { return m_settings.home().liveUpdates(); }

private:
    void next()
    {
        const QList<HueLight> lights = m_settings.home().lights();
        if (lights.isEmpty()) {
            std::fprintf(stderr, "bench_events: no lights read: %s\n",
                         qPrintable(m_settings.home().connectionErrorMessage()));
            QCoreApplication::exit(1);
            return;
        }
        if (m_latencies.size() == m_changes) {
            QCoreApplication::quit();
            return;
        }
        const HueLight& light = lights.at(m_latencies.size() % lights.size());
        m_lamp = light.lamp_id;
        m_value = light.brightness == 100 ? 101 : 100;
        m_value += int(m_latencies.size() % 50);
        if (m_value == light.brightness)
            ++m_value;
        QNetworkRequest request(QUrl(m_control + m_lamp + QStringLiteral("/state")));
        request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
        m_clock.start();
        m_waiting = true;
        QNetworkReply* reply =
            m_plain.post(request, QStringLiteral(R"({"on":true,"bri":%1})").arg(m_value).toUtf8());
        connect(reply, &QNetworkReply::finished, reply, &QObject::deleteLater);
    }

    void onLights()
    {
        if (!m_waiting)
            return;
        const QList<HueLight> lights = m_settings.home().lights();
        const auto light = std::find_if(lights.cbegin(), lights.cend(),
                                        [this](const HueLight& l) { return l.lamp_id == m_lamp; });
        if (light == lights.cend() || light->brightness != m_value)
            return;
        m_waiting = false;
        m_latencies.append(double(m_clock.nsecsElapsed()) / 1e6);
        // The next change at any moment of the 3.5 s between two reads, as people make them: changes in step
        // with the reads would all wait nearly the whole interval.
        QTimer::singleShot(250 + int(m_latencies.size() * 1237 % 3500), this, &EventsBench::next);
    }

    MemorySettingsStore m_store;
    BridgeNetwork m_network;
    QNetworkAccessManager m_plain; // the other app's
    BridgeLink m_settings;
    BridgePairing m_pairing;
    ActionQueue m_queue;
    BridgeConnection m_connection;
    const QString m_control;
    const int m_changes;
    QString m_lamp;
    qint64 m_value = 0;
    bool m_waiting = false;
    QElapsedTimer m_clock;
    QList<double> m_latencies;
};

double percentile(QList<double> values, double p)
{
    std::sort(values.begin(), values.end());
    return values.at(std::min<qsizetype>(values.size() - 1, qsizetype(p * double(values.size()))));
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption simulatorOption(QStringLiteral("simulator"),
                                             QStringLiteral("The glowdeck-simulator program."),
                                             QStringLiteral("PATH"), QStringLiteral(GLOWDECK_SIMULATOR_PATH));
    const QCommandLineOption lightsOption(QStringLiteral("lights"), QStringLiteral("Lights of the home."),
                                          QStringLiteral("N"), QStringLiteral("200"));
    const QCommandLineOption changesOption(QStringLiteral("changes"), QStringLiteral("Changes to time."),
                                           QStringLiteral("N"), QStringLiteral("200"));
    parser.addHelpOption();
    parser.addOptions({simulatorOption, lightsOption, changesOption});
    parser.process(app);
    const int lights = parser.value(lightsOption).toInt();
    const int changes = parser.value(changesOption).toInt();
    if (lights < 1 || changes < 1) {
        std::fprintf(stderr, "bench_events: --lights and --changes need positive numbers\n");
        return 2;
    }

    QTemporaryDir dir;
    const QString homeFile = dir.filePath(QStringLiteral("home.json"));
    const QString authorityFile = dir.filePath(QStringLiteral("authority.pem"));
    if (!LargeHome::writeSimulatorHome(homeFile, lights)) {
        std::fprintf(stderr, "bench_events: cannot write %s\n", qPrintable(homeFile));
        return 1;
    }
    QProcess simulator;
    simulator.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    std::unique_ptr<EventsBench> bench;
    QString http;
    QObject::connect(&simulator, &QProcess::readyReadStandardOutput, &app, [&] {
        while (!bench && simulator.canReadLine()) {
            static const QRegularExpression plain(QStringLiteral("listening on (127\\.0\\.0\\.1:\\d+)"));
            static const QRegularExpression tls(
                QStringLiteral("listening for HTTPS on (127\\.0\\.0\\.1:\\d+)(?: \\(bridge (\\w+)\\))?"));
            const QString line = QString::fromUtf8(simulator.readLine());
            if (const QRegularExpressionMatch match = plain.match(line); match.hasMatch())
                http = match.captured(1);
            const QRegularExpressionMatch match = tls.match(line);
            if (!match.hasMatch() || http.isEmpty())
                continue;
            QString problem;
            const QList<QSslCertificate> roots = BridgeNetwork::readRoots(authorityFile, &problem);
            if (!problem.isEmpty()) {
                std::fprintf(stderr, "bench_events: %s\n", qPrintable(problem));
                QCoreApplication::exit(1);
                return;
            }
            bench = std::make_unique<EventsBench>(match.captured(1), http, match.captured(2), roots, changes);
            bench->start();
        }
    });
    simulator.start(parser.value(simulatorOption),
                    {QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--tls-port"),
                     QStringLiteral("0"), QStringLiteral("--write-authority"), authorityFile,
                     QStringLiteral("--user"), benchKey, QStringLiteral("--home"), homeFile});
    const int status = QCoreApplication::exec();
    simulator.terminate();
    simulator.waitForFinished(3000);
    if (status != 0 || !bench || bench->latencies().isEmpty())
        return status == 0 ? 1 : status;
    const QList<double>& all = bench->latencies();
    std::printf(
        "%d lights, %lld changes, %s: latency median %.1f ms, 95th percentile %.1f ms, most %.1f ms\n",
        lights, qlonglong(all.size()), bench->live() ? "event stream" : "reading every 3.5 s",
        percentile(all, 0.5), percentile(all, 0.95), percentile(all, 1.0));
    return 0;
}
