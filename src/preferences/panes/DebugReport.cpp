#include "preferences/panes/DebugReport.h"

#include "connection/BridgeProbe.h"
#include "connection/CommandExecuting.h"
#include "diagnostics/Diagnostics.h"
#include "state/ActivityLog.h"
#include "state/BridgeLink.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStandardPaths>
#include <QSysInfo>

DebugReport::DebugReport(BridgeLink& settings, CommandExecuting& commands, QString settingsFile,
                         QUrl endpoint, QObject* parent)
    : QObject(parent), m_settings(settings), m_commands(commands), m_settingsFile(std::move(settingsFile)),
      m_endpoint(std::move(endpoint))
{}

QString DebugReport::folder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/glowdeck");
}

QString DebugReport::reportPath()
{
    return folder() + QStringLiteral("/debug-report.txt");
}

QString DebugReport::inputPath()
{
    return folder() + QStringLiteral("/debug-report-input.json");
}

void DebugReport::send()
{
    if (m_running)
        return;
    // The script runs as "/usr/bin/env ruby", which looks Ruby up on the PATH the same way.
    if (QStandardPaths::findExecutable(QStringLiteral("ruby")).isEmpty()) {
        m_settings.activity().addLogLine(
            QStringLiteral("Glowdeck: no debug report: it needs Ruby (the \"ruby\" program), "
                           "which is not installed."));
        Q_EMIT finished(false);
        return;
    }
    m_running = true;
    const std::optional<BridgeAddress> address = BridgeAddress::parse(m_settings.hueIP());
    if (!m_network || !address)
        return runScript(address ? QStringLiteral("not checked") : QStringLiteral("no usable address"));
    // The same check as every connection makes: no plain request to a bridge that offers HTTPS.
    const ProbeKnowledge known{m_settings.bridgeTransport(), m_settings.bridgeIdentity(), false};
    probeBridge(*m_network, *address, known, this, [this](const ProbeResult& result) {
        if (!result.contact)
            return runScript(result.problem);
        const ProbedBridge& contact = *result.contact;
        runScript(
            QStringLiteral("answers as bridge %1 (\"%2\"), over %3")
                .arg(contact.bridgeId, contact.name, describeTransport(contact.transport, contact.signer)));
    });
}

void DebugReport::runScript(const QString& bridgeCheck)
{
    if (!writeInput(bridgeCheck)) {
        m_running = false;
        m_settings.activity().addLogLine(QStringLiteral("Glowdeck: no debug report: cannot write to ") +
                                         folder());
        Q_EMIT finished(false);
        return;
    }
    m_commands.runScript(QStringLiteral("send_debug"), {}, [this](const std::optional<QString>& output) {
        m_running = false;
        QFile::remove(inputPath());
        if (!output)
            m_settings.activity().addLogLine(
                QStringLiteral("Glowdeck: the debug report script did not run."));
        for (const QString& line : output.value_or(QString()).split(u'\n', Qt::SkipEmptyParts))
            m_settings.activity().addLogLine(line);
        Q_EMIT finished(QFileInfo::exists(reportPath()));
    });
}

bool DebugReport::writeInput(const QString& bridgeCheck) const
{
    // Reports are switched off as a whole by the user's "sendErrorReports": false.
    const bool mayPost = m_settings.preferences().sendsErrorReports();
    const QJsonObject input{
        {"version", QCoreApplication::applicationVersion()},
        {"qt", QString::fromLatin1(qVersion())},
        {"os", QSysInfo::prettyProductName()},
        {"settingsFile", m_settingsFile},
        {"bridgeAddress", m_settings.hueIP()},
        {"bridgeCheck", bridgeCheck},
        // The key in use may not be stored yet (just paired): the script hides both.
        {"keys", QJsonArray{m_settings.hueKey()}},
        {"log", QJsonArray::fromStringList(m_settings.activity().log())},
        {"endpoint", mayPost && m_endpoint.isValid() ? m_endpoint.toString() : QString()},
        {"accessToken", Diagnostics::accessToken},
        {"reportFile", reportPath()},
    };
    if (!QDir().mkpath(folder()))
        return false;
    QSaveFile file(inputPath());
    // It holds the key until the script has read it: the owner's eyes only.
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    const QByteArray bytes = QJsonDocument(input).toJson(QJsonDocument::Compact);
    // A failed buffered write is seen by flush(), not by commit(), which would leave an empty file.
    return file.write(bytes) == bytes.size() && file.flush() && file.commit();
}
