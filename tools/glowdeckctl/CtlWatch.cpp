#include "CtlWatch.h"

#include "CtlCommon.h"

#include "bridge/BridgeNetwork.h"
#include "bridge/JsonWriter.h"
#include "connection/BridgeEventStream.h"
#include "model/BridgeAddress.h"
#include "state/BridgeLink.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <utility>

using Ctl::clause;
using Ctl::printable;
using Ctl::printError;

namespace {

QString onOff(bool on)
{
    return on ? QStringLiteral("on") : QStringLiteral("off");
}

/// CIE coordinates to the four decimals bridges give them: a float read from "0.41" must not print as
/// 0.4099999964.
float fourDecimals(float coordinate)
{
    return std::round(coordinate * 10000.0F) / 10000.0F;
}

/// `light 3 "Sofa lamp"`; the name is left out while it is not known (a lamp added since the last read).
QString subject(const QString& type, const QString& id, const QHash<QString, QString>& names)
{
    const auto name = names.constFind(id);
    return type + u' ' + printable(id) +
           (name == names.cend() ? QString() : QStringLiteral(" \"%1\"").arg(printable(*name)));
}

/// An event in the records' own field names: the type, the record's id under its own key ("lamp_id",
/// "group_id"), then only the fields that changed.
void beginRecord(JsonWriter& json, const char* type, QStringView idKey, const QString& id)
{
    json.beginObject().member(u"type", type).member(idKey, id);
}

} // namespace

struct CtlWatch::Watched
{
    std::unique_ptr<CtlBridge> bridge;
    std::unique_ptr<BridgeNetwork> streamNetwork; ///< the stream's own, so the reads' connections can go
    std::unique_ptr<BridgeEventStream> stream;
    QHash<QString, QString> lightNames; ///< by lamp id
    QHash<QString, QString> roomNames;  ///< by group id, rooms and zones
    int firstReads = 0;                 ///< lists of the first read still to come
    bool opened = false;                ///< the stream was answered once
    bool lost = false;                  ///< the stream ended and is not back yet
    bool failed = false;                ///< not watched
};

CtlWatch::CtlWatch(CtlInvocation invocation, QObject* parent)
    : QObject(parent), m_invocation(std::move(invocation)), m_network(Ctl::makeNetwork(m_invocation))
{
    connect(&m_signals, &SignalWatcher::terminationRequested, this,
            [this] { finish(m_failed ? exitFailed : exitDone); });
}

CtlWatch::~CtlWatch()
{
    // The streams and the replies still out go first, so none can call back into a half-destroyed run.
    for (const std::unique_ptr<Watched>& watched : m_bridges)
        watched->stream.reset();
    m_network.reset();
}

void CtlWatch::start()
{
    if (!m_network)
        return finish(exitFailed);
    int failure = exitFailed;
    std::vector<std::unique_ptr<CtlBridge>> bridges = CtlBridge::open(m_invocation, failure);
    if (bridges.empty())
        return finish(failure);
    for (std::unique_ptr<CtlBridge>& bridge : bridges)
        m_bridges.emplace_back(std::make_unique<Watched>())->bridge = std::move(bridge);
    for (const std::unique_ptr<Watched>& each : m_bridges) {
        Watched& watched = *each;
        watched.bridge->reach(*m_network, this, [this, &watched](bool reached) {
            reached ? onReached(watched) : fail(watched);
        });
    }
}

void CtlWatch::onReached(Watched& watched)
{
    const BridgeLink& settings = watched.bridge->settings();
    // The stream carries the key in every request, and bridges offer it over HTTPS only.
    if (!settings.bridgeEndpoint().startsWith(BridgeAddress::https + u':')) {
        printError(
            Ctl::Text::tr("the bridge at %1 is reached over plain HTTP, and its event stream needs HTTPS; "
                          "glowdeckctl lists show its state")
                .arg(printable(settings.hueIP())));
        return fail(watched);
    }
    watched.bridge->learnInterface(*m_network, this, [this, &watched](bool answered) {
        if (!answered)
            return fail(watched);
        watched.firstReads = 2;
        // Over the current interface one request has both lists.
        readNames(watched, true, watched.bridge->overClip());
    });
}

void CtlWatch::readNames(Watched& watched, bool lights, bool rooms)
{
    const BridgeLink& settings = watched.bridge->settings();
    if (watched.bridge->overClip()) {
        HomeRead{.endpoint = settings.bridgeEndpoint(),
                 .key = settings.hueKey(),
                 .identity = settings.bridgeIdentity()}
            .fetch(*m_network, [this, &watched, lights, rooms](const HomeResult& result) {
                if (lights)
                    onLights(watched, result);
                if (!rooms)
                    return;
                // A home without lamps has no rooms to name either; one that failed is said once.
                if (result.error == LightsError::noDevices)
                    onRooms(watched, GroupsResult{});
                else if (result.ok() || !lights)
                    onRooms(watched, result.groupsResult());
            });
        return;
    }
    if (lights)
        LightsRead{.endpoint = settings.bridgeEndpoint(),
                   .key = settings.hueKey(),
                   .identity = settings.bridgeIdentity()}
            .fetch(*m_network, [this, &watched](const LightsResult& result) { onLights(watched, result); });
    if (rooms)
        GroupsRead{.endpoint = settings.bridgeEndpoint(),
                   .key = settings.hueKey(),
                   .identity = settings.bridgeIdentity()}
            .fetch(*m_network, [this, &watched](const GroupsResult& result) { onRooms(watched, result); });
}

void CtlWatch::onLights(Watched& watched, const LightsResult& result)
{
    // A bridge without lamps is one to watch too: they may be added.
    const bool ok = result.ok() || result.error == LightsError::noDevices;
    if (ok) {
        watched.lightNames.clear();
        for (const HueLight& light : result.records)
            watched.lightNames.insert(light.lamp_id, light.name);
    }
    onNamesRead(watched, ok, ok ? QString() : Ctl::failedRead(watched.bridge->settings().hueIP(), result));
}

void CtlWatch::onRooms(Watched& watched, const GroupsResult& result)
{
    const bool ok = result.ok() || result.error == GroupsError::noGroups;
    if (ok) {
        watched.roomNames.clear();
        for (const HueGroup& group : result.records)
            watched.roomNames.insert(group.group_id, group.name);
    }
    onNamesRead(watched, ok, ok ? QString() : Ctl::failedRead(watched.bridge->settings().hueIP(), result));
}

void CtlWatch::onNamesRead(Watched& watched, bool ok, const QString& failure)
{
    if (m_finished || watched.failed)
        return;
    if (watched.firstReads == 0) {
        // Later reads only bring names up to date: the changes go on arriving with the old ones.
        if (!ok && !failure.isEmpty())
            printError(Ctl::Text::tr("names not read again: %1").arg(clause(failure)));
        return;
    }
    if (!ok) {
        if (!failure.isEmpty())
            printError(failure);
        return fail(watched);
    }
    // The lamps first, then the rooms: a key the bridge does not know is then said once, plainly.
    if (--watched.firstReads > 0)
        return watched.bridge->overClip() ? void() : readNames(watched, false, true);
    const BridgeLink& settings = watched.bridge->settings();
    watched.streamNetwork = m_network->withSameTrust();
    watched.stream = std::make_unique<BridgeEventStream>(*watched.streamNetwork);
    BridgeEventStream* stream = watched.stream.get();
    connect(stream, &BridgeEventStream::connected, this, [this, &watched] { onConnected(watched); });
    connect(stream, &BridgeEventStream::changes, this,
            [this, &watched](const BridgeEventBatch& batch) { onChanges(watched, batch); });
    connect(stream, &BridgeEventStream::disconnected, this,
            [this, &watched](const QString& reason) { onDisconnected(watched, reason); });
    connect(stream, &BridgeEventStream::unavailable, this,
            [this, &watched](const QString& reason) { onUnavailable(watched, reason); });
    stream->start(settings.bridgeEndpoint(), settings.hueKey(), settings.bridgeIdentity());
}

void CtlWatch::onConnected(Watched& watched)
{
    if (!std::exchange(watched.opened, true)) {
        // Standard error, so that standard output holds nothing but changes.
        printError(Ctl::Text::tr("watching the bridge at %1; Ctrl+C ends")
                       .arg(printable(watched.bridge->settings().hueIP())));
        return;
    }
    if (std::exchange(watched.lost, false)) {
        // The bridge does not tell what changed while the stream was down; a lamp may have been renamed.
        printError(
            Ctl::Text::tr("event stream of the bridge at %1 open again; changes made meanwhile are not "
                          "told")
                .arg(printable(watched.bridge->settings().hueIP())));
        readNames(watched, true, true);
    }
}

void CtlWatch::onChanges(Watched& watched, const BridgeEventBatch& batch)
{
    for (const LightChange& change : batch.lights) {
        QStringList fields;
        JsonWriter json;
        beginRecord(json, "light", u"lamp_id", change.lampId);
        if (change.on) {
            fields << onOff(*change.on);
            json.member(u"is_on", *change.on);
        }
        if (change.brightness) {
            fields << QStringLiteral("brightness %1").arg(*change.brightness);
            json.member(u"brightness", *change.brightness);
        }
        if (change.xy) {
            const float x = fourDecimals(change.xy->first), y = fourDecimals(change.xy->second);
            fields << QStringLiteral("xy %1 %2").arg(x, 0, 'f', 4).arg(y, 0, 'f', 4);
            json.member(u"xy_x", x).member(u"xy_y", y);
        }
        if (change.colorTemperature) {
            fields << QStringLiteral("ct %1").arg(*change.colorTemperature);
            json.member(u"color_temperature", *change.colorTemperature);
        }
        if (!fields.isEmpty())
            printLine(watched,
                      subject(QStringLiteral("light"), change.lampId, watched.lightNames) +
                          QStringLiteral(": ") + fields.join(QStringLiteral(", ")),
                      json.endObject().text());
    }
    // Rooms and zones alike: `glowdeckctl room ID` changes either.
    for (const GroupChange& change : batch.groups) {
        QStringList fields;
        JsonWriter json;
        beginRecord(json, "room", u"group_id", change.groupId);
        if (change.anyOn) {
            fields << onOff(*change.anyOn);
            json.member(u"any_on", *change.anyOn);
        }
        if (change.brightness) {
            fields << QStringLiteral("brightness %1").arg(*change.brightness);
            json.member(u"brightness", *change.brightness);
        }
        if (!fields.isEmpty())
            printLine(watched,
                      subject(QStringLiteral("room"), change.groupId, watched.roomNames) +
                          QStringLiteral(": ") + fields.join(QStringLiteral(", ")),
                      json.endObject().text());
    }
    for (const QString& problem : batch.problems)
        printError(Ctl::Text::tr("event stream: %1").arg(printable(problem)));

    QStringList lists;
    if (batch.relistLights)
        lists << QStringLiteral("lights");
    if (batch.relistGroups)
        lists << QStringLiteral("rooms");
    if (batch.relistScenes)
        lists << QStringLiteral("scenes");
    if (lists.isEmpty())
        return;
    JsonWriter json;
    json.beginObject().member(u"type", "relist").member(u"lists", lists).endObject();
    const QString last = lists.takeLast();
    const QString named =
        lists.isEmpty() ? last : lists.join(QStringLiteral(", ")) + QStringLiteral(" and ") + last;
    printLine(watched, named + QStringLiteral(" changed: read again"), json.text());
    readNames(watched, batch.relistLights, batch.relistGroups);
}

void CtlWatch::onDisconnected(Watched& watched, const QString& reason)
{
    // BridgeEventStream tries again by itself, after 1, 2, 4 ... at most 60 s.
    if (watched.opened)
        watched.lost = true;
    printError((watched.opened ? Ctl::Text::tr("event stream lost: %1; reconnecting")
                               : Ctl::Text::tr("event stream not opened: %1; trying again"))
                   .arg(clause(printable(reason))));
}

void CtlWatch::onUnavailable(Watched& watched, const QString& reason)
{
    printError(Ctl::Text::tr("the bridge offers no event stream (%1); glowdeckctl lists show its state")
                   .arg(clause(printable(reason))));
    fail(watched);
}

void CtlWatch::fail(Watched& watched)
{
    if (std::exchange(watched.failed, true))
        return;
    m_failed = true;
    if (watched.stream)
        watched.stream->stop();
    if (std::all_of(m_bridges.cbegin(), m_bridges.cend(), [](const auto& each) { return each->failed; }))
        return finish(exitFailed);
    // The others are still watched; this one is named, and the run ends with 1.
    if (m_bridges.size() > 1)
        printError(Ctl::Text::tr("bridge %1 is not watched").arg(printable(watched.bridge->label())));
}

void CtlWatch::printLine(const Watched& watched, const QString& text, QByteArray json)
{
    if (m_invocation.json) {
        // Each change says which bridge it is on, as the lists' records do.
        JsonWriter id;
        id.value(watched.bridge->settings().bridgeID());
        json.chop(1);
        json += QByteArrayLiteral(",\"bridge_id\":") + id.text() + '}';
        return Ctl::write(stdout, QString::fromUtf8(json) + u'\n');
    }
    const QString bridge =
        m_bridges.size() > 1 ? printable(watched.bridge->label()) + QStringLiteral(": ") : QString();
    Ctl::write(stdout, bridge + text + u'\n');
}

void CtlWatch::finish(int exitStatus)
{
    if (m_finished)
        return;
    m_finished = true;
    for (const std::unique_ptr<Watched>& watched : m_bridges) {
        if (watched->stream)
            watched->stream->stop();
    }
    Q_EMIT finished(exitStatus);
}
