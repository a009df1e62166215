#include "bridge/BridgeCommands.h"

#include "bridge/ActionQueue.h"
#include "bridge/BridgeUrl.h"
#include "bridge/UpdateBodies.h"
#include "state/ActivityLog.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <algorithm>

namespace {

constexpr qint64 dragTransition = 2; // tenths of a second: smooth while a slider is dragged
constexpr qint64 stepTransition = 1; // the brighter/darker shortcuts answer faster

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
    return address({QStringLiteral("lights"), light.lamp_id, QStringLiteral("state")});
}

QUrl BridgeCommands::roomAddress(const HueGroup& group) const
{
    return address({QStringLiteral("groups"), group.group_id, QStringLiteral("action")});
}

BridgeCommands::BridgeCommands(BridgeLink& settings, ActionQueue& queue)
    : m_settings(settings), m_queue(queue)
{}

void BridgeCommands::setLightOn(HueLight light, bool on)
{
    enqueue(lampAddress(light), HueLampOnOffUpdate{on}.encode(), Target::light, light.lamp_id,
            QStringLiteral("on"));
}

void BridgeCommands::setLightBrightness(HueLight light, qint64 brightness)
{
    const bool on = brightness > offBrightness;
    m_settings.home().updateLight(light.lamp_id, [on](HueLight& l) { l.is_on = on; });
    enqueue(lampAddress(light), HueLampBrightnessUpdate{brightness, on, dragTransition}.encode(),
            Target::light, light.lamp_id, QStringLiteral("brightness"));
}

void BridgeCommands::setLightHue(HueLight light, qint64 hue)
{
    enqueue(lampAddress(light), HueLampHueSatUpdate{hue, light.saturation, true, dragTransition}.encode(),
            Target::light, light.lamp_id, QStringLiteral("hue"));
}

void BridgeCommands::setLightColorTemperature(HueLight light, qint64 mired)
{
    enqueue(lampAddress(light), HueLampTemperatureUpdate{mired, true, dragTransition}.encode(), Target::light,
            light.lamp_id, QStringLiteral("ct"));
}

void BridgeCommands::setLightXy(HueLight light, float x, float y)
{
    enqueue(lampAddress(light), HueLampXyUpdate{x, y, true, dragTransition}.encode(), Target::light,
            light.lamp_id, QStringLiteral("xy"));
}

void BridgeCommands::setGroupOn(HueGroup group, bool on)
{
    enqueue(roomAddress(group), HueGroupStateUpdate{on}.encode(), Target::group, group.group_id,
            QStringLiteral("on"));
}

void BridgeCommands::setGroupBrightness(HueGroup group, qint64 brightness)
{
    const bool on = brightness > offBrightness;
    m_settings.home().updateGroup(group.group_id, [on](HueGroup& g) { g.is_on = on; });
    enqueue(roomAddress(group), HueGroupBrightnessUpdate{brightness, on, dragTransition}.encode(),
            Target::group, group.group_id, QStringLiteral("brightness"));
}

void BridgeCommands::setGroupHue(HueGroup group, qint64 hue)
{
    enqueue(roomAddress(group), HueGroupHueUpdate{hue, group.saturation, true, dragTransition}.encode(),
            Target::group, group.group_id, QStringLiteral("hue"));
}

void BridgeCommands::setGroupColorTemperature(HueGroup group, qint64 mired)
{
    enqueue(roomAddress(group), HueGroupTemperatureUpdate{mired, true, dragTransition}.encode(),
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
    enqueue(roomAddress(group), HueGroupBrightnessIncrease{delta, stepTransition, on}.encode(), Target::group,
            group.group_id, ActionQueue::brightnessIncrease);
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
    enqueue(address({QStringLiteral("groups"), QStringLiteral("0"), QStringLiteral("action")}),
            HueLampOnOffUpdate{on}.encode(), Target::group, QStringLiteral("0"), QStringLiteral("on"));
}

void BridgeCommands::recallScene(const QString& sceneId)
{
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
