#include "dbus/DesktopBusService.h"

#include "bridge/BridgeCommands.h"
#include "commands/HomeCommands.h"
#include "dbus/ApplicationActivation.h"
#include "dbus/BusNames.h"
#include "dbus/RecordFields.h"
#include "dbus/RecordLookup.h"
#include "model/SceneRooms.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QMetaEnum>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

constexpr qint64 maxBrightness = 254; // the most a bridge stores
constexpr qint64 maxHue = 65535;
constexpr qint64 minMirek = 153;
constexpr qint64 maxMirek = 500;

/// Per cent of full brightness to the bridge's 0-254.
qint64 bridgeBrightness(double percent)
{
    return qint64(std::lround(percent * double(maxBrightness) / 100.0));
}

std::optional<double> number(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::UChar:
    case QMetaType::Double:
        return value.toDouble();
    default:
        return std::nullopt;
    }
}

/// Two doubles, sent as "ad" (arrives as a QDBusArgument) or as "av".
std::optional<QList<double>> numbers(const QVariant& value)
{
    QList<double> list;
    if (value.canConvert<QDBusArgument>()) {
        const auto argument = value.value<QDBusArgument>();
        if (argument.currentSignature() == u"ad") {
            argument >> list;
            return list;
        }
        if (argument.currentSignature() != u"av")
            return std::nullopt;
        QVariantList items;
        argument >> items;
        for (const QVariant& item : std::as_const(items)) {
            const std::optional<double> n = number(item);
            if (!n)
                return std::nullopt;
            list.append(*n);
        }
        return list;
    }
    if (value.typeId() == QMetaType::QVariantList) {
        for (const QVariant& item : value.toList()) {
            const std::optional<double> n = number(item);
            if (!n)
                return std::nullopt;
            list.append(*n);
        }
        return list;
    }
    return std::nullopt;
}

QString reachName(BridgeHome::Reach reach)
{
    return QString::fromLatin1(QMetaEnum::fromType<BridgeHome::Reach>().valueToKey(int(reach)));
}

} // namespace

/// One checked change, in the bridge's units.
struct DesktopBusService::Change
{
    std::optional<bool> on;
    std::optional<qint64> brightness;
    std::optional<qint64> step;
    std::optional<std::pair<float, float>> xy;
    std::optional<qint64> mirek;
    std::optional<qint64> hue;
    QVariantMap options; ///< bridge_id
};

DesktopBusService::DesktopBusService(BridgeSessions& sessions, HomeCommands& commands, QString settingsFile,
                                     QObject* parent)
    : QObject(parent), m_sessions(sessions), m_commands(commands), m_settingsFile(std::move(settingsFile))
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
    new ApplicationActivation(*this);
    for (BridgeSession* session : m_sessions.all())
        watch(session);
    connect(&m_sessions, &BridgeSessions::added, this, &DesktopBusService::watch);
    connect(&m_sessions, &BridgeSessions::removed, this, &DesktopBusService::forget);
}

DesktopBusService::~DesktopBusService() = default;

bool DesktopBusService::publish(QDBusConnection bus, QString* problem)
{
    if (!bus.isConnected()) {
        *problem = bus.lastError().message();
        return false;
    }
    constexpr QDBusConnection::RegisterOptions exported =
        QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportScriptableSignals |
        QDBusConnection::ExportAllProperties | QDBusConnection::ExportAdaptors;
    if (!bus.registerObject(BusNames::path, this, exported)) {
        *problem = bus.lastError().message();
        return false;
    }
    if (!bus.registerService(BusNames::service)) {
        *problem = tr("Another program holds the name %1 on the session bus.").arg(BusNames::service);
        bus.unregisterObject(BusNames::path);
        return false;
    }
    return true;
}

QString DesktopBusService::version() const
{
    return QStringLiteral(GLOWDECK_VERSION);
}

int DesktopBusService::recordsVersion() const
{
    return BusNames::recordsVersion;
}

void DesktopBusService::watch(BridgeSession* session)
{
    BridgeHome& home = session->link().home();
    Told& told = m_told[session];
    for (const HueLight& light : home.lights())
        told.lights.insert(light.lamp_id, light);
    for (const HueGroup& group : home.groups())
        told.rooms.insert(group.group_id, group);
    connect(&home, &BridgeHome::lightsChanged, this, [this, session] { onLightsChanged(session); });
    connect(&home, &BridgeHome::groupsChanged, this, [this, session] { onRoomsChanged(session); });
    for (auto signal : {&BridgeHome::bridgeConnectedChanged, &BridgeHome::bridgeReachChanged,
                        &BridgeHome::liveUpdatesChanged, &BridgeHome::connectionErrorMessageChanged})
        connect(&home, signal, this, [this, session] { Q_EMIT ConnectionChanged(connectionOf(*session)); });
}

void DesktopBusService::forget(BridgeSession* session)
{
    m_told.remove(session);
    disconnect(&session->link().home(), nullptr, this, nullptr);
}

/// What changed in `records` since `told`, each record with only the fields that differ; `told` becomes
/// `records`. Only a record that differs is turned into fields: a dragged slider changes one lamp of many.
template <typename Record>
QList<QVariantMap> toldChanges(const QList<Record>& records, const QString& bridgeId, const QString& idKey,
                               QHash<QString, Record>& told)
{
    QList<QVariantMap> changed;
    QHash<QString, Record> now;
    for (const Record& record : records) {
        const QString id = RecordLookup::idOf(record);
        const auto before = told.constFind(id);
        if (before == told.cend() || !(*before == record)) {
            const QVariantMap fields = RecordFields::of(record, bridgeId);
            QVariantMap difference = RecordFields::changes(
                before == told.cend() ? QVariantMap() : RecordFields::of(*before, bridgeId), fields, idKey);
            if (!difference.isEmpty())
                changed.append(std::move(difference));
        }
        now.insert(id, record);
    }
    // A record gone is told as one with only its id, its bridge and "removed".
    for (auto it = told.cbegin(); it != told.cend(); ++it) {
        if (!now.contains(it.key()))
            changed.append(QVariantMap{
                {idKey, it.key()}, {RecordFields::bridgeIdKey, bridgeId}, {QStringLiteral("removed"), true}});
    }
    told = std::move(now);
    return changed;
}

void DesktopBusService::onLightsChanged(BridgeSession* session)
{
    const QList<QVariantMap> changed = toldChanges(session->link().home().lights(), session->bridgeId(),
                                                   QStringLiteral("lamp_id"), m_told[session].lights);
    if (!changed.isEmpty())
        Q_EMIT LightsChanged(changed);
}

void DesktopBusService::onRoomsChanged(BridgeSession* session)
{
    const QList<QVariantMap> changed = toldChanges(session->link().home().groups(), session->bridgeId(),
                                                   QStringLiteral("group_id"), m_told[session].rooms);
    if (!changed.isEmpty())
        Q_EMIT RoomsChanged(changed);
}

QVariantMap DesktopBusService::connectionOf(const BridgeSession& session) const
{
    const BridgeHome& home = session.link().home();
    return {{RecordFields::bridgeIdKey, session.bridgeId()},
            {QStringLiteral("name"), m_sessions.nameOf(session)},
            {QStringLiteral("connected"), home.bridgeConnected()},
            {QStringLiteral("reach"), reachName(home.bridgeReach())},
            {QStringLiteral("live_updates"), home.liveUpdates()},
            {QStringLiteral("error"), home.connectionErrorMessage()}};
}

QList<QVariantMap> DesktopBusService::ListLights()
{
    QList<QVariantMap> records;
    for (const BridgeSession* session : m_sessions.all()) {
        for (const HueLight& light : session->link().home().lights())
            records.append(RecordFields::of(light, session->bridgeId()));
    }
    return records;
}

QList<QVariantMap> DesktopBusService::ListRooms()
{
    QList<QVariantMap> records;
    for (const BridgeSession* session : m_sessions.all()) {
        for (const HueGroup& group : session->link().home().groups())
            records.append(RecordFields::of(group, session->bridgeId()));
    }
    return records;
}

QList<QVariantMap> DesktopBusService::ListScenes()
{
    QList<QVariantMap> records;
    for (const BridgeSession* session : m_sessions.all()) {
        const BridgeHome& home = session->link().home();
        // As glowdeckctl lists them: each scene with the room or zone it belongs to.
        const SceneRooms rooms(home.groups());
        for (HueScene scene : home.scenes()) {
            scene.group_id = rooms.roomOf(scene);
            records.append(RecordFields::of(scene, session->bridgeId()));
        }
    }
    return records;
}

QList<QVariantMap> DesktopBusService::ListBridges()
{
    QList<QVariantMap> bridges;
    for (const BridgeSession* session : m_sessions.all())
        bridges.append(connectionOf(*session));
    return bridges;
}

void DesktopBusService::fail(const QString& name, const QString& message)
{
    if (calledFromDBus())
        sendErrorReply(name, message);
}

bool DesktopBusService::sessionsFor(const QVariantMap& options, QList<BridgeSession*>& sessions)
{
    sessions = m_sessions.all();
    const auto bridgeId = options.constFind(RecordFields::bridgeIdKey);
    if (bridgeId == options.cend())
        return true;
    if (bridgeId->typeId() != QMetaType::QString) {
        fail(BusNames::invalidArgs, tr("bridge_id takes a string."));
        return false;
    }
    BridgeSession* session = m_sessions.find(bridgeId->toString());
    if (!session) {
        fail(BusNames::noSuchTarget, tr("No bridge %1 is served.").arg(bridgeId->toString()));
        return false;
    }
    sessions = {session};
    return true;
}

bool DesktopBusService::readChange(const QVariantMap& fields, bool room, Change& change)
{
    for (auto it = fields.cbegin(); it != fields.cend(); ++it) {
        const QString& key = it.key();
        const QVariant& value = it.value();
        const std::optional<double> n = number(value);
        const auto inRange = [&](double low, double high) {
            if (n && *n >= low && *n <= high && std::isfinite(*n))
                return true;
            fail(
                BusNames::invalidArgs,
                tr("%1 takes a number from %2 to %3.").arg(key, QString::number(low), QString::number(high)));
            return false;
        };
        if (key == RecordFields::bridgeIdKey) {
            change.options.insert(key, value);
        } else if (key == u"on") {
            if (value.typeId() != QMetaType::Bool) {
                fail(BusNames::invalidArgs, tr("on takes a boolean."));
                return false;
            }
            change.on = value.toBool();
        } else if (key == u"brightness") {
            if (!inRange(0, 100))
                return false;
            change.brightness = bridgeBrightness(*n);
        } else if (key == u"brightness_step") {
            if (!inRange(-100, 100))
                return false;
            change.step = bridgeBrightness(*n);
        } else if (key == u"mirek") {
            if (!inRange(minMirek, maxMirek))
                return false;
            change.mirek = qint64(std::lround(*n));
        } else if (key == u"hue") {
            if (!inRange(0, maxHue))
                return false;
            change.hue = qint64(std::lround(*n));
        } else if (key == u"xy") {
            const std::optional<QList<double>> xy = numbers(value);
            if (!xy || xy->size() != 2 ||
                !std::all_of(xy->cbegin(), xy->cend(), [](double c) { return c >= 0 && c <= 1; })) {
                fail(BusNames::invalidArgs, tr("xy takes two numbers from 0 to 1."));
                return false;
            }
            change.xy = std::pair(float(xy->at(0)), float(xy->at(1)));
        } else {
            fail(BusNames::invalidArgs,
                 tr("Unknown field %1; a change takes on, brightness, brightness_step, xy, mirek, hue and "
                    "bridge_id.")
                     .arg(key));
            return false;
        }
    }
    if (!change.on && !change.brightness && !change.step && !change.xy && !change.mirek && !change.hue) {
        fail(BusNames::invalidArgs, room ? tr("The change of the room changes nothing.")
                                         : tr("The change of the lamp changes nothing."));
        return false;
    }
    return true;
}

template <typename Record>
bool DesktopBusService::findOne(const QList<QList<Record>>& lists, const QString& id, const QString& what,
                                qsizetype& bridge, qsizetype& index)
{
    const QList<RecordLookup::Match> found = RecordLookup::find(lists, id);
    if (found.isEmpty()) {
        fail(BusNames::noSuchTarget, tr("No %1 has the id or name %2.").arg(what, id));
        return false;
    }
    if (found.size() > 1) {
        QStringList candidates;
        for (const RecordLookup::Match& match : found) {
            const Record& record = lists.at(match.bridge).at(match.index);
            candidates << QStringLiteral("%1 \"%2\" (bridge %3)")
                              .arg(RecordLookup::idOf(record), record.name,
                                   m_sessions.all().value(match.bridge)->bridgeId());
        }
        fail(BusNames::ambiguous, tr("%1 names several: %2.").arg(id, candidates.join(u", ")) + u' ' +
                                      tr("Give the id, and bridge_id."));
        return false;
    }
    bridge = found.first().bridge;
    index = found.first().index;
    return true;
}

void DesktopBusService::SetLight(const QString& id, const QVariantMap& fields)
{
    Change change;
    QList<BridgeSession*> sessions;
    if (!readChange(fields, false, change) || !sessionsFor(change.options, sessions))
        return;
    QList<QList<HueLight>> lists;
    for (const BridgeSession* session : std::as_const(sessions))
        lists.append(session->link().home().lights());
    qsizetype b = 0, i = 0;
    if (!findOne(lists, id, tr("lamp"), b, i))
        return;
    BridgeSession& session = *sessions.at(b);
    const HueLight light = lists.at(b).at(i);
    if ((change.brightness || change.step) && !light.allows_brightness) {
        fail(BusNames::invalidArgs, tr("The lamp %1 cannot be dimmed.").arg(light.name));
        return;
    }
    // The record first, so the window shows the change at once; then the request, through the queue.
    if (change.step)
        change.brightness = std::clamp<qint64>(light.brightness + *change.step, 0, maxBrightness);
    session.link().home().updateLight(light.lamp_id, [&change](HueLight& l) {
        if (change.on)
            l.is_on = *change.on;
        if (change.brightness) {
            l.brightness = *change.brightness;
            l.is_on = *change.brightness > BridgeCommands::offBrightness;
        }
        if (change.xy || change.mirek || change.hue)
            l.is_on = true;
        if (change.xy) {
            l.xy_x = change.xy->first;
            l.xy_y = change.xy->second;
        }
        if (change.mirek)
            l.color_temperature = *change.mirek;
        if (change.hue)
            l.hue = *change.hue;
    });
    BridgeCommands& commands = session.commands();
    if (change.on && !change.brightness)
        commands.setLightOn(light, *change.on);
    if (change.brightness)
        commands.setLightBrightness(light, *change.brightness);
    if (change.xy)
        commands.setLightXy(light, change.xy->first, change.xy->second);
    if (change.mirek)
        commands.setLightColorTemperature(light, *change.mirek);
    if (change.hue)
        commands.setLightHue(light, *change.hue);
}

void DesktopBusService::SetRoom(const QString& id, const QVariantMap& fields)
{
    Change change;
    QList<BridgeSession*> sessions;
    if (!readChange(fields, true, change) || !sessionsFor(change.options, sessions))
        return;
    QList<QList<HueGroup>> lists;
    for (const BridgeSession* session : std::as_const(sessions))
        lists.append(session->link().home().groups());
    qsizetype b = 0, i = 0;
    if (!findOne(lists, id, tr("room"), b, i))
        return;
    BridgeSession& session = *sessions.at(b);
    const HueGroup group = lists.at(b).at(i);
    session.link().home().updateGroup(group.group_id, [&change](HueGroup& g) {
        if (change.on) {
            g.is_on = *change.on;
            g.any_on = *change.on;
            g.all_on = *change.on;
        }
        if (change.brightness) {
            g.brightness = *change.brightness;
            g.is_on = g.any_on = *change.brightness > BridgeCommands::offBrightness;
        }
        if (change.xy || change.mirek || change.hue)
            g.is_on = g.any_on = true;
        if (change.mirek)
            g.color_temperature = *change.mirek;
        if (change.hue)
            g.hue = *change.hue;
    });
    BridgeCommands& commands = session.commands();
    if (change.on && !change.brightness && !change.step)
        commands.setGroupOn(group, *change.on);
    if (change.brightness)
        commands.setGroupBrightness(group, *change.brightness);
    if (change.step && !change.brightness)
        commands.increaseGroupBrightness(group, *change.step); // keeps the record in range itself
    if (change.xy)
        commands.setGroupXy(group, change.xy->first, change.xy->second);
    if (change.mirek)
        commands.setGroupColorTemperature(group, *change.mirek);
    if (change.hue)
        commands.setGroupHue(group, *change.hue);
}

void DesktopBusService::RecallScene(const QString& id, const QVariantMap& options)
{
    QList<BridgeSession*> sessions;
    for (auto it = options.cbegin(); it != options.cend(); ++it) {
        if (it.key() != RecordFields::bridgeIdKey) {
            fail(BusNames::invalidArgs, tr("Unknown option %1; a scene takes bridge_id.").arg(it.key()));
            return;
        }
    }
    if (!sessionsFor(options, sessions))
        return;
    QList<QList<HueScene>> lists;
    for (const BridgeSession* session : std::as_const(sessions))
        lists.append(session->link().home().scenes());
    qsizetype b = 0, i = 0;
    if (!findOne(lists, id, tr("scene"), b, i))
        return;
    sessions.at(b)->commands().recallScene(lists.at(b).at(i).scene_id);
}

void DesktopBusService::AllOn()
{
    m_commands.allLightsOn();
}

void DesktopBusService::AllOff()
{
    m_commands.switchEverythingOff();
}

QString DesktopBusService::SwitchOffIn(int minutes)
{
    // The bridge's timers count whole minutes up to a day, as the menu's and glowdeckctl's do.
    if (minutes < 1 || minutes > 1440) {
        fail(BusNames::invalidArgs, tr("SwitchOffIn takes a number of minutes from 1 to 1440."));
        return {};
    }
    const QDateTime at = m_commands.switchOffIn(minutes);
    return at.toOffsetFromUtc(at.offsetFromUtc()).toString(Qt::ISODate);
}

void DesktopBusService::CancelSwitchOff()
{
    m_commands.cancelSwitchOff();
}

void DesktopBusService::OpenWindow()
{
    Q_EMIT windowRequested();
}
