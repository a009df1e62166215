#pragma once

#include "model/HueGroup.h"
#include "model/HueLight.h"
#include "panels/ControlRow.h"

#include <functional>
#include <optional>

#include <QSet>

class BridgeLink;
class BridgeCommands;

/// One room in the rooms panel: switch, brightness, and (while colour bars for rooms are on) the colour field
/// when a member light takes colour, else the white-tone bar. Every change first writes the room's record in
/// the bridge's `BridgeHome`, then queues the command.
class GroupRow final : public ControlRow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(GroupRow)

public:
    GroupRow(BridgeLink& settings, BridgeCommands& commands, const HueGroup& group,
             QWidget* parent = nullptr);

    QString groupId() const { return m_groupId; }
    /// Shows a newer record of the same room and re-reads which bars apply, keeping a drag in progress.
    void setGroup(const HueGroup& group);
    /// The lamp ids of the lights that take colour, and of those with a white-tone range.
    struct LampAbilities
    {
        QSet<QString> colour;
        QSet<QString> whiteTone;
    };
    static LampAbilities lampAbilities(const QList<HueLight>& lights);
    /// The same, with the lamps' abilities already at hand (a list of many rooms gathers them once).
    void setGroup(const HueGroup& group, const LampAbilities& lamps);

private:
    void switchTo(bool on) override;
    void brightnessTo(float sliderValue) override;
    void colorAt(double hue, double saturation) override;
    void temperatureAt(double warmth) override;
    /// Applies @p change to the stored record and returns the result; nothing when the room is gone.
    std::optional<HueGroup> write(const std::function<void(HueGroup&)>& change);

    BridgeLink& m_settings;
    BridgeCommands& m_commands;
    QString m_groupId;
};
