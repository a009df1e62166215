#include "connection/LiveUpdates.h"

#include "bridge/ActionQueue.h"
#include "bridge/ClipUnits.h"
#include "connection/BridgeEventStream.h"
#include "state/ActivityLog.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>

#include <algorithm>
#include <tuple>

namespace {

QString changeKey(bool group, const QString& id, LiveUpdates::Field field)
{
    return (group ? QStringLiteral("g") : QStringLiteral("l")) + id + u'/' + QString::number(int(field));
}

/// Room "0" is every lamp of the bridge: the "switch everything off" change goes there.
const QString allLamps = QStringLiteral("0");

constexpr int listIndex(int list)
{
    return list == LiveUpdates::lights ? 0 : list == LiveUpdates::groups ? 1 : 2;
}

} // namespace

LiveUpdates::LiveUpdates(BridgeLink& settings, QNetworkAccessManager& streamNetwork, const ActionQueue& queue,
                         QObject* parent)
    : QObject(parent), m_settings(settings), m_queue(queue),
      m_stream(new BridgeEventStream(streamNetwork, this)),
      m_enabled(
          qEnvironmentVariable("GLOWDECK_EVENT_STREAM").compare(QLatin1String("off"), Qt::CaseInsensitive) !=
          0)
{
    m_relistTimer.setSingleShot(true);
    m_shieldTimer.setSingleShot(true);
    connect(&m_relistTimer, &QTimer::timeout, this, &LiveUpdates::onRelistDue);
    connect(&m_shieldTimer, &QTimer::timeout, this, [this] {
        // A read while the user is still at it would bring back what the bridge had before.
        if (m_queue.lastUserActionAt().msecsTo(m_now()) < qint64(ownChangeShield.count())) {
            m_shieldTimer.start(ownChangeShield);
            return;
        }
        requestRead(std::exchange(m_afterShield, 0));
    });
    connect(m_stream, &BridgeEventStream::changes, this, &LiveUpdates::apply);
    connect(m_stream, &BridgeEventStream::connected, this, [this] {
        m_settings.activity().addLogLine(
            QStringLiteral("The bridge pushes its changes: reading it once a minute only"));
        m_unavailableReason.clear();
        m_settings.home().setLiveUpdates(true);
        Q_EMIT streamOpened();
    });
    const auto lost = [this](const QString& reason) {
        if (m_settings.home().liveUpdates())
            m_settings.activity().addLogLine(
                QStringLiteral("The bridge's event stream ended (%1): reading it every 3.5 s").arg(reason));
        m_settings.home().setLiveUpdates(false);
    };
    connect(m_stream, &BridgeEventStream::disconnected, this, lost);
    connect(m_stream, &BridgeEventStream::unavailable, this, [this, lost](const QString& reason) {
        lost(reason);
        // Asked again every minute: said once, not sixty times an hour.
        if (std::exchange(m_unavailableReason, reason) != reason)
            m_settings.activity().addLogLine(
                QStringLiteral("No event stream: %1; reading the bridge every 3.5 s").arg(reason));
    });
    connect(&m_queue, &ActionQueue::pendingChanged, this, &LiveUpdates::noteQueuedChanges);
}

LiveUpdates::~LiveUpdates() = default;

void LiveUpdates::start()
{
    const QString endpoint = m_settings.bridgeEndpoint();
    if (!m_enabled || m_settings.hueKey().isEmpty() || !endpoint.startsWith(QLatin1String("https:"))) {
        stop();
        return;
    }
    m_stream->start(endpoint, m_settings.hueKey(), m_settings.bridgeIdentity());
}

void LiveUpdates::stop()
{
    m_stream->stop();
    m_relistTimer.stop();
    m_relistDue = 0;
    m_settings.home().setLiveUpdates(false);
}

int LiveUpdates::fieldsWritten(const QByteArray& body)
{
    const QJsonObject members = QJsonDocument::fromJson(body).object();
    int fields = 0;
    const auto writes = [&members](std::initializer_list<QStringView> names) {
        return std::any_of(names.begin(), names.end(),
                           [&members](QStringView name) { return members.contains(name); });
    };
    // The first interface's names, then the current one's.
    if (writes({u"on"}))
        fields |= on;
    if (writes({u"bri", u"bri_inc", u"dimming", u"dimming_delta"}))
        fields |= brightness;
    if (writes({u"hue", u"sat", u"xy", u"color"}))
        fields |= colour;
    if (writes({u"ct", u"color_temperature"}))
        fields |= whiteTone;
    return fields;
}

void LiveUpdates::noteQueuedChanges()
{
    const QDateTime now = m_now();
    for (const ActionQueueItem& item : m_queue.pending()) {
        // Scenes and schedules change what no event of a single lamp or room can be held against.
        const bool group = item.target == ActionQueueItem::Target::group;
        if (!group && item.target != ActionQueueItem::Target::light)
            continue;
        const int fields = fieldsWritten(item.body);
        if (group && item.item_id == allLamps && (fields & on))
            m_everythingSwitchedAt = now;
        for (Field field : {on, brightness, colour, whiteTone}) {
            if (fields & field)
                m_ownChanges.insert(changeKey(group, item.item_id, field), now);
        }
    }
}

bool LiveUpdates::shielded(bool group, const QString& id, Field field) const
{
    const qint64 shield = qint64(ownChangeShield.count());
    if (field == on && m_everythingSwitchedAt.isValid() && m_everythingSwitchedAt.msecsTo(m_now()) < shield)
        return true;
    const auto changed = m_ownChanges.constFind(changeKey(group, id, field));
    if (changed == m_ownChanges.cend())
        return false;
    return changed->msecsTo(m_now()) < shield;
}

void LiveUpdates::apply(const BridgeEventBatch& batch)
{
    for (const QString& problem : batch.problems)
        m_settings.activity().addLogLine(QStringLiteral("Event stream: %1").arg(problem));
    int reads = (batch.relistLights ? lights : 0) | (batch.relistGroups ? groups : 0) |
                (batch.relistScenes ? scenes : 0);
    int held = 0;
    // Each field the user is not holding; one assignment per list, so the views redraw once per event.
    const auto take = [&](bool group, const QString& id, Field field, auto& record, const auto& value) {
        if (shielded(group, id, field)) {
            held |= group ? groups : lights;
            return;
        }
        record = value;
    };
    if (!batch.lights.isEmpty()) {
        QList<HueLight> records = m_settings.home().lights();
        for (const LightChange& change : batch.lights) {
            // A lamp read over the current interface is found by its UUID, one read over the first by its
            // number.
            const auto light = std::find_if(records.begin(), records.end(), [&](const HueLight& l) {
                return l.v2_id.isEmpty() ? !change.lampId.isEmpty() && l.lamp_id == change.lampId
                                         : l.v2_id == change.resourceId;
            });
            // A lamp not shown (out of reach, say) waits for the next read.
            if (light == records.end())
                continue;
            const QString id = light->lamp_id;
            if (change.on)
                take(false, id, on, light->is_on, *change.on);
            if (change.brightness)
                take(false, id, brightness, light->brightness, *change.brightness);
            if (change.xy && !shielded(false, id, colour)) {
                light->xy_x = change.xy->first;
                light->xy_y = change.xy->second;
                // The colour field shows hue and saturation; a lamp read over the first interface gets them
                // at the next read, as before.
                if (!light->v2_id.isEmpty())
                    std::tie(light->hue, light->saturation) =
                        ClipUnits::hueSaturationFromXy(change.xy->first, change.xy->second);
            } else if (change.xy) {
                held |= lights;
            }
            if (change.colorTemperature)
                take(false, id, whiteTone, light->color_temperature, *change.colorTemperature);
        }
        m_settings.home().setLights(records);
    }
    if (!batch.groups.isEmpty()) {
        QList<HueGroup> records = m_settings.home().groups();
        for (const GroupChange& change : batch.groups) {
            const auto group = std::find_if(records.begin(), records.end(), [&](const HueGroup& g) {
                return g.grouped_light_id.isEmpty()
                           ? !change.groupId.isEmpty() && g.group_id == change.groupId
                           : g.grouped_light_id == change.resourceId;
            });
            if (group == records.end())
                continue;
            const QString id = group->group_id;
            if (change.anyOn && !shielded(true, id, on)) {
                // The bridge tells whether any lamp is on: that is what the room's switch shows.
                group->any_on = group->is_on = *change.anyOn;
                if (!*change.anyOn)
                    group->all_on = false;
            } else if (change.anyOn) {
                held |= groups;
            }
            if (change.brightness)
                take(true, id, brightness, group->brightness, *change.brightness);
        }
        m_settings.home().setGroups(records);
    }
    if (held) {
        m_afterShield |= held;
        m_shieldTimer.start(ownChangeShield);
    }
    requestRead(reads);
}

void LiveUpdates::requestRead(int lists)
{
    if (!lists)
        return;
    const qint64 spacing = relistSpacing.count();
    int now = 0;
    qint64 wait = 0;
    for (int list : {int(lights), int(groups), int(scenes)}) {
        if (!(lists & list))
            continue;
        QElapsedTimer& last = m_lastRelist[listIndex(list)];
        if (!last.isValid() || last.elapsed() >= spacing) {
            last.start();
            now |= list;
        } else {
            // Merged with whatever else asks for this list within the second.
            m_relistDue |= list;
            wait = std::max(wait, spacing - last.elapsed());
        }
    }
    if (m_relistDue && (!m_relistTimer.isActive() || m_relistTimer.remainingTime() < wait))
        m_relistTimer.start(int(wait));
    if (now)
        Q_EMIT readRequested(now);
}

void LiveUpdates::onRelistDue()
{
    requestRead(std::exchange(m_relistDue, 0));
}
