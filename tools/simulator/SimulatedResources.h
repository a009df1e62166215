#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QUuid>

class SimulatedHome;

/// The home as a bridge's version-2 interface shows it, as far as its event stream speaks of it: a
/// `light` and a `zigbee_connectivity` per lamp, a `grouped_light` per group (group 0 included), a `room`
/// or `zone` per room or zone, a `scene` per scene. Each resource carries a UUID derived from the bridge id
/// and its version-1 address, so the same lamp has the same id for as long as the bridge keeps its id.
class SimulatedResources final
{
public:
    /// One resource: @p key names it uniquely ("light /lights/7"), @p object is its full version-2 form.
    struct Resource
    {
        QString key;
        QJsonObject object;
    };
    using List = QList<Resource>;

    /// Every resource of @p home, lamps first, then groups, then scenes, each in home order.
    static List render(const SimulatedHome& home);

    /// The event containers that take a client from @p before to @p after: one per resource that changed,
    /// "update" with only the fields that differ, "add" with the whole resource, "delete" with its ids.
    /// Each container is stamped with @p creationTime ("2021-10-18T17:04:55Z") and a fresh id.
    static QJsonArray changes(const List& before, const List& after, const QString& creationTime);

    /// The UUID of the resource of @p type that stands for the version-1 @p address on bridge @p bridgeId.
    static QUuid resourceId(const QString& bridgeId, const QString& type, const QString& address);

    SimulatedResources() = delete;
};
