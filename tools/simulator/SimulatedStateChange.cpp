#include "SimulatedStateChange.h"

#include <QJsonArray>

#include <algorithm>
#include <cmath>

namespace {

constexpr int MinimumCt = 153;
constexpr int MaximumCt = 500;

// The bridge takes whole numbers only: 100.5 or "100" are invalid values.
bool wholeNumber(const QJsonValue& value, qint64 minimum, qint64 maximum, qint64* out)
{
    if (!value.isDouble())
        return false;
    const double number = value.toDouble();
    if (!std::isfinite(number) || std::floor(number) != number || number < double(minimum) ||
        number > double(maximum))
        return false;
    *out = qint64(number);
    return true;
}

// A value far outside of anything sensible is rejected, everything else is pulled into the lamp's range.
constexpr qint64 Lenient = 1'000'000;

int clampInt(qint64 value, int minimum, int maximum)
{
    return int(std::clamp<qint64>(value, minimum, maximum));
}

bool oneOf(const QJsonValue& value, std::initializer_list<const char*> accepted)
{
    if (!value.isString())
        return false;
    const QString text = value.toString();
    return std::any_of(accepted.begin(), accepted.end(),
                       [&text](const char* option) { return text == QLatin1String(option); });
}

} // namespace

SimulatedStateChange::Outcome SimulatedStateChange::apply(QJsonObject& state, const QString& parameter,
                                                          const QJsonValue& value, CtRange ctRange,
                                                          QJsonValue* reported)
{
    QJsonValue echo = value;
    qint64 number = 0;
    auto has = [&state](const char* attribute) { return state.contains(QLatin1String(attribute)); };

    if (parameter == QLatin1String("on")) {
        if (!has("on"))
            return Outcome::NotAvailable;
        if (!value.isBool())
            return Outcome::InvalidValue;
        state.insert(parameter, value);
    } else if (parameter == QLatin1String("bri") || parameter == QLatin1String("sat") ||
               parameter == QLatin1String("hue") || parameter == QLatin1String("ct")) {
        if (!state.contains(parameter))
            return Outcome::NotAvailable;
        if (!wholeNumber(value, -Lenient, Lenient, &number))
            return Outcome::InvalidValue;
        int applied = 0;
        if (parameter == QLatin1String("bri"))
            applied = clampInt(number, 1, 254);
        else if (parameter == QLatin1String("sat"))
            applied = clampInt(number, 0, 254);
        else if (parameter == QLatin1String("hue"))
            applied = clampInt(number, 0, 65535);
        else
            applied = clampInt(number, ctRange.min, ctRange.max);
        state.insert(parameter, applied);
        echo = applied;
    } else if (parameter == QLatin1String("xy")) {
        if (!has("xy"))
            return Outcome::NotAvailable;
        const QJsonArray xy = value.toArray();
        if (!value.isArray() || xy.size() != 2 || !xy.at(0).isDouble() || !xy.at(1).isDouble())
            return Outcome::InvalidValue;
        QJsonArray applied;
        for (const QJsonValue coordinate : xy) {
            if (!std::isfinite(coordinate.toDouble()))
                return Outcome::InvalidValue;
            // A bridge keeps four decimals.
            applied.append(std::round(std::clamp(coordinate.toDouble(), 0.0, 1.0) * 10000.0) / 10000.0);
        }
        state.insert(parameter, applied);
        echo = applied;
    } else if (parameter == QLatin1String("transitiontime")) {
        // Changes nothing we keep, yet a bridge confirms it like any other attribute.
        if (!wholeNumber(value, 0, 65535, &number))
            return Outcome::InvalidValue;
    } else if (parameter == QLatin1String("bri_inc") || parameter == QLatin1String("sat_inc")) {
        const QString attribute = parameter.left(3);
        if (!state.contains(attribute))
            return Outcome::NotAvailable;
        if (!wholeNumber(value, -254, 254, &number))
            return Outcome::InvalidValue;
        // A bridge never dims below 1 with an increment; switching off takes "on":false.
        const int minimum = attribute == QLatin1String("bri") ? 1 : 0;
        state.insert(attribute, clampInt(qint64(state.value(attribute).toDouble()) + number, minimum, 254));
    } else if (parameter == QLatin1String("hue_inc")) {
        if (!has("hue"))
            return Outcome::NotAvailable;
        if (!wholeNumber(value, -65534, 65534, &number))
            return Outcome::InvalidValue;
        // Hue is an angle: it wraps around.
        state.insert(
            QStringLiteral("hue"),
            int(((qint64(state.value(QLatin1String("hue")).toDouble()) + number) % 65536 + 65536) % 65536));
    } else if (parameter == QLatin1String("ct_inc")) {
        if (!has("ct"))
            return Outcome::NotAvailable;
        if (!wholeNumber(value, -65534, 65534, &number))
            return Outcome::InvalidValue;
        state.insert(
            QStringLiteral("ct"),
            clampInt(qint64(state.value(QLatin1String("ct")).toDouble()) + number, ctRange.min, ctRange.max));
    } else if (parameter == QLatin1String("alert")) {
        if (!has("alert"))
            return Outcome::NotAvailable;
        if (!oneOf(value, {"none", "select", "lselect"}))
            return Outcome::InvalidValue;
        state.insert(parameter, value);
    } else if (parameter == QLatin1String("effect")) {
        if (!has("effect"))
            return Outcome::NotAvailable;
        if (!oneOf(value, {"none", "colorloop"}))
            return Outcome::InvalidValue;
        state.insert(parameter, value);
    } else {
        return Outcome::NotAvailable;
    }
    if (reported)
        *reported = echo;
    return Outcome::Applied;
}

void SimulatedStateChange::updateColorMode(QJsonObject& state, const QStringList& appliedParameters)
{
    if (!state.contains(QLatin1String("colormode")))
        return;
    auto any = [&appliedParameters](std::initializer_list<const char*> names) {
        return std::any_of(names.begin(), names.end(), [&appliedParameters](const char* name) {
            return appliedParameters.contains(QLatin1String(name));
        });
    };
    if (any({"xy"}))
        state.insert(QStringLiteral("colormode"), QStringLiteral("xy"));
    else if (any({"ct", "ct_inc"}))
        state.insert(QStringLiteral("colormode"), QStringLiteral("ct"));
    else if (any({"hue", "sat", "hue_inc", "sat_inc"}))
        state.insert(QStringLiteral("colormode"), QStringLiteral("hs"));
}

SimulatedStateChange::CtRange SimulatedStateChange::ctRange(const QJsonObject& light)
{
    const QJsonObject ct = light.value(QLatin1String("capabilities"))
                               .toObject()
                               .value(QLatin1String("control"))
                               .toObject()
                               .value(QLatin1String("ct"))
                               .toObject();
    CtRange range;
    range.min = std::clamp(ct.value(QLatin1String("min")).toInt(MinimumCt), MinimumCt, MaximumCt);
    range.max = std::clamp(ct.value(QLatin1String("max")).toInt(MaximumCt), MinimumCt, MaximumCt);
    if (range.min > range.max)
        range = CtRange{};
    return range;
}

QJsonObject SimulatedStateChange::fullState()
{
    return QJsonObject{{QStringLiteral("on"), false},
                       {QStringLiteral("bri"), 1},
                       {QStringLiteral("hue"), 0},
                       {QStringLiteral("sat"), 0},
                       {QStringLiteral("effect"), QStringLiteral("none")},
                       {QStringLiteral("xy"), QJsonArray{0.0, 0.0}},
                       {QStringLiteral("ct"), MinimumCt},
                       {QStringLiteral("alert"), QStringLiteral("none")},
                       {QStringLiteral("colormode"), QStringLiteral("ct")}};
}
