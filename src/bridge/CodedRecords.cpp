#include "bridge/CodedRecords.h"

#include "bridge/JsonWriter.h"
#include "bridge/RecordDerivation.h"

#include <QJsonArray>

#include <cmath>

namespace {

// Dates are written as seconds since 1 January 2001 (UTC), the reference date of the original record format.
const QDateTime referenceDate(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);

/// Reads one typed member; a missing key or a value of another type makes `ok` false.
class Reader final
{
public:
    explicit Reader(const QJsonObject& object) : m_object(object) {}

    QString text(QStringView key)
    {
        const QJsonValue v = m_object.value(key);
        m_ok = m_ok && v.isString();
        return v.toString();
    }
    bool flag(QStringView key)
    {
        const QJsonValue v = m_object.value(key);
        m_ok = m_ok && v.isBool();
        return v.toBool();
    }
    double real(QStringView key)
    {
        const QJsonValue v = m_object.value(key);
        m_ok = m_ok && v.isDouble();
        return v.toDouble();
    }
    qint64 integer(QStringView key)
    {
        const double number = real(key);
        m_ok = m_ok && std::trunc(number) == number;
        return qint64(number);
    }
    QStringList texts(QStringView key)
    {
        const QJsonValue v = m_object.value(key);
        m_ok = m_ok && v.isArray();
        QStringList list;
        for (const QJsonValue item : v.toArray()) {
            m_ok = m_ok && item.isString();
            list.append(item.toString());
        }
        return list;
    }
    /// A member added later: absent is empty, present must be of its type.
    QString optionalText(QStringView key) { return m_object.contains(key) ? text(key) : QString(); }
    qint64 optionalInteger(QStringView key, qint64 absent)
    {
        return m_object.contains(key) ? integer(key) : absent;
    }
    bool ok() const { return m_ok; }

private:
    const QJsonObject& m_object;
    bool m_ok = true;
};

template <typename Record>
std::optional<Record> checked(const Reader& reader, Record record)
{
    if (!reader.ok())
        return std::nullopt;
    return record;
}

using Target = ActionQueueItem::Target;

const std::pair<Target, QStringView> targetNames[] = {{Target::light, u"light"},
                                                      {Target::group, u"group"},
                                                      {Target::scene, u"scene"},
                                                      {Target::schedule, u"schedule"}};

QString targetName(Target target)
{
    for (const auto& [value, name] : targetNames) {
        if (value == target)
            return name.toString();
    }
    return {};
}

std::optional<Target> targetNamed(const QString& text)
{
    for (const auto& [value, name] : targetNames) {
        if (name == text)
            return value;
    }
    return std::nullopt;
}

} // namespace

namespace CodedRecords {

void write(JsonWriter& json, const HueLight& light)
{
    json.beginObject()
        .member(u"lamp_id", light.lamp_id)
        .member(u"name", light.name)
        .member(u"product_name", light.product_name)
        .member(u"model_id", light.model_id)
        .member(u"allows_color", light.allows_color)
        .member(u"allows_ambient", light.allows_ambient)
        .member(u"allows_brightness", light.allows_brightness)
        .member(u"is_on", light.is_on)
        .member(u"brightness", light.brightness)
        .member(u"hue", light.hue)
        .member(u"saturation", light.saturation)
        .member(u"color_temperature", light.color_temperature)
        .member(u"xy_x", light.xy_x)
        .member(u"xy_y", light.xy_y)
        .member(u"ct_min", light.ct_min)
        .member(u"ct_max", light.ct_max)
        .member(u"unique_id", light.unique_id)
        .member(u"v2_id", light.v2_id)
        .member(u"battery_level", light.battery_level)
        .endObject();
}

void write(JsonWriter& json, const HueGroup& group)
{
    // The two limits come last in this form, unlike in the record.
    json.beginObject()
        .member(u"group_id", group.group_id)
        .member(u"name", group.name)
        .member(u"lights", group.lights)
        .member(u"type", group.type)
        .member(u"group_class", group.group_class)
        .member(u"all_on", group.all_on)
        .member(u"any_on", group.any_on)
        .member(u"is_on", group.is_on)
        .member(u"brightness", group.brightness)
        .member(u"saturation", group.saturation)
        .member(u"hue", group.hue)
        .member(u"color_temperature", group.color_temperature)
        .member(u"ct_min", group.ct_min)
        .member(u"ct_max", group.ct_max)
        .member(u"v2_id", group.v2_id)
        .member(u"grouped_light_id", group.grouped_light_id)
        .endObject();
}

void write(JsonWriter& json, const HueScene& scene)
{
    json.beginObject()
        .member(u"scene_id", scene.scene_id)
        .member(u"name", scene.name)
        .member(u"lights", scene.lights)
        .member(u"type", scene.type)
        .member(u"group_id", scene.group_id)
        .member(u"v2_id", scene.v2_id)
        .endObject();
}

void write(JsonWriter& json, const ActionQueueItem& item)
{
    json.beginObject()
        .member(u"url", item.url.toString())
        .member(u"body", QString::fromLatin1(item.body.toBase64()))
        .member(u"issued_at", double(referenceDate.msecsTo(item.issued_at)) / 1000.0)
        .member(u"target", targetName(item.target))
        .member(u"item_id", item.item_id)
        .member(u"property", item.property)
        .endObject();
}

template <typename Record>
QByteArray encode(const Record& record)
{
    JsonWriter json;
    write(json, record);
    return json.text();
}

template QByteArray encode(const HueLight&);
template QByteArray encode(const HueGroup&);
template QByteArray encode(const HueScene&);
template QByteArray encode(const ActionQueueItem&);

std::optional<HueLight> readLight(const QJsonObject& object)
{
    Reader r(object);
    HueLight light;
    light.lamp_id = r.text(u"lamp_id");
    light.name = r.text(u"name");
    light.product_name = r.text(u"product_name");
    light.model_id = r.text(u"model_id");
    light.allows_color = r.flag(u"allows_color");
    light.allows_ambient = r.flag(u"allows_ambient");
    light.allows_brightness = r.flag(u"allows_brightness");
    light.is_on = r.flag(u"is_on");
    light.brightness = r.integer(u"brightness");
    light.hue = r.integer(u"hue");
    light.saturation = r.integer(u"saturation");
    light.color_temperature = r.integer(u"color_temperature");
    light.xy_x = float(r.real(u"xy_x"));
    light.xy_y = float(r.real(u"xy_y"));
    light.ct_min = r.integer(u"ct_min");
    light.ct_max = r.integer(u"ct_max");
    light.unique_id = r.text(u"unique_id");
    light.v2_id = r.optionalText(u"v2_id");
    light.battery_level = r.optionalInteger(u"battery_level", -1);
    return checked(r, light);
}

std::optional<HueGroup> readGroup(const QJsonObject& object)
{
    Reader r(object);
    HueGroup group;
    group.id = RecordDerivation::freshId();
    group.group_id = r.text(u"group_id");
    group.name = r.text(u"name");
    group.lights = r.texts(u"lights");
    group.type = r.text(u"type");
    group.group_class = r.text(u"group_class");
    group.all_on = r.flag(u"all_on");
    group.any_on = r.flag(u"any_on");
    group.is_on = r.flag(u"is_on");
    group.brightness = r.integer(u"brightness");
    group.saturation = r.integer(u"saturation");
    group.hue = r.integer(u"hue");
    group.color_temperature = r.integer(u"color_temperature");
    group.ct_min = r.integer(u"ct_min");
    group.ct_max = r.integer(u"ct_max");
    group.v2_id = r.optionalText(u"v2_id");
    group.grouped_light_id = r.optionalText(u"grouped_light_id");
    return checked(r, group);
}

std::optional<HueScene> readScene(const QJsonObject& object)
{
    Reader r(object);
    HueScene scene;
    scene.id = RecordDerivation::freshId();
    scene.scene_id = r.text(u"scene_id");
    scene.name = r.text(u"name");
    scene.lights = r.texts(u"lights");
    scene.type = r.text(u"type");
    scene.group_id = r.text(u"group_id");
    scene.v2_id = r.optionalText(u"v2_id");
    return checked(r, scene);
}

std::optional<ActionQueueItem> readActionQueueItem(const QJsonObject& object)
{
    Reader r(object);
    ActionQueueItem item;
    item.url = QUrl(r.text(u"url"));
    const QString body = r.text(u"body");
    item.body = QByteArray::fromBase64(body.toLatin1());
    item.issued_at = referenceDate.addMSecs(qint64(std::llround(r.real(u"issued_at") * 1000.0)));
    const std::optional<ActionQueueItem::Target> target = targetNamed(r.text(u"target"));
    if (!target)
        return std::nullopt;
    item.target = *target;
    item.item_id = r.text(u"item_id");
    item.property = r.text(u"property");
    return checked(r, item);
}

} // namespace CodedRecords
