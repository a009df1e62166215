#pragma once

#include <QtGlobal>

#include <utility>

/// Conversions between the records' units, which are the first interface's, and the current interface's:
/// brightness 1 to 254 against per cent, hue and saturation against CIE xy.
namespace ClipUnits {

/// Per cent (fractions allowed) to 1 to 254, as the first interface gives it for the same lamp state.
qint64 brightnessFromPercent(double percent);
/// 1 to 254 to per cent, exact enough that `brightnessFromPercent` gives `brightness` back: no drift when a
/// value goes to the bridge and comes back.
double percentFromBrightness(qint64 brightness);

/// The colour of the first interface's hue (0 to 65535) and saturation (0 to 254) at full value, as CIE xy
/// in the wide gamut the bridge works in.
std::pair<float, float> xyFromHueSaturation(qint64 hue, qint64 saturation);
/// The reverse, for showing a colour read as xy in the hue and saturation field; a colour outside the gamut
/// comes back as the nearest one inside.
std::pair<qint64, qint64> hueSaturationFromXy(float x, float y);

} // namespace ClipUnits
