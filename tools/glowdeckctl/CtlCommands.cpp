#include "CtlCommands.h"

#include "CtlCommon.h"

#include "bridge/ActionQueue.h"
#include "bridge/BridgeCommands.h"
#include "bridge/BridgeNetwork.h"
#include "bridge/BridgeUrl.h"
#include "bridge/CodedRecords.h"
#include "bridge/JsonWriter.h"
#include "model/SceneRooms.h"
#include "session/BridgeSession.h"
#include "state/BridgeLink.h"

#include <QNetworkAccessManager>

#include <algorithm>

using Ctl::printable;
using Ctl::printError;
using Ctl::seconds;
using Ctl::write;

namespace {

constexpr qsizetype widestCell = 60;

/// A cell as a table shows it: printable, and cut with "…" past `widestCell` characters, so that one long
/// name cannot push every row off the screen.
QString cell(const QString& text)
{
    const QString shown = printable(text);
    return shown.size() > widestCell ? shown.left(widestCell - 1) + u'\u2026' : shown;
}

/// Left-aligned columns two spaces apart; the last column is not padded.
QString table(const QList<QStringList>& rows)
{
    QList<qsizetype> widths;
    for (const QStringList& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (qsizetype i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], cell(row.at(i)).size());
    }
    QString text;
    for (const QStringList& row : rows) {
        QString line;
        for (qsizetype i = 0; i < row.size(); ++i)
            line += i + 1 < row.size() ? cell(row.at(i)).leftJustified(widths[i] + 2) : cell(row.at(i));
        text += line + u'\n';
    }
    return text;
}

QString onOff(bool on)
{
    return on ? QStringLiteral("on") : QStringLiteral("off");
}

QString kind(const HueLight& light)
{
    if (!light.allows_brightness)
        return QStringLiteral("switch only");
    if (light.allows_color)
        return QStringLiteral("colour");
    if (light.allows_ambient)
        return QStringLiteral("white tone");
    return QStringLiteral("dimmable");
}

const QStringList lightsHeader{QStringLiteral("ID"),    QStringLiteral("NAME"),
                               QStringLiteral("STATE"), QStringLiteral("BRIGHTNESS"),
                               QStringLiteral("KIND"),  QStringLiteral("PRODUCT")};
const QStringList groupsHeader{QStringLiteral("ID"),         QStringLiteral("NAME"),
                               QStringLiteral("TYPE"),       QStringLiteral("STATE"),
                               QStringLiteral("BRIGHTNESS"), QStringLiteral("LIGHTS")};
const QStringList scenesHeader{QStringLiteral("ID"), QStringLiteral("NAME"), QStringLiteral("ROOM"),
                               QStringLiteral("TYPE"), QStringLiteral("LIGHTS")};

QStringList lightRow(const HueLight& light)
{
    return {light.lamp_id, light.name,        onOff(light.is_on), QString::number(light.brightness),
            kind(light),   light.product_name};
}

QStringList groupRow(const HueGroup& group)
{
    return {group.group_id,
            group.name,
            group.isZone() ? QStringLiteral("zone") : QStringLiteral("room"),
            onOff(group.any_on),
            QString::number(group.brightness),
            group.lights.join(u',')};
}

/// `scene` with the name of its room or zone (`group_id` holds its id), from `names` by group id.
QStringList sceneRow(const HueScene& scene, const QHash<QString, QString>& names)
{
    return {scene.scene_id, scene.name, names.value(scene.group_id, QStringLiteral("-")), scene.type,
            QString::number(scene.lights.size())};
}

/// Appends the records in their coded form, in the bridge's order, each with the id of the bridge it is on
/// ("bridge_id", last). Records carry no key, so none ends up in the scripts, logs and bug reports that
/// output like this goes to.
template <typename Record>
void appendJson(JsonWriter& json, const QList<Record>& records, const QString& bridgeId)
{
    JsonWriter id;
    id.value(bridgeId);
    const QByteArray bridgeMember = QByteArrayLiteral(",\"bridge_id\":") + id.text() + '}';
    for (const Record& record : records) {
        QByteArray object = CodedRecords::encode(record);
        object.chop(1); // its closing brace
        json.raw(object + bridgeMember);
    }
}

/// "PUT /lights/2/state": a change as the bridge sees it, without the key.
QString request(const ActionQueueItem& item)
{
    const bool post = item.url.toString().contains(u"/schedules");
    return (post ? QStringLiteral("POST ") : QStringLiteral("PUT ")) +
           printable(bridgeResourcePath(item.url));
}

/// One sentence about a change that did not go through.
QString describeFailure(const QString& bridge, const ActionQueueItem& item, const WriteOutcome& outcome)
{
    using Kind = WriteOutcome::Kind;
    switch (outcome.kind) {
    case Kind::refused:
        return QStringLiteral("The bridge at %1 refused %2: %3.")
            .arg(bridge, request(item), printable(outcome.detail));
    case Kind::partly:
        return QStringLiteral("The bridge at %1 took only part of %2: %3.")
            .arg(bridge, request(item), printable(outcome.detail));
    case Kind::httpError:
        return QStringLiteral("The bridge at %1 answered %2 with HTTP status %3.")
            .arg(bridge, request(item))
            .arg(outcome.status);
    case Kind::unexpected:
        return QStringLiteral(
                   "The bridge at %1 answered %2 with something that is not a Hue bridge's answer; the "
                   "change may not have been made.")
            .arg(bridge, request(item));
    case Kind::timedOut:
        return QStringLiteral(
                   "The bridge at %1 did not answer %2 in time (%3 s without data, or %4 s in all); the "
                   "change may not have been made.")
            .arg(bridge, request(item), seconds(ActionQueue::sendTimeout),
                 seconds(ActionQueue::sendDeadline));
    case Kind::noAnswer:
        return QStringLiteral("The bridge at %1 did not answer %2: %3.")
            .arg(bridge, request(item), printable(outcome.detail));
    case Kind::accepted:
        break;
    }
    return {};
}

} // namespace

struct CtlCommands::Served
{
    std::unique_ptr<CtlBridge> bridge;
    std::unique_ptr<BridgeSession> session;
    QList<HueLight> lights;
    QList<HueGroup> groups;
    QList<HueScene> scenes;
    bool reading = true;
    bool failed = false; ///< not reached, or a list not read
};

CtlCommands::CtlCommands(CtlInvocation invocation, QObject* parent)
    : QObject(parent), m_invocation(std::move(invocation)), m_network(Ctl::makeNetwork(m_invocation))
{
    m_watchdog.setSingleShot(true);
    m_watchdog.setInterval(patience);
    connect(&m_watchdog, &QTimer::timeout, this, &CtlCommands::giveUp);
}

CtlCommands::~CtlCommands()
{
    // Replies still out (only after giving up) go first, so none can call back into a half-destroyed run.
    m_network.reset();
}

void CtlCommands::start()
{
    m_watchdog.start();
    if (!m_network)
        return finish(exitFailed);
    int failure = exitFailed;
    std::vector<std::unique_ptr<CtlBridge>> bridges = CtlBridge::open(m_invocation, failure);
    if (bridges.empty())
        return finish(failure);
    for (std::unique_ptr<CtlBridge>& bridge : bridges) {
        auto& served = *m_bridges.emplace_back(std::make_unique<Served>());
        served.bridge = std::move(bridge);
        // The same session of the bridge as the tray's: its commands fill its queue, which sends them.
        served.session = std::make_unique<BridgeSession>(served.bridge->settings(), *m_network);
        ActionQueue* queue = &served.session->queue();
        queue->setLogRefusals(false); // every failed change gets its own line on standard error
        connect(queue, &ActionQueue::sent, &m_watchdog, qOverload<>(&QTimer::start));
        connect(queue, &ActionQueue::answered, this,
                [this, &served](const ActionQueueItem& item, const WriteOutcome& outcome, bool again) {
                    onAnswered(served, item, outcome, again);
                });
        connect(queue, &ActionQueue::drained, this, &CtlCommands::onDrained);
    }
    m_reading = int(m_bridges.size());
    // Every bridge at once, each at its own pace: a slow one does not hold the others up.
    for (const std::unique_ptr<Served>& each : m_bridges) {
        Served& served = *each;
        served.bridge->reach(*m_network, this, [this, &served](bool reached) {
            if (!reached) {
                served.failed = true;
                return onRead(served);
            }
            fetchRecords(served);
        });
    }
}

void CtlCommands::fetchRecords(Served& served)
{
    const BridgeLink& settings = served.bridge->settings();
    const QString address = settings.bridgeEndpoint();
    const QString key = settings.hueKey();
    const BridgeIdentity identity = settings.bridgeIdentity();
    switch (m_invocation.command) {
    case CtlCommand::lights:
    case CtlCommand::light:
    case CtlCommand::allOff:
        // all-off --in needs no list, only a bridge that answers; reading the lamps makes sure of that.
        LightsRead{.endpoint = address, .key = key, .identity = identity}.fetch(
            *m_network, [this, &served](const LightsResult& result) { onLights(served, result); });
        return;
    case CtlCommand::rooms:
    case CtlCommand::room:
        GroupsRead{.endpoint = address, .key = key, .identity = identity}.fetch(
            *m_network, [this, &served](const GroupsResult& result) { onGroups(served, result); });
        return;
    case CtlCommand::scenes:
    case CtlCommand::scene:
        ScenesRead{.endpoint = address, .key = key, .identity = identity}.fetch(
            *m_network, [this, &served](const ScenesResult& result) { onScenes(served, result); });
        return;
    case CtlCommand::discover:
    case CtlCommand::pair:
    case CtlCommand::status:
    case CtlCommand::watch:
    case CtlCommand::hotkeys:
        break; // CtlConnectionCommands, CtlWatch and CtlHotkeys run these
    }
    printError(QStringLiteral("This command is not run here."));
    finish(exitFailed);
}

template <typename Result>
void CtlCommands::failRead(Served& served, const Result& result)
{
    if (const QString failure = Ctl::failedRead(served.bridge->settings().hueIP(), result);
        !failure.isEmpty())
        printError(failure);
    served.failed = true;
    onRead(served);
}

void CtlCommands::onLights(Served& served, const LightsResult& result)
{
    if (!result.ok())
        return failRead(served, result);
    served.lights = result.records;
    onRead(served);
}

void CtlCommands::onGroups(Served& served, const GroupsResult& result)
{
    if (!result.ok())
        return failRead(served, result);
    served.groups = result.records;
    onRead(served);
}

void CtlCommands::onScenes(Served& served, const ScenesResult& result)
{
    if (!result.ok())
        return failRead(served, result);
    served.scenes = result.records;
    if (m_invocation.command == CtlCommand::scenes) {
        // Where a scene belongs takes the rooms: a light scene is in the room that holds all of its lamps.
        const BridgeLink& settings = served.bridge->settings();
        GroupsRead{.endpoint = settings.bridgeEndpoint(),
                   .key = settings.hueKey(),
                   .identity = settings.bridgeIdentity()}
            .fetch(*m_network, [this, &served](const GroupsResult& rooms) { onGroups(served, rooms); });
        return;
    }
    onRead(served);
}

void CtlCommands::onRead(Served& served)
{
    if (!std::exchange(served.reading, false) || m_finished)
        return;
    m_watchdog.start();
    m_readFailed = m_readFailed || served.failed;
    if (--m_reading == 0)
        onAllRead();
}

void CtlCommands::onAllRead()
{
    switch (m_invocation.command) {
    case CtlCommand::lights:
    case CtlCommand::rooms:
    case CtlCommand::scenes:
        printLists();
        if (m_readFailed && m_bridges.size() > 1) {
            // The lines above say why; these say what the list lacks.
            for (const std::unique_ptr<Served>& served : m_bridges) {
                if (served->failed)
                    printError(QStringLiteral("Bridge %1 is missing from the list.")
                                   .arg(printable(served->bridge->label())));
            }
        }
        return finish(m_readFailed ? exitFailed : exitDone);
    case CtlCommand::allOff:
        return switchAllOff();
    default:
        return changeTarget();
    }
}

void CtlCommands::printLists()
{
    const bool several = m_bridges.size() > 1;
    QList<QStringList> rows;
    JsonWriter json;
    json.beginArray();
    bool answered = false;
    for (const std::unique_ptr<Served>& served : m_bridges) {
        if (served->failed)
            continue;
        answered = true;
        const QString bridgeId = served->bridge->settings().bridgeID();
        const qsizetype first = rows.size();
        switch (m_invocation.command) {
        case CtlCommand::lights:
            appendJson(json, served->lights, bridgeId);
            for (const HueLight& light : std::as_const(served->lights))
                rows.append(lightRow(light));
            break;
        case CtlCommand::rooms:
            appendJson(json, served->groups, bridgeId);
            for (const HueGroup& group : std::as_const(served->groups))
                rows.append(groupRow(group));
            break;
        default: {
            const SceneRooms rooms(served->groups);
            QHash<QString, QString> names;
            for (const HueGroup& group : std::as_const(served->groups))
                names.insert(group.group_id, group.name);
            QList<HueScene> scenes = served->scenes;
            for (HueScene& scene : scenes) {
                scene.group_id = rooms.roomOf(scene);
                rows.append(sceneRow(scene, names));
            }
            appendJson(json, scenes, bridgeId);
            break;
        }
        }
        // With several bridges an id alone does not say which lamp it is: each bridge numbers its own.
        for (qsizetype i = first; several && i < rows.size(); ++i)
            rows[i].prepend(served->bridge->label());
    }
    json.endArray();
    if (!answered)
        return;
    if (m_invocation.json)
        return write(stdout, QString::fromUtf8(json.text()) + u'\n');
    QStringList header = m_invocation.command == CtlCommand::lights  ? lightsHeader
                         : m_invocation.command == CtlCommand::rooms ? groupsHeader
                                                                     : scenesHeader;
    if (several)
        header.prepend(QStringLiteral("BRIDGE"));
    rows.prepend(header);
    write(stdout, table(rows));
}

void CtlCommands::changeTarget()
{
    const QString& id = m_invocation.targetId;
    const CtlCommand command = m_invocation.command;
    const QString what = command == CtlCommand::light  ? QStringLiteral("light")
                         : command == CtlCommand::room ? QStringLiteral("room")
                                                       : QStringLiteral("scene");
    const auto lightOf = [&id](const Served& served) {
        return std::find_if(served.lights.cbegin(), served.lights.cend(), [&id](const HueLight& light) {
            // Either id: the number kept from the first interface or the UUID.
            return light.lamp_id == id || (!light.v2_id.isEmpty() && light.v2_id == id);
        });
    };
    const auto groupOf = [&id](const Served& served) {
        return std::find_if(served.groups.cbegin(), served.groups.cend(), [&id](const HueGroup& group) {
            return group.group_id == id || (!group.v2_id.isEmpty() && group.v2_id == id);
        });
    };
    QList<Served*> holders;
    for (const std::unique_ptr<Served>& served : m_bridges) {
        const bool has =
            command == CtlCommand::light ? lightOf(*served) != served->lights.cend()
            : command == CtlCommand::room
                ? groupOf(*served) != served->groups.cend()
                : std::any_of(served->scenes.cbegin(), served->scenes.cend(), [&id](const HueScene& scene) {
                      return scene.scene_id == id || (!scene.v2_id.isEmpty() && scene.v2_id == id);
                  });
        if (has)
            holders.append(served.get());
    }
    if (holders.size() > 1) {
        QStringList names;
        for (const Served* served : std::as_const(holders))
            names << QStringLiteral("%1 (%2)").arg(printable(served->bridge->label()),
                                                   served->bridge->settings().bridgeID());
        printError(QStringLiteral("There is a %1 %2 on several paired bridges: %3. Nothing was sent; name "
                                  "one with --bridge-id ID.")
                       .arg(what, printable(id), names.join(QStringLiteral(", "))));
        return finish(exitUsage);
    }
    if (m_readFailed) {
        // A bridge that sent no list may have the same id: sending to the other could switch the wrong lamp.
        if (m_bridges.size() > 1)
            printError(QStringLiteral("Nothing was sent: a bridge that did not answer may have a %1 %2 too; "
                                      "name the bridge with --bridge-id ID.")
                           .arg(what, printable(id)));
        return finish(exitFailed);
    }
    if (holders.isEmpty()) {
        printError(QStringLiteral("No %1 with id %2 on %3.")
                       .arg(what, printable(id),
                            m_bridges.size() > 1 ? QStringLiteral("any paired bridge")
                                                 : QStringLiteral("this bridge")));
        return finish(exitFailed);
    }
    Served& served = *holders.first();
    if (command == CtlCommand::light)
        changeLight(served, *lightOf(served));
    else if (command == CtlCommand::room)
        changeGroup(served, *groupOf(served));
    else
        served.session->commands().recallScene(id);
    awaitQueues({&served});
}

void CtlCommands::changeLight(Served& served, const HueLight& light)
{
    BridgeCommands& commands = served.session->commands();
    const qint64 value = m_invocation.value;
    switch (m_invocation.action) {
    case CtlAction::on:
    case CtlAction::off:
        commands.setLightOn(light, m_invocation.action == CtlAction::on);
        break;
    case CtlAction::brightness:
        commands.setLightBrightness(light, value);
        break;
    case CtlAction::hue:
        commands.setLightHue(light, value);
        break;
    case CtlAction::ct:
        commands.setLightColorTemperature(light, value);
        break;
    case CtlAction::brighter:
    case CtlAction::darker:
        break; // rooms only; the command line refuses them for a lamp, and awaitQueues reports the empty
               // queue
    }
}

void CtlCommands::changeGroup(Served& served, const HueGroup& group)
{
    BridgeCommands& commands = served.session->commands();
    const qint64 value = m_invocation.value;
    switch (m_invocation.action) {
    case CtlAction::on:
    case CtlAction::off:
        commands.setGroupOn(group, m_invocation.action == CtlAction::on);
        break;
    case CtlAction::brightness:
        commands.setGroupBrightness(group, value);
        break;
    case CtlAction::hue:
        commands.setGroupHue(group, value);
        break;
    case CtlAction::ct:
        commands.setGroupColorTemperature(group, value);
        break;
    case CtlAction::brighter:
        commands.increaseGroupBrightness(group, value);
        break;
    case CtlAction::darker:
        commands.increaseGroupBrightness(group, -value);
        break;
    }
}

void CtlCommands::switchAllOff()
{
    // Every bridge that answered; one that did not is said above and fails the run, after the others.
    QList<Served*> commanded;
    for (const std::unique_ptr<Served>& served : m_bridges) {
        if (served->failed)
            continue;
        BridgeCommands& commands = served->session->commands();
        if (m_invocation.offAfterMinutes) {
            commands.switchAllOffAfterMinutes(*m_invocation.offAfterMinutes);
        } else {
            if (served->lights.isEmpty())
                continue;
            // One request per lamp in list order, as the menu's "Darkness!" item does; the queue spaces
            // them out.
            for (const HueLight& light : std::as_const(served->lights))
                commands.setLightOn(light, false);
        }
        commanded.append(served.get());
    }
    if (commanded.isEmpty() && !m_readFailed) {
        write(stdout, m_bridges.size() > 1 ? QStringLiteral("No reachable lights on these bridges.\n")
                                           : QStringLiteral("No reachable lights on this bridge.\n"));
        return finish(exitDone);
    }
    awaitQueues(commanded);
}

void CtlCommands::awaitQueues(const QList<Served*>& commanded)
{
    for (const Served* served : commanded) {
        // BridgeCommands drops a change whose address does not form a URL (and says so); then nothing drains.
        if (served->session->queue().isProcessing()) {
            ++m_draining;
        } else {
            printError(QStringLiteral("Nothing was sent to the bridge."));
            m_readFailed = true;
        }
    }
    if (m_draining == 0)
        return finish(exitFailed);
    // drained() finishes the run, once every change has been answered.
}

void CtlCommands::onAnswered(const Served& served, const ActionQueueItem& item, const WriteOutcome& outcome,
                             bool again)
{
    m_watchdog.start();
    // A busy bridge's refusal goes again after a pause: only its last answer counts.
    if (outcome.ok() || again)
        return;
    // All lamps of a bridge that is gone fail alike: say it once.
    const QString failure = describeFailure(served.bridge->settings().hueIP(), item, outcome);
    if (!m_failures.contains(failure))
        m_failures.append(failure);
}

void CtlCommands::onDrained()
{
    if (m_draining == 0 || --m_draining > 0)
        return;
    for (const QString& failure : std::as_const(m_failures))
        printError(failure);
    finish(m_failures.isEmpty() && !m_readFailed ? exitDone : exitFailed);
}

void CtlCommands::giveUp()
{
    QStringList waiting;
    for (const std::unique_ptr<Served>& served : m_bridges) {
        if (served->reading || served->session->queue().isProcessing())
            waiting << served->bridge->settings().hueIP();
    }
    printError(QStringLiteral("Gave up: the Hue bridge at %1 made no progress for %2 seconds.")
                   .arg(waiting.join(QStringLiteral(", ")), QString::number(patience.count())));
    finish(exitFailed);
}

void CtlCommands::finish(int exitStatus)
{
    if (m_finished)
        return;
    m_finished = true;
    m_watchdog.stop();
    Q_EMIT finished(exitStatus);
}
