#include "bridge/ClipDecoder.h"

#include "bridge/JsonReading.h"

#include <simdjson.h>

#include <cmath>
#include <limits>

namespace {

using simdjson::dom::element;
using simdjson::dom::element_type;
using simdjson::dom::object;

using JsonReading::isNull;
using JsonReading::read;
using JsonReading::WrongShape;

simdjson::dom::parser& sharedParser()
{
    // Its own parser, apart from the first interface's: both may decode on one pool thread, one after the
    // other, and each keeps its buffers for the next refresh.
    thread_local simdjson::dom::parser parser;
    return parser;
}

object objectOf(const element& value)
{
    object result;
    if (value.get_object().get(result) != simdjson::SUCCESS)
        throw WrongShape{};
    return result;
}

void read(const element& value, std::optional<double>& field)
{
    if (isNull(value))
        return field.reset();
    double number = 0;
    // Also takes integers, as in "brightness": 100.
    if (value.get_double().get(number) != simdjson::SUCCESS || !std::isfinite(number))
        throw WrongShape{};
    field = number;
}

void read(const element& value, std::optional<float>& field)
{
    std::optional<double> number;
    read(value, number);
    if (number && !(std::abs(*number) <= double(std::numeric_limits<float>::max())))
        throw WrongShape{};
    field = number ? std::optional<float>(float(*number)) : std::nullopt;
}

void read(const element& value, std::optional<qint64>& field)
{
    std::optional<double> number;
    read(value, number);
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (number && (std::trunc(*number) != *number || *number >= limit || *number < -limit))
        throw WrongShape{};
    field = number ? std::optional<qint64>(qint64(*number)) : std::nullopt;
}

void read(const element& value, std::optional<ClipReference>& field)
{
    if (isNull(value))
        return field.reset();
    ClipReference reference;
    for (auto [key, member] : objectOf(value)) {
        if (key != "rid" && key != "rtype")
            continue;
        std::optional<WireText> text;
        read(member, text);
        (key == "rid" ? reference.rid : reference.rtype) = text.value_or(WireText());
    }
    field = reference;
}

void read(const element& value, ClipReferences& field)
{
    field.clear();
    if (isNull(value))
        return;
    simdjson::dom::array array;
    if (value.get_array().get(array) != simdjson::SUCCESS)
        throw WrongShape{};
    field.reserve(array.size());
    for (element item : array) {
        std::optional<ClipReference> reference;
        read(item, reference);
        if (reference)
            field.push_back(*reference);
    }
}

/// Hands each member of the object `value` to `onMember(key, member)`; null is an empty object.
template <typename OnMember>
void members(const element& value, OnMember onMember)
{
    if (isNull(value))
        return;
    for (auto [key, member] : objectOf(value))
        onMember(key, member);
}

/// The member `name` of the object `value`, when there is one; the last one when it is given twice.
std::optional<element> memberOf(const element& value, std::string_view name)
{
    std::optional<element> found;
    members(value, [&](std::string_view key, const element& member) {
        if (key == name)
            found = member;
    });
    return found;
}

/// Reads the members shared by every resource; false for a member it leaves to the caller.
bool readCommon(ClipResource& resource, std::string_view key, const element& member)
{
    if (key == "id_v1") {
        read(member, resource.id_v1);
        // The bridge writes "" for a resource that has no first-interface form.
        if (resource.id_v1 && resource.id_v1->empty())
            resource.id_v1.reset();
    } else if (key == "owner") {
        read(member, resource.owner);
    } else if (key == "metadata") {
        if (const std::optional<element> name = memberOf(member, "name"))
            read(*name, resource.name);
    } else {
        return false;
    }
    return true;
}

void readLight(const object& resource, ClipLight& light)
{
    for (auto [key, member] : resource) {
        if (readCommon(light, key, member))
            continue;
        if (key == "on") {
            if (const std::optional<element> on = memberOf(member, "on"))
                read(*on, light.on);
        } else if (key == "dimming" && !isNull(member)) {
            light.dimmable = true;
            if (const std::optional<element> brightness = memberOf(member, "brightness"))
                read(*brightness, light.brightness);
        } else if (key == "color" && !isNull(member)) {
            light.coloured = true;
            members(member, [&light](std::string_view key, const element& value) {
                if (key == "gamut_type") {
                    read(value, light.gamut_type);
                } else if (key == "xy") {
                    members(value, [&light](std::string_view key, const element& c) {
                        if (key == "x")
                            read(c, light.x);
                        else if (key == "y")
                            read(c, light.y);
                    });
                }
            });
        } else if (key == "color_temperature" && !isNull(member)) {
            members(member, [&light](std::string_view key, const element& value) {
                if (key == "mirek") {
                    read(value, light.mirek);
                } else if (key == "mirek_schema" && !isNull(value)) {
                    light.whiteTone = true;
                    members(value, [&light](std::string_view key, const element& limit) {
                        if (key == "mirek_minimum")
                            read(limit, light.mirek_minimum);
                        else if (key == "mirek_maximum")
                            read(limit, light.mirek_maximum);
                    });
                }
            });
        }
    }
}

void readDevice(const object& resource, ClipDevice& device)
{
    for (auto [key, member] : resource) {
        if (readCommon(device, key, member))
            continue;
        if (key == "product_data") {
            members(member, [&device](std::string_view key, const element& value) {
                if (key == "product_name")
                    read(value, device.product_name);
                else if (key == "model_id")
                    read(value, device.model_id);
                else if (key == "manufacturer_name")
                    read(value, device.manufacturer_name);
            });
        } else if (key == "services") {
            read(member, device.services);
        }
    }
}

void readConnectivity(const object& resource, ClipConnectivity& connectivity)
{
    for (auto [key, member] : resource) {
        if (readCommon(connectivity, key, member))
            continue;
        if (key == "status")
            read(member, connectivity.status);
        else if (key == "mac_address")
            read(member, connectivity.mac_address);
    }
}

void readPower(const object& resource, ClipDevicePower& power)
{
    for (auto [key, member] : resource) {
        if (readCommon(power, key, member))
            continue;
        if (key == "power_state") {
            if (const std::optional<element> level = memberOf(member, "battery_level"))
                read(*level, power.battery_level);
        }
    }
}

void readGroup(const object& resource, ClipGroup& group)
{
    for (auto [key, member] : resource) {
        if (key == "metadata") {
            members(member, [&group](std::string_view key, const element& value) {
                if (key == "name")
                    read(value, group.name);
                else if (key == "archetype")
                    read(value, group.archetype);
            });
        } else if (readCommon(group, key, member)) {
            continue;
        } else if (key == "children") {
            read(member, group.children);
        } else if (key == "services") {
            read(member, group.services);
        }
    }
}

void readGroupedLight(const object& resource, ClipGroupedLight& grouped)
{
    for (auto [key, member] : resource) {
        if (readCommon(grouped, key, member))
            continue;
        if (key == "on") {
            if (const std::optional<element> on = memberOf(member, "on"))
                read(*on, grouped.on);
        } else if (key == "dimming") {
            if (const std::optional<element> brightness = memberOf(member, "brightness"))
                read(*brightness, grouped.brightness);
        }
    }
}

void readPalette(const element& value, ClipScene& scene)
{
    members(value, [&scene](std::string_view key, const element& colours) {
        if (key != "color" || isNull(colours))
            return;
        simdjson::dom::array array;
        if (colours.get_array().get(array) != simdjson::SUCCESS)
            throw WrongShape{};
        for (element entry : array) {
            ClipScene::Colour colour;
            std::optional<float> x;
            std::optional<float> y;
            members(entry, [&](std::string_view key, const element& part) {
                if (key == "color") {
                    if (const std::optional<element> xy = memberOf(part, "xy")) {
                        members(*xy, [&](std::string_view key, const element& c) {
                            if (key == "x")
                                read(c, x);
                            else if (key == "y")
                                read(c, y);
                        });
                    }
                } else if (key == "dimming") {
                    if (const std::optional<element> brightness = memberOf(part, "brightness"))
                        read(*brightness, colour.brightness);
                }
            });
            // A palette entry without a colour has nothing to play.
            if (x && y) {
                colour.x = *x;
                colour.y = *y;
                scene.palette.push_back(colour);
            }
        }
    });
}

void readScene(const object& resource, ClipScene& scene)
{
    for (auto [key, member] : resource) {
        if (readCommon(scene, key, member))
            continue;
        if (key == "group") {
            read(member, scene.group);
        } else if (key == "actions" && !isNull(member)) {
            simdjson::dom::array actions;
            if (member.get_array().get(actions) != simdjson::SUCCESS)
                throw WrongShape{};
            for (element action : actions) {
                std::optional<ClipReference> target;
                if (const std::optional<element> value = memberOf(action, "target"))
                    read(*value, target);
                if (target && target->rtype == "light")
                    scene.lights.push_back(target->rid);
            }
        } else if (key == "palette") {
            readPalette(member, scene);
        } else if (key == "speed") {
            read(member, scene.speed);
        }
    }
}

void readBridgeHome(const object& resource, ClipResource& home, ClipReferences& services)
{
    for (auto [key, member] : resource) {
        if (!readCommon(home, key, member) && key == "services")
            read(member, services);
    }
}

/// The id and type of one resource; both must be texts.
std::pair<WireText, WireText> idAndType(const object& resource)
{
    std::optional<WireText> id;
    std::optional<WireText> type;
    for (auto [key, member] : resource) {
        if (key == "id")
            read(member, id);
        else if (key == "type")
            read(member, type);
    }
    if (!id || !type || id->empty())
        throw WrongShape{};
    return {*id, *type};
}

template <typename Resource, typename Reader>
void append(std::vector<Resource>& list, WireText id, const object& resource, Reader reader)
{
    Resource& record = list.emplace_back();
    record.id = id;
    reader(resource, record);
}

void readResource(const object& resource, ClipHome& home)
{
    const auto [id, type] = idAndType(resource);
    if (type == "light") {
        append(home.lights, id, resource, readLight);
    } else if (type == "device") {
        append(home.devices, id, resource, readDevice);
    } else if (type == "zigbee_connectivity") {
        append(home.connectivity, id, resource, readConnectivity);
    } else if (type == "device_power") {
        append(home.power, id, resource, readPower);
    } else if (type == "room" || type == "zone") {
        append(home.groups, id, resource, readGroup);
        home.groups.back().zone = type == "zone";
    } else if (type == "grouped_light") {
        append(home.groupedLights, id, resource, readGroupedLight);
    } else if (type == "scene" || type == "smart_scene") {
        append(home.scenes, id, resource, readScene);
        home.scenes.back().smart = type == "smart_scene";
    } else if (type == "bridge_home") {
        ClipResource& record = home.bridgeHomes.emplace_back();
        record.id = id;
        readBridgeHome(resource, record, home.homeServices);
    }
}

} // namespace

namespace ClipDecoder {

std::optional<ClipHome> decodeHome(QByteArrayView json, std::size_t* resourceCount)
{
    if (resourceCount)
        *resourceCount = 0;
    element root;
    if (json.isEmpty() ||
        sharedParser().parse(json.data(), size_t(json.size())).get(root) != simdjson::SUCCESS)
        return std::nullopt;
    try {
        const std::optional<element> data = memberOf(root, "data");
        simdjson::dom::array resources;
        if (!data || data->get_array().get(resources) != simdjson::SUCCESS)
            return std::nullopt;
        if (resourceCount)
            *resourceCount = resources.size();
        if (resources.size() > maxResources)
            return std::nullopt;
        ClipHome home;
        for (element item : resources)
            readResource(objectOf(item), home);
        return home;
    } catch (const WrongShape&) {
        return std::nullopt;
    }
}

QStringList errorDescriptions(QByteArrayView json)
{
    // An error answer is a few hundred bytes; a whole home is not worth parsing twice.
    if (json.isEmpty() || json.size() > 64 * 1024)
        return {};
    element root;
    if (sharedParser().parse(json.data(), size_t(json.size())).get(root) != simdjson::SUCCESS)
        return {};
    QStringList descriptions;
    try {
        const std::optional<element> errors = memberOf(root, "errors");
        simdjson::dom::array entries;
        if (!errors || errors->get_array().get(entries) != simdjson::SUCCESS)
            return {};
        for (element entry : entries) {
            std::optional<WireText> text;
            if (entry.is_object()) {
                if (const std::optional<element> description = memberOf(entry, "description"))
                    read(*description, text);
            }
            descriptions.append(text && !text->empty()
                                    ? QString::fromUtf8(text->data(), qsizetype(text->size())).left(200)
                                    : QStringLiteral("error"));
        }
    } catch (const WrongShape&) {
        return {};
    }
    return descriptions;
}

} // namespace ClipDecoder
