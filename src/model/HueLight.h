#pragma once

#include <QString>

/// One reachable lamp as the menu shows it, flattened from the bridge's light object.
struct HueLight
{
    QString lamp_id;
    QString name;
    QString product_name;
    QString model_id;
    bool allows_color = false;
    bool allows_ambient = false;
    bool allows_brightness = true; ///< false for a lamp without dimming (a plug): its state has no "bri"
    bool is_on = false;
    qint64 brightness = 0;
    qint64 hue = 0;
    qint64 saturation = 0;
    qint64 color_temperature = 0;
    float xy_x = 0;
    float xy_y = 0;
    qint64 ct_min = 0;
    qint64 ct_max = 0;
    QString unique_id;
    /// The lamp's id on the bridge's current interface (a UUID), for writes there; empty when it was read
    /// over the first interface.
    QString v2_id;
    /// The battery of a lamp that runs on one, in per cent; -1 for a lamp on mains power or not told.
    qint64 battery_level = -1;

    bool operator==(const HueLight&) const = default;
};
