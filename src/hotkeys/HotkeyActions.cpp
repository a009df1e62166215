#include "hotkeys/HotkeyActions.h"

#include "hotkeys/GlobalHotkeys.h"
#include "hotkeys/HotkeyNames.h"
#include "state/BridgeLink.h"

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

HotkeyActions::HotkeyActions(BridgeLink& settings, HomeCommands& commands, QObject* parent)
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
    m_settings.preferences().setKeyIncrement(step);
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
    m_commands.allLightsOn();
}

void HotkeyActions::allLightsOff()
{
    m_commands.allLightsOff();
}

void HotkeyActions::allLightsBrighter()
{
    m_commands.allLightsBrighter();
}

void HotkeyActions::allLightsDarker()
{
    m_commands.allLightsDarker();
}

void HotkeyActions::allLightsRed()
{
    m_commands.allLightsRed();
}

void HotkeyActions::allLightsBlue()
{
    m_commands.allLightsBlue();
}

void HotkeyActions::allLightsWhite()
{
    m_commands.allLightsWhite();
}

void HotkeyActions::runCustomGroupAction(int slot)
{
    m_commands.runRoomAction(customGroupAction(slot));
}
