#pragma once

#include "model/HueGroup.h"
#include "model/HueScene.h"

#include <QHash>
#include <QList>
#include <QSet>

/// Where each scene belongs: a group scene to its room or zone, a light scene to the room that holds all of
/// its lights. Built once from the rooms and zones, then asked for any number of scenes.
class SceneRooms
{
public:
    /// The scenes of one room or zone, or of none (an empty `groupId`), in the bridge's order.
    struct Section
    {
        QString groupId;
        QString title;
        QList<HueScene> scenes;
    };

    explicit SceneRooms(const QList<HueGroup>& groups);

    /// The group id of the room or zone @p scene belongs to, or an empty text.
    QString roomOf(const HueScene& scene) const;
    /// The name of that room or zone, or an empty text.
    QString roomNameOf(const HueScene& scene) const;

    /// @p scenes under their rooms in the rooms' order, then under their zones, then those of no room
    /// (`groupId` empty, titled "Other scenes"). Rooms without scenes are left out.
    QList<Section> sections(const QList<HueScene>& scenes) const;

private:
    struct Room
    {
        QString groupId;
        QString name;
        QSet<QString> lights;
        bool zone = false;
    };

    QList<Room> m_rooms;            // rooms first, then zones, each in the bridge's order
    QHash<QString, qsizetype> m_at; // group id -> index in m_rooms
};
