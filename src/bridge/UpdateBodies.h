#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <utility>

// The JSON bodies of the state changes Glowdeck sends, in the bridge's units: "bri" and "sat" 0-255, "hue"
// 0-65535, "ct" in mired, "transitiontime" in tenths of a second. Each encodes to one JSON object whose keys
// are the field names.

struct HueLampOnOffUpdate
{
    bool on = false;
    QByteArray encode() const;
};

struct HueLampBrightnessUpdate
{
    qint64 bri = 0;
    bool on = false;
    qint64 transitiontime = 0;
    QByteArray encode() const;
};

struct HueLampHueSatUpdate
{
    qint64 hue = 0;
    qint64 sat = 0;
    bool on = false;
    qint64 transitiontime = 0;
    QByteArray encode() const;
};

struct HueLampTemperatureUpdate
{
    qint64 ct = 0;
    bool on = false;
    qint64 transitiontime = 0;
    QByteArray encode() const;
};

/// A colour by its CIE coordinates, each 0 to 1; the bridge picks the nearest colour the lamp can show.
struct HueLampXyUpdate
{
    float x = 0;
    float y = 0;
    bool on = false;
    qint64 transitiontime = 0;
    QByteArray encode() const;
};

struct HueGroupStateUpdate
{
    bool on = false;
    QByteArray encode() const;
};

struct HueGroupBrightnessUpdate
{
    qint64 bri = 0;
    bool on = false;
    qint64 transitiontime = 0;
    QByteArray encode() const;
};

struct HueGroupHueUpdate
{
    qint64 hue = 0;
    qint64 sat = 0;
    bool on = false;
    qint64 transitiontime = 0;
    QByteArray encode() const;
};

struct HueGroupTemperatureUpdate
{
    qint64 ct = 0;
    bool on = false;
    qint64 transitiontime = 0;
    QByteArray encode() const;
};

struct HueGroupBrightnessIncrease
{
    qint64 bri_inc = 0;
    qint64 transitiontime = 0;
    bool on = false;
    QByteArray encode() const;
};

struct HueSceneRecall
{
    QString scene;
    QByteArray encode() const;
};

struct HueScheduleCommandOn
{
    bool on = false;
};

struct HueScheduleCommand
{
    QString address;
    QString method;
    HueScheduleCommandOn body;
};

struct HueScheduleOffMinutes
{
    QString name; ///< left out when empty
    HueScheduleCommand command;
    bool autodelete = false;
    QString localtime;
    bool recycle = false;
    QByteArray encode() const;
};

/// A change of a lamp, or of a room's `grouped_light`, over the bridge's current interface, in its units:
/// brightness and its steps in per cent, colour as CIE xy, white tone in mirek, the transition in ms. Only
/// the parts set are written, each as its own object: {"on":{"on":true},"dimming":{"brightness":50}}.
struct ClipStateUpdate
{
    std::optional<bool> on;
    std::optional<double> brightness;
    /// Per cent to add (negative: darker); written as "dimming_delta" with "up" or "down".
    std::optional<double> brightnessDelta;
    std::optional<std::pair<float, float>> xy;
    std::optional<qint64> mirek;
    std::optional<qint64> durationMs;
    QByteArray encode() const;
};

/// Recalls a scene over the current interface: {"recall":{"action":"active"}}, or "activate" for a smart
/// scene.
struct ClipSceneRecall
{
    bool smart = false;
    QByteArray encode() const;
};
