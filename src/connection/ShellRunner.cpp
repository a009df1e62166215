#include "connection/ShellRunner.h"

#include "state/Console.h"
#include "state/DataFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>

#include <memory>

ShellRunner::ShellRunner(QString scriptFolder, QObject* parent)
    : QObject(parent), m_scriptFolder(std::move(scriptFolder))
{}

void ShellRunner::start(const QString& program, const QStringList& arguments,
                        std::function<void(std::optional<QByteArray>)> done)
{
    auto* process = new QProcess(this);
    // Standard error is not read: a login shell's profile chatter must not end up in the result.
    process->setProcessChannelMode(QProcess::SeparateChannels);
    process->setStandardErrorFile(QProcess::nullDevice());
    // Shared by the exit, start-failure and time-out paths, so that exactly one of them answers.
    auto pending = std::make_shared<std::function<void(std::optional<QByteArray>)>>(std::move(done));
    auto finish = [process, pending](std::optional<QByteArray> output) {
        if (!*pending)
            return;
        auto answer = std::exchange(*pending, nullptr);
        process->deleteLater();
        answer(std::move(output));
    };
    connect(process, &QProcess::finished, this, [process, finish](int, QProcess::ExitStatus status) {
        finish(status == QProcess::NormalExit ? std::optional(process->readAllStandardOutput())
                                              : std::nullopt);
    });
    connect(process, &QProcess::errorOccurred, this, [finish](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finish(std::nullopt);
    });
    QTimer::singleShot(timeoutMilliseconds, process, [process, finish] {
        process->kill();
        finish(std::nullopt);
    });
    process->start(program, arguments, QIODevice::ReadOnly);
}

void ShellRunner::resolveCommandPath(const QString& name, std::function<void(PathResult)> done)
{
    // A login shell sees the user's PATH as a terminal does, which a desktop session may not.
    start(QStringLiteral("/bin/bash"),
          {QStringLiteral("-l"), QStringLiteral("-c"), QStringLiteral("which ") + name},
          [name, done = std::move(done)](std::optional<QByteArray> output) {
              const QString path = output ? QString::fromUtf8(*output).trimmed() : QString();
              if (path.isEmpty())
                  return done(BashError{BashError::Kind::commandNotFound, name});
              done(path);
          });
}

void ShellRunner::runCommand(const QString& path, const QStringList& arguments,
                             std::function<void(QString)> done)
{
    start(path, arguments, [done = std::move(done)](std::optional<QByteArray> output) {
        done(QString::fromUtf8(output.value_or(QByteArray())));
    });
}

void ShellRunner::runScript(const QString& name, const QStringList& arguments,
                            std::function<void(std::optional<QString>)> done)
{
    const QString rule = QStringLiteral("---------------------------------------");
    printLine(rule);
    printLine(QStringLiteral("-----DEPRECATED USE OF RUN_SCRIPT: ") + name);
    printLine(rule);

    // Shipped scripts live in the data folder, installed or in the source tree (see DataFiles.h).
    const QString fileName = name + QStringLiteral(".rb");
    const QString script = m_scriptFolder.isEmpty() ? dataFilePath(QStringLiteral("scripts/") + fileName)
                                                    : QDir(m_scriptFolder).filePath(fileName);
    if (script.isEmpty() || !QFileInfo(script).isFile()) {
        QMetaObject::invokeMethod(
            this, [done = std::move(done)] { done(std::nullopt); }, Qt::QueuedConnection);
        return;
    }
    start(QStringLiteral("/usr/bin/env"), QStringList{QStringLiteral("ruby"), script} + arguments,
          [done = std::move(done)](std::optional<QByteArray> output) {
              if (!output)
                  return done(std::nullopt);
              // Output that is not UTF-8 is shown with replacement characters rather than refused.
              done(QString::fromUtf8(*output));
          });
}
