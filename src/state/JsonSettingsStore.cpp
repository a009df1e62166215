#include "state/JsonSettingsStore.h"

#include "state/FileOwner.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QSaveFile>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>

#include <cmath>
#include <cstdio>

namespace {

QVariant fromJson(const QJsonValue& value)
{
    if (value.isDouble()) {
        // Whole numbers come back as integers, so an integer written is an integer read.
        const double number = value.toDouble();
        if (std::trunc(number) == number && std::abs(number) < 9.0e15)
            return QVariant(qint64(number));
        return QVariant(number);
    }
    return value.toVariant();
}

QByteArray toJson(const QVariantMap& values)
{
    QJsonObject object;
    for (auto it = values.begin(); it != values.end(); ++it)
        object.insert(it.key(), QJsonValue::fromVariant(it.value()));
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

bool sameValue(const QVariant& a, const QVariant& b)
{
    return a.typeId() == b.typeId() && a == b;
}

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
constexpr QFile::Permissions ownerOnlyFolder = ownerOnly | QFile::ExeOwner;
constexpr QFile::Permissions others =
    QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
constexpr int settleMs = 150; // an editor's save is several events
// An editor that writes in place (truncate, then write) leaves the file empty or half-written for a moment.
// It is read again after retryMs, for up to unsettledMs while the program runs, or for up to
// unsettledWaitMs in a caller that cannot wait for its event loop (glowdeckctl, the start).
constexpr int retryMs = 100;
constexpr int unsettledMs = 2000;
constexpr int unsettledWaitMs = 800;
constexpr int lockWaitMs = 2000; // another process holds the lock only while it writes a few KB
constexpr int maxLinkHops = 40;  // where Linux itself gives up on a chain of links (ELOOP)

QString kindOf(const QFileInfo& info)
{
    if (info.isDir())
        return QStringLiteral("a folder");
    return QStringLiteral("not a regular file");
}

} // namespace

JsonSettingsStore::JsonSettingsStore(const QString& fileName) : m_fileName(fileName)
{
    m_inMemory = !open();
}

JsonSettingsStore::~JsonSettingsStore()
{
    // Changes held back while the file was unsettled are not dropped at the end of the run: wait for the
    // other program a moment, as a caller without an event loop does, then write them.
    if (m_unsettledSince.isValid() && !m_pending.isEmpty()) {
        m_unsettledSince.invalidate();
        m_retry.reset();
        m_settle.reset();
        m_watcher.reset();
        sync();
    }
}

QString JsonSettingsStore::defaultFileName()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/glowdeck/settings.json");
}

std::optional<QVariantMap> JsonSettingsStore::parse(const QByteArray& text)
{
    if (text.trimmed().isEmpty())
        return QVariantMap();
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    QVariantMap values;
    const QJsonObject object = document.object();
    for (auto it = object.begin(); it != object.end(); ++it)
        values.insert(it.key(), fromJson(it.value()));
    return values;
}

void JsonSettingsStore::warn(const QString& message) const
{
    const QString program = QCoreApplication::instance() ? QCoreApplication::applicationName().toLower()
                                                         : QStringLiteral("glowdeck");
    std::fprintf(stderr, "%s: %s\n", qPrintable(program), qPrintable(message));
}

JsonSettingsStore::Target JsonSettingsStore::resolveTarget() const
{
    QString path = m_fileName;
    bool linked = false;
    for (int hops = 0; QFileInfo(path).isSymLink(); ++hops) {
        if (hops == maxLinkHops)
            return {{}, QStringLiteral("a symbolic link in a loop")};
        // As root, a link another user put in a folder of theirs must not make us read or replace a system
        // file: every link on the way is this user's own.
        if (!FileOwner::isOwnedByThisUser(path))
            return {{}, QStringLiteral("a symbolic link of another user (%1)").arg(path)};
        path = QFileInfo(path).symLinkTarget();
        linked = true;
    }
    if (!linked)
        return {m_fileName, {}};
    const QFileInfo target(path);
    if (!target.exists())
        return {{}, QStringLiteral("a symbolic link to nothing (%1)").arg(path)};
    if (target.isDir())
        return {{}, QStringLiteral("a symbolic link to a folder (%1)").arg(path)};
    // A named pipe would block us for good, a device could be anything.
    if (!target.isFile())
        return {{}, QStringLiteral("a symbolic link to something other than a file (%1)").arg(path)};
    if (!FileOwner::isOwnedByThisUser(path))
        return {{}, QStringLiteral("a symbolic link to a file of another user (%1)").arg(path)};
    return {target.canonicalFilePath(), {}};
}

JsonSettingsStore::Snapshot JsonSettingsStore::readFile() const
{
    Snapshot now;
    const Target target = resolveTarget();
    if (target.path.isEmpty()) {
        now.reading = Reading::unusable;
        now.why = QStringLiteral("the settings file %1 is %2").arg(m_fileName, target.refusal);
        return now;
    }
    now.path = target.path;
    const QFileInfo info(now.path);
    if (!info.exists()) {
        now.reading = Reading::missing;
        return now;
    }
    // Opening a folder fails, a named pipe would block us for good, a device could be anything.
    if (!info.isFile()) {
        now.reading = Reading::unusable;
        now.why = QStringLiteral("the settings file %1 is %2").arg(m_fileName, kindOf(info));
        return now;
    }
    if (info.size() > maxFileBytes) {
        now.reading = Reading::broken;
        now.why = QStringLiteral("too-large");
        return now;
    }
    QFile file(now.path);
    if (!file.open(QIODevice::ReadOnly)) {
        now.reading = Reading::unusable;
        now.why = QStringLiteral("cannot read the settings file %1: %2").arg(m_fileName, file.errorString());
        return now;
    }
    now.seen = {true, info.lastModified(), info.size(), file.read(maxFileBytes + 1)};
    if (now.seen.content.trimmed().isEmpty()) {
        now.reading = Reading::empty;
        return now;
    }
    const std::optional<QVariantMap> parsed = parse(now.seen.content);
    if (!parsed) {
        now.reading = Reading::broken;
        now.why = QStringLiteral("broken");
        return now;
    }
    now.reading = Reading::read;
    now.values = *parsed;
    return now;
}

bool JsonSettingsStore::isUnsettled(const Snapshot& now) const
{
    switch (now.reading) {
    case Reading::broken:
        return now.why == QLatin1String("broken"); // a file too large does not come from a half-way write
    case Reading::empty:
        // Empty when it was seen empty is settled: it holds no settings, as before.
        return !m_seen.exists || !m_seen.content.trimmed().isEmpty();
    default:
        return false;
    }
}

void JsonSettingsStore::waitWhileUnsettled() const
{
    QElapsedTimer waited;
    waited.start();
    while (isUnsettled(readFile()) && waited.elapsed() < unsettledWaitMs)
        QThread::msleep(retryMs);
}

QString JsonSettingsStore::lockFileName() const
{
    const QString target = resolveTarget().path;
    return (target.isEmpty() ? m_fileName : target) + QStringLiteral(".lock");
}

bool JsonSettingsStore::open()
{
    waitWhileUnsettled();
    const Snapshot now = readFile();
    switch (now.reading) {
    case Reading::read:
    case Reading::empty: // still empty after the wait: it has nothing to lose, and means no settings
        m_values = now.values;
        m_seen = now.seen;
        if (QFile::permissions(now.path) & others)
            warn(QStringLiteral("the settings file %1 holds the bridge key and other users may read it; "
                                "\"chmod 600\" makes it yours alone")
                     .arg(m_fileName));
        return true;
    case Reading::missing:
        return writeFile();
    case Reading::unusable:
        m_saveError = now.why;
        warn(m_saveError + QStringLiteral("; it is left as it is, and settings are not saved this time"));
        return false;
    case Reading::broken:
        break;
    }
    const qint64 size = QFileInfo(now.path).size();
    const QString kept = keepAside(now.path, now.why);
    if (kept.isEmpty())
        return false;
    if (now.why == QLatin1String("broken")) {
        warn(QStringLiteral("the settings file %1 is not valid JSON; it was kept as %2 and Glowdeck starts "
                            "with default settings")
                 .arg(m_fileName, kept));
    } else {
        warn(
            QStringLiteral("the settings file %1 is larger than 1 MiB (%2 bytes), far more than any of ours; "
                           "it was not read, it was kept as %3, and Glowdeck starts with default settings")
                .arg(m_fileName)
                .arg(size)
                .arg(kept));
    }
    m_values.clear();
    // Where the file was: a link to it leads to nothing until it is written again.
    return writeTo(now.path);
}

QString JsonSettingsStore::keepAside(const QString& path, const QString& why)
{
    const QString stem =
        path + u'.' + why + u'-' + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    // QFile::rename never replaces an existing file: a second broken file within the same second gets "-2".
    for (int attempt = 1; attempt <= 100; ++attempt) {
        const QString kept = attempt == 1 ? stem : stem + u'-' + QString::number(attempt);
        if (QFileInfo::exists(kept))
            continue;
        QFile file(path);
        if (file.rename(kept))
            return kept;
        if (!QFileInfo::exists(kept)) {
            m_saveError = QStringLiteral("the settings file %1 cannot be used and cannot be moved aside: %2")
                              .arg(m_fileName, file.errorString());
            warn(m_saveError + QStringLiteral("; it is left as it is, and settings are not saved this time"));
            return {};
        }
    }
    m_saveError = QStringLiteral("the settings file %1 cannot be used, and there are too many kept beside it")
                      .arg(m_fileName);
    warn(m_saveError + QStringLiteral("; settings are not saved this time"));
    return {};
}

bool JsonSettingsStore::createFolder(const QString& folder)
{
    if (QFileInfo(folder).isDir())
        return true;
    if (!QDir().mkpath(folder))
        return false;
    QFile::setPermissions(folder, ownerOnlyFolder);
    return true;
}

bool JsonSettingsStore::writeFile()
{
    const Target target = resolveTarget();
    const QFileInfo info(target.path);
    if (target.path.isEmpty() || (info.exists() && !info.isFile())) {
        setSaveError(QStringLiteral("the settings file %1 is %2; it is left as it is")
                         .arg(m_fileName, target.path.isEmpty() ? target.refusal : kindOf(info)));
        return false;
    }
    return writeTo(target.path);
}

bool JsonSettingsStore::writeTo(const QString& path)
{
    if (!createFolder(QFileInfo(path).absolutePath())) {
        setSaveError(
            QStringLiteral("cannot write the settings file %1: its folder cannot be made").arg(m_fileName));
        return false;
    }
    const bool creating = !QFileInfo::exists(path);
    // The new file goes in the folder of the one it replaces: the target's, for a link, which stays as it is.
    QSaveFile file(path);
    // A half-written settings file is worse than none: no writing in place when the folder refuses a
    // temporary file.
    file.setDirectWriteFallback(false);
    const QByteArray content = toJson(m_values);
    // The replacement takes the mode of the file it replaces (Qt copies it too; set here so that nothing
    // depends on that). Flushed before the commit: a buffered write that fails for want of space is not seen
    // by commit(), which would then put an empty file in place of the user's.
    const bool written = file.open(QIODevice::WriteOnly) &&
                         file.setPermissions(creating ? ownerOnly : QFile::permissions(path)) &&
                         file.write(content) == content.size() && file.flush() && file.commit();
    if (!written) {
        setSaveError(
            QStringLiteral("cannot write the settings file %1: %2").arg(m_fileName, file.errorString()));
        return false;
    }
    const QFileInfo now(path);
    m_seen = {true, now.lastModified(), now.size(), content};
    m_pending.clear();
    setSaveError({});
    return true;
}

void JsonSettingsStore::setSaveError(const QString& error)
{
    if (error == m_saveError)
        return;
    const bool first = m_saveError.isEmpty();
    m_saveError = error;
    if (!error.isEmpty() && first)
        warn(error);
    else if (error.isEmpty())
        warn(QStringLiteral("the settings file %1 is saved again").arg(m_fileName));
    notifySaveErrorChanged();
}

JsonSettingsStore::Taken JsonSettingsStore::takeInChanges(Snapshot& now)
{
    now = readFile();
    if (isUnsettled(now))
        return Taken::unsettled;
    switch (now.reading) {
    case Reading::missing:
        // Deleted: the next write makes it again, whole, from what this store holds.
        m_seen = {};
        return Taken::done;
    case Reading::unusable:
        return Taken::done; // the write says why it cannot go there
    case Reading::broken:
        return Taken::broken;
    case Reading::empty:
    case Reading::read:
        break;
    }
    if (now.seen.exists == m_seen.exists && now.seen.content == m_seen.content) {
        m_seen = now.seen;
        return Taken::done;
    }
    m_seen = now.seen;
    // What others wrote, with this store's own changes that did not reach the file yet on top.
    QVariantMap onDisk = now.values;
    for (auto it = m_pending.begin(); it != m_pending.end(); ++it) {
        if (it.value().isValid())
            onDisk.insert(it.key(), it.value());
        else
            onDisk.remove(it.key());
    }
    QStringList changed;
    for (auto it = onDisk.begin(); it != onDisk.end(); ++it) {
        if (!m_values.contains(it.key()) || !sameValue(m_values.value(it.key()), it.value()))
            changed.append(it.key());
    }
    for (auto it = m_values.begin(); it != m_values.end(); ++it) {
        if (!onDisk.contains(it.key()))
            changed.append(it.key());
    }
    m_values = onDisk;
    for (const QString& key : std::as_const(changed)) {
        if (!m_changedElsewhere.contains(key))
            m_changedElsewhere.append(key);
    }
    return Taken::done;
}

void JsonSettingsStore::save(const QVariantMap& changes)
{
    for (auto it = changes.begin(); it != changes.end(); ++it) {
        if (it.value().isValid())
            m_values.insert(it.key(), it.value());
        else
            m_values.remove(it.key());
        m_pending.insert(it.key(), it.value());
    }
    // While the file is unsettled, the reading that finds it settled writes them.
    if (!m_unsettledSince.isValid())
        sync();
}

void JsonSettingsStore::sync()
{
    if (m_inMemory)
        return;
    if (m_watcher)
        rewatch();
    else
        waitWhileUnsettled();
    // Another glowdeck or glowdeckctl writing at the same moment waits for this write, and the other way
    // round. A lock that cannot be had (a read-only folder) does not stop the attempt: the write says why.
    // Only a write takes it: the lock file comes and goes in the watched folder, and a reading that took it
    // would wake the next reading.
    QLockFile lock(lockFileName());
    bool locked = !m_pending.isEmpty() || m_unsettledSince.isValid();
    if (locked)
        lock.tryLock(lockWaitMs);
    Snapshot now;
    const Taken taken = takeInChanges(now);
    if (taken == Taken::unsettled && m_watcher) {
        if (!m_unsettledSince.isValid())
            m_unsettledSince.start();
        if (m_unsettledSince.elapsed() < unsettledMs) {
            m_retry->start();
            return;
        }
    }
    m_unsettledSince.invalidate();
    if (m_retry)
        m_retry->stop();
    if (taken != Taken::done) {
        if (!std::exchange(locked, true))
            lock.tryLock(lockWaitMs);
        replaceUnusable(now);
    } else if (!m_pending.isEmpty()) {
        writeFile();
    }
    lock.unlock();
    notifyChangedElsewhere(std::exchange(m_changedElsewhere, {}));
}

void JsonSettingsStore::replaceUnusable(const Snapshot& now)
{
    if (now.reading == Reading::empty) {
        // An empty file holds nothing to keep; when this store holds nothing either, it is simply empty.
        if (m_values.isEmpty()) {
            m_seen = now.seen;
            return;
        }
        const QString message =
            QCoreApplication::translate(
                "JsonSettingsStore",
                "The settings file %1 was left empty by another program; the settings were saved anew")
                .arg(m_fileName);
        warn(message);
        notify(message);
        writeTo(now.path);
        return;
    }
    const QString kept = keepAside(now.path, now.why);
    if (kept.isEmpty())
        return;
    const QString message =
        now.why == QLatin1String("broken")
            ? QCoreApplication::translate("JsonSettingsStore",
                                          "The settings file %1 was changed into something that is not valid "
                                          "JSON; it was kept as %2, and the settings were saved anew")
                  .arg(m_fileName, kept)
            : QCoreApplication::translate(
                  "JsonSettingsStore", "The settings file %1 grew larger than 1 MiB; it was kept as %2, and "
                                       "the settings were saved anew")
                  .arg(m_fileName, kept);
    warn(message);
    notify(message);
    m_seen = {};
    // Where the file was: a link to it leads to nothing until it is written again.
    writeTo(now.path);
}

void JsonSettingsStore::watchForChanges()
{
    if (m_inMemory || m_watcher)
        return;
    m_watcher = std::make_unique<QFileSystemWatcher>();
    m_settle = std::make_unique<QTimer>();
    m_settle->setSingleShot(true);
    m_settle->setInterval(settleMs);
    QObject::connect(m_settle.get(), &QTimer::timeout, m_settle.get(), [this] { sync(); });
    m_retry = std::make_unique<QTimer>();
    m_retry->setSingleShot(true);
    m_retry->setInterval(retryMs);
    QObject::connect(m_retry.get(), &QTimer::timeout, m_retry.get(), [this] { sync(); });
    const auto changed = [this] { m_settle->start(); };
    QObject::connect(m_watcher.get(), &QFileSystemWatcher::fileChanged, m_settle.get(), changed);
    QObject::connect(m_watcher.get(), &QFileSystemWatcher::directoryChanged, m_settle.get(), changed);
    rewatch();
}

void JsonSettingsStore::rewatch()
{
    // The folders too: a file replaced by a rename (as every editor and this store save) is a new file, and
    // so is a link made to lead elsewhere.
    QStringList wanted{QFileInfo(m_fileName).absolutePath()};
    if (const QString target = resolveTarget().path; !target.isEmpty()) {
        wanted << QFileInfo(target).absolutePath();
        if (QFileInfo::exists(target))
            wanted << target;
    }
    const QStringList watched = m_watcher->files() + m_watcher->directories();
    for (const QString& path : watched) {
        if (!wanted.contains(path))
            m_watcher->removePath(path);
    }
    for (const QString& path : std::as_const(wanted)) {
        if (!watched.contains(path))
            m_watcher->addPath(path);
    }
}

bool JsonSettingsStore::contains(const QString& key) const
{
    return m_values.contains(key);
}

QVariant JsonSettingsStore::value(const QString& key) const
{
    return m_values.value(key);
}

void JsonSettingsStore::setValue(const QString& key, const QVariant& value)
{
    setValues({{key, value}});
}

void JsonSettingsStore::setValues(const QVariantMap& values)
{
    // The connection stores the same address and key after every refresh: rewriting the file each time
    // would cost more than the refresh itself.
    QVariantMap changes;
    for (auto it = values.begin(); it != values.end(); ++it) {
        const bool unchanged = it.value().isValid() ? m_values.contains(it.key()) &&
                                                          sameValue(m_values.value(it.key()), it.value())
                                                    : !m_values.contains(it.key());
        if (!unchanged)
            changes.insert(it.key(), it.value());
    }
    if (!changes.isEmpty())
        save(changes);
}

void JsonSettingsStore::remove(const QString& key)
{
    setValues({{key, QVariant()}});
}

void JsonSettingsStore::reportUnreadable(const QString& key, const QString& expected) const
{
    warn(QStringLiteral(
             "the setting \"%1\" in %2 should hold %3; it is ignored, and kept in the file as it is")
             .arg(key, m_fileName, expected));
}
