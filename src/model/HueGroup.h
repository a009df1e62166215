#pragma once

#include <QString>
#include <QStringList>
#include <QUuid>

/// One room, or one zone, of the bridge (`type` tells which). `id` is made fresh for every record and only
/// identifies it in lists.
struct HueGroup
{
    QUuid id;
    QString group_id;
    QString name;
    QStringList lights;
    QString type;
    QString group_class;
    bool all_on = false;
    bool any_on = false;
    bool is_on = false;
    qint64 brightness = 0;
    qint64 saturation = 0;
    qint64 hue = 0;
    qint64 color_temperature = 0;
    qint64 ct_min = 0;
    qint64 ct_max = 0;
    /// The room's or zone's id on the bridge's current interface, and the id of the `grouped_light` that
    /// switches and dims it there; both empty when it was read over the first interface.
    QString v2_id;
    QString grouped_light_id;

    /// A zone ("Downstairs", "TV corner"): lamps of any rooms, shown after the rooms. The whole-home
    /// shortcuts act on rooms only.
    bool isZone() const { return type.compare(QLatin1String("Zone"), Qt::CaseInsensitive) == 0; }

    bool operator==(const HueGroup&) const = default;
};
