#pragma once

#include <QString>
#include <QStringList>
#include <QUuid>

/// One scene stored on the bridge. `id` is made fresh for every record and only identifies it in lists.
struct HueScene
{
    QUuid id;
    QString scene_id;
    QString name;
    QStringList lights;
    QString type;
    QString group_id; ///< the room or zone of a group scene, as the bridge names it; empty for a light scene

    bool operator==(const HueScene&) const = default;
};
