#include "CtlCommands.h"

#include "CtlCommon.h"
#include "CtlOutput.h"

#include "bridge/ActionQueue.h"
#include "bridge/BridgeCommands.h"
#include "bridge/BridgeNetwork.h"
#include "bridge/BridgeUrl.h"
#include "model/SceneRooms.h"
#include "session/BridgeSession.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <QDateTime>
#include <QLocale>
#include <QNetworkAccessManager>

#include <algorithm>

using Ctl::printable;
using Ctl::printError;
using Ctl::seconds;
using Ctl::write;

namespace {

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
        return Ctl::Text::tr("The bridge at %1 refused %2: %3.")
            .arg(bridge, request(item), printable(outcome.detail));
    case Kind::httpError:
        return Ctl::Text::tr("The bridge at %1 answered %2 with HTTP status %3.")
            .arg(bridge, request(item))
            .arg(outcome.status);
    case Kind::unexpected:
        return Ctl::Text::tr(
                   "The bridge at %1 answered %2 with something that is not a Hue bridge's answer; the "
                   "change may not have been made.")
            .arg(bridge, request(item));
    case Kind::timedOut:
        return Ctl::Text::tr(
                   "The bridge at %1 did not answer %2 in time (%3 s without data, or %4 s in all); the "
                   "change may not have been made.")
            .arg(bridge, request(item), seconds(ActionQueue::sendTimeout),
                 seconds(ActionQueue::sendDeadline));
    case Kind::noAnswer:
        return Ctl::Text::tr("The bridge at %1 did not answer %2: %3.")
            .arg(bridge, request(item), printable(outcome.detail));
    case Kind::partly:
        return Ctl::Text::tr("The bridge at %1 took only part of %2: %3.")
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
            served.bridge->learnInterface(*m_network, this, [this, &served](bool answered) {
                if (!answered) {
                    served.failed = true;
                    return onRead(served);
                }
                fetchRecords(served);
            });
        });
    }
}

void CtlCommands::fetchRecords(Served& served)
{
    const BridgeLink& settings = served.bridge->settings();
    const QString address = settings.bridgeEndpoint();
    const QString key = settings.hueKey();
    const BridgeIdentity identity = settings.bridgeIdentity();
    // Over the current interface one request has the whole home.
    const auto readHome = [&] {
        HomeRead{.endpoint = address, .key = key, .identity = identity}.fetch(
            *m_network, [this, &served](const HomeResult& result) { onHome(served, result); });
    };
    const bool overClip = served.bridge->overClip();
    switch (m_invocation.command) {
    case CtlCommand::lights:
    case CtlCommand::light:
    case CtlCommand::allOn:
    case CtlCommand::allOff:
        // all-on and all-off need no list, only a bridge that answers; reading the lamps makes sure of that.
        if (overClip)
            return readHome();
        LightsRead{.endpoint = address, .key = key, .identity = identity}.fetch(
            *m_network, [this, &served](const LightsResult& result) { onLights(served, result); });
        return;
    case CtlCommand::rooms:
    case CtlCommand::room:
        if (overClip)
            return readHome();
        GroupsRead{.endpoint = address, .key = key, .identity = identity}.fetch(
            *m_network, [this, &served](const GroupsResult& result) { onGroups(served, result); });
        return;
    case CtlCommand::scenes:
    case CtlCommand::scene:
        if (overClip)
            return readHome();
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
    printError(Ctl::Text::tr("This command is not run here."));
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

void CtlCommands::onHome(Served& served, const HomeResult& result)
{
    if (!result.ok())
        return failRead(served, result);
    // What the commands look up when they write over the current interface: the grouped light of the whole
    // home, and the scenes by either id.
    BridgeLink& settings = served.bridge->settings();
    settings.setHomeGroupedLight(result.homeGroupedLight);
    settings.home().setScenes(result.scenes);
    served.lights = result.records;
    served.groups = result.groups;
    served.scenes = result.scenes;
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
                    printError(Ctl::Text::tr("Bridge %1 is missing from the list.")
                                   .arg(printable(served->bridge->label())));
            }
        }
        return finish(m_readFailed ? exitFailed : exitDone);
    case CtlCommand::allOn:
    case CtlCommand::allOff:
        return switchAll();
    default:
        return changeTarget();
    }
}

void CtlCommands::printLists()
{
    QList<CtlHome> homes;
    for (const std::unique_ptr<Served>& served : m_bridges) {
        if (served->failed)
            continue;
        CtlHome& home = homes.emplace_back(homeOf(*served));
        // Each scene with the room or zone it belongs to: a light scene is in the room that holds all of its
        // lamps.
        const SceneRooms rooms(home.groups);
        for (HueScene& scene : home.scenes)
            scene.group_id = rooms.roomOf(scene);
    }
    if (homes.isEmpty())
        return;
    CtlOutput::printList(m_invocation.command, homes, m_invocation.json, m_bridges.size() > 1);
}

CtlHome CtlCommands::homeOf(const Served& served)
{
    return {.bridgeId = served.bridge->settings().bridgeID(),
            .label = served.bridge->label(),
            .lights = served.lights,
            .groups = served.groups,
            .scenes = served.scenes};
}

void CtlCommands::changeTarget()
{
    if (m_readFailed) {
        // A bridge that sent no list may have the same id: sending to the other could switch the wrong lamp.
        const QString text =
            m_invocation.command == CtlCommand::light
                ? Ctl::Text::tr(
                      "Nothing was sent: a bridge that did not answer may have a light %1 too; name "
                      "the bridge with --bridge-id ID.")
            : m_invocation.command == CtlCommand::room
                ? Ctl::Text::tr("Nothing was sent: a bridge that did not answer may have a room %1 too; name "
                                "the bridge with --bridge-id ID.")
                : Ctl::Text::tr(
                      "Nothing was sent: a bridge that did not answer may have a scene %1 too; name "
                      "the bridge with --bridge-id ID.");
        if (m_bridges.size() > 1)
            printError(text.arg(printable(m_invocation.targetId)));
        return finish(exitFailed);
    }
    QList<CtlHome> homes;
    for (const std::unique_ptr<Served>& served : m_bridges)
        homes.append(homeOf(*served));
    const CtlTarget target = CtlOutput::findTarget(m_invocation.command, homes, m_invocation.targetId);
    if (target.home < 0)
        return finish(target.failure);
    Served& served = *m_bridges.at(target.home);
    if (m_invocation.command == CtlCommand::light)
        changeLight(served, served.lights.at(target.index));
    else if (m_invocation.command == CtlCommand::room)
        changeGroup(served, served.groups.at(target.index));
    else
        served.session->commands().recallScene(served.scenes.at(target.index).scene_id);
    awaitQueues({&served});
}

void CtlCommands::changeLight(Served& served, const HueLight& light)
{
    BridgeCommands& commands = served.session->commands();
    const qint64 value = CtlOutput::bridgeBrightness(m_invocation);
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
    const qint64 value = CtlOutput::bridgeBrightness(m_invocation);
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

void CtlCommands::switchAll()
{
    // Every bridge that answered; one that did not is said above and fails the run, after the others.
    QList<Served*> commanded;
    for (const std::unique_ptr<Served>& served : m_bridges) {
        if (served->failed)
            continue;
        BridgeCommands& commands = served->session->commands();
        if (m_invocation.offAfterMinutes)
            commands.switchAllOffAfterMinutes(*m_invocation.offAfterMinutes);
        else
            // One request to group 0, which holds every lamp of the bridge, however many there are.
            commands.switchEverything(m_invocation.command == CtlCommand::allOn);
        commanded.append(served.get());
    }
    if (m_invocation.offAfterMinutes && !commanded.isEmpty()) {
        const QDateTime at = QDateTime::currentDateTime().addSecs(*m_invocation.offAfterMinutes * 60);
        m_afterDrain = Ctl::Text::tr("The lights go off at %1.\n").arg(at.toString(QStringLiteral("HH:mm")));
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
            printError(Ctl::Text::tr("Nothing was sent to the bridge."));
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
    if (m_failures.isEmpty() && !m_afterDrain.isEmpty())
        write(stdout, m_afterDrain);
    finish(m_failures.isEmpty() && !m_readFailed ? exitDone : exitFailed);
}

void CtlCommands::giveUp()
{
    QStringList waiting;
    for (const std::unique_ptr<Served>& served : m_bridges) {
        if (served->reading || served->session->queue().isProcessing())
            waiting << served->bridge->settings().hueIP();
    }
    printError(Ctl::Text::tr("Gave up: the Hue bridge at %1 made no progress for %2 seconds.")
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
