#include "diagnostics/Diagnostics.h"

#include "bridge/HttpExchange.h"
#include "diagnostics/CrashRecorder.h"
#include "state/Console.h"
#include "state/Redaction.h"

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

constexpr HttpTimeouts sendTimeouts{std::chrono::seconds(10), std::chrono::seconds(15)};
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

/// Every text inside `value`, keys included, passed through `redact`.
QJsonValue redactedJson(const QJsonValue& value, const std::function<QString(const QString&)>& redact)
{
    if (value.isString())
        return redact(value.toString());
    if (value.isArray()) {
        QJsonArray array;
        for (const QJsonValue element : value.toArray())
            array.append(redactedJson(element, redact));
        return array;
    }
    if (value.isObject()) {
        QJsonObject object;
        const QJsonObject original = value.toObject();
        for (auto it = original.begin(); it != original.end(); ++it)
            object.insert(redact(it.key()), redactedJson(it.value(), redact));
        return object;
    }
    return value;
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
    : QObject(parent), m_network(network), m_preferences(store), m_endpoint(std::move(endpoint)),
      m_crashFolder(std::move(crashFolder))
{}

Diagnostics::~Diagnostics() = default;

void Diagnostics::start()
{
    if (m_recorder)
        return;
    if (!m_crashFolder.isEmpty())
        QDir().mkpath(m_crashFolder);
    m_recorder = std::make_unique<CrashRecorder>(m_crashFolder, appVersion(),
                                                 [this](const QString& line) { return redact(line); });
    CrashRecorder::pruneReports(m_crashFolder, keptReports);
    sendCrashReports();
    reportInfo(QStringLiteral("Glowdeck booted"));
}

bool Diagnostics::isEnabled() const
{
    const bool validEndpoint = m_endpoint.isValid() && !m_endpoint.host().isEmpty() &&
                               (m_endpoint.scheme() == "https" || m_endpoint.scheme() == "http");
    return validEndpoint && m_preferences.sendsErrorReports();
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

QString Diagnostics::redact(const QString& text) const
{
    // Every stored bridge's key; the keys' shape in request paths is cleaned whether or not any is stored.
    const QList<BridgeContact> bridges = m_preferences.bridges();
    QString clean = redacted(text, bridges.isEmpty() ? QString() : bridges.constFirst().key);
    for (qsizetype i = 1; i < bridges.size(); ++i)
        clean = redacted(clean, bridges.at(i).key);
    return clean;
}

void Diagnostics::sendItem(const QString& level, const QJsonObject& body, std::function<void(bool)> done)
{
    if (!isEnabled())
        return;
    // Whatever an item carries (an exception's text, the lines a crash report kept, a report written by an
    // older version), the key does not leave the machine.
    const QJsonObject item = redactedJson(rollbarItem(level, body), [this](const QString& text) {
                                 return redact(text);
                             }).toObject();
    QNetworkRequest request(m_endpoint);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    request.setRawHeader("X-Rollbar-Access-Token", accessToken.toLatin1());
    const QByteArray json = QJsonDocument(item).toJson(QJsonDocument::Compact);
    sendHttpRequest(m_network, request, "POST", json, sendTimeouts,
                    [self = QPointer<Diagnostics>(this), done = std::move(done)](const HttpResult& result) {
                        if (done)
                            done(!result.transportFailed);
                        if (self)
                            Q_EMIT self->itemSent();
                    });
}
