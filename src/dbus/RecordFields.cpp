#include "dbus/RecordFields.h"

#include "bridge/CodedRecords.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

/// `value` as a plain D-Bus value: JSON reads "0" as an integer, but a coordinate is a double whatever its
/// value, so that a caller sees one type per field.
QVariant plain(const QString& key, const QJsonValue& value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return value.toBool();
    case QJsonValue::String:
        return value.toString();
    case QJsonValue::Double: {
        const QVariant number = value.toVariant();
        if (key.startsWith(u"xy_") || number.typeId() != QMetaType::LongLong)
            return value.toDouble();
        return number.toLongLong();
    }
    case QJsonValue::Array: {
        QStringList texts;
        for (const QJsonValue item : value.toArray())
            texts.append(item.toString());
        return texts;
    }
    case QJsonValue::Null:
    case QJsonValue::Object:
    case QJsonValue::Undefined:
        break;
    }
    return QString();
}

template <typename Record>
QVariantMap fieldsOf(const Record& record, const QString& bridgeId)
{
    const QJsonObject object = QJsonDocument::fromJson(CodedRecords::encode(record)).object();
    QVariantMap fields;
    for (auto it = object.begin(); it != object.end(); ++it)
        fields.insert(it.key(), plain(it.key(), it.value()));
    fields.insert(RecordFields::bridgeIdKey, bridgeId);
    return fields;
}

} // namespace

namespace RecordFields {

QVariantMap of(const HueLight& light, const QString& bridgeId)
{
    return fieldsOf(light, bridgeId);
}

QVariantMap of(const HueGroup& group, const QString& bridgeId)
{
    return fieldsOf(group, bridgeId);
}

QVariantMap of(const HueScene& scene, const QString& bridgeId)
{
    return fieldsOf(scene, bridgeId);
}

QVariantMap changes(const QVariantMap& before, const QVariantMap& now, const QString& idKey)
{
    QVariantMap changed;
    for (auto it = now.begin(); it != now.end(); ++it) {
        if (before.value(it.key()) != it.value())
            changed.insert(it.key(), it.value());
    }
    if (changed.isEmpty())
        return changed;
    changed.insert(idKey, now.value(idKey));
    changed.insert(bridgeIdKey, now.value(bridgeIdKey));
    return changed;
}

QJsonObject toJson(const QVariantMap& fields)
{
    return QJsonObject::fromVariantMap(fields);
}

std::optional<HueLight> readLight(const QVariantMap& fields)
{
    return CodedRecords::readLight(toJson(fields));
}

std::optional<HueGroup> readGroup(const QVariantMap& fields)
{
    return CodedRecords::readGroup(toJson(fields));
}

std::optional<HueScene> readScene(const QVariantMap& fields)
{
    return CodedRecords::readScene(toJson(fields));
}

} // namespace RecordFields
