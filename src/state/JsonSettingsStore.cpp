#include "state/JsonSettingsStore.h"

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
    const QByteArray text = device.readAll();
    if (text.trimmed().isEmpty())
        return true;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return false;
    const QJsonObject object = document.object();
    for (auto it = object.begin(); it != object.end(); ++it)
        map.insert(it.key(), fromJson(it.value()));
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

void warn(const QString& message)
{
    std::fprintf(stderr, "glowdeck: %s\n", qPrintable(message));
}

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

/// Creates a missing file readable by its owner only (QSettings keeps the permissions of an existing file
/// when it replaces it), and moves an unreadable one out of the way instead of losing it.
void prepareFile(const QString& fileName)
{
    QFile file(fileName);
    if (!file.exists()) {
        QDir().mkpath(QFileInfo(fileName).absolutePath());
        if (file.open(QIODevice::WriteOnly))
            file.write("{}\n");
        file.close();
        file.setPermissions(ownerOnly);
        return;
    }
    if ((file.permissions() & ~ownerOnly & ~(QFile::ReadUser | QFile::WriteUser)) != 0)
        file.setPermissions(ownerOnly);
    if (!file.open(QIODevice::ReadOnly)) {
        warn(QStringLiteral("cannot read the settings file %1: %2").arg(fileName, file.errorString()));
        return;
    }
    QSettings::SettingsMap probe;
    if (readJson(file, probe))
        return;
    file.close();
    const QString kept = fileName + QStringLiteral(".broken-") +
                         QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    if (QFile::rename(fileName, kept)) {
        warn(QStringLiteral(
                 "the settings file %1 is not valid JSON; it was kept as %2 and Glowdeck starts with "
                 "default settings")
                 .arg(fileName, kept));
        prepareFile(fileName);
    } else {
        warn(QStringLiteral("the settings file %1 is not valid JSON and could not be moved aside")
                 .arg(fileName));
    }
}

} // namespace

JsonSettingsStore::JsonSettingsStore(const QString& fileName)
{
    prepareFile(fileName);
    m_settings = std::make_unique<QSettings>(fileName, jsonFormat());
}

JsonSettingsStore::~JsonSettingsStore() = default;

QString JsonSettingsStore::defaultFileName()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/glowdeck/settings.json");
}

QString JsonSettingsStore::fileName() const
{
    return m_settings->fileName();
}

bool JsonSettingsStore::contains(const QString& key) const
{
    return m_settings->contains(key);
}

QVariant JsonSettingsStore::value(const QString& key) const
{
    return m_settings->value(key);
}

void JsonSettingsStore::setValue(const QString& key, const QVariant& value)
{
    // The connection stores the same address and key after every refresh: rewriting (and syncing) the file
    // each time would cost more than the refresh itself.
    const QVariant stored = m_settings->value(key);
    if (stored.typeId() == value.typeId() && stored == value)
        return;
    m_settings->setValue(key, value);
    save();
}

void JsonSettingsStore::remove(const QString& key)
{
    m_settings->remove(key);
    save();
}

void JsonSettingsStore::save()
{
    // Written at once: the command-line tool exits right after its change, and a crash must not lose one.
    m_settings->sync();
    if (m_settings->status() != QSettings::NoError && !m_reportedWriteFailure) {
        m_reportedWriteFailure = true;
        warn(QStringLiteral("cannot write the settings file %1").arg(m_settings->fileName()));
    }
}
