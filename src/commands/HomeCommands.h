#pragma once

#include "model/HueGroup.h"

#include <QDateTime>
#include <QObject>
#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <optional>

class BridgeLink;
class BridgeSession;
class BridgeSessions;
class SwitchOffTimer;

/// What one of the custom room actions does to which room.
struct RoomAction
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
    /// The bridge whose room it is, as its id; empty for the first bridge (a choice made before Glowdeck
    /// served several).
    QString bridgeId;

    bool operator==(const RoomAction&) const = default;
};

/// Every action the user takes on the home as a whole, in one place: the shortcuts' actions on every lamp
/// (on, off) and on every room (brighter, darker, red, blue, white) and a chosen room's action on its own
/// bridge, the menu's "Darkness!", "Off in N minutes" and its cancel, with the switch-off timer each bridge
/// keeps. The whole-home actions act on every bridge's session; each change shows at once in that bridge's
/// state and goes to its bridge through its commands and queue. The tray menu, the global shortcuts and
/// glowdeckctl are thin adapters over these. Lives on the main thread.
class HomeCommands final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HomeCommands)

public:
    // The colour presets, on the bridge's scales (hue 0-65535, saturation 0-255). White is no saturation; its
    // hue is only what the room keeps.
    static constexpr qint64 redHue = 1913;
    static constexpr qint64 blueHue = 47058;
    static constexpr qint64 whiteHue = 43413;

    /// Follows `sessions`: a session added gets its switch-off timer, one removed loses it.
    explicit HomeCommands(BridgeSessions& sessions, QObject* parent = nullptr);
    ~HomeCommands() override;

    /// Every lamp of every bridge on, or off: one request per bridge, to group 0, whatever the number of
    /// rooms (a bridge takes about one room command a second).
    void allLightsOn();
    void allLightsOff();
    void allLightsBrighter();
    void allLightsDarker();
    void allLightsRed();
    void allLightsBlue();
    void allLightsWhite();
    /// Runs `action` on every room with its group id on the bridge it names (the first bridge when it names
    /// none); nothing when no bridge served has that id. Room "1" of another bridge is another room.
    void runRoomAction(const RoomAction& action);

    /// "Darkness!": every lamp of every bridge off, one request per bridge.
    void switchEverythingOff();
    /// "Off in N minutes": each bridge switches every lamp off after `minutes`, replacing the timer set
    /// before. Returns when the lights go off.
    QDateTime switchOffIn(qint64 minutes);
    /// Cancels every bridge's switch-off timer.
    void cancelSwitchOff();
    /// When the lights go off, the earliest of the bridges' timers; invalid while none is pending.
    QDateTime switchOffAt() const;
    /// Takes up this program's switch-off timers from the bridges once each next answers: at the start (a
    /// timer set before a restart is still there) and after a wake (it may have gone off meanwhile).
    void lookForSwitchOffTimers();
    /// The switch-off timer of `session`; null for a session not among the sessions.
    SwitchOffTimer* switchOffTimer(const BridgeSession& session) const;

Q_SIGNALS:
    /// A bridge's switch-off timer was set, replaced, cancelled, refused, went off or was found again.
    void switchOffChanged();
    /// A bridge's switch-off timer went off while this program ran.
    void switchOffWentOff();

private:
    /// Changes each room's record of `session` first, so the menu shows it at once, then sends each room its
    /// command; only the rooms `applies` accepts, when given. Zones are left out: their lamps are in rooms.
    void changeEveryRoom(BridgeSession& session, const std::function<void(HueGroup&)>& change,
                         const std::function<void(BridgeSession&, const HueGroup&)>& command,
                         const std::function<bool(const HueGroup&)>& applies = {});
    void changeEveryRoomEverywhere(const std::function<void(HueGroup&)>& change,
                                   const std::function<void(BridgeSession&, const HueGroup&)>& command,
                                   bool dimmableOnly = false);
    /// Whether a brightness step means anything to a room of `state`: not for a room of plugs and other
    /// lamps without dimming only. A room none of whose lamps is known yet is taken as dimmable.
    static std::function<bool(const HueGroup&)> dimmable(const BridgeLink& state);
    /// Every room on, in this colour; the hue and saturation are the room's own from then on.
    void colorEveryRoom(qint64 hue, qint64 saturation);
    /// The brightness step of the brighter and darker actions, negated for darker; nothing when it cannot
    /// be negated.
    static std::optional<qint64> step(const BridgeLink& state, bool darker);
    static void stepRoom(BridgeSession& session, const HueGroup& room, bool darker);
    void watch(BridgeSession* session);
    void forget(BridgeSession* session);

    /// A session's switch-off timer, and whether to look for it on the bridge at its next answer.
    struct Timer
    {
        std::unique_ptr<SwitchOffTimer> timer;
        bool lookOnBridge = false;
    };

    BridgeSessions& m_sessions;
    std::map<const BridgeSession*, Timer> m_timers;
};
