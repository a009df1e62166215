#include "bridge/RecordDerivation.h"

#include <QRandomGenerator>

#include <algorithm>
#include <random>

namespace {

const QString noName = QStringLiteral("No name");
const QString unknownType = QStringLiteral("unknown");

// This IKEA bulb reports a colour gamut and a wrong mired range; it is a white-tone bulb from 250 to 454.
constexpr std::string_view tradfriOpal = "TRADFRI bulb E27 WS opal 980lm";

QString text(WireText utf8)
{
    return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
}

QString textOr(const std::optional<WireText>& utf8, const QString& fallback)
{
    return utf8 ? text(*utf8) : fallback;
}

// The texts compared here (colour modes, type names) are ASCII; comparing without a lower-cased copy keeps
// the refresh free of throw-away strings.
char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}

bool equalsLowerCased(WireText text, std::string_view lowerCase)
{
    return std::ranges::equal(text, lowerCase, [](char a, char b) { return lower(a) == b; });
}

bool containsLowerCased(WireText text, std::string_view lowerCase)
{
    // The iterator form: clang 14 cannot compile libstdc++ 12's ranges::search, and the fuzz build uses it.
    return !lowerCase.empty() && std::search(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                                             [](char a, char b) { return lower(a) == b; }) != text.end();
}

void deriveColourAbilities(const HueDevice& device, HueLight& light)
{
    // What the lamp can do, not what it shows now: a colour lamp in colour-temperature mode (after a white
    // scene) keeps its colour field, and has its white-tone bar too. The capabilities and the type say it;
    // the current colour mode speaks only for a lamp that says neither.
    const HueDeviceCapabilitiesControl* control =
        device.capabilities && device.capabilities->control ? &*device.capabilities->control : nullptr;
    bool colour = control && control->colorgamuttype;
    bool whiteTone = control && control->ct;
    if (device.type) {
        const WireText type = *device.type;
        colour = colour || (containsLowerCased(type, "color") && !containsLowerCased(type, "temperature"));
        whiteTone = whiteTone || containsLowerCased(type, "temperature") ||
                    containsLowerCased(type, "ambient") || containsLowerCased(type, "extended color");
    }
    if (!colour && !whiteTone) {
        if (const std::optional<WireText>& mode = device.state->colormode) {
            colour = equalsLowerCased(*mode, "hs") || equalsLowerCased(*mode, "xy");
            whiteTone = equalsLowerCased(*mode, "ct");
        }
    }
    light.allows_color = colour;
    light.allows_ambient = whiteTone;
}

} // namespace

QString RecordDerivation::shownName(QString name)
{
    for (QChar& c : name) {
        const char16_t u = c.unicode();
        if (u < 0x20 || (u >= 0x7f && u < 0xa0) || (u >= 0x202a && u <= 0x202e) ||
            (u >= 0x2066 && u <= 0x2069))
            c = u'?';
    }
    return name;
}

const QString& RecordDerivation::pooled(WireText utf8)
{
    auto [entry, added] = m_pool.try_emplace(utf8);
    if (added)
        entry->second = text(utf8);
    return entry->second;
}

QStringList RecordDerivation::pooled(const std::optional<WireTextList>& texts)
{
    QStringList result;
    if (!texts)
        return result;
    result.reserve(qsizetype(texts->size()));
    for (WireText item : *texts)
        result.append(pooled(item));
    return result;
}

QUuid RecordDerivation::freshId()
{
    // A version-4 UUID from a generator seeded once per thread by the system: the shared global generator
    // takes a lock per call, and a refresh of a large home makes hundreds of these.
    thread_local std::mt19937_64 generator(QRandomGenerator::system()->generate64());
    const quint64 high = generator();
    const quint64 low = generator();
    // Version 4 in the high nibble of the third group, the RFC 4122 variant in the top bits of the fourth.
    return QUuid(uint(high >> 32), ushort(high >> 16), ushort((high & 0x0fff) | 0x4000),
                 uchar(((low >> 56) & 0x3f) | 0x80), uchar(low >> 48), uchar(low >> 40), uchar(low >> 32),
                 uchar(low >> 24), uchar(low >> 16), uchar(low >> 8), uchar(low));
}

std::optional<HueLight> RecordDerivation::light(const HueDevice& device)
{
    if (!device.state || !device.state->reachable.value_or(false))
        return std::nullopt;
    const HueDeviceState& state = *device.state;

    HueLight light;
    light.lamp_id = text(device.id);
    light.name = shownName(textOr(device.name, noName));
    light.product_name = device.productname ? pooled(*device.productname) : QString();
    light.model_id = device.modelid ? pooled(*device.modelid) : QString();
    light.unique_id = textOr(device.uniqueid, QString());
    deriveColourAbilities(device, light);
    // A plug and other lamps without dimming report no brightness at all: they only switch.
    light.allows_brightness = state.bri.has_value();
    light.is_on = state.on.value_or(false);
    light.brightness = state.bri.value_or(0);
    light.hue = state.hue.value_or(0);
    light.saturation = state.sat.value_or(0);
    light.color_temperature = state.ct.value_or(0);
    if (state.xy && state.xy->size() == 2) {
        light.xy_x = state.xy->at(0);
        light.xy_y = state.xy->at(1);
    }

    const std::optional<HueDeviceCapabilitiesControlCt> ct =
        device.capabilities && device.capabilities->control ? device.capabilities->control->ct : std::nullopt;
    light.ct_min = ct ? ct->min.value_or(0) : 0;
    light.ct_max = ct ? ct->max.value_or(10000) : 10000;

    if (device.modelid == tradfriOpal) {
        light.allows_color = false;
        light.allows_ambient = true;
        light.ct_min = 250;
        light.ct_max = 454;
    }
    return light;
}

std::optional<HueGroup> RecordDerivation::group(const BridgeDataType_Group& group)
{
    if (!group.state || group.recycle.value_or(false))
        return std::nullopt;
    // Rooms and zones; light groups, entertainment areas and the like stay out. A group without a type is
    // kept.
    if (group.type && !equalsLowerCased(*group.type, "room") && !equalsLowerCased(*group.type, "zone"))
        return std::nullopt;

    HueGroup room;
    room.id = freshId();
    room.group_id = text(group.id);
    room.name = shownName(textOr(group.name, noName));
    room.lights = pooled(group.lights);
    room.type = group.type ? pooled(*group.type) : unknownType;
    room.group_class = group.classString ? pooled(*group.classString) : QString();
    room.all_on = group.state->all_on.value_or(false);
    room.any_on = group.state->any_on.value_or(false);
    if (group.action) {
        room.is_on = group.action->on.value_or(false);
        room.brightness = group.action->bri.value_or(0);
        room.saturation = group.action->sat.value_or(0);
        room.hue = group.action->hue.value_or(0);
        room.color_temperature = group.action->ct.value_or(0);
    }
    // Groups carry no capabilities; every room gets the full white range of current bulbs.
    room.ct_min = 153;
    room.ct_max = 500;
    return room;
}

std::optional<HueScene> RecordDerivation::scene(const BridgeDataType_Scene& scene)
{
    // Version 1 scenes predate stored light states and cannot be recalled reliably.
    if (!scene.version || *scene.version < 2 || scene.recycle.value_or(false))
        return std::nullopt;

    HueScene record;
    record.id = freshId();
    record.scene_id = text(scene.id);
    record.name = shownName(textOr(scene.name, noName));
    record.lights = pooled(scene.lights);
    record.type = scene.type ? pooled(*scene.type) : unknownType;
    if (scene.group)
        record.group_id = pooled(*scene.group);
    return record;
}
