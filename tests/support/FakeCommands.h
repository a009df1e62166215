#pragma once

#include "connection/CommandExecuting.h"

#include <QList>
#include <QMetaObject>
#include <QObject>
#include <QPair>
#include <QStringList>

#include <optional>

/// Stands in for the shell: an ARP table to hand out (none: `arp` is not installed) and a record of every
/// call. Answers later, as the real runner does.
class FakeCommands final : public QObject, public CommandExecuting
{
public:
    std::optional<QString> arpTable;
    QStringList resolved;                    ///< the commands looked for
    QList<QPair<QString, QStringList>> runs; ///< program and arguments
    QStringList scriptsRun;                  ///< "name|arguments"

    void resolveCommandPath(const QString& name, std::function<void(PathResult)> done) override
    {
        resolved << name;
        later([this, name, done] {
            arpTable ? done(QStringLiteral("/usr/sbin/arp"))
                     : done(BashError{BashError::Kind::commandNotFound, name});
        });
    }
    void runCommand(const QString& program, const QStringList& arguments,
                    std::function<void(QString)> done) override
    {
        runs.append({program, arguments});
        later([this, done] { done(arpTable.value_or(QString())); });
    }
    void runScript(const QString& name, const QStringList& arguments,
                   std::function<void(std::optional<QString>)> done) override
    {
        scriptsRun << name + u'|' + arguments.join(u' ');
        later([done] { done(QStringLiteral("Debug report written to nowhere")); });
    }

private:
    void later(std::function<void()> call) { QMetaObject::invokeMethod(this, call, Qt::QueuedConnection); }
};
