#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QUrl>

/// One pending state change on its way to the bridge.
struct ActionQueueItem
{
    QUrl url;
    QByteArray body;
    QDateTime issued_at;
    bool is_light_update = false;
    bool is_group_update = false;
    QString item_id;  ///< light, group or scene id; empty for a schedule
    QString property; ///< "on", "brightness", "hue", "ct", "brightness_increase", "scene" or "schedule"

    bool operator==(const ActionQueueItem&) const = default;
};
