#pragma once

#include <QtGlobal>

#include <algorithm>
#include <cmath>

/// How a row turns a position on its controls into the bridge's values. Positions are measured against the
/// controls' nominal sizes (180 by 50 points for the colour field, 180 wide for the white-tone bar) and are
/// not clamped, except for brightness.
namespace RowValues {

/// Truncates toward zero; a non-finite or absurd input (no real pointer gets there) gives 0 instead of
/// undefined behaviour.
inline qint64 truncated(double value)
{
    constexpr double limit = 1e15;
    return std::isfinite(value) && std::abs(value) < limit ? qint64(std::trunc(value)) : 0;
}

/// Slider value 0-1 to brightness 0-255. The top of the slider sends 255: the bridge takes it.
inline qint64 brightness(float sliderValue)
{
    return std::clamp<qint64>(truncated(double(sliderValue) * 255), 0, 255);
}

inline qint64 saturation(double y)
{
    return truncated(y / 50 * 250);
}

inline qint64 hue(double x)
{
    return truncated(x / 180 * 65535);
}

inline qint64 colorTemperature(double x, qint64 ctMin, qint64 ctMax)
{
    return ctMin + truncated(x / 180 * double(ctMax - ctMin));
}

} // namespace RowValues
