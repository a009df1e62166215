#pragma once

#include "commands/HomeCommands.h"
#include "model/HueGroup.h"

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class BridgeLink;
class GlobalHotkeys;

/// One choice for a custom shortcut: the value stored for it and what the picker shows.
struct GroupActionOption
{
    QString id;
    QString title;

    bool operator==(const GroupActionOption&) const = default;
};

/// A custom shortcut's stored choice, read: what to do with which room.
using GroupHotkeyAction = RoomAction;

/// What the twelve global shortcuts do, by name: seven act on every room at once, five each do one chosen
/// thing to one room. The actions themselves are HomeCommands'; this keeps the custom shortcuts' stored
/// choices and hands each press to its command. Lives on the main thread.
class HotkeyActions final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HotkeyActions)

public:
    /// The value of a custom slot that does nothing (also what an absent setting reads as).
    static inline const QString noAction = QStringLiteral("no_action");

    HotkeyActions(BridgeLink& settings, HomeCommands& commands, QObject* parent = nullptr);

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
    BridgeLink& m_settings;
    HomeCommands& m_commands;
};
