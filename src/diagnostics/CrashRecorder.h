#pragma once

#include "state/Console.h"

#include <QString>
#include <QStringList>

#include <functional>

/// Writes a crash report into a folder when the process dies of an uncaught exception or a fatal signal
/// (SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT), so that the next start can send it. A report holds the cause,
/// a backtrace and the last lines printed through printLine, each passed through `redact` before it is kept.
/// Handlers belong to the whole process: while a recorder lives it owns them, and its destruction puts back
/// what was there before.
class CrashRecorder final
{
    Q_DISABLE_COPY_MOVE(CrashRecorder)

public:
    /// Reports go to "<folder>/crash-<unix seconds>-<pid>.txt"; an empty folder means none are written.
    using Redactor = std::function<QString(const QString&)>;

    explicit CrashRecorder(const QString& folder, const QString& version, Redactor redact);
    ~CrashRecorder();

    /// The reports in `folder`, oldest first, as absolute paths.
    static QStringList reports(const QString& folder);
    /// Deletes the oldest reports until at most `kept` are left.
    static void pruneReports(const QString& folder, int kept);

private:
    LineSink m_previousSink;
};
