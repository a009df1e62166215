#include "state/JsonSettingsStore.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QStandardPaths>

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

bool readJson(QIODevice& device, QSettings::SettingsMap& map)
{
    // QSettings reads the file again when another process changed it: the same limits hold then.
    if (device.size() > JsonSettingsStore::maxFileBytes)
        return false;
    const std::optional<QVariantMap> values = JsonSettingsStore::parse(device.readAll());
    if (!values)
        return false;
    map = *values;
    return true;
}

bool writeJson(QIODevice& device, const QSettings::SettingsMap& map)
{
    QJsonObject object;
    for (auto it = map.begin(); it != map.end(); ++it)
        object.insert(it.key(), QJsonValue::fromVariant(it.value()));
    return device.write(QJsonDocument(object).toJson(QJsonDocument::Indented)) >= 0;
}

QSettings::Format jsonFormat()
{
    static const QSettings::Format format =
        QSettings::registerFormat(QStringLiteral("json"), readJson, writeJson);
    return format;
}

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

QString kindOf(const QFileInfo& info)
{
    if (info.isDir())
        return QStringLiteral("a folder");
    return QStringLiteral("not a regular file");
}

} // namespace

JsonSettingsStore::JsonSettingsStore(const QString& fileName) : m_fileName(fileName)
{
    if (prepareFile())
        m_settings = std::make_unique<QSettings>(fileName, jsonFormat());
}

JsonSettingsStore::~JsonSettingsStore() = default;

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

bool JsonSettingsStore::prepareFile()
{
    const QFileInfo info(m_fileName);
    if (!info.exists()) {
        // Created readable by its owner only before anything is in it (QSettings keeps the permissions of the
        // file it replaces).
        QDir().mkpath(info.absolutePath());
        QFile file(m_fileName);
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || file.write("{}\n") < 0) {
            m_saveError =
                QStringLiteral("cannot create the settings file %1: %2").arg(m_fileName, file.errorString());
            warn(m_saveError + QStringLiteral("; settings are not saved this time"));
            return false;
        }
        file.setPermissions(ownerOnly);
        return true;
    }
    // Opening a folder fails, a named pipe would block us for good, a device could be anything: none of them
    // is read, written or has its permissions changed.
    if (!info.isFile()) {
        m_saveError = QStringLiteral("the settings file %1 is %2").arg(m_fileName, kindOf(info));
        warn(m_saveError + QStringLiteral("; it is left as it is, and settings are not saved this time"));
        return false;
    }
    if ((info.permissions() & ~ownerOnly & ~(QFile::ReadUser | QFile::WriteUser)) != 0)
        QFile::setPermissions(m_fileName, ownerOnly);

    if (info.size() > maxFileBytes) {
        const QString kept = keepAside(QStringLiteral("too-large"));
        if (kept.isEmpty())
            return false;
        warn(QStringLiteral(
                 "the settings file %1 is larger than 1 MiB (%2 bytes), far more than any of ours; it "
                 "was not read, it was kept as %3, and Glowdeck starts with default settings")
                 .arg(m_fileName)
                 .arg(info.size())
                 .arg(kept));
        return prepareFile();
    }
    QFile file(m_fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        m_saveError =
            QStringLiteral("cannot read the settings file %1: %2").arg(m_fileName, file.errorString());
        warn(m_saveError + QStringLiteral("; it is left as it is, and settings are not saved this time"));
        return false;
    }
    if (parse(file.read(maxFileBytes + 1)))
        return true;
    file.close();
    const QString kept = keepAside(QStringLiteral("broken"));
    if (kept.isEmpty())
        return false;
    warn(QStringLiteral("the settings file %1 is not valid JSON; it was kept as %2 and Glowdeck starts with "
                        "default settings")
             .arg(m_fileName, kept));
    return prepareFile();
}

QString JsonSettingsStore::keepAside(const QString& why)
{
    const QString stem = m_fileName + u'.' + why + u'-' +
                         QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    // QFile::rename never replaces an existing file: a second broken file within the same second gets "-2".
    for (int attempt = 1; attempt <= 100; ++attempt) {
        const QString kept = attempt == 1 ? stem : stem + u'-' + QString::number(attempt);
        if (QFileInfo::exists(kept))
            continue;
        QFile file(m_fileName);
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

bool JsonSettingsStore::contains(const QString& key) const
{
    return m_settings ? m_settings->contains(key) : m_memory.contains(key);
}

QVariant JsonSettingsStore::value(const QString& key) const
{
    return m_settings ? m_settings->value(key) : m_memory.value(key);
}

void JsonSettingsStore::setValue(const QString& key, const QVariant& value)
{
    // The connection stores the same address and key after every refresh: rewriting (and syncing) the file
    // each time would cost more than the refresh itself.
    const QVariant stored = this->value(key);
    if (stored.typeId() == value.typeId() && stored == value)
        return;
    if (!m_settings) {
        m_memory.insert(key, value);
        return;
    }
    m_settings->setValue(key, value);
    save();
}

void JsonSettingsStore::remove(const QString& key)
{
    if (!m_settings) {
        m_memory.remove(key);
        return;
    }
    m_settings->remove(key);
    save();
}

void JsonSettingsStore::save()
{
    // Written at once: the command-line tool exits right after its change, and a crash must not lose one.
    m_settings->sync();
    if (m_settings->status() == QSettings::NoError || !m_saveError.isEmpty())
        return;
    m_saveError =
        m_settings->status() == QSettings::AccessError
            ? QStringLiteral("cannot write the settings file %1").arg(m_fileName)
            : QStringLiteral("the settings file %1 was changed into something that is not a settings "
                             "file")
                  .arg(m_fileName);
    warn(m_saveError);
}

void JsonSettingsStore::reportUnreadable(const QString& key, const QString& expected) const
{
    warn(QStringLiteral(
             "the setting \"%1\" in %2 should hold %3; it is ignored, and kept in the file as it is")
             .arg(key, m_fileName, expected));
}
