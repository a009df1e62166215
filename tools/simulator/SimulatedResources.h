#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QUuid>

class SimulatedHome;

/// The home as a bridge's version-2 interface shows it: a `light`, a `zigbee_connectivity` and a `device`
/// per lamp, a `grouped_light` per group (group 0, the `bridge_home`, included), a `room` or `zone` per room
/// or zone, a `scene` per scene, a `smart_scene` per room with two scenes or more, a `device`,
/// `zigbee_connectivity` and `device_power` per switch on batteries, and the `bridge` with its `device`.
/// Each resource carries a UUID derived from the bridge id and its version-1 address, so the same lamp has
/// the same id for as long as the bridge keeps its id.
class SimulatedResources final
{
public:
    /// One resource: @p key names it uniquely ("light /lights/7"), @p object is its full version-2 form.
    struct Resource
    {
        QString key;
        QJsonObject object;
        /// False for what only the first interface has (a light group that is no room or zone, a scene of
        /// lamps without a room): the event stream speaks of it, a version-2 read does not list it.
        bool listed = true;
    };
    using List = QList<Resource>;

    /// Every resource of @p home: lamps first, then groups, scenes, smart scenes, switches and the bridge,
    /// each in home order.
    static List render(const SimulatedHome& home);

    /// The event containers that take a client from @p before to @p after: one per resource that changed,
    /// "update" with only the fields that differ, "add" with the whole resource, "delete" with its ids.
    /// Each container is stamped with @p creationTime ("2021-10-18T17:04:55Z") and a fresh id.
    static QJsonArray changes(const List& before, const List& after, const QString& creationTime);

    /// The UUID of the resource of @p type that stands for the version-1 @p address on bridge @p bridgeId.
    static QUuid resourceId(const QString& bridgeId, const QString& type, const QString& address);

    SimulatedResources() = delete;
};
