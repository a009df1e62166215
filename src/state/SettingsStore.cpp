#include "state/SettingsStore.h"

#include <cmath>

bool SettingsStore::readBool(const QString& key) const
{
    const QVariant v = value(key);
    switch (v.typeId()) {
    case QMetaType::Bool:
        return v.toBool();
    case QMetaType::LongLong:
    case QMetaType::Int:
    case QMetaType::Double:
        return v.toDouble() != 0;
    case QMetaType::QString: {
        const QString text = v.toString().trimmed().toLower();
        return text == u"true" || text == u"yes" || text == u"1";
    }
    default:
        return false;
    }
}

qint64 SettingsStore::readInt(const QString& key) const
{
    const QVariant v = value(key);
    switch (v.typeId()) {
    case QMetaType::Bool:
        return v.toBool() ? 1 : 0;
    case QMetaType::LongLong:
    case QMetaType::Int:
        return v.toLongLong();
    case QMetaType::Double: {
        const double number = v.toDouble();
        return std::isfinite(number) && std::abs(number) < 9.2e18 ? qint64(number) : 0;
    }
    case QMetaType::QString: {
        bool ok = false;
        const qint64 number = v.toString().trimmed().toLongLong(&ok);
        return ok ? number : 0;
    }
    default:
        return 0;
    }
}

std::optional<QString> SettingsStore::readString(const QString& key) const
{
    const QVariant v = value(key);
    if (v.typeId() != QMetaType::QString)
        return std::nullopt;
    return v.toString();
}
