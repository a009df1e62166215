#pragma once

#include "model/HueGroup.h"

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class AppSettings;
class GlobalHotkeys;
class BridgeCommands;

/// One choice for a custom shortcut: the value stored for it and what the picker shows.
struct GroupActionOption
{
    QString id;
    QString title;

    bool operator==(const GroupActionOption&) const = default;
};

/// A custom shortcut's stored choice, read: what to do with which room.
struct GroupHotkeyAction
{
    enum class Kind
    {
        none,
        on,
        off,
        brighter,
        darker
    };

    Kind kind = Kind::none;
    QString groupId; ///< empty for `none`

    bool operator==(const GroupHotkeyAction&) const = default;
};

/// What the twelve global shortcuts do: seven act on every room at once, five each do one chosen thing to one
/// room. Every change shows at once in the shared state and goes to the bridge through BridgeCommands and its
/// queue, like every other change. Lives on the main thread.
class HotkeyActions final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HotkeyActions)

public:
    /// The value of a custom slot that does nothing (also what an absent setting reads as).
    static inline const QString noAction = QStringLiteral("no_action");

    // The colour presets, on the bridge's scales (hue 0-65535, saturation 0-255). White is no saturation; its
    // hue is only what the room keeps.
    static constexpr qint64 redHue = 1913;
    static constexpr qint64 blueHue = 47058;
    static constexpr qint64 whiteHue = 43413;

    HotkeyActions(AppSettings& settings, BridgeCommands& commands, QObject* parent = nullptr);

    /// The choices for a custom slot: "(No Action)", then for each room, in the list's order, on, off,
    /// brighter and darker.
    static QList<GroupActionOption> options(const QList<HueGroup>& rooms);

    /// The slot that custom shortcut `number` (1 to 5, as the user sees it) reads: one less. The numbering is
    /// kept as it always was, or stored choices would be read for the wrong shortcut.
    static int slotOfCustomShortcut(int number) { return number - 1; }

    /// The stored choice of slot 0 to 4; "no_action" when nothing is stored.
    QString currentChoice(int slot) const;
    /// Stores a choice; it takes effect at the next press, nothing is registered again.
    void storeChoice(int slot, const QString& optionId);
    /// Stores the brightness step of the brighter and darker shortcuts and shows it in the shared state.
    void storeStep(qint64 step);
    /// Reads slot 0 to 4. Anything but "<group id>_<on|off|brighter|darker>" is `none`.
    GroupHotkeyAction customGroupAction(int slot) const;
    /// The same, for a stored text.
    static GroupHotkeyAction parseCustomGroupAction(const QString& stored);

    /// Gives each of the twelve shortcuts its action, on key release. Each handler only posts its action to
    /// the event loop, so it runs after the key event, on this object's (the main) thread.
    void registerHandlers(GlobalHotkeys& hotkeys);

    void allLightsOn();
    void allLightsOff();
    void allLightsBrighter();
    void allLightsDarker();
    void allLightsRed();
    void allLightsBlue();
    void allLightsWhite();
    /// Runs the stored choice of slot 0 to 4 on every room with that group id.
    void runCustomGroupAction(int slot);

private:
    /// Changes each room's record first, so the menu shows it at once, then sends each room its command; only
    /// the rooms `applies` accepts, when given.
    void changeEveryRoom(const std::function<void(HueGroup&)>& change,
                         void (HotkeyActions::*command)(const HueGroup&),
                         const std::function<bool(const HueGroup&)>& applies = {});
    /// Whether a brightness step means anything to the room: not for a room of plugs and other lamps without
    /// dimming only. A room none of whose lamps is known yet is taken as dimmable.
    std::function<bool(const HueGroup&)> dimmable() const;
    /// Every room on, in this colour; the hue and saturation are the room's own from then on.
    void colorEveryRoom(qint64 hue, qint64 saturation);
    void switchOn(const HueGroup& room);
    void switchOff(const HueGroup& room);
    void brighten(const HueGroup& room);
    void darken(const HueGroup& room);
    void sendColor(const HueGroup& room);
    /// The step, negated for darker; nothing when it cannot be negated.
    std::optional<qint64> step(bool darker) const;

    AppSettings& m_settings;
    BridgeCommands& m_commands;
};
