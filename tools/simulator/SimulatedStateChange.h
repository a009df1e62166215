#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>

/// Applies v1 state parameters ("on", "bri", "ct", "xy", "bri_inc", ...) to a light's "state" or a group's
/// "action" the way a bridge does: each parameter on its own, numbers clamped into their range, and
/// "colormode" following the kind of colour that was set last.
class SimulatedStateChange final
{
public:
    enum class Outcome
    {
        Applied,      ///< the state took the value
        NotAvailable, ///< unknown parameter, or one this lamp does not have (bridge error 6)
        InvalidValue, ///< wrong type or out of the accepted range (bridge error 7)
    };

    /// Colour temperature range in mired that a lamp accepts.
    struct CtRange
    {
        int min = 153;
        int max = 500;
    };

    /// Applies @p parameter = @p value to @p state. A parameter is available when the state already holds
    /// the attribute it changes (a dimmable lamp has "bri" but no "hue"). On success @p reported receives
    /// the value to echo in the success item (the clamped value; the increment itself for *_inc).
    static Outcome apply(QJsonObject& state, const QString& parameter, const QJsonValue& value,
                         CtRange ctRange, QJsonValue* reported = nullptr);

    /// Sets "colormode" (when @p state has one) after the given parameters were applied: xy wins over ct,
    /// ct over hue/sat, as on a bridge.
    static void updateColorMode(QJsonObject& state, const QStringList& appliedParameters);

    /// The range of a light object's "capabilities", narrowed to the 153..500 mired the v1 interface
    /// carries (some third-party lamps report nonsense such as 0..65535).
    static CtRange ctRange(const QJsonObject& light);

    /// A state holding every attribute, to check group actions before handing them to mixed lamps.
    static QJsonObject fullState();

    SimulatedStateChange() = delete;
};
