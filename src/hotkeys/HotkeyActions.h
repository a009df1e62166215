#pragma once

#include "commands/HomeCommands.h"
#include "model/HueGroup.h"

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class BridgeSession;
class BridgeSessions;
class GlobalHotkeys;
class Preferences;

/// One choice for a custom shortcut: the value stored for it and what the picker shows.
struct GroupActionOption
{
    QString id;
    QString title;
    /// The room's heading in a list grouped by room ("Bedroom — room, 3 lamps"); empty for "(No action)".
    QString section;
    /// What the choice does to it ("Brighter").
    QString action;

    bool operator==(const GroupActionOption&) const = default;
};

/// The rooms of one bridge, as the custom shortcuts' choices list them.
struct BridgeRooms
{
    QString bridgeId; ///< empty: the choices are stored without it, for the first bridge
    QString bridgeName;
    QList<HueGroup> rooms;
};

/// A custom shortcut's stored choice, read: what to do with which room of which bridge.
using GroupHotkeyAction = RoomAction;

/// What the global shortcuts do, by name: seven act on every room of every bridge at once, five each do one
/// chosen thing to one room of one bridge. The actions themselves are HomeCommands'; this keeps the custom
/// shortcuts' stored choices, lists what they may be, and hands each press to its command. Lives on the main
/// thread.
class HotkeyActions final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HotkeyActions)

public:
    /// The value of a custom slot that does nothing (also what an absent setting reads as).
    static inline const QString noAction = QStringLiteral("no_action");

    /// Lists the rooms of every session of `sessions`, following bridges added and removed.
    HotkeyActions(BridgeSessions& sessions, Preferences& preferences, HomeCommands& commands,
                  QObject* parent = nullptr);

    /// The choices for a custom slot: "(No action)", then for each bridge and each of its rooms, in order,
    /// on, off, brighter and darker, stored as "<bridge id>/<group id>_<action>". A room whose name another
    /// bridge has too is titled with its bridge's name ("Living room (Upstairs)"), or with its bridge's id
    /// where the bridges' names are alike as well.
    static QList<GroupActionOption> options(const QList<BridgeRooms>& bridges);
    /// The same for the bridges served now. A bridge that has not proved its id yet is left out, but for the
    /// first, whose choices are then stored in the older form.
    QList<GroupActionOption> options() const;
    /// The choice of options() that shows `stored`: the one of the first bridge for a choice in the older
    /// form without a bridge id, else `stored` itself (with the bridge id as the bridge gives it).
    QString optionOf(const QString& stored) const;

    /// The slot that custom shortcut `number` (1 to 5, as the user sees it) reads: one less. The numbering is
    /// kept as it always was, or stored choices would be read for the wrong shortcut.
    static int slotOfCustomShortcut(int number) { return number - 1; }

    /// The stored choice of slot 0 to 4; "no_action" when nothing is stored.
    QString currentChoice(int slot) const;
    /// Stores a choice; it takes effect at the next press, nothing is registered again.
    void storeChoice(int slot, const QString& optionId);
    /// Stores the brightness step of the brighter and darker shortcuts and shows it in the shared state.
    void storeStep(qint64 step);
    /// Reads slot 0 to 4. Anything but "<bridge id>/<group id>_<on|off|brighter|darker>", or the older
    /// "<group id>_<…>" (for the first bridge), is `none`.
    GroupHotkeyAction customGroupAction(int slot) const;
    /// The same, for a stored text.
    static GroupHotkeyAction parseCustomGroupAction(const QString& stored);

    /// Gives each of the twelve shortcuts its action, on key release. Each handler only posts its action to
    /// the event loop, so it runs after the key event, on this object's (the main) thread.
    void registerHandlers(GlobalHotkeys& hotkeys);

    /// Runs the stored choice of slot 0 to 4 on every room with that group id of that bridge.
    void runCustomGroupAction(int slot);

Q_SIGNALS:
    /// What options() lists may have changed: a bridge came or went, or a bridge's rooms, name or id
    /// changed.
    void optionsChanged();

private:
    void watch(BridgeSession* session);
    void onRemoved(BridgeSession* session);

    BridgeSessions& m_sessions;
    Preferences& m_preferences;
    HomeCommands& m_commands;
    /// The session announced as removed, still among the sessions while that is announced.
    const BridgeSession* m_leaving = nullptr;
};
