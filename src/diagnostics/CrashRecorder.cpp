#include "diagnostics/CrashRecorder.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <exception>
#include <execinfo.h>
#include <fcntl.h>
#include <time.h>
#include <unistd.h>

// Everything a signal handler touches lives here, prepared in advance: in a dying process the heap, locks and
// Qt are off limits, only open/write/close on ready-made bytes are safe.
namespace {

constexpr int keptLines = 50;
constexpr int lineBytes = 256;
constexpr int pathBytes = 4096;
constexpr int fatalSignals[] = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT};
constexpr int fatalSignalCount = int(std::size(fatalSignals));

char recentLines[keptLines][lineBytes];
int recentLengths[keptLines];
volatile sig_atomic_t printedLineCount = 0;

char reportPrefix[pathBytes]; // "<folder>/crash-", empty while reports are off
char versionLine[128];
// Set by the first report: the abort() that ends the terminate handler, or a fault inside a handler, must not
// write a second one.
volatile sig_atomic_t reportWritten = 0;

std::terminate_handler previousTerminate = nullptr;
// Used outside signal handlers only: on printed lines and on the message of an uncaught exception.
CrashRecorder::Redactor redactText;
struct sigaction previousActions[fatalSignalCount];

// A stack overflow leaves no room to run the handler on the thread's own stack.
alignas(16) char alternateStack[64 * 1024];

const QRegularExpression reportName(QStringLiteral("^crash-(\\d+)-(\\d+)\\.txt$"));

size_t textLength(const char* text)
{
    size_t length = 0;
    while (text[length] != '\0')
        ++length;
    return length;
}

void writeBytes(int fd, const char* bytes, size_t length)
{
    while (length > 0) {
        const ssize_t written = ::write(fd, bytes, length);
        if (written <= 0)
            return;
        bytes += written;
        length -= size_t(written);
    }
}

void writeText(int fd, const char* text)
{
    writeBytes(fd, text, textLength(text));
}

/// Appends `text` to `buffer` (holding `used` bytes of `capacity`), always leaving it terminated.
void append(char* buffer, size_t& used, size_t capacity, const char* text)
{
    for (; *text != '\0' && used + 1 < capacity; ++text)
        buffer[used++] = *text;
    buffer[used] = '\0';
}

void appendNumber(char* buffer, size_t& used, size_t capacity, unsigned long long number)
{
    char digits[24];
    int count = 0;
    do {
        digits[count++] = char('0' + number % 10);
        number /= 10;
    } while (number > 0);
    char text[24];
    for (int i = 0; i < count; ++i)
        text[i] = digits[count - 1 - i];
    text[count] = '\0';
    append(buffer, used, capacity, text);
}

const char* signalName(int signo)
{
    switch (signo) {
    case SIGSEGV:
        return "SIGSEGV";
    case SIGBUS:
        return "SIGBUS";
    case SIGILL:
        return "SIGILL";
    case SIGFPE:
        return "SIGFPE";
    case SIGABRT:
        return "SIGABRT";
    }
    return "signal";
}

/// Async-signal-safe apart from backtrace_symbols_fd, which glibc implements without the heap once
/// backtrace() has been called before.
void writeReport(const char* cause)
{
    if (reportWritten || reportPrefix[0] == '\0')
        return;
    reportWritten = 1;

    char path[pathBytes + 64];
    size_t used = 0;
    append(path, used, sizeof path, reportPrefix);
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    appendNumber(path, used, sizeof path, (unsigned long long)now.tv_sec);
    append(path, used, sizeof path, "-");
    appendNumber(path, used, sizeof path, (unsigned long long)getpid());
    append(path, used, sizeof path, ".txt");

    const int fd = ::open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0)
        return;
    writeText(fd, versionLine);
    writeText(fd, cause);
    writeText(fd, "\n\nBacktrace:\n");
    void* frames[64];
    backtrace_symbols_fd(frames, backtrace(frames, 64), fd);
    writeText(fd, "\nLast printed lines:\n");
    const int count = printedLineCount;
    for (int i = std::max(0, count - keptLines); i < count; ++i) {
        writeBytes(fd, recentLines[i % keptLines], size_t(recentLengths[i % keptLines]));
        writeText(fd, "\n");
    }
    ::close(fd);
}

void onFatalSignal(int signo)
{
    char cause[64];
    size_t used = 0;
    append(cause, used, sizeof cause, "Fatal signal ");
    append(cause, used, sizeof cause, signalName(signo));
    append(cause, used, sizeof cause, " (");
    appendNumber(cause, used, sizeof cause, (unsigned long long)signo);
    append(cause, used, sizeof cause, ")");
    writeReport(cause);
    // SA_RESETHAND has put the default action back: the signal, blocked while we run, ends the process as
    // soon as the handler returns, with the status a parent or a core dump expects.
    raise(signo);
}

[[noreturn]] void onTerminate()
{
    QString what = QStringLiteral("unknown");
    if (const std::exception_ptr exception = std::current_exception()) {
        try {
            std::rethrow_exception(exception);
        } catch (const std::exception& error) {
            what = QString::fromUtf8(error.what());
        } catch (...) {
        }
    }
    if (redactText)
        what = redactText(what);
    printLine(QStringLiteral("[ATTENTION] Uncaught exception ") + what);
    writeReport(QStringLiteral("Uncaught exception %1").arg(what).toUtf8().constData());
    std::abort();
}

void rememberLine(const QString& line)
{
    const QByteArray text = line.toUtf8().left(lineBytes);
    const int slot = printedLineCount % keptLines;
    std::memcpy(recentLines[slot], text.constData(), size_t(text.size()));
    recentLengths[slot] = int(text.size());
    printedLineCount = printedLineCount + 1;
}

} // namespace

CrashRecorder::CrashRecorder(const QString& folder, const QString& version, Redactor redact)
{
    redactText = std::move(redact);
    const QByteArray prefix =
        folder.isEmpty() ? QByteArray() : QFile::encodeName(QDir(folder).absoluteFilePath("crash-"));
    // A path too long for the buffer is dropped rather than cut: a cut one would land somewhere else.
    const qsizetype prefixBytes = prefix.size() < pathBytes ? prefix.size() : 0;
    std::memcpy(reportPrefix, prefix.constData(), size_t(prefixBytes));
    reportPrefix[prefixBytes] = '\0';
    const QByteArray versionText = ("Glowdeck " + version.toUtf8()).left(sizeof versionLine - 2) + '\n';
    std::memcpy(versionLine, versionText.constData(), size_t(versionText.size()));
    versionLine[versionText.size()] = '\0';
    reportWritten = 0;

    // The first backtrace() loads libgcc; doing it now keeps dlopen and malloc out of the signal handler.
    void* frames[4];
    backtrace(frames, 4);

    static bool alternateStackSet = false;
    if (!alternateStackSet) {
        stack_t stack{};
        stack.ss_sp = alternateStack;
        stack.ss_size = sizeof alternateStack;
        alternateStackSet = sigaltstack(&stack, nullptr) == 0;
    }

    struct sigaction action
    {};
    action.sa_handler = onFatalSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESETHAND | SA_ONSTACK;
    for (int i = 0; i < fatalSignalCount; ++i)
        sigaction(fatalSignals[i], &action, &previousActions[i]);
    previousTerminate = std::set_terminate(onTerminate);

    // Whoever listened before (a test, the shared log) keeps hearing every line.
    m_previousSink = setLineSink({});
    setLineSink([previous = m_previousSink](const QString& line) {
        rememberLine(redactText ? redactText(line) : line);
        if (previous)
            previous(line);
    });
}

CrashRecorder::~CrashRecorder()
{
    setLineSink(std::move(m_previousSink));
    std::set_terminate(previousTerminate);
    redactText = nullptr;
    for (int i = 0; i < fatalSignalCount; ++i)
        sigaction(fatalSignals[i], &previousActions[i], nullptr);
    reportPrefix[0] = '\0';
}

QStringList CrashRecorder::reports(const QString& folder)
{
    if (folder.isEmpty())
        return {};
    QList<std::pair<qulonglong, QString>> found;
    const QDir dir(folder);
    for (const QString& name : dir.entryList({QStringLiteral("crash-*.txt")}, QDir::Files, QDir::Name)) {
        const QRegularExpressionMatch match = reportName.match(name);
        if (match.hasMatch())
            found.append({match.captured(1).toULongLong(), dir.absoluteFilePath(name)});
    }
    std::sort(found.begin(), found.end());
    QStringList paths;
    for (const auto& [seconds, path] : found)
        paths.append(path);
    return paths;
}

void CrashRecorder::pruneReports(const QString& folder, int kept)
{
    const QStringList paths = reports(folder);
    for (qsizetype i = 0; i < paths.size() - kept; ++i)
        QFile::remove(paths.at(i));
}
