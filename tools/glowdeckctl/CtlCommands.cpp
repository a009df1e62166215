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
#include "state/BridgeHome.h"
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

QString lightsTable(const QList<HueLight>& lights)
{
    QList<QStringList> rows{{QStringLiteral("ID"), QStringLiteral("NAME"), QStringLiteral("STATE"),
                             QStringLiteral("BRIGHTNESS"), QStringLiteral("KIND"),
                             QStringLiteral("PRODUCT")}};
    for (const HueLight& light : lights)
        rows.append({light.lamp_id, light.name, onOff(light.is_on), QString::number(light.brightness),
                     kind(light), light.product_name});
    return table(rows);
}

QString groupsTable(const QList<HueGroup>& groups)
{
    QList<QStringList> rows{{QStringLiteral("ID"), QStringLiteral("NAME"), QStringLiteral("TYPE"),
                             QStringLiteral("STATE"), QStringLiteral("BRIGHTNESS"),
                             QStringLiteral("LIGHTS")}};
    for (const HueGroup& group : groups)
        rows.append({group.group_id, group.name,
                     group.isZone() ? QStringLiteral("zone") : QStringLiteral("room"), onOff(group.any_on),
                     QString::number(group.brightness), group.lights.join(u',')});
    return table(rows);
}

/// The scenes, each with the name of its room or zone (`group_id` holds its id).
QString scenesTable(const QList<HueScene>& scenes, const QList<HueGroup>& groups)
{
    QHash<QString, QString> names;
    for (const HueGroup& group : groups)
        names.insert(group.group_id, group.name);
    QList<QStringList> rows{{QStringLiteral("ID"), QStringLiteral("NAME"), QStringLiteral("ROOM"),
                             QStringLiteral("TYPE"), QStringLiteral("LIGHTS")}};
    for (const HueScene& scene : scenes) {
        rows.append({scene.scene_id, scene.name, names.value(scene.group_id, QStringLiteral("-")), scene.type,
                     QString::number(scene.lights.size())});
    }
    return table(rows);
}

/// The records in their coded form, in the bridge's order, as one compact line, each with the id of the
/// bridge it is on ("bridge_id", last). Records carry no key, so none ends up in the scripts, logs and bug
/// reports that output like this goes to.
template <typename Record>
QString jsonArray(const QList<Record>& records, const QString& bridgeId)
{
    JsonWriter id;
    id.value(bridgeId);
    const QByteArray bridgeMember = QByteArrayLiteral(",\"bridge_id\":") + id.text() + '}';
    JsonWriter json;
    json.beginArray();
    for (const Record& record : records) {
        QByteArray object = CodedRecords::encode(record);
        object.chop(1); // its closing brace
        json.raw(object + bridgeMember);
    }
    json.endArray();
    return QString::fromUtf8(json.text()) + u'\n';
}

template <typename Record>
void printRecords(const QList<Record>& records, const CtlInvocation& invocation, const QString& bridgeId,
                  QString (*asTable)(const QList<Record>&))
{
    write(stdout, invocation.json ? jsonArray(records, bridgeId) : asTable(records));
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
    if (!m_network || !openSettings())
        return finish(exitFailed);
    m_bridge.reach(*m_network, this, [this](bool reached) { reached ? fetchRecords() : finish(exitFailed); });
}

bool CtlCommands::openSettings()
{
    if (!m_bridge.open(m_invocation))
        return false;
    m_settings = &m_bridge.settings();
    // The same session of the bridge as the tray's: its commands fill its queue, which sends them.
    m_session = std::make_unique<BridgeSession>(*m_settings, *m_network);
    m_queue = &m_session->queue();
    m_commands = &m_session->commands();
    m_queue->setLogRefusals(false); // every failed change gets its own line on standard error
    connect(m_queue, &ActionQueue::sent, &m_watchdog, qOverload<>(&QTimer::start));
    connect(m_queue, &ActionQueue::answered, this, &CtlCommands::onAnswered);
    connect(m_queue, &ActionQueue::drained, this, &CtlCommands::onDrained);
    return true;
}

void CtlCommands::fetchRecords()
{
    const QString address = m_settings->bridgeEndpoint();
    const QString key = m_settings->hueKey();
    const BridgeIdentity identity = m_settings->bridgeIdentity();
    switch (m_invocation.command) {
    case CtlCommand::lights:
    case CtlCommand::light:
    case CtlCommand::allOff:
        // all-off --in needs no list, only a bridge that answers; reading the lamps makes sure of that.
        LightsRead{.endpoint = address, .key = key, .identity = identity}.fetch(
            *m_network, [this](const LightsResult& result) { onLights(result); });
        return;
    case CtlCommand::rooms:
    case CtlCommand::room:
        GroupsRead{.endpoint = address, .key = key, .identity = identity}.fetch(
            *m_network, [this](const GroupsResult& result) { onGroups(result); });
        return;
    case CtlCommand::scenes:
    case CtlCommand::scene:
        ScenesRead{.endpoint = address, .key = key, .identity = identity}.fetch(
            *m_network, [this](const ScenesResult& result) { onScenes(result); });
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
void CtlCommands::failFetch(const Result& result)
{
    if (const QString failure = Ctl::failedRead(m_settings->hueIP(), result); !failure.isEmpty())
        printError(failure);
    finish(exitFailed);
}

void CtlCommands::onLights(const LightsResult& result)
{
    if (!result.ok())
        return failFetch(result);
    m_settings->home().setLights(result.records);
    if (m_invocation.command == CtlCommand::lights) {
        printRecords(result.records, m_invocation, m_settings->bridgeID(), lightsTable);
        return finish(exitDone);
    }
    if (m_invocation.command == CtlCommand::allOff)
        return switchAllOff(result.records);
    const auto light = std::find_if(result.records.begin(), result.records.end(),
                                    [this](const HueLight& l) { return l.lamp_id == m_invocation.targetId; });
    if (light == result.records.end())
        return failUnknown(QStringLiteral("light"));
    changeLight(*light);
}

void CtlCommands::onGroups(const GroupsResult& result)
{
    if (!result.ok())
        return failFetch(result);
    m_settings->home().setGroups(result.records);
    if (m_invocation.command == CtlCommand::scenes)
        return printScenes();
    if (m_invocation.command == CtlCommand::rooms) {
        printRecords(result.records, m_invocation, m_settings->bridgeID(), groupsTable);
        return finish(exitDone);
    }
    const auto group = std::find_if(result.records.begin(), result.records.end(), [this](const HueGroup& g) {
        return g.group_id == m_invocation.targetId;
    });
    if (group == result.records.end())
        return failUnknown(QStringLiteral("room"));
    changeGroup(*group);
}

void CtlCommands::printScenes()
{
    const QList<HueGroup> groups = m_settings->home().groups();
    const SceneRooms rooms(groups);
    QList<HueScene> scenes = m_settings->home().scenes();
    for (HueScene& scene : scenes)
        scene.group_id = rooms.roomOf(scene);
    write(stdout,
          m_invocation.json ? jsonArray(scenes, m_settings->bridgeID()) : scenesTable(scenes, groups));
    finish(exitDone);
}

void CtlCommands::onScenes(const ScenesResult& result)
{
    if (!result.ok())
        return failFetch(result);
    m_settings->home().setScenes(result.records);
    if (m_invocation.command == CtlCommand::scenes) {
        // Where a scene belongs takes the rooms: a light scene is in the room that holds all of its lamps.
        GroupsRead{.endpoint = m_settings->bridgeEndpoint(),
                   .key = m_settings->hueKey(),
                   .identity = m_settings->bridgeIdentity()}
            .fetch(*m_network, [this](const GroupsResult& rooms) { onGroups(rooms); });
        return;
    }
    const bool known = std::any_of(result.records.begin(), result.records.end(),
                                   [this](const HueScene& s) { return s.scene_id == m_invocation.targetId; });
    if (!known)
        return failUnknown(QStringLiteral("scene"));
    m_commands->recallScene(m_invocation.targetId);
    awaitQueue();
}

void CtlCommands::changeLight(const HueLight& light)
{
    const qint64 value = m_invocation.value;
    switch (m_invocation.action) {
    case CtlAction::on:
    case CtlAction::off:
        m_commands->setLightOn(light, m_invocation.action == CtlAction::on);
        break;
    case CtlAction::brightness:
        m_commands->setLightBrightness(light, value);
        break;
    case CtlAction::hue:
        m_commands->setLightHue(light, value);
        break;
    case CtlAction::ct:
        m_commands->setLightColorTemperature(light, value);
        break;
    case CtlAction::brighter:
    case CtlAction::darker:
        break; // rooms only; the command line refuses them for a lamp, and awaitQueue reports the empty queue
    }
    awaitQueue();
}

void CtlCommands::changeGroup(const HueGroup& group)
{
    const qint64 value = m_invocation.value;
    switch (m_invocation.action) {
    case CtlAction::on:
    case CtlAction::off:
        m_commands->setGroupOn(group, m_invocation.action == CtlAction::on);
        break;
    case CtlAction::brightness:
        m_commands->setGroupBrightness(group, value);
        break;
    case CtlAction::hue:
        m_commands->setGroupHue(group, value);
        break;
    case CtlAction::ct:
        m_commands->setGroupColorTemperature(group, value);
        break;
    case CtlAction::brighter:
        m_commands->increaseGroupBrightness(group, value);
        break;
    case CtlAction::darker:
        m_commands->increaseGroupBrightness(group, -value);
        break;
    }
    awaitQueue();
}

void CtlCommands::switchAllOff(const QList<HueLight>& lights)
{
    if (m_invocation.offAfterMinutes) {
        m_commands->switchAllOffAfterMinutes(*m_invocation.offAfterMinutes);
        return awaitQueue();
    }
    if (lights.isEmpty()) {
        write(stdout, QStringLiteral("No reachable lights on this bridge.\n"));
        return finish(exitDone);
    }
    // One request per lamp in list order, as the menu's "Darkness!" item does; the queue spaces them out.
    for (const HueLight& light : lights)
        m_commands->setLightOn(light, false);
    awaitQueue();
}

void CtlCommands::awaitQueue()
{
    // BridgeCommands drops a change whose address does not form a URL (and says so); then nothing will drain.
    if (!m_queue->isProcessing()) {
        printError(QStringLiteral("Nothing was sent to the bridge."));
        return finish(exitFailed);
    }
    // drained() finishes the run, once every change has been answered.
}

void CtlCommands::onAnswered(const ActionQueueItem& item, const WriteOutcome& outcome, bool again)
{
    m_watchdog.start();
    // A busy bridge's refusal goes again after a pause: only its last answer counts.
    if (outcome.ok() || again)
        return;
    // All lamps of a bridge that is gone fail alike: say it once.
    const QString failure = describeFailure(m_settings->hueIP(), item, outcome);
    if (!m_failures.contains(failure))
        m_failures.append(failure);
}

void CtlCommands::onDrained()
{
    for (const QString& failure : std::as_const(m_failures))
        printError(failure);
    finish(m_failures.isEmpty() ? exitDone : exitFailed);
}

void CtlCommands::failUnknown(const QString& what)
{
    printError(QStringLiteral("No %1 with id %2 on this bridge.").arg(what, m_invocation.targetId));
    finish(exitFailed);
}

void CtlCommands::giveUp()
{
    printError(QStringLiteral("Gave up: the Hue bridge at %1 made no progress for %2 seconds.")
                   .arg(m_settings ? m_settings->hueIP() : QString(), QString::number(patience.count())));
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
