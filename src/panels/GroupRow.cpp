#include "panels/GroupRow.h"

#include "bridge/BridgeCommands.h"
#include "panels/RowValues.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <algorithm>

GroupRow::GroupRow(BridgeLink& settings, BridgeCommands& commands, const HueGroup& group, QWidget* parent)
    : ControlRow(parent), m_settings(settings), m_commands(commands), m_groupId(group.group_id)
{
    setGroup(group);
}

GroupRow::LampAbilities GroupRow::lampAbilities(const QList<HueLight>& lights)
{
    LampAbilities lamps;
    for (const HueLight& light : lights) {
        if (light.allows_color)
            lamps.colour.insert(light.lamp_id);
        if (light.allows_ambient)
            lamps.whiteTone.insert(light.lamp_id);
    }
    return lamps;
}

void GroupRow::setGroup(const HueGroup& group)
{
    setGroup(group, lampAbilities(m_settings.home().lights()));
}

void GroupRow::setGroup(const HueGroup& group, const LampAbilities& lamps)
{
    m_groupId = group.group_id;
    const auto holdsAny = [&group](const QSet<QString>& ids) {
        return std::any_of(group.lights.cbegin(), group.lights.cend(),
                           [&ids](const QString& id) { return ids.contains(id); });
    };
    // A room whose members are unknown counts as white-only. A room of colour lamps keeps the white-tone bar
    // as well when some of them have a white-tone range, whatever they show now.
    const bool bars = m_settings.preferences().showColorBarsForRooms();
    const bool color = bars && holdsAny(lamps.colour);
    const bool whiteTone = bars && (!color || holdsAny(lamps.whiteTone));
    showState({.name = group.name,
               .on = group.is_on,
               .brightness = group.brightness,
               .hue = RowValues::hueFraction(group.hue),
               .saturation = RowValues::saturationFraction(group.saturation),
               .warmth = RowValues::temperatureFraction(group.color_temperature, group.ct_min, group.ct_max),
               .colorField = color,
               .temperatureBar = whiteTone});
}

std::optional<HueGroup> GroupRow::write(const std::function<void(HueGroup&)>& change)
{
    // The room may have left the list since the row was drawn: the user's change is then dropped.
    std::optional<HueGroup> written;
    m_settings.home().updateGroup(m_groupId, [&](HueGroup& group) {
        change(group);
        written = group;
    });
    return written;
}

void GroupRow::switchTo(bool on)
{
    if (const auto group = write([on](HueGroup& g) { g.is_on = on; }))
        m_commands.setGroupOn(*group, on);
}

void GroupRow::brightnessTo(float sliderValue)
{
    const qint64 brightness = RowValues::brightness(sliderValue);
    const auto group = write([brightness](HueGroup& g) {
        g.brightness = brightness;
        g.is_on = true;
    });
    // The command switches the room off again at the lowest brightnesses.
    if (group)
        m_commands.setGroupBrightness(*group, brightness);
}

void GroupRow::colorAt(double hueFraction, double saturationFraction)
{
    const qint64 saturation = RowValues::saturation(saturationFraction);
    const qint64 hue = RowValues::hue(hueFraction);
    const auto group = write([=](HueGroup& g) {
        g.saturation = saturation;
        g.hue = hue;
        g.is_on = true;
    });
    if (group)
        m_commands.setGroupHue(*group, hue);
}

void GroupRow::temperatureAt(double warmth)
{
    qint64 mired = 0;
    const auto group = write([&mired, warmth](HueGroup& g) {
        mired = RowValues::colorTemperature(warmth, g.ct_min, g.ct_max);
        g.color_temperature = mired;
        g.is_on = true;
    });
    if (group)
        m_commands.setGroupColorTemperature(*group, mired);
}
