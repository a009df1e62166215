#include "login/LoginItem.h"

#include <QCoreApplication>
#include <QDir>
#include <QSettings>

#include <memory>

namespace {

/// Start at login on Windows: a value named after the application under the user's
/// Software\Microsoft\Windows\CurrentVersion\Run key, holding the quoted path of the program.
class RunKeyLoginItem final : public LoginItem
{
public:
    RunKeyLoginItem(QString applicationId, std::unique_ptr<QSettings> runKey, QStringList arguments)
        : m_applicationId(std::move(applicationId)), m_runKey(std::move(runKey)),
          m_arguments(std::move(arguments))
    {}

    bool isEnabled() const override
    {
        m_runKey->sync(); // another program (the Task Manager's start-up tab) may have changed it
        return !m_runKey->value(m_applicationId).toString().isEmpty();
    }

    bool setEnabled(bool enabled) override
    {
        if (enabled) {
            const QString program = QDir::toNativeSeparators(QCoreApplication::applicationFilePath());
            QString command = QStringLiteral("\"%1\"").arg(program);
            for (const QString& argument : m_arguments)
                command += QStringLiteral(" \"%1\"").arg(QDir::toNativeSeparators(argument));
            m_runKey->setValue(m_applicationId, command);
        } else {
            m_runKey->remove(m_applicationId);
        }
        m_runKey->sync();
        return m_runKey->status() == QSettings::NoError;
    }

private:
    QString m_applicationId;
    std::unique_ptr<QSettings> m_runKey;
    QStringList m_arguments;
};

} // namespace

std::unique_ptr<LoginItem> createLoginItem(const QString& applicationId, const QString& folder,
                                           const QStringList& arguments)
{
    auto runKey =
        folder.isEmpty()
            ? std::make_unique<QSettings>(
                  QStringLiteral("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Run"),
                  QSettings::NativeFormat)
            : std::make_unique<QSettings>(QDir(folder).filePath(QStringLiteral("Run.ini")),
                                          QSettings::IniFormat);
    return std::make_unique<RunKeyLoginItem>(applicationId, std::move(runKey), arguments);
}
