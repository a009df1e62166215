#pragma once

#include "model/ActionQueueItem.h"
#include "model/HueGroup.h"
#include "model/HueLight.h"

#include <QString>
#include <QUrl>

class ActionQueue;
class BridgeLink;

/// Builds every change the user makes to a lamp, a room, a scene or a schedule into a request for the queue.
/// A command shows the change at once in the bridge's `BridgeHome` where it has a local effect, then queues
/// the request, addressed with the bridge's endpoint and key as they are at that moment; it never talks to
/// the bridge itself. Values are passed through as given: callers keep them in the bridge's ranges.
///
/// Over the bridge's current interface (BridgeLink::bridgeInterface) a record read there is changed at its
/// UUID, a room or zone through its `grouped_light` and every lamp through the home's; the values are
/// converted to that interface's units. The queue still tells targets apart by the records' own ids.
class BridgeCommands final
{
public:
    /// At or below this brightness a lamp or room is switched off instead of dimmed.
    static constexpr qint64 offBrightness = 4;

    BridgeCommands(BridgeLink& settings, ActionQueue& queue);

    void setLightOn(HueLight light, bool on);
    void setLightBrightness(HueLight light, qint64 brightness);
    /// Sends the saturation held in `light` with the new hue.
    void setLightHue(HueLight light, qint64 hue);
    void setLightColorTemperature(HueLight light, qint64 mired);
    /// A colour by its CIE coordinates (each 0 to 1); switches the lamp on.
    void setLightXy(HueLight light, float x, float y);

    void setGroupOn(HueGroup group, bool on);
    void setGroupBrightness(HueGroup group, qint64 brightness);
    /// Sends the saturation held in `group` with the new hue.
    void setGroupHue(HueGroup group, qint64 hue);
    void setGroupColorTemperature(HueGroup group, qint64 mired);
    /// A colour by its CIE coordinates (each 0 to 1); switches the room's lamps on.
    void setGroupXy(HueGroup group, float x, float y);
    /// Adds `delta` (may be negative) on the bridge; locally the room's brightness is kept within 0-255.
    void increaseGroupBrightness(HueGroup group, qint64 delta);

    /// Switches every lamp on or off at once: one request to group 0, which holds every lamp of the bridge,
    /// instead of one per lamp or room. Every lamp, room and zone shows the new state at once.
    void switchEverything(bool on);
    void switchEverythingOff() { switchEverything(false); }
    /// Recalls a scene through group 0, so the bridge applies it to the scene's own lamps.
    void recallScene(const QString& sceneId);
    /// The property of a queued schedule deletion, sent with DELETE.
    static inline const QString unscheduleProperty = QStringLiteral("unschedule");

    /// The name of the timers below on the bridge (which takes names of up to 32 characters), so that a later
    /// run finds them again.
    static inline const QString switchOffScheduleName = QStringLiteral("Glowdeck: lights off");
    /// Has the bridge switch every lamp off after `minutes` (90 gives "PT01:30:00"). `token` goes with the
    /// queued request as its item id (SwitchOffTimer tells its requests apart by it).
    void switchAllOffAfterMinutes(qint64 minutes, const QString& token = QString());
    /// What those timers tell the bridge to change: "/api/<key>/groups/0/action". With the key in it, it
    /// tells this installation's timers from those of Glowdeck elsewhere in the home.
    QString switchOffCommandAddress() const;
    /// Deletes the schedule `scheduleId` from the bridge.
    void deleteSchedule(const QString& scheduleId);

    /// The user touched the window's content: the refresh holds back for a few seconds, so that a list does
    /// not jump under the cursor.
    void noteUserAction();

private:
    /// "<endpoint>/api/<key>/<segments...>"; invalid when the contact or a segment cannot form one.
    QUrl address(const QStringList& segments) const;
    QUrl lampAddress(const HueLight& light) const;
    QUrl roomAddress(const HueGroup& group) const;
    /// Whether changes go over the current interface, and there: "<endpoint>/clip/v2/resource/<type>/<id>".
    bool overClip() const;
    QUrl clipAddress(const QString& type, const QString& id) const;
    void enqueue(const QUrl& address, QByteArray body, ActionQueueItem::Target target, const QString& itemId,
                 const QString& property);

    BridgeLink& m_settings;
    ActionQueue& m_queue;
};
