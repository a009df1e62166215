#pragma once

#include "connection/CommandExecuting.h"

#include <QObject>

/// The real runner, on QProcess. Children that run for longer than `timeout` are killed and count as having
/// printed nothing, so a hanging shell profile cannot stall discovery.
class ShellRunner final : public QObject, public CommandExecuting
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ShellRunner)

public:
    /// `scriptFolder` holds the "<name>.rb" scripts of runScript; empty means the shipped ones, found as
    /// dataFilePath("scripts/<name>.rb").
    explicit ShellRunner(QString scriptFolder = QString(), QObject* parent = nullptr);

    void resolveCommandPath(const QString& name, std::function<void(PathResult)> done) override;
    void runCommand(const QString& path, const QStringList& arguments,
                    std::function<void(QString)> done) override;
    void runScript(const QString& name, const QStringList& arguments,
                   std::function<void(std::optional<QString>)> done) override;

    static constexpr int timeoutMilliseconds = 20000;

private:
    /// Starts a child and calls `done` with its output, or nothing when it could not start or timed out.
    void start(const QString& program, const QStringList& arguments,
               std::function<void(std::optional<QByteArray>)> done);

    QString m_scriptFolder;
};
