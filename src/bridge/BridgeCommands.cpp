#include "bridge/BridgeCommands.h"

#include "bridge/ActionQueue.h"
#include "bridge/BridgeUrl.h"
#include "bridge/ClipUnits.h"
#include "bridge/UpdateBodies.h"
#include "state/ActivityLog.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr qint64 dragTransition = 2; // tenths of a second: smooth while a slider is dragged
constexpr qint64 stepTransition = 1; // the brighter/darker shortcuts answer faster
// The same in the current interface's milliseconds.
constexpr qint64 dragDuration = dragTransition * 100;
constexpr qint64 stepDuration = stepTransition * 100;

using Target = ActionQueueItem::Target;

} // namespace

QUrl BridgeCommands::address(const QStringList& segments) const
{
    // Built from the bridge's contact as it is now: a key or address learnt since the record was read is the
    // one that works.
    return bridgeResourceUrl(m_settings.bridgeEndpoint(), m_settings.hueKey(), segments);
}

QUrl BridgeCommands::lampAddress(const HueLight& light) const
{
    if (overClip() && !light.v2_id.isEmpty())
        return clipAddress(QStringLiteral("light"), light.v2_id);
    return address({QStringLiteral("lights"), light.lamp_id, QStringLiteral("state")});
}

QUrl BridgeCommands::roomAddress(const HueGroup& group) const
{
    if (overClip() && !group.grouped_light_id.isEmpty())
        return clipAddress(QStringLiteral("grouped_light"), group.grouped_light_id);
    return address({QStringLiteral("groups"), group.group_id, QStringLiteral("action")});
}

bool BridgeCommands::overClip() const
{
    return m_settings.bridgeInterface() == BridgeInterface::v2;
}

QUrl BridgeCommands::clipAddress(const QString& type, const QString& id) const
{
    return bridgeClipUrl(m_settings.bridgeEndpoint(), {type, id});
}

namespace {

/// The address goes over the current interface: the body must be in its form too.
bool isClip(const QUrl& url)
{
    return url.path().startsWith(QLatin1String("/clip/v2/"));
}

ClipStateUpdate clipColour(qint64 hue, qint64 saturation)
{
    ClipStateUpdate update{.on = true, .durationMs = dragDuration};
    update.xy = ClipUnits::xyFromHueSaturation(hue, saturation);
    return update;
}

} // namespace

BridgeCommands::BridgeCommands(BridgeLink& settings, ActionQueue& queue)
    : m_settings(settings), m_queue(queue)
{}

void BridgeCommands::setLightOn(HueLight light, bool on)
{
    const QUrl url = lampAddress(light);
    enqueue(url, isClip(url) ? ClipStateUpdate{.on = on}.encode() : HueLampOnOffUpdate{on}.encode(),
            Target::light, light.lamp_id, QStringLiteral("on"));
}

void BridgeCommands::setLightBrightness(HueLight light, qint64 brightness)
{
    const bool on = brightness > offBrightness;
    m_settings.home().updateLight(light.lamp_id, [on](HueLight& l) { l.is_on = on; });
    const QUrl url = lampAddress(light);
    enqueue(url,
            isClip(url) ? ClipStateUpdate{.on = on,
                                          .brightness = ClipUnits::percentFromBrightness(brightness),
                                          .durationMs = dragDuration}
                              .encode()
                        : HueLampBrightnessUpdate{brightness, on, dragTransition}.encode(),
            Target::light, light.lamp_id, QStringLiteral("brightness"));
}

void BridgeCommands::setLightHue(HueLight light, qint64 hue)
{
    const QUrl url = lampAddress(light);
    enqueue(url,
            isClip(url) ? clipColour(hue, light.saturation).encode()
                        : HueLampHueSatUpdate{hue, light.saturation, true, dragTransition}.encode(),
            Target::light, light.lamp_id, QStringLiteral("hue"));
}

void BridgeCommands::setLightColorTemperature(HueLight light, qint64 mired)
{
    const QUrl url = lampAddress(light);
    enqueue(url,
            isClip(url) ? ClipStateUpdate{.on = true, .mirek = mired, .durationMs = dragDuration}.encode()
                        : HueLampTemperatureUpdate{mired, true, dragTransition}.encode(),
            Target::light, light.lamp_id, QStringLiteral("ct"));
}

void BridgeCommands::setLightXy(HueLight light, float x, float y)
{
    enqueue(lampAddress(light), HueLampXyUpdate{x, y, true, dragTransition}.encode(), Target::light,
            light.lamp_id, QStringLiteral("xy"));
}

void BridgeCommands::setGroupOn(HueGroup group, bool on)
{
    const QUrl url = roomAddress(group);
    enqueue(url, isClip(url) ? ClipStateUpdate{.on = on}.encode() : HueGroupStateUpdate{on}.encode(),
            Target::group, group.group_id, QStringLiteral("on"));
}

void BridgeCommands::setGroupBrightness(HueGroup group, qint64 brightness)
{
    const bool on = brightness > offBrightness;
    m_settings.home().updateGroup(group.group_id, [on](HueGroup& g) { g.is_on = on; });
    const QUrl url = roomAddress(group);
    enqueue(url,
            isClip(url) ? ClipStateUpdate{.on = on,
                                          .brightness = ClipUnits::percentFromBrightness(brightness),
                                          .durationMs = dragDuration}
                              .encode()
                        : HueGroupBrightnessUpdate{brightness, on, dragTransition}.encode(),
            Target::group, group.group_id, QStringLiteral("brightness"));
}

void BridgeCommands::setGroupHue(HueGroup group, qint64 hue)
{
    const QUrl url = roomAddress(group);
    enqueue(url,
            isClip(url) ? clipColour(hue, group.saturation).encode()
                        : HueGroupHueUpdate{hue, group.saturation, true, dragTransition}.encode(),
            Target::group, group.group_id, QStringLiteral("hue"));
}

void BridgeCommands::setGroupColorTemperature(HueGroup group, qint64 mired)
{
    const QUrl url = roomAddress(group);
    enqueue(url,
            isClip(url) ? ClipStateUpdate{.on = true, .mirek = mired, .durationMs = dragDuration}.encode()
                        : HueGroupTemperatureUpdate{mired, true, dragTransition}.encode(),
            Target::group, group.group_id, QStringLiteral("ct"));
}

void BridgeCommands::setGroupXy(HueGroup group, float x, float y)
{
    enqueue(roomAddress(group), HueLampXyUpdate{x, y, true, dragTransition}.encode(), Target::group,
            group.group_id, QStringLiteral("xy"));
}

void BridgeCommands::increaseGroupBrightness(HueGroup group, qint64 delta)
{
    // The bridge adds the delta to its own value; the clamp only keeps the local record in range.
    bool on = true;
    m_settings.home().updateGroup(group.group_id, [delta, &on](HueGroup& g) {
        g.brightness = std::clamp<qint64>(g.brightness + delta, 0, 255);
        g.is_on = g.brightness > offBrightness;
        on = g.is_on;
    });
    const QUrl url = roomAddress(group);
    // The step in per cent: 25 of 254 are 9.84 per cent.
    const double percent = double(delta) * 100.0 / 254.0;
    enqueue(url,
            isClip(url) ? ClipStateUpdate{.on = on,
                                          .brightnessDelta = std::round(percent * 100.0) / 100.0,
                                          .durationMs = stepDuration}
                              .encode()
                        : HueGroupBrightnessIncrease{delta, stepTransition, on}.encode(),
            Target::group, group.group_id, ActionQueue::brightnessIncrease);
}

void BridgeCommands::switchEverything(bool on)
{
    QList<HueLight> lights = m_settings.home().lights();
    for (HueLight& light : lights)
        light.is_on = on;
    m_settings.home().setLights(lights);
    QList<HueGroup> rooms = m_settings.home().groups();
    for (HueGroup& room : rooms) {
        room.is_on = on;
        room.any_on = on;
        room.all_on = on;
    }
    m_settings.home().setGroups(rooms);
    // One request for the whole home: group 0 of the first interface, the home's grouped light of the
    // current one. The queue knows it as group "0" either way.
    const QString home = m_settings.homeGroupedLight();
    if (overClip() && !home.isEmpty())
        enqueue(clipAddress(QStringLiteral("grouped_light"), home), ClipStateUpdate{.on = on}.encode(),
                Target::group, QStringLiteral("0"), QStringLiteral("on"));
    else
        enqueue(address({QStringLiteral("groups"), QStringLiteral("0"), QStringLiteral("action")}),
                HueLampOnOffUpdate{on}.encode(), Target::group, QStringLiteral("0"), QStringLiteral("on"));
}

void BridgeCommands::recallScene(const QString& sceneId)
{
    if (overClip()) {
        // Named by either of its ids (glowdeckctl takes both); recalled at its own resource.
        const QList<HueScene> scenes = m_settings.home().scenes();
        const auto scene = std::find_if(scenes.cbegin(), scenes.cend(), [&sceneId](const HueScene& s) {
            return s.scene_id == sceneId || (!s.v2_id.isEmpty() && s.v2_id == sceneId);
        });
        if (scene != scenes.cend() && !scene->v2_id.isEmpty()) {
            enqueue(clipAddress(scene->isSmart() ? QStringLiteral("smart_scene") : QStringLiteral("scene"),
                                scene->v2_id),
                    ClipSceneRecall{scene->isSmart()}.encode(), Target::scene, scene->scene_id,
                    QStringLiteral("scene"));
            return;
        }
    }
    enqueue(address({QStringLiteral("groups"), QStringLiteral("0"), QStringLiteral("action")}),
            HueSceneRecall{sceneId}.encode(), Target::scene, sceneId, QStringLiteral("scene"));
}

void BridgeCommands::switchAllOffAfterMinutes(qint64 minutes, const QString& token)
{
    HueScheduleOffMinutes schedule;
    schedule.name = switchOffScheduleName;
    schedule.command.address = switchOffCommandAddress();
    schedule.command.method = QStringLiteral("PUT");
    schedule.command.body.on = false;
    schedule.autodelete = true;
    // A bridge's time pattern counts minutes up to 59: 90 minutes are "PT01:30:00".
    schedule.localtime = QStringLiteral("PT%1:%2:00")
                             .arg(minutes / 60, 2, 10, QLatin1Char('0'))
                             .arg(minutes % 60, 2, 10, QLatin1Char('0'));
    schedule.recycle = true;
    enqueue(address({QStringLiteral("schedules")}), schedule.encode(), Target::schedule, token,
            QStringLiteral("schedule"));
}

QString BridgeCommands::switchOffCommandAddress() const
{
    // The bridge runs this address itself later; the key is one path segment there too.
    return QStringLiteral("/api/%1/groups/0/action")
        .arg(QString::fromLatin1(QUrl::toPercentEncoding(m_settings.hueKey())));
}

void BridgeCommands::deleteSchedule(const QString& scheduleId)
{
    enqueue(address({QStringLiteral("schedules"), scheduleId}), QByteArray(), Target::schedule, scheduleId,
            unscheduleProperty);
}

void BridgeCommands::noteUserAction()
{
    m_queue.setLastUserActionAt(QDateTime::currentDateTimeUtc());
}

void BridgeCommands::enqueue(const QUrl& address, QByteArray body, ActionQueueItem::Target target,
                             const QString& itemId, const QString& property)
{
    if (!address.isValid()) {
        // A damaged bridge address in the settings, or an id of the bridge's that cannot be a path segment
        // ("", "." or ".."). Dropping the change keeps the program running.
        m_settings.activity().addLogLine(
            QStringLiteral("Not sending the %1 change of \"%2\": the bridge address or the id cannot form a "
                           "request address.")
                .arg(property, itemId));
        return;
    }
    ActionQueueItem item;
    item.url = address;
    item.body = std::move(body);
    item.issued_at = QDateTime::currentDateTimeUtc();
    item.target = target;
    item.item_id = itemId;
    item.property = property;
    m_queue.enqueue(std::move(item));
}
