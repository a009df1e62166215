#include "login/LoginItem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

/// Start at login on macOS: a launch agent in ~/Library/LaunchAgents that opens the application by its
/// bundle identifier once at login, the job a login helper inside the bundle would otherwise do. Enabled
/// while the agent's file exists and does not say Disabled.
class LaunchAgentLoginItem final : public LoginItem
{
public:
    LaunchAgentLoginItem(QString applicationId, QString folder, QStringList arguments)
        : m_applicationId(std::move(applicationId)), m_folder(std::move(folder)),
          m_arguments(std::move(arguments))
    {}

    bool isEnabled() const override
    {
        QFile file(agentPath());
        if (!file.open(QIODevice::ReadOnly) || file.size() > 64 * 1024)
            return false;
        QByteArray text = file.readAll();
        text.replace(' ', "").replace('\n', "").replace('\t', "");
        return !text.contains("<key>Disabled</key><true/>");
    }

    bool setEnabled(bool enabled) override
    {
        if (!enabled)
            return !QFileInfo::exists(agentPath()) || QFile::remove(agentPath());
        if (!QDir().mkpath(m_folder))
            return false;
        QSaveFile file(agentPath());
        if (!file.open(QIODevice::WriteOnly))
            return false;
        file.write(QStringLiteral(R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
    <key>Label</key>
    <string>%1</string>
    <key>ProgramArguments</key>
    <array>
        <string>/usr/bin/open</string>
        <string>-b</string>
        <string>%2</string>%3
    </array>
    <key>RunAtLoad</key>
    <true/>
    <key>ProcessType</key>
    <string>Interactive</string>
</dict>
</plist>
)")
                       .arg(label().toHtmlEscaped(), m_applicationId.toHtmlEscaped(), openArguments())
                       .toUtf8());
        // A failed buffered write is seen by flush(), not by commit(), which would install an empty agent.
        return file.flush() && file.error() == QFileDevice::NoError && file.commit();
    }

private:
    /// "--args" and the program's own arguments, as `open` passes them on; nothing without arguments.
    QString openArguments() const
    {
        if (m_arguments.isEmpty())
            return {};
        QString xml = QStringLiteral("\n        <string>--args</string>");
        for (const QString& argument : m_arguments)
            xml += QStringLiteral("\n        <string>%1</string>").arg(argument.toHtmlEscaped());
        return xml;
    }

    /// The identifier a login helper of the application would have.
    QString label() const { return m_applicationId + QStringLiteral("-StartAtLoginHelper"); }
    QString agentPath() const { return QDir(m_folder).filePath(label() + QStringLiteral(".plist")); }

    QString m_applicationId;
    QString m_folder;
    QStringList m_arguments;
};

} // namespace

std::unique_ptr<LoginItem> createLoginItem(const QString& applicationId, const QString& folder,
                                           const QStringList& arguments)
{
    return std::make_unique<LaunchAgentLoginItem>(
        applicationId, folder.isEmpty() ? QDir::homePath() + QStringLiteral("/Library/LaunchAgents") : folder,
        arguments);
}
