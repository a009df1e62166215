#include "login/xdg/XdgAutostartEntry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <optional>

namespace {

const QString desktopEntryGroup = QStringLiteral("[Desktop Entry]");

/// The lines of a desktop entry file, or nothing when it cannot be read. Entries are a few hundred bytes; a
/// file far larger than that is not one.
std::optional<QStringList> readLines(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text) || file.size() > 64 * 1024)
        return std::nullopt;
    return QString::fromUtf8(file.readAll()).split(u'\n');
}

/// "Key=Value" of the [Desktop Entry] group (blanks around '=' do not count); empty key for other lines.
std::pair<QString, QString> keyAndValue(const QString& line)
{
    const qsizetype equals = line.indexOf(u'=');
    if (equals <= 0 || line.startsWith(u'#'))
        return {};
    return {line.left(equals).trimmed(), line.mid(equals + 1).trimmed()};
}

/// Calls `visit` with every line and whether it belongs to the [Desktop Entry] group.
template <typename Visit>
void forEachLine(const QStringList& lines, Visit visit)
{
    bool inEntry = false;
    for (const QString& line : lines) {
        const QString trimmed = line.trimmed();
        if (trimmed.startsWith(u'['))
            inEntry = trimmed == desktopEntryGroup;
        visit(line, inEntry && !trimmed.startsWith(u'['));
    }
}

/// Whether the entry at `path` starts anything: not hidden (the XDG rule for "deleted") and not switched off
/// the way GNOME's start-up settings do it.
bool entryStartsProgram(const QString& path)
{
    const std::optional<QStringList> lines = readLines(path);
    if (!lines)
        return false;
    bool starts = true;
    forEachLine(*lines, [&starts](const QString& line, bool inEntry) {
        if (!inEntry)
            return;
        const auto [key, value] = keyAndValue(line);
        if ((key == u"Hidden" && value == u"true") ||
            (key == u"X-GNOME-Autostart-enabled" && value == u"false"))
            starts = false;
    });
    return starts;
}

/// What follows the program in an Exec value as the file holds it, with the blank before it. The program is
/// the first argument: up to a blank, or in double quotes. Two escapes are nested there: the value's own (a
/// backslash is written as two), and inside the quotes the argument's (a backslash escapes the next
/// character); so a quote in the program's path is written as two backslashes and the quote.
QString argumentsAfterProgram(const QString& exec)
{
    if (!exec.startsWith(u'"')) {
        const qsizetype blank = exec.indexOf(u' ');
        return blank < 0 ? QString() : exec.mid(blank);
    }
    bool escaped = false;
    for (qsizetype i = 1; i < exec.size(); ++i) {
        QChar c = exec.at(i);
        if (c == u'\\' && i + 1 < exec.size())
            c = exec.at(++i) == u'\\' ? u'\\' : u'_'; // \s, \t...: neither a quote nor a backslash
        if (escaped)
            escaped = false;
        else if (c == u'\\')
            escaped = true;
        else if (c == u'"')
            return exec.mid(i + 1);
    }
    return QString();
}

bool isAbsolute(const QString& path)
{
    return !path.isEmpty() && QDir::isAbsolutePath(path);
}

bool writeFile(const QString& path, const QString& text)
{
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    // A failed buffered write is seen by flush(), not by commit(), which would install an empty entry.
    const QByteArray bytes = text.toUtf8();
    return file.write(bytes) == bytes.size() && file.flush() && file.commit();
}

} // namespace

XdgAutostartEntry::XdgAutostartEntry(QString applicationId, QString configHome, QStringList configDirs,
                                     QString executable, QStringList arguments)
    : m_applicationId(std::move(applicationId)), m_configHome(std::move(configHome)),
      m_configDirs(std::move(configDirs)), m_executable(std::move(executable)),
      m_arguments(std::move(arguments))
{}

QString XdgAutostartEntry::userConfigHome()
{
    // The base directory rules: a relative value is invalid and must be ignored.
    const QString configHome = qEnvironmentVariable("XDG_CONFIG_HOME");
    return isAbsolute(configHome) ? configHome : QDir::homePath() + QStringLiteral("/.config");
}

QStringList XdgAutostartEntry::systemConfigDirs()
{
    QStringList dirs;
    for (const QString& dir : qEnvironmentVariable("XDG_CONFIG_DIRS").split(u':', Qt::SkipEmptyParts)) {
        if (isAbsolute(dir))
            dirs.append(dir);
    }
    return dirs.isEmpty() ? QStringList{QStringLiteral("/etc/xdg")} : dirs;
}

QString XdgAutostartEntry::entryPath() const
{
    return QStringLiteral("%1/autostart/%2.desktop").arg(m_configHome, m_applicationId);
}

QString XdgAutostartEntry::effectiveEntry() const
{
    if (QFileInfo::exists(entryPath()))
        return entryPath();
    for (const QString& dir : m_configDirs) {
        const QString path = QStringLiteral("%1/autostart/%2.desktop").arg(dir, m_applicationId);
        if (QFileInfo::exists(path))
            return path;
    }
    return QString();
}

bool XdgAutostartEntry::systemEntryExists() const
{
    for (const QString& dir : m_configDirs) {
        if (QFileInfo::exists(QStringLiteral("%1/autostart/%2.desktop").arg(dir, m_applicationId)))
            return true;
    }
    return false;
}

bool XdgAutostartEntry::isEnabled() const
{
    const QString entry = effectiveEntry();
    return !entry.isEmpty() && entryStartsProgram(entry);
}

bool XdgAutostartEntry::setEnabled(bool enabled)
{
    if (enabled) {
        const QString text = entryText();
        return !text.isEmpty() && writeFile(entryPath(), text);
    }
    // A system-wide entry would start the program again once ours is gone: mask it instead, as the desktops'
    // own start-up settings do.
    if (systemEntryExists()) {
        return writeFile(entryPath(), QStringLiteral("%1\nType=Application\nName=%2\nHidden=true\n")
                                          .arg(desktopEntryGroup, m_applicationId.section(u'.', -1)));
    }
    return !QFileInfo::exists(entryPath()) || QFile::remove(entryPath());
}

QString XdgAutostartEntry::entryText() const
{
    const QString installed =
        QDir::cleanPath(QFileInfo(m_executable).absolutePath() +
                        QStringLiteral("/../share/applications/%1.desktop").arg(m_applicationId));
    QString exec = execValue(m_executable);
    for (const QString& argument : m_arguments) {
        const QString value = execValue(argument);
        exec = exec.isEmpty() || value.isEmpty() ? QString() : exec + u' ' + value;
    }
    if (const std::optional<QStringList> lines =
            QFileInfo(installed).isFile() ? readLines(installed) : std::nullopt) {
        // The packaged entry, minus what would keep it from starting. Its Exec names the program for a PATH
        // search, which may find another one or none (an unpacked package, a prefix off PATH): the copy
        // starts the program that wrote it, with the entry's arguments. TryExec would search PATH as well.
        QStringList kept;
        const QString tryExec = tryExecValue(m_executable);
        forEachLine(*lines, [&kept, &exec, &tryExec](const QString& line, bool inEntry) {
            const auto [key, value] = inEntry ? keyAndValue(line) : std::pair<QString, QString>();
            // A desktop starts a DBusActivatable entry through the bus, which knows nothing of the arguments
            // (a settings file of its own) this copy starts the program with.
            if (key == u"Hidden" || key == u"X-GNOME-Autostart-enabled" || key == u"TryExec" ||
                key == u"DBusActivatable")
                return;
            if (key == u"Exec" && !exec.isEmpty()) {
                kept.append(QStringLiteral("Exec=") + exec + argumentsAfterProgram(value));
                kept.append(QStringLiteral("TryExec=") + tryExec);
            } else {
                kept.append(line);
            }
        });
        return kept.join(u'\n');
    }

    if (exec.isEmpty())
        return QString();
    return QStringLiteral("%1\n"
                          "Type=Application\n"
                          "Name=%2\n"
                          "Comment=Philips Hue lights from the system tray\n"
                          "Exec=%3\n"
                          "TryExec=%4\n"
                          "Terminal=false\n"
                          "Categories=Utility;\n")
        .arg(desktopEntryGroup, m_applicationId.section(u'.', -1), exec, tryExecValue(m_executable));
}

QString XdgAutostartEntry::tryExecValue(const QString& program)
{
    // A plain string value: the desktop skips the entry once the program is gone (a removed package).
    QString value = program;
    return value.replace(u'\\', QStringLiteral("\\\\"));
}

QString XdgAutostartEntry::execValue(const QString& program)
{
    if (program.isEmpty() || program.contains(u'\n') || program.contains(u'\r'))
        return QString();
    // The Exec key's own quoting: an argument with a reserved character goes in double quotes, inside which
    // '"', '`', '$' and '\' take a backslash.
    static const QString reserved = QStringLiteral(" \t\"'\\><~|&;$*?#()`");
    const bool quote =
        std::any_of(program.begin(), program.end(), [](QChar c) { return reserved.contains(c); });
    QString argument;
    for (QChar c : program) {
        if (quote && (c == u'"' || c == u'`' || c == u'$' || c == u'\\'))
            argument += u'\\';
        argument += c;
    }
    if (quote)
        argument = u'"' + argument + u'"';
    // Then the rules of every string value: a backslash is written twice; '%' starts a field code.
    argument.replace(u'\\', QStringLiteral("\\\\"));
    argument.replace(u'%', QStringLiteral("%%"));
    return argument;
}

std::unique_ptr<LoginItem> createLoginItem(const QString& applicationId, const QString& folder,
                                           const QStringList& arguments)
{
    // Without an application object there is no program to start; an entry without Exec is never written.
    const QString executable =
        QCoreApplication::instance() ? QCoreApplication::applicationFilePath() : QString();
    if (!folder.isEmpty())
        return std::make_unique<XdgAutostartEntry>(applicationId, folder, QStringList(), executable,
                                                   arguments);
    return std::make_unique<XdgAutostartEntry>(applicationId, XdgAutostartEntry::userConfigHome(),
                                               XdgAutostartEntry::systemConfigDirs(), executable, arguments);
}
