#include "panels/GroupRow.h"

#include "bridge/HueHelper.h"
#include "panels/RowValues.h"
#include "state/AppSettings.h"

#include <algorithm>

GroupRow::GroupRow(AppSettings& settings, HueHelper& helper, const HueGroup& group, QWidget* parent)
    : ControlRow(parent), m_settings(settings), m_helper(helper), m_groupId(group.group_id)
{
    setGroup(group);
}

void GroupRow::setGroup(const HueGroup& group)
{
    m_groupId = group.group_id;
    showState(group.name, group.is_on, group.brightness);
    // A room whose members are unknown counts as white-only.
    const bool bars = m_settings.showColorBarsForRooms();
    const bool color = bars && hasColorMember(group);
    showBars(color, bars && !color);
}

bool GroupRow::hasColorMember(const HueGroup& group) const
{
    const QList<HueLight> lights = m_settings.lights();
    return std::any_of(lights.cbegin(), lights.cend(), [&group](const HueLight& light) {
        return light.allows_color && group.lights.contains(light.lamp_id);
    });
}

std::optional<HueGroup> GroupRow::write(const std::function<void(HueGroup&)>& change)
{
    // The room may have left the list since the row was drawn: the user's change is then dropped.
    std::optional<HueGroup> written;
    m_settings.updateGroup(m_groupId, [&](HueGroup& group) {
        change(group);
        written = group;
    });
    return written;
}

void GroupRow::switchTo(bool on)
{
    if (const auto group = write([on](HueGroup& g) { g.is_on = on; }))
        m_helper.setGroupOn(*group, on);
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
        m_helper.setGroupBrightness(*group, brightness);
}

void GroupRow::colorAt(double x, double y)
{
    const qint64 saturation = RowValues::saturation(y);
    const qint64 hue = RowValues::hue(x);
    const auto group = write([=](HueGroup& g) {
        g.saturation = saturation;
        g.hue = hue;
        g.is_on = true;
    });
    if (group)
        m_helper.setGroupHue(*group, hue);
}

void GroupRow::temperatureAt(double x)
{
    qint64 mired = 0;
    const auto group = write([&mired, x](HueGroup& g) {
        mired = RowValues::colorTemperature(x, g.ct_min, g.ct_max);
        g.color_temperature = mired;
        g.is_on = true;
    });
    if (group)
        m_helper.setGroupColorTemperature(*group, mired);
}
