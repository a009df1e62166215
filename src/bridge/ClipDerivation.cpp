#include "bridge/ClipDerivation.h"

#include "bridge/ClipUnits.h"
#include "bridge/RecordDerivation.h"

#include <algorithm>
#include <unordered_map>

namespace {

const QString noName = QStringLiteral("No name");

QString text(WireText utf8)
{
    return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
}

/// The first interface's id in `path` after `prefix`, when it is one: letters, digits, '-' and '_'.
std::optional<WireText> versionOneId(const std::optional<WireText>& path, std::string_view prefix)
{
    if (!path || !path->starts_with(prefix))
        return std::nullopt;
    const WireText id = path->substr(prefix.size());
    if (id.empty() || id.size() > 32)
        return std::nullopt;
    for (const char c : id) {
        const bool allowed = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                             c == '-' || c == '_';
        if (!allowed)
            return std::nullopt;
    }
    return id;
}

/// The first interface's "uniqueid" of a lamp, which hidden lamps are stored by: its ZigBee address and
/// the endpoint of its light, which the current interface does not give. The bridge maker's lamps use
/// endpoint 11, nearly every other maker's lamp endpoint 1.
QString uniqueIdOf(const ClipConnectivity* connectivity, const ClipDevice* device)
{
    if (!connectivity || !connectivity->mac_address)
        return {};
    const bool maker = device && device->manufacturer_name &&
                       (device->manufacturer_name->starts_with("Signify") ||
                        device->manufacturer_name->starts_with("Philips"));
    return text(*connectivity->mac_address) + (maker ? QStringLiteral("-0b") : QStringLiteral("-01"));
}

/// "living_room" as the first interface's class says it: "Living room".
QString roomClass(const std::optional<WireText>& archetype)
{
    if (!archetype)
        return {};
    QString words = text(*archetype).replace(u'_', u' ');
    if (!words.isEmpty())
        words[0] = words[0].toUpper();
    return words;
}

/// Indexes of one home's resources by id and by owner.
class HomeIndex final
{
public:
    explicit HomeIndex(const ClipHome& home)
    {
        for (const ClipDevice& device : home.devices)
            m_devices.emplace(device.id, &device);
        for (const ClipConnectivity& connectivity : home.connectivity) {
            if (connectivity.owner)
                m_connectivity.emplace(connectivity.owner->rid, &connectivity);
        }
        for (const ClipDevicePower& power : home.power) {
            if (power.owner)
                m_power.emplace(power.owner->rid, &power);
        }
        for (const ClipGroupedLight& grouped : home.groupedLights)
            m_grouped.emplace(grouped.id, &grouped);
        for (const ClipLight& light : home.lights) {
            const QString id = ClipDerivation::recordId(light, "/lights/");
            m_lampIds.emplace(light.id, id);
            if (light.owner)
                m_deviceLamps[light.owner->rid].append(id);
        }
    }

    template <typename Value>
    static const Value* find(const std::unordered_map<WireText, const Value*>& map, WireText key)
    {
        const auto found = map.find(key);
        return found == map.end() ? nullptr : found->second;
    }

    const ClipDevice* device(const ClipLight& light) const
    {
        return light.owner ? find(m_devices, light.owner->rid) : nullptr;
    }
    const ClipConnectivity* connectivity(const ClipLight& light) const
    {
        return light.owner ? find(m_connectivity, light.owner->rid) : nullptr;
    }
    const ClipDevicePower* power(const ClipLight& light) const
    {
        return light.owner ? find(m_power, light.owner->rid) : nullptr;
    }
    const ClipGroupedLight* groupedLight(const ClipReferences& services) const
    {
        for (const ClipReference& service : services) {
            if (service.rtype == "grouped_light")
                return find(m_grouped, service.rid);
        }
        return nullptr;
    }
    /// The record ids of the lamps a room's or zone's children name: a device stands for its lamps.
    QStringList lampsOf(const ClipReferences& children) const
    {
        QStringList lamps;
        for (const ClipReference& child : children) {
            if (child.rtype == "device") {
                if (const auto found = m_deviceLamps.find(child.rid); found != m_deviceLamps.end())
                    lamps += found->second;
            } else if (child.rtype == "light") {
                if (const auto found = m_lampIds.find(child.rid); found != m_lampIds.end())
                    lamps.append(found->second);
            }
        }
        return lamps;
    }
    QStringList lampIds(const std::vector<WireText>& lights) const
    {
        QStringList lamps;
        for (WireText light : lights) {
            if (const auto found = m_lampIds.find(light); found != m_lampIds.end())
                lamps.append(found->second);
        }
        return lamps;
    }

private:
    std::unordered_map<WireText, const ClipDevice*> m_devices;
    std::unordered_map<WireText, const ClipConnectivity*> m_connectivity;
    std::unordered_map<WireText, const ClipDevicePower*> m_power;
    std::unordered_map<WireText, const ClipGroupedLight*> m_grouped;
    std::unordered_map<WireText, QString> m_lampIds;
    std::unordered_map<WireText, QStringList> m_deviceLamps;
};

std::optional<HueLight> lightRecord(const ClipLight& lamp, const HomeIndex& index)
{
    const ClipConnectivity* connectivity = index.connectivity(lamp);
    // A lamp with no ZigBee connectivity of its own (another radio) counts as reachable while it is listed.
    if (connectivity && connectivity->status && *connectivity->status != "connected")
        return std::nullopt;
    const ClipDevice* device = index.device(lamp);

    HueLight light;
    light.lamp_id = ClipDerivation::recordId(lamp, "/lights/");
    light.v2_id = text(lamp.id);
    const std::optional<WireText> name = lamp.name ? lamp.name : device ? device->name : std::nullopt;
    light.name = RecordDerivation::shownName(name ? text(*name) : noName);
    if (device) {
        light.product_name = device->product_name ? text(*device->product_name) : QString();
        light.model_id = device->model_id ? text(*device->model_id) : QString();
    }
    light.unique_id = uniqueIdOf(connectivity, device);
    if (const ClipDevicePower* power = index.power(lamp))
        light.battery_level = power->battery_level.value_or(-1);
    // What the lamp can do: a gamut for colour, a mirek range for white tone, "dimming" for a slider.
    light.allows_color = lamp.gamut_type.has_value() || (lamp.coloured && lamp.x && lamp.y);
    light.allows_ambient = lamp.whiteTone;
    light.allows_brightness = lamp.dimmable;
    light.is_on = lamp.on.value_or(false);
    if (lamp.dimmable && lamp.brightness)
        light.brightness = ClipUnits::brightnessFromPercent(*lamp.brightness);
    if (lamp.x && lamp.y) {
        light.xy_x = *lamp.x;
        light.xy_y = *lamp.y;
        const auto [hue, saturation] = ClipUnits::hueSaturationFromXy(*lamp.x, *lamp.y);
        light.hue = hue;
        light.saturation = saturation;
    }
    light.color_temperature = lamp.mirek.value_or(0);
    light.ct_min = lamp.whiteTone ? lamp.mirek_minimum.value_or(153) : 0;
    light.ct_max = lamp.whiteTone ? lamp.mirek_maximum.value_or(500) : 10000;
    return light;
}

HueGroup groupRecord(const ClipGroup& group, const HomeIndex& index, const QList<HueLight>& lights)
{
    HueGroup room;
    room.id = RecordDerivation::freshId();
    room.group_id = ClipDerivation::recordId(group, "/groups/");
    room.v2_id = text(group.id);
    room.name = RecordDerivation::shownName(group.name ? text(*group.name) : noName);
    room.lights = index.lampsOf(group.children);
    room.type = group.zone ? QStringLiteral("Zone") : QStringLiteral("Room");
    room.group_class = roomClass(group.archetype);
    if (const ClipGroupedLight* grouped = index.groupedLight(group.services)) {
        room.grouped_light_id = text(grouped->id);
        room.any_on = room.is_on = grouped->on.value_or(false);
        if (grouped->brightness)
            room.brightness = ClipUnits::brightnessFromPercent(*grouped->brightness);
    }
    // The grouped light tells whether any lamp is on; all of them, only the lamps can.
    bool all = !room.lights.isEmpty();
    for (const QString& lamp : std::as_const(room.lights)) {
        const auto found = std::find_if(lights.cbegin(), lights.cend(),
                                        [&lamp](const HueLight& light) { return light.lamp_id == lamp; });
        all = all && found != lights.cend() && found->is_on;
    }
    room.all_on = all;
    room.ct_min = 153;
    room.ct_max = 500;
    return room;
}

} // namespace

namespace ClipDerivation {

QString recordId(const ClipResource& resource, std::string_view prefix)
{
    const std::optional<WireText> number = versionOneId(resource.id_v1, prefix);
    return text(number ? *number : resource.id);
}

ClipRecords derive(const ClipHome& home)
{
    const HomeIndex index(home);
    ClipRecords records;
    records.lights.reserve(qsizetype(home.lights.size()));
    for (const ClipLight& lamp : home.lights) {
        if (std::optional<HueLight> light = lightRecord(lamp, index))
            records.lights.append(std::move(*light));
    }

    // Rooms before zones, as the first interface's lists mostly have them and the window shows them.
    std::unordered_map<WireText, QString> groupIds;
    for (const bool zones : {false, true}) {
        for (const ClipGroup& group : home.groups) {
            if (group.zone != zones)
                continue;
            records.groups.append(groupRecord(group, index, records.lights));
            groupIds.emplace(group.id, records.groups.constLast().group_id);
        }
    }
    if (const ClipGroupedLight* grouped = index.groupedLight(home.homeServices))
        records.homeGroupedLight = text(grouped->id);

    for (const bool smart : {false, true}) {
        for (const ClipScene& scene : home.scenes) {
            if (scene.smart != smart)
                continue;
            HueScene record;
            record.id = RecordDerivation::freshId();
            record.scene_id = smart ? text(scene.id) : recordId(scene, "/scenes/");
            record.v2_id = text(scene.id);
            record.name = RecordDerivation::shownName(scene.name ? text(*scene.name) : noName);
            record.type = smart ? QStringLiteral("SmartScene") : QStringLiteral("GroupScene");
            if (scene.group) {
                if (const auto found = groupIds.find(scene.group->rid); found != groupIds.end())
                    record.group_id = found->second;
            }
            // A smart scene names no lamps of its own: it plays on its room's.
            record.lights = index.lampIds(scene.lights);
            if (smart && record.lights.isEmpty()) {
                for (const HueGroup& group : std::as_const(records.groups)) {
                    if (group.group_id == record.group_id)
                        record.lights = group.lights;
                }
            }
            for (const ClipScene::Colour& colour : scene.palette)
                record.palette.append({colour.x, colour.y, colour.brightness.value_or(-1)});
            record.speed = scene.speed.value_or(-1);
            records.scenes.append(std::move(record));
        }
    }
    return records;
}

} // namespace ClipDerivation
