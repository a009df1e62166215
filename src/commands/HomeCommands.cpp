#include "commands/HomeCommands.h"

#include "bridge/BridgeCommands.h"
#include "commands/SwitchOffTimer.h"
#include "connection/BridgeConnection.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/Console.h"

#include <QHash>

#include <limits>

using Kind = RoomAction::Kind;

HomeCommands::HomeCommands(BridgeSessions& sessions, QObject* parent) : QObject(parent), m_sessions(sessions)
{
    for (BridgeSession* session : m_sessions.all())
        watch(session);
    connect(&m_sessions, &BridgeSessions::added, this, &HomeCommands::watch);
    connect(&m_sessions, &BridgeSessions::removed, this, &HomeCommands::forget);
}

HomeCommands::~HomeCommands() = default;

void HomeCommands::watch(BridgeSession* session)
{
    Timer& entry = m_timers[session];
    entry.timer = std::make_unique<SwitchOffTimer>(session->link(), session->network(), session->queue(),
                                                   session->commands());
    connect(entry.timer.get(), &SwitchOffTimer::changed, this, &HomeCommands::switchOffChanged);
    connect(entry.timer.get(), &SwitchOffTimer::wentOff, this, &HomeCommands::switchOffWentOff);
    connect(&session->connection(), &BridgeConnection::lightsRefreshed, entry.timer.get(),
            [this, session](const LightsResult& result) {
                const auto found = m_timers.find(session);
                if (result.ok() && found != m_timers.end() &&
                    std::exchange(found->second.lookOnBridge, false))
                    found->second.timer->findOnBridge();
            });
}

void HomeCommands::forget(BridgeSession* session)
{
    m_timers.erase(session);
    Q_EMIT switchOffChanged();
}

void HomeCommands::lookForSwitchOffTimers()
{
    for (auto& [session, entry] : m_timers)
        entry.lookOnBridge = true;
}

SwitchOffTimer* HomeCommands::switchOffTimer(const BridgeSession& session) const
{
    const auto found = m_timers.find(&session);
    return found == m_timers.end() ? nullptr : found->second.timer.get();
}

void HomeCommands::allLightsOn()
{
    for (BridgeSession* session : m_sessions.all())
        session->commands().switchEverything(true);
}

void HomeCommands::allLightsOff()
{
    switchEverythingOff();
}

void HomeCommands::allLightsBrighter()
{
    changeEveryRoomEverywhere(
        [](HueGroup& room) { room.is_on = true; },
        [](BridgeSession& session, const HueGroup& room) { stepRoom(session, room, false); }, true);
}

void HomeCommands::allLightsDarker()
{
    // Marked on although it only dims, like brighter: the refresh brings the bridge's word.
    changeEveryRoomEverywhere(
        [](HueGroup& room) { room.is_on = true; },
        [](BridgeSession& session, const HueGroup& room) { stepRoom(session, room, true); }, true);
}

void HomeCommands::allLightsRed()
{
    colorEveryRoom(redHue, 255);
}

void HomeCommands::allLightsBlue()
{
    colorEveryRoom(blueHue, 255);
}

void HomeCommands::allLightsWhite()
{
    colorEveryRoom(whiteHue, 0);
}

void HomeCommands::runRoomAction(const RoomAction& action)
{
    if (action.kind == Kind::none)
        return;
    BridgeSession* session =
        action.bridgeId.isEmpty() ? m_sessions.first() : m_sessions.find(action.bridgeId);
    if (session) {
        BridgeLink& state = session->link();
        // Every room with the id, not only the first: the walk goes on past a match.
        const QList<HueGroup> rooms = state.home().groups();
        const bool stepping = action.kind == Kind::brighter || action.kind == Kind::darker;
        const auto canDim = stepping ? dimmable(state) : nullptr;
        for (qsizetype i = 0; i < rooms.size(); ++i) {
            if (rooms.at(i).group_id != action.groupId || (stepping && !canDim(rooms.at(i))))
                continue;
            switch (action.kind) {
            case Kind::on:
            case Kind::off: {
                QList<HueGroup> current = state.home().groups();
                if (i >= current.size())
                    break;
                current[i].is_on = action.kind == Kind::on;
                state.home().setGroups(current);
                session->commands().setGroupOn(current.at(i), action.kind == Kind::on);
                break;
            }
            case Kind::brighter:
            case Kind::darker:
                stepRoom(*session, rooms.at(i), action.kind == Kind::darker);
                break;
            case Kind::none:
                break;
            }
        }
    }
}

void HomeCommands::switchEverythingOff()
{
    for (BridgeSession* session : m_sessions.all())
        session->commands().switchEverythingOff();
}

QDateTime HomeCommands::switchOffIn(qint64 minutes)
{
    for (auto& [session, entry] : m_timers)
        entry.timer->start(minutes);
    return switchOffAt();
}

void HomeCommands::cancelSwitchOff()
{
    for (auto& [session, entry] : m_timers)
        entry.timer->cancel();
}

QDateTime HomeCommands::switchOffAt() const
{
    QDateTime earliest;
    for (const auto& [session, entry] : m_timers) {
        const QDateTime at = entry.timer->firesAt();
        if (at.isValid() && (!earliest.isValid() || at < earliest))
            earliest = at;
    }
    return earliest;
}

void HomeCommands::colorEveryRoom(qint64 hue, qint64 saturation)
{
    changeEveryRoomEverywhere(
        [hue, saturation](HueGroup& room) {
            room.saturation = saturation;
            room.hue = hue;
            room.is_on = true;
        },
        [](BridgeSession& session, const HueGroup& room) { session.commands().setGroupHue(room, room.hue); });
}

void HomeCommands::changeEveryRoomEverywhere(
    const std::function<void(HueGroup&)>& change,
    const std::function<void(BridgeSession&, const HueGroup&)>& command, bool dimmableOnly)
{
    for (BridgeSession* session : m_sessions.all())
        changeEveryRoom(*session, change, command, dimmableOnly ? dimmable(session->link()) : nullptr);
}

void HomeCommands::changeEveryRoom(BridgeSession& session, const std::function<void(HueGroup&)>& change,
                                   const std::function<void(BridgeSession&, const HueGroup&)>& command,
                                   const std::function<bool(const HueGroup&)>& applies)
{
    BridgeLink& state = session.link();
    QList<HueGroup> rooms = state.home().groups();
    if (rooms.isEmpty())
        return;
    // One change of the list for all rooms rather than one per room: the menu redraws once. Each room's
    // command still sees its own changed record.
    QList<bool> chosen;
    chosen.reserve(rooms.size());
    for (HueGroup& room : rooms) {
        chosen.append(!room.isZone() && (!applies || applies(room)));
        if (chosen.constLast())
            change(room);
    }
    state.home().setGroups(rooms);
    for (qsizetype i = 0; i < rooms.size(); ++i) {
        if (chosen.at(i))
            command(session, rooms.at(i));
    }
}

std::function<bool(const HueGroup&)> HomeCommands::dimmable(const BridgeLink& state)
{
    QHash<QString, bool> dims;
    for (const HueLight& light : state.home().lights())
        dims.insert(light.lamp_id, light.allows_brightness);
    return [dims = std::move(dims)](const HueGroup& room) {
        bool anyKnown = false;
        for (const QString& lampId : room.lights) {
            const auto found = dims.constFind(lampId);
            if (found == dims.cend())
                continue;
            if (*found)
                return true;
            anyKnown = true;
        }
        return !anyKnown;
    };
}

void HomeCommands::stepRoom(BridgeSession& session, const HueGroup& room, bool darker)
{
    if (const std::optional<qint64> delta = step(session.link(), darker))
        session.commands().increaseGroupBrightness(room, *delta);
}

std::optional<qint64> HomeCommands::step(const BridgeLink& state, bool darker)
{
    const qint64 increment = state.preferences().keyIncrement();
    if (!darker)
        return increment;
    // The one value whose negation does not exist: send nothing rather than a wrong step.
    if (increment == std::numeric_limits<qint64>::min()) {
        printLine(QStringLiteral("Glowdeck: the brightness step %1 in the settings cannot be used for "
                                 "darker; nothing is sent. Choose a step size in the hotkeys settings.")
                      .arg(increment));
        return std::nullopt;
    }
    return -increment;
}
