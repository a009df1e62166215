#include "CtlWatch.h"

#include "CtlCommon.h"

#include "bridge/BridgeNetwork.h"
#include "bridge/JsonWriter.h"
#include "connection/BridgeEventStream.h"
#include "model/BridgeAddress.h"
#include "state/AppSettings.h"

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

void beginRecord(JsonWriter& json, const char* type, const QString& id, const QHash<QString, QString>& names)
{
    json.beginObject().member(u"type", type).member(u"id", id).key(u"name");
    const auto name = names.constFind(id);
    name == names.cend() ? json.null() : json.value(*name);
}

} // namespace

CtlWatch::CtlWatch(CtlInvocation invocation, QObject* parent)
    : QObject(parent), m_invocation(std::move(invocation)), m_network(Ctl::makeNetwork(m_invocation))
{
    connect(&m_signals, &SignalWatcher::terminationRequested, this, [this] { finish(exitDone); });
}

CtlWatch::~CtlWatch()
{
    // The stream and the replies still out go first, so none can call back into a half-destroyed run.
    m_stream.reset();
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
    m_bridge = std::move(bridges.front());
    m_bridge->reach(*m_network, this, [this](bool reached) { reached ? onReached() : finish(exitFailed); });
}

void CtlWatch::onReached()
{
    const AppSettings& settings = m_bridge->settings();
    // The stream carries the key in every request, and bridges offer it over HTTPS only.
    if (!settings.bridgeEndpoint().startsWith(BridgeAddress::https + u':')) {
        printError(
            QStringLiteral("the bridge at %1 is reached over plain HTTP, and its event stream needs HTTPS; "
                           "glowdeckctl lists show its state")
                .arg(printable(settings.hueIP())));
        return finish(exitFailed);
    }
    m_firstReads = 2;
    readNames(true, false);
}

void CtlWatch::readNames(bool lights, bool rooms)
{
    const AppSettings& settings = m_bridge->settings();
    if (lights)
        LightsRead{.endpoint = settings.bridgeEndpoint(),
                   .key = settings.hueKey(),
                   .identity = settings.bridgeIdentity()}
            .fetch(*m_network, [this](const LightsResult& result) { onLights(result); });
    if (rooms)
        GroupsRead{.endpoint = settings.bridgeEndpoint(),
                   .key = settings.hueKey(),
                   .identity = settings.bridgeIdentity()}
            .fetch(*m_network, [this](const GroupsResult& result) { onRooms(result); });
}

void CtlWatch::onLights(const LightsResult& result)
{
    // A bridge without lamps is one to watch too: they may be added.
    const bool ok = result.ok() || result.error == LightsError::noDevices;
    if (ok) {
        m_lightNames.clear();
        for (const HueLight& light : result.records)
            m_lightNames.insert(light.lamp_id, light.name);
    }
    onNamesRead(ok, ok ? QString() : Ctl::failedRead(m_bridge->settings().hueIP(), result));
}

void CtlWatch::onRooms(const GroupsResult& result)
{
    const bool ok = result.ok() || result.error == GroupsError::noGroups;
    if (ok) {
        m_roomNames.clear();
        for (const HueGroup& group : result.records)
            m_roomNames.insert(group.group_id, group.name);
    }
    onNamesRead(ok, ok ? QString() : Ctl::failedRead(m_bridge->settings().hueIP(), result));
}

void CtlWatch::onNamesRead(bool ok, const QString& failure)
{
    if (m_finished)
        return;
    if (m_firstReads == 0) {
        // Later reads only bring names up to date: the changes go on arriving with the old ones.
        if (!ok && !failure.isEmpty())
            printError(QStringLiteral("names not read again: %1").arg(clause(failure)));
        return;
    }
    if (!ok) {
        if (!failure.isEmpty())
            printError(failure);
        return finish(exitFailed);
    }
    // The lamps first, then the rooms: a key the bridge does not know is then said once, plainly.
    if (--m_firstReads > 0)
        return readNames(false, true);
    const AppSettings& settings = m_bridge->settings();
    m_stream = std::make_unique<BridgeEventStream>(*m_network);
    connect(m_stream.get(), &BridgeEventStream::connected, this, &CtlWatch::onConnected);
    connect(m_stream.get(), &BridgeEventStream::changes, this, &CtlWatch::onChanges);
    connect(m_stream.get(), &BridgeEventStream::disconnected, this, &CtlWatch::onDisconnected);
    connect(m_stream.get(), &BridgeEventStream::unavailable, this, &CtlWatch::onUnavailable);
    m_stream->start(settings.bridgeEndpoint(), settings.hueKey(), settings.bridgeIdentity());
}

void CtlWatch::onConnected()
{
    if (!std::exchange(m_opened, true)) {
        // Standard error, so that standard output holds nothing but changes.
        printError(QStringLiteral("watching the bridge at %1; Ctrl+C ends")
                       .arg(printable(m_bridge->settings().hueIP())));
        return;
    }
    if (std::exchange(m_lost, false)) {
        // The bridge does not tell what changed while the stream was down; a lamp may have been renamed.
        printError(QStringLiteral("event stream open again; changes made meanwhile are not told"));
        readNames(true, true);
    }
}

void CtlWatch::onChanges(const BridgeEventBatch& batch)
{
    for (const LightChange& change : batch.lights) {
        QStringList fields;
        JsonWriter json;
        beginRecord(json, "light", change.lampId, m_lightNames);
        if (change.on) {
            fields << onOff(*change.on);
            json.member(u"on", *change.on);
        }
        if (change.brightness) {
            fields << QStringLiteral("brightness %1").arg(*change.brightness);
            json.member(u"brightness", *change.brightness);
        }
        if (change.xy) {
            const float x = fourDecimals(change.xy->first), y = fourDecimals(change.xy->second);
            fields << QStringLiteral("xy %1 %2").arg(x, 0, 'f', 4).arg(y, 0, 'f', 4);
            json.key(u"xy").beginArray().value(x).value(y).endArray();
        }
        if (change.colorTemperature) {
            fields << QStringLiteral("ct %1").arg(*change.colorTemperature);
            json.member(u"ct", *change.colorTemperature);
        }
        if (!fields.isEmpty())
            printLine(subject(QStringLiteral("light"), change.lampId, m_lightNames) + QStringLiteral(": ") +
                          fields.join(QStringLiteral(", ")),
                      json.endObject().text());
    }
    // Rooms and zones alike: `glowdeckctl room ID` changes either.
    for (const GroupChange& change : batch.groups) {
        QStringList fields;
        JsonWriter json;
        beginRecord(json, "room", change.groupId, m_roomNames);
        if (change.anyOn) {
            fields << onOff(*change.anyOn);
            json.member(u"any_on", *change.anyOn);
        }
        if (change.brightness) {
            fields << QStringLiteral("brightness %1").arg(*change.brightness);
            json.member(u"brightness", *change.brightness);
        }
        if (!fields.isEmpty())
            printLine(subject(QStringLiteral("room"), change.groupId, m_roomNames) + QStringLiteral(": ") +
                          fields.join(QStringLiteral(", ")),
                      json.endObject().text());
    }
    for (const QString& problem : batch.problems)
        printError(QStringLiteral("event stream: %1").arg(printable(problem)));

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
    printLine(named + QStringLiteral(" changed: read again"), json.text());
    readNames(batch.relistLights, batch.relistGroups);
}

void CtlWatch::onDisconnected(const QString& reason)
{
    // BridgeEventStream tries again by itself, after 1, 2, 4 ... at most 60 s.
    if (m_opened)
        m_lost = true;
    printError((m_opened ? QStringLiteral("event stream lost: %1; reconnecting")
                         : QStringLiteral("event stream not opened: %1; trying again"))
                   .arg(clause(printable(reason))));
}

void CtlWatch::onUnavailable(const QString& reason)
{
    printError(QStringLiteral("the bridge offers no event stream (%1); glowdeckctl lists show its state")
                   .arg(clause(printable(reason))));
    finish(exitFailed);
}

void CtlWatch::printLine(const QString& text, const QByteArray& json)
{
    Ctl::write(stdout, (m_invocation.json ? QString::fromUtf8(json) : text) + u'\n');
}

void CtlWatch::finish(int exitStatus)
{
    if (m_finished)
        return;
    m_finished = true;
    if (m_stream)
        m_stream->stop();
    Q_EMIT finished(exitStatus);
}
