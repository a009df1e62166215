#include "diagnostics/Diagnostics.h"

#include "bridge/HttpExchange.h"
#include "diagnostics/CrashRecorder.h"
#include "state/Console.h"
#include "state/SettingsStore.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QPointer>
#include <QSysInfo>
#include <QUuid>

#include <chrono>

namespace {

constexpr std::chrono::seconds sendTimeout{10};
// Reports wait for the user to switch sending on, or for the collector to come back; a program that keeps
// crashing must not fill the disk meanwhile.
constexpr int keptReports = 10;
// Our own reports are a few kilobytes; anything far bigger was not written by us.
constexpr qint64 maxReportBytes = 256 * 1024;

QString appVersion()
{
    const QString version = QCoreApplication::applicationVersion();
    return version.isEmpty() ? QStringLiteral(GLOWDECK_VERSION) : version;
}

QJsonObject rollbarItem(const QString& level, const QJsonObject& body)
{
    const QString version = appVersion();
    const QJsonObject data{
        {"environment", "production"},
        {"level", level},
        {"timestamp", QDateTime::currentSecsSinceEpoch()},
        {"platform", QSysInfo::kernelType()},
        {"language", "c++"},
        {"framework", "qt"},
        {"code_version", version},
        {"notifier", QJsonObject{{"name", "glowdeck"}, {"version", version}}},
        {"client",
         QJsonObject{{"os", QSysInfo::prettyProductName()}, {"cpu", QSysInfo::currentCpuArchitecture()}}},
        {"uuid", QUuid::createUuid().toString(QUuid::WithoutBraces)},
        {"body", body},
    };
    return QJsonObject{{"access_token", Diagnostics::accessToken}, {"data", data}};
}

} // namespace

Diagnostics::Diagnostics(QNetworkAccessManager& network, SettingsStore& store, QUrl endpoint,
                         QString crashFolder, QObject* parent)
    : QObject(parent), m_network(network), m_store(store), m_endpoint(std::move(endpoint)),
      m_crashFolder(std::move(crashFolder))
{}

Diagnostics::~Diagnostics() = default;

void Diagnostics::start()
{
    if (m_recorder)
        return;
    if (!m_crashFolder.isEmpty())
        QDir().mkpath(m_crashFolder);
    m_recorder = std::make_unique<CrashRecorder>(m_crashFolder, appVersion());
    CrashRecorder::pruneReports(m_crashFolder, keptReports);
    sendCrashReports();
    reportInfo(QStringLiteral("Glowdeck booted"));
}

bool Diagnostics::isEnabled() const
{
    const bool validEndpoint = m_endpoint.isValid() && !m_endpoint.host().isEmpty() &&
                               (m_endpoint.scheme() == "https" || m_endpoint.scheme() == "http");
    return validEndpoint && (!m_store.contains(sendReportsKey) || m_store.readBool(sendReportsKey));
}

void Diagnostics::reportInfo(const QString& message)
{
    sendItem(QStringLiteral("info"), QJsonObject{{"message", QJsonObject{{"body", message}}}});
}

void Diagnostics::reportUncaughtException(const QString& what)
{
    printLine(QStringLiteral("[ATTENTION] Uncaught exception ") + what);
    const QJsonObject exception{{"class", "UncaughtException"}, {"message", what}};
    sendItem(QStringLiteral("debug"),
             QJsonObject{{"trace", QJsonObject{{"frames", QJsonArray()}, {"exception", exception}}}});
}

void Diagnostics::sendCrashReports()
{
    if (!isEnabled())
        return;
    for (const QString& path : CrashRecorder::reports(m_crashFolder)) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QString raw = QString::fromUtf8(file.read(maxReportBytes));
        file.close();
        // Sent once the collector has it, whatever it answered; without any answer it waits for the next
        // start.
        sendItem(QStringLiteral("critical"), QJsonObject{{"crash_report", QJsonObject{{"raw", raw}}}},
                 [path](bool answered) {
                     if (answered)
                         QFile::remove(path);
                 });
    }
}

void Diagnostics::sendItem(const QString& level, const QJsonObject& body, std::function<void(bool)> done)
{
    if (!isEnabled())
        return;
    QNetworkRequest request(m_endpoint);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    request.setRawHeader("X-Rollbar-Access-Token", accessToken.toLatin1());
    const QByteArray json = QJsonDocument(rollbarItem(level, body)).toJson(QJsonDocument::Compact);
    sendHttpRequest(m_network, request, "POST", json, sendTimeout,
                    [self = QPointer<Diagnostics>(this), done = std::move(done)](const HttpResult& result) {
                        if (done)
                            done(!result.transportFailed);
                        if (self)
                            Q_EMIT self->itemSent();
                    });
}
