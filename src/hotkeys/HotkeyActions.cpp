#include "hotkeys/HotkeyActions.h"

#include "hotkeys/GlobalHotkeys.h"
#include "hotkeys/HotkeyNames.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/Preferences.h"

#include <QHash>
#include <QSet>

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

HotkeyActions::HotkeyActions(BridgeSessions& sessions, Preferences& preferences, HomeCommands& commands,
                             QObject* parent)
    : QObject(parent), m_sessions(sessions), m_preferences(preferences), m_commands(commands)
{
    for (BridgeSession* session : m_sessions.all())
        watch(session);
    connect(&m_sessions, &BridgeSessions::added, this, [this](BridgeSession* session) {
        watch(session);
        Q_EMIT optionsChanged();
    });
    connect(&m_sessions, &BridgeSessions::removed, this, &HotkeyActions::onRemoved);
}

void HotkeyActions::watch(BridgeSession* session)
{
    connect(&session->link().home(), &BridgeHome::groupsChanged, this, &HotkeyActions::optionsChanged);
    connect(&session->link(), &BridgeLink::bridgeContactChanged, this, &HotkeyActions::optionsChanged);
}

void HotkeyActions::onRemoved(BridgeSession* session)
{
    // The session is still listed while its removal is announced: the options leave it out meanwhile.
    m_leaving = session;
    Q_EMIT optionsChanged();
    m_leaving = nullptr;
}

QList<GroupActionOption> HotkeyActions::options(const QList<BridgeRooms>& bridges)
{
    // A room name that more than one bridge has needs its bridge to tell the rooms apart; so does a bridge
    // name that more than one bridge has, which then gives way to the id.
    QHash<QString, QSet<qsizetype>> roomBridges;
    QHash<QString, int> bridgeNames;
    QHash<QString, int> namesOnBridge; // bridge index and folded room name: how many rooms carry it
    const auto onBridge = [](qsizetype b, const HueGroup& room) {
        return QString::number(b) + u'/' + room.name.toCaseFolded();
    };
    for (qsizetype b = 0; b < bridges.size(); ++b) {
        ++bridgeNames[bridges.at(b).bridgeName.toCaseFolded()];
        for (const HueGroup& room : bridges.at(b).rooms) {
            roomBridges[room.name.toCaseFolded()].insert(b);
            ++namesOnBridge[onBridge(b, room)];
        }
    }
    QList<GroupActionOption> list{{noAction, tr("(No action)")}};
    for (qsizetype b = 0; b < bridges.size(); ++b) {
        const BridgeRooms& bridge = bridges.at(b);
        const QString prefix = bridge.bridgeId.isEmpty() ? QString() : bridge.bridgeId + u'/';
        const QString bridgeLabel =
            bridge.bridgeName.isEmpty() || bridgeNames.value(bridge.bridgeName.toCaseFolded()) > 1
                ? bridge.bridgeId
                : bridge.bridgeName;
        for (const HueGroup& room : bridge.rooms) {
            QString name = room.isZone() ? tr("%1 (zone)").arg(room.name) : room.name;
            if (roomBridges.value(room.name.toCaseFolded()).size() > 1 && !bridgeLabel.isEmpty())
                name = tr("%1 (%2)").arg(name, bridgeLabel);
            // The heading tells a zone from a room, and rooms of one name apart by their bridge or, on one
            // bridge, by how many lamps each holds.
            QString kind = room.isZone() ? tr("zone") : tr("room");
            if (roomBridges.value(room.name.toCaseFolded()).size() > 1 && !bridgeLabel.isEmpty())
                kind = tr("%1, %2").arg(kind, bridgeLabel);
            else if (namesOnBridge.value(onBridge(b, room)) > 1)
                kind = tr("%1, %n lamps", nullptr, int(room.lights.size())).arg(kind);
            const QString section = tr("%1 \u2014 %2").arg(room.name, kind);
            for (const ActionWord& action : actionWords)
                list.append({prefix + room.group_id + u'_' + QLatin1String(action.word),
                             name + u' ' + tr(action.title), section, tr(action.title)});
        }
    }
    return list;
}

QList<GroupActionOption> HotkeyActions::options() const
{
    QList<BridgeRooms> bridges;
    for (const BridgeSession* session : m_sessions.all()) {
        if (session == m_leaving)
            continue;
        const BridgeLink& link = session->link();
        const bool first = bridges.isEmpty();
        // Its choices could not be told from another bridge's; it proves its id before it lists rooms.
        if (link.bridgeID().isEmpty() && !first)
            continue;
        bridges.append({link.bridgeID(), link.displayName(), link.home().groups()});
    }
    return options(bridges);
}

QString HotkeyActions::optionOf(const QString& stored) const
{
    const GroupHotkeyAction action = parseCustomGroupAction(stored);
    if (action.kind == Kind::none || !action.bridgeId.isEmpty())
        return stored;
    for (const BridgeSession* session : m_sessions.all()) {
        if (session == m_leaving)
            continue;
        const QString firstId = session->link().bridgeID();
        return firstId.isEmpty() ? stored : firstId + u'/' + stored;
    }
    return stored;
}

QString HotkeyActions::currentChoice(int slot) const
{
    return m_preferences.customGroupAction(slot).value_or(noAction);
}

void HotkeyActions::storeChoice(int slot, const QString& optionId)
{
    m_preferences.setCustomGroupAction(slot, optionId);
}

void HotkeyActions::storeStep(qint64 step)
{
    m_preferences.setKeyIncrement(step);
}

GroupHotkeyAction HotkeyActions::customGroupAction(int slot) const
{
    const std::optional<QString> stored = m_preferences.customGroupAction(slot);
    return stored ? parseCustomGroupAction(*stored) : GroupHotkeyAction{};
}

GroupHotkeyAction HotkeyActions::parseCustomGroupAction(const QString& stored)
{
    if (stored == noAction)
        return {};
    // "<bridge id>/<group id>_<action>"; without the bridge id, as stored before there were several bridges.
    QString bridgeId;
    QString choice = stored;
    const qsizetype slash = stored.indexOf(u'/');
    if (slash >= 0) {
        bridgeId = stored.left(slash);
        choice = stored.mid(slash + 1);
        if (bridgeId.isEmpty() || choice.contains(u'/'))
            return {};
    }
    // A group id holding "_" therefore never works; bridges give plain numbers.
    const QStringList pieces = choice.split(u'_', Qt::SkipEmptyParts);
    if (pieces.size() != 2)
        return {};
    for (const ActionWord& action : actionWords) {
        if (pieces.at(1) == QLatin1String(action.word))
            return {action.kind, pieces.at(0), bridgeId};
    }
    return {};
}

void HotkeyActions::registerHandlers(GlobalHotkeys& hotkeys)
{
    const auto post = [this](auto action) {
        return [this, action] { QMetaObject::invokeMethod(this, action, Qt::QueuedConnection); };
    };
    const std::pair<GlobalHotkeys::Name, void (HomeCommands::*)()> wholeHome[] = {
        {HotkeyNames::allLightsOff(), &HomeCommands::allLightsOff},
        {HotkeyNames::allLightsOn(), &HomeCommands::allLightsOn},
        {HotkeyNames::allLightsBrighter(), &HomeCommands::allLightsBrighter},
        {HotkeyNames::allLightsDarker(), &HomeCommands::allLightsDarker},
        {HotkeyNames::allLightsRed(), &HomeCommands::allLightsRed},
        {HotkeyNames::allLightsBlue(), &HomeCommands::allLightsBlue},
        {HotkeyNames::allLightsWhite(), &HomeCommands::allLightsWhite},
    };
    for (const auto& [name, command] : wholeHome)
        hotkeys.onKeyUp(name, post([this, command = command] { (m_commands.*command)(); }));
    for (int number = 1; number <= HotkeyNames::customGroupCount; ++number) {
        const int slot = slotOfCustomShortcut(number);
        hotkeys.onKeyUp(HotkeyNames::customGroup(number), post([this, slot] { runCustomGroupAction(slot); }));
    }
}

void HotkeyActions::runCustomGroupAction(int slot)
{
    m_commands.runRoomAction(customGroupAction(slot));
}
