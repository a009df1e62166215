#pragma once

#include <QObject>
#include <QString>
#include <QUrl>

class BridgeLink;
class QNetworkAccessManager;
class CommandExecuting;

/// The "send_debug" diagnostic action: runs the shipped script send_debug.rb through the shell runner, which
/// writes a report the user can read (versions, the settings and the last log lines with the bridge key
/// replaced by "[redacted]", whether the bridge answers) into the cache folder and posts it to the
/// error-collection endpoint when one is configured. The script learns what it needs from a file this action
/// writes beside the report just before it runs, and deletes.
class DebugReport final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DebugReport)

public:
    /// `endpoint` empty (tests, the demo) means the report is only written, never posted.
    DebugReport(BridgeLink& settings, CommandExecuting& commands, QString settingsFile, QUrl endpoint,
                QObject* parent = nullptr);

    /// "glowdeck" in the user's cache folder ($XDG_CACHE_HOME, else ~/.cache, on Linux); the script looks for
    /// its input in the same place.
    static QString folder();
    /// The report the script writes: "debug-report.txt" in folder().
    static QString reportPath();
    static QString inputPath();

    bool isRunning() const { return m_running; }
    /// Where the report's check of the bridge goes (with its certificate checked as always); without one the
    /// report says the bridge was not checked.
    void setNetwork(QNetworkAccessManager* network) { m_network = network; }

    /// Runs the script once (a call while it runs is ignored). Without Ruby it logs that and does nothing
    /// else.
    void send();

Q_SIGNALS:
    /// The script ended; `written` tells whether the report file is there.
    void finished(bool written);

private:
    void runScript(const QString& bridgeCheck);
    bool writeInput(const QString& bridgeCheck) const;

    BridgeLink& m_settings;
    CommandExecuting& m_commands;
    QString m_settingsFile;
    QUrl m_endpoint;
    QNetworkAccessManager* m_network = nullptr;
    bool m_running = false;
};
