#include "panels/LightRow.h"

#include "bridge/BridgeCommands.h"
#include "panels/RowValues.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

LightRow::LightRow(BridgeLink& settings, BridgeCommands& commands, const HueLight& light, QWidget* parent)
    : ControlRow(parent), m_settings(settings), m_commands(commands), m_lampId(light.lamp_id)
{
    setLight(light);
}

void LightRow::setLight(const HueLight& light)
{
    m_lampId = light.lamp_id;
    showState({.name = light.name,
               .on = light.is_on,
               .brightness = light.brightness,
               .hue = RowValues::hueFraction(light.hue),
               .saturation = RowValues::saturationFraction(light.saturation),
               .warmth = RowValues::temperatureFraction(light.color_temperature, light.ct_min, light.ct_max),
               .slider = light.allows_brightness,
               .colorField = light.allows_color && light.allows_brightness,
               .temperatureBar = light.allows_ambient && light.allows_brightness});
}

std::optional<HueLight> LightRow::write(const std::function<void(HueLight&)>& change)
{
    // The light may have left the list since the row was drawn (a refresh, a hidden light): then the user's
    // change has nothing to apply to and is dropped.
    std::optional<HueLight> written;
    m_settings.home().updateLight(m_lampId, [&](HueLight& light) {
        change(light);
        written = light;
    });
    return written;
}

void LightRow::switchTo(bool on)
{
    if (const auto light = write([on](HueLight& l) { l.is_on = on; }))
        m_commands.setLightOn(*light, on);
}

void LightRow::brightnessTo(float sliderValue)
{
    const qint64 brightness = RowValues::brightness(sliderValue);
    const auto light = write([brightness](HueLight& l) {
        l.brightness = brightness;
        l.is_on = true;
    });
    // The command switches the light off again at the lowest brightnesses.
    if (light)
        m_commands.setLightBrightness(*light, brightness);
}

void LightRow::colorAt(double hueFraction, double saturationFraction)
{
    const qint64 saturation = RowValues::saturation(saturationFraction);
    const qint64 hue = RowValues::hue(hueFraction);
    const auto light = write([=](HueLight& l) {
        l.saturation = saturation;
        l.hue = hue;
        l.is_on = true;
    });
    if (light)
        m_commands.setLightHue(*light, hue);
}

void LightRow::temperatureAt(double warmth)
{
    qint64 mired = 0;
    const auto light = write([&mired, warmth](HueLight& l) {
        mired = RowValues::colorTemperature(warmth, l.ct_min, l.ct_max);
        l.color_temperature = mired;
        l.is_on = true;
    });
    if (light)
        m_commands.setLightColorTemperature(*light, mired);
}
