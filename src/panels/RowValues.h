#pragma once

#include <QtGlobal>

#include <algorithm>
#include <cmath>

/// How a row turns a position on its controls into the bridge's values, and back for the markers. Positions
/// arrive as fractions of the control's real size (see `fraction`), so the colour under the pointer is the
/// colour sent, however wide the row is. Every value is clamped to the range the bridge accepts; it refuses
/// the rest.
namespace RowValues {

inline constexpr qint64 brightnessMax = 255;
inline constexpr qint64 hueMax = 65535;
inline constexpr qint64 saturationMax = 254;
/// The colour field's bottom edge: saturation grows by 250 from top to bottom.
inline constexpr qint64 saturationScale = 250;
/// The white range of every Hue white-tone lamp, in mireds: for a lamp that reports no range of its own.
inline constexpr qint64 commonMiredMin = 153;
inline constexpr qint64 commonMiredMax = 500;

/// Truncates toward zero; a non-finite or absurd input (no real pointer gets there) gives 0 instead of
/// undefined behaviour.
inline qint64 truncated(double value)
{
    constexpr double limit = 1e15;
    return std::isfinite(value) && std::abs(value) < limit ? qint64(std::trunc(value)) : 0;
}

/// Where a pointer at pixel `position` lies along a control `length` pixels long, 0 to 1: the first pixel is
/// 0 and the last pixel 1, so a click reaches both ends; a drag past either end stays at it.
inline double fraction(double position, double length)
{
    if (!std::isfinite(position) || !(length > 1))
        return 0;
    return std::clamp(position / (length - 1), 0.0, 1.0);
}

/// Slider value 0-1 to brightness 0-255. The top of the slider sends 255: the bridge takes it.
inline qint64 brightness(float sliderValue)
{
    return std::clamp<qint64>(truncated(double(sliderValue) * 255), 0, brightnessMax);
}

/// Fraction of the colour field's height to saturation: the bottom edge gives 250.
inline qint64 saturation(double fraction)
{
    return std::clamp<qint64>(truncated(fraction * saturationScale), 0, saturationMax);
}

/// Fraction of the colour field's width to hue: the right edge gives 65535.
inline qint64 hue(double fraction)
{
    return std::clamp<qint64>(truncated(fraction * hueMax), 0, hueMax);
}

/// The mireds a lamp or room takes, lowest first. A missing or reversed range (0, the decoder's 10000 for
/// "unknown") falls back to the common white range.
struct MiredRange
{
    qint64 low;
    qint64 high;
};
inline MiredRange miredRange(qint64 ctMin, qint64 ctMax)
{
    const qint64 low = ctMin > 0 ? ctMin : commonMiredMin;
    const qint64 high = ctMax > low && ctMax < 10000 ? ctMax : std::max(low, commonMiredMax);
    return {low, high};
}

/// Fraction of the white-tone bar's width to mireds: the left edge gives the lamp's lowest, the right edge
/// its highest.
inline qint64 colorTemperature(double fraction, qint64 ctMin, qint64 ctMax)
{
    const MiredRange range = miredRange(ctMin, ctMax);
    const double span = double(range.high - range.low);
    return std::clamp(range.low + truncated(std::clamp(fraction, 0.0, 1.0) * span), range.low, range.high);
}

/// Where the markers sit for the current values, as fractions of the field.
inline double hueFraction(qint64 hue)
{
    return std::clamp(double(hue) / double(hueMax), 0.0, 1.0);
}
inline double saturationFraction(qint64 saturation)
{
    return std::clamp(double(saturation) / double(saturationScale), 0.0, 1.0);
}
inline double temperatureFraction(qint64 mired, qint64 ctMin, qint64 ctMax)
{
    const MiredRange range = miredRange(ctMin, ctMax);
    if (range.high <= range.low)
        return 0;
    return std::clamp(double(mired - range.low) / double(range.high - range.low), 0.0, 1.0);
}

} // namespace RowValues
