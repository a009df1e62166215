#include "hotkeys/HotkeyActions.h"

#include "bridge/BridgeCommands.h"
#include "hotkeys/GlobalHotkeys.h"
#include "hotkeys/HotkeyNames.h"
#include "state/AppSettings.h"
#include "state/Console.h"

#include <QHash>

#include <limits>

namespace {

using Kind = GroupHotkeyAction::Kind;

struct ActionWord
{
    const char* word;
    Kind kind;
    const char* title;
};

// The words of the stored value and the titles of the picker, in the picker's order.
constexpr ActionWord actionWords[] = {
    {"on", Kind::on, QT_TRANSLATE_NOOP("HotkeyActions", "On")},
    {"off", Kind::off, QT_TRANSLATE_NOOP("HotkeyActions", "Off")},
    {"brighter", Kind::brighter, QT_TRANSLATE_NOOP("HotkeyActions", "Brighter")},
    {"darker", Kind::darker, QT_TRANSLATE_NOOP("HotkeyActions", "Darker")},
};

} // namespace

HotkeyActions::HotkeyActions(AppSettings& settings, BridgeCommands& commands, QObject* parent)
    : QObject(parent), m_settings(settings), m_commands(commands)
{}

QList<GroupActionOption> HotkeyActions::options(const QList<HueGroup>& rooms)
{
    QList<GroupActionOption> list{{noAction, tr("(No Action)")}};
    list.reserve(1 + rooms.size() * qsizetype(std::size(actionWords)));
    for (const HueGroup& room : rooms) {
        const QString name = room.isZone() ? tr("%1 (zone)").arg(room.name) : room.name;
        for (const ActionWord& action : actionWords)
            list.append({room.group_id + u'_' + QLatin1String(action.word), name + u' ' + tr(action.title)});
    }
    return list;
}

QString HotkeyActions::currentChoice(int slot) const
{
    return m_settings.preferences().customGroupAction(slot).value_or(noAction);
}

void HotkeyActions::storeChoice(int slot, const QString& optionId)
{
    m_settings.preferences().setCustomGroupAction(slot, optionId);
}

void HotkeyActions::storeStep(qint64 step)
{
    m_settings.setKeyIncrement(step);
}

GroupHotkeyAction HotkeyActions::customGroupAction(int slot) const
{
    const std::optional<QString> stored = m_settings.preferences().customGroupAction(slot);
    return stored ? parseCustomGroupAction(*stored) : GroupHotkeyAction{};
}

GroupHotkeyAction HotkeyActions::parseCustomGroupAction(const QString& stored)
{
    if (stored == noAction)
        return {};
    // A group id holding "_" therefore never works; bridges give plain numbers.
    const QStringList pieces = stored.split(u'_', Qt::SkipEmptyParts);
    if (pieces.size() != 2)
        return {};
    for (const ActionWord& action : actionWords) {
        if (pieces.at(1) == QLatin1String(action.word))
            return {action.kind, pieces.at(0)};
    }
    return {};
}

void HotkeyActions::registerHandlers(GlobalHotkeys& hotkeys)
{
    const auto post = [this](auto action) {
        return [this, action] { QMetaObject::invokeMethod(this, action, Qt::QueuedConnection); };
    };
    hotkeys.onKeyUp(HotkeyNames::allLightsOff(), post([this] { allLightsOff(); }));
    hotkeys.onKeyUp(HotkeyNames::allLightsOn(), post([this] { allLightsOn(); }));
    hotkeys.onKeyUp(HotkeyNames::allLightsBrighter(), post([this] { allLightsBrighter(); }));
    hotkeys.onKeyUp(HotkeyNames::allLightsDarker(), post([this] { allLightsDarker(); }));
    hotkeys.onKeyUp(HotkeyNames::allLightsRed(), post([this] { allLightsRed(); }));
    hotkeys.onKeyUp(HotkeyNames::allLightsBlue(), post([this] { allLightsBlue(); }));
    hotkeys.onKeyUp(HotkeyNames::allLightsWhite(), post([this] { allLightsWhite(); }));
    for (int number = 1; number <= HotkeyNames::customGroupCount; ++number) {
        const int slot = slotOfCustomShortcut(number);
        hotkeys.onKeyUp(HotkeyNames::customGroup(number), post([this, slot] { runCustomGroupAction(slot); }));
    }
}

void HotkeyActions::allLightsOn()
{
    changeEveryRoom([](HueGroup& room) { room.is_on = true; }, &HotkeyActions::switchOn);
}

void HotkeyActions::allLightsOff()
{
    changeEveryRoom([](HueGroup& room) { room.is_on = false; }, &HotkeyActions::switchOff);
}

void HotkeyActions::allLightsBrighter()
{
    changeEveryRoom([](HueGroup& room) { room.is_on = true; }, &HotkeyActions::brighten, dimmable());
}

void HotkeyActions::allLightsDarker()
{
    // Marked on although it only dims, like brighter: the refresh brings the bridge's word.
    changeEveryRoom([](HueGroup& room) { room.is_on = true; }, &HotkeyActions::darken, dimmable());
}

void HotkeyActions::allLightsRed()
{
    colorEveryRoom(redHue, 255);
}

void HotkeyActions::allLightsBlue()
{
    colorEveryRoom(blueHue, 255);
}

void HotkeyActions::allLightsWhite()
{
    colorEveryRoom(whiteHue, 0);
}

void HotkeyActions::runCustomGroupAction(int slot)
{
    const GroupHotkeyAction action = customGroupAction(slot);
    if (action.kind == Kind::none)
        return;
    // Every room with the id, not only the first: the walk goes on past a match.
    const QList<HueGroup> rooms = m_settings.groups();
    const bool stepping = action.kind == Kind::brighter || action.kind == Kind::darker;
    const auto canDim = stepping ? dimmable() : nullptr;
    for (qsizetype i = 0; i < rooms.size(); ++i) {
        if (rooms.at(i).group_id != action.groupId || (stepping && !canDim(rooms.at(i))))
            continue;
        switch (action.kind) {
        case Kind::on:
        case Kind::off: {
            QList<HueGroup> current = m_settings.groups();
            if (i >= current.size())
                return;
            current[i].is_on = action.kind == Kind::on;
            m_settings.setGroups(current);
            m_commands.setGroupOn(current.at(i), action.kind == Kind::on);
            break;
        }
        case Kind::brighter:
            brighten(rooms.at(i));
            break;
        case Kind::darker:
            darken(rooms.at(i));
            break;
        case Kind::none:
            break;
        }
    }
}

void HotkeyActions::colorEveryRoom(qint64 hue, qint64 saturation)
{
    changeEveryRoom(
        [hue, saturation](HueGroup& room) {
            room.saturation = saturation;
            room.hue = hue;
            room.is_on = true;
        },
        &HotkeyActions::sendColor);
}

void HotkeyActions::changeEveryRoom(const std::function<void(HueGroup&)>& change,
                                    void (HotkeyActions::*command)(const HueGroup&),
                                    const std::function<bool(const HueGroup&)>& applies)
{
    QList<HueGroup> rooms = m_settings.groups();
    if (rooms.isEmpty())
        return;
    // One change of the list for all rooms rather than one per room: the menu redraws once. Each room's
    // command still sees its own changed record.
    // Rooms only: a zone's lamps are in rooms already.
    QList<bool> chosen;
    chosen.reserve(rooms.size());
    for (HueGroup& room : rooms) {
        chosen.append(!room.isZone() && (!applies || applies(room)));
        if (chosen.constLast())
            change(room);
    }
    m_settings.setGroups(rooms);
    for (qsizetype i = 0; i < rooms.size(); ++i) {
        if (chosen.at(i))
            (this->*command)(rooms.at(i));
    }
}

std::function<bool(const HueGroup&)> HotkeyActions::dimmable() const
{
    QHash<QString, bool> dims;
    for (const HueLight& light : m_settings.lights())
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

void HotkeyActions::switchOn(const HueGroup& room)
{
    m_commands.setGroupOn(room, true);
}

void HotkeyActions::switchOff(const HueGroup& room)
{
    m_commands.setGroupOn(room, false);
}

void HotkeyActions::brighten(const HueGroup& room)
{
    if (const std::optional<qint64> delta = step(false))
        m_commands.increaseGroupBrightness(room, *delta);
}

void HotkeyActions::darken(const HueGroup& room)
{
    if (const std::optional<qint64> delta = step(true))
        m_commands.increaseGroupBrightness(room, *delta);
}

void HotkeyActions::sendColor(const HueGroup& room)
{
    m_commands.setGroupHue(room, room.hue);
}

std::optional<qint64> HotkeyActions::step(bool darker) const
{
    const qint64 increment = m_settings.keyIncrement();
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
