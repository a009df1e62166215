#include "state/SettingsStore.h"

#include <cmath>
#include <cstdio>

namespace {

std::optional<bool> boolOf(const QVariant& v)
{
    switch (v.typeId()) {
    case QMetaType::Bool:
        return v.toBool();
    case QMetaType::LongLong:
    case QMetaType::Int:
    case QMetaType::Double:
        return v.toDouble() != 0;
    case QMetaType::QString: {
        const QString text = v.toString().trimmed().toLower();
        if (text == u"true" || text == u"yes" || text == u"1")
            return true;
        if (text == u"false" || text == u"no" || text == u"0")
            return false;
        return std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

std::optional<qint64> intOf(const QVariant& v)
{
    switch (v.typeId()) {
    case QMetaType::Bool:
        return v.toBool() ? 1 : 0;
    case QMetaType::LongLong:
    case QMetaType::Int:
        return v.toLongLong();
    case QMetaType::Double: {
        const double number = v.toDouble();
        if (!std::isfinite(number) || std::abs(number) >= 9.2e18)
            return std::nullopt;
        return qint64(number);
    }
    case QMetaType::QString: {
        bool ok = false;
        const qint64 number = v.toString().trimmed().toLongLong(&ok);
        return ok ? std::optional(number) : std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

/// JSON null, as a hand-edited file may hold, means "not set".
bool isAbsent(const QVariant& v)
{
    return !v.isValid() || v.isNull();
}

} // namespace

void SettingsStore::setValues(const QVariantMap& values)
{
    for (auto it = values.begin(); it != values.end(); ++it) {
        if (it.value().isValid())
            setValue(it.key(), it.value());
        else
            remove(it.key());
    }
}

template <typename T>
std::optional<T> SettingsStore::unreadable(const QString& key, const char* expected) const
{
    if (!m_reportedKeys.contains(key)) {
        m_reportedKeys.insert(key);
        reportUnreadable(key, QString::fromLatin1(expected));
    }
    return std::nullopt;
}

std::optional<bool> SettingsStore::storedBool(const QString& key) const
{
    const QVariant v = value(key);
    if (isAbsent(v))
        return std::nullopt;
    const std::optional<bool> flag = boolOf(v);
    return flag ? flag : unreadable<bool>(key, "a boolean (true or false)");
}

std::optional<qint64> SettingsStore::storedInt(const QString& key) const
{
    const QVariant v = value(key);
    if (isAbsent(v))
        return std::nullopt;
    const std::optional<qint64> number = intOf(v);
    return number ? number : unreadable<qint64>(key, "a whole number");
}

std::optional<QString> SettingsStore::storedString(const QString& key) const
{
    const QVariant v = value(key);
    if (isAbsent(v))
        return std::nullopt;
    if (v.typeId() != QMetaType::QString)
        return unreadable<QString>(key, "text (a JSON string)");
    return v.toString();
}

bool SettingsStore::holdsUnreadable(const QString& key, QMetaType::Type expected) const
{
    const QVariant v = value(key);
    if (isAbsent(v))
        return false;
    switch (expected) {
    case QMetaType::Bool:
        return !boolOf(v);
    case QMetaType::LongLong:
        return !intOf(v);
    default:
        return v.typeId() != QMetaType::QString;
    }
}

void SettingsStore::reportUnreadable(const QString& key, const QString& expected) const
{
    std::fprintf(stderr, "glowdeck: the setting \"%s\" should hold %s; it is ignored, and kept as it is\n",
                 qPrintable(key), qPrintable(expected));
}
