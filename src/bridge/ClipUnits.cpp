#include "bridge/ClipUnits.h"

#include <algorithm>
#include <cmath>

namespace {

// sRGB's transfer curve, which the bridge maker's colour conversions use too.
double expand(double c)
{
    return c > 0.04045 ? std::pow((c + 0.055) / 1.055, 2.4) : c / 12.92;
}

double compress(double c)
{
    return c <= 0.0031308 ? 12.92 * c : 1.055 * std::pow(c, 1.0 / 2.4) - 0.055;
}

} // namespace

namespace ClipUnits {

qint64 brightnessFromPercent(double percent)
{
    if (!(percent > 0))
        return 1;
    return std::clamp<qint64>(qRound64(percent * 254.0 / 100.0), 1, 254);
}

double percentFromBrightness(qint64 brightness)
{
    // Two decimals: a step of the first interface is 0.39 per cent, so the rounding never reaches the next.
    const double percent = double(std::clamp<qint64>(brightness, 0, 254)) * 100.0 / 254.0;
    return std::round(percent * 100.0) / 100.0;
}

std::pair<float, float> xyFromHueSaturation(qint64 hue, qint64 saturation)
{
    // Hue and saturation at full value to RGB.
    const double h = double(std::clamp<qint64>(hue, 0, 65535)) / 65536.0 * 6.0;
    const double s = double(std::clamp<qint64>(saturation, 0, 254)) / 254.0;
    const int sector = int(h);
    const double f = h - sector;
    const double p = 1 - s;
    const double q = 1 - s * f;
    const double t = 1 - s * (1 - f);
    const double rgb[6][3] = {{1, t, p}, {q, 1, p}, {p, 1, t}, {p, q, 1}, {t, p, 1}, {1, p, q}};
    const double r = expand(rgb[sector % 6][0]);
    const double g = expand(rgb[sector % 6][1]);
    const double b = expand(rgb[sector % 6][2]);
    // The wide gamut's matrix (D65), as the bridge maker publishes it.
    const double X = r * 0.664511 + g * 0.154324 + b * 0.162028;
    const double Y = r * 0.283881 + g * 0.668433 + b * 0.047685;
    const double Z = r * 0.000088 + g * 0.072310 + b * 0.986039;
    const double sum = X + Y + Z;
    if (sum <= 0)
        return {0.3127f, 0.329f}; // white
    return {float(X / sum), float(Y / sum)};
}

std::pair<qint64, qint64> hueSaturationFromXy(float x, float y)
{
    if (!(y > 0) || !(x >= 0))
        return {0, 0};
    const double Y = 1.0;
    const double X = Y / y * x;
    const double Z = Y / y * (1.0 - x - y);
    double r = X * 1.656492 - Y * 0.354851 - Z * 0.255038;
    double g = -X * 0.707196 + Y * 1.655397 + Z * 0.036152;
    double b = X * 0.051713 - Y * 0.121364 + Z * 1.011530;
    r = std::max(r, 0.0);
    g = std::max(g, 0.0);
    b = std::max(b, 0.0);
    const double top = std::max({r, g, b});
    if (top <= 0)
        return {0, 0};
    r = compress(r / top);
    g = compress(g / top);
    b = compress(b / top);
    const double high = std::max({r, g, b});
    const double low = std::min({r, g, b});
    const double chroma = high - low;
    double h = 0;
    if (chroma > 0) {
        if (high == r)
            h = std::fmod((g - b) / chroma + 6.0, 6.0);
        else if (high == g)
            h = (b - r) / chroma + 2.0;
        else
            h = (r - g) / chroma + 4.0;
    }
    const qint64 hue = qint64(std::lround(h / 6.0 * 65536.0)) % 65536;
    const qint64 saturation = high > 0 ? qint64(std::lround(chroma / high * 254.0)) : 0;
    return {hue, std::clamp<qint64>(saturation, 0, 254)};
}

} // namespace ClipUnits
