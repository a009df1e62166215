#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>

/// One pending state change on its way to the bridge.
struct ActionQueueItem
{
    /// What kind of resource of the bridge the change is for: lamp "3" and room "3" are different things.
    enum class Target
    {
        light,
        group,
        scene,
        schedule,
    };

    QUrl url;
    QByteArray body;
    QDateTime issued_at;
    Target target = Target::light;
    QString item_id;  ///< light, group or scene id; empty for a schedule
    QString property; ///< "on", "brightness", "hue", "ct", "brightness_increase", "scene" or "schedule"

    bool operator==(const ActionQueueItem&) const = default;
};
