#pragma once

#include "model/HueLight.h"
#include "panels/ControlRow.h"

#include <functional>
#include <optional>

class BridgeLink;
class BridgeCommands;

/// One light in the lights panel: switch, brightness, and the colour field and white-tone bar the lamp
/// supports. Every change first writes the light's record in the bridge's `BridgeHome`, then queues the
/// command.
class LightRow final : public ControlRow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LightRow)

public:
    LightRow(BridgeLink& settings, BridgeCommands& commands, const HueLight& light,
             QWidget* parent = nullptr);

    QString lampId() const { return m_lampId; }
    /// Shows a newer record of the same light, keeping a drag in progress.
    void setLight(const HueLight& light);

private:
    void switchTo(bool on) override;
    void brightnessTo(float sliderValue) override;
    void colorAt(double hue, double saturation) override;
    void temperatureAt(double warmth) override;

    /// Applies @p change to the stored record and returns the result; nothing when the light is gone.
    std::optional<HueLight> write(const std::function<void(HueLight&)>& change);

    BridgeLink& m_settings;
    BridgeCommands& m_commands;
    QString m_lampId;
};
