#include "model/SceneRooms.h"

#include <QCoreApplication>

#include <algorithm>

SceneRooms::SceneRooms(const QList<HueGroup>& groups)
{
    for (const bool zones : {false, true}) {
        for (const HueGroup& group : groups) {
            if (group.isZone() != zones || m_at.contains(group.group_id))
                continue;
            m_at.insert(group.group_id, m_rooms.size());
            m_rooms.append({group.group_id, group.name,
                            QSet<QString>(group.lights.cbegin(), group.lights.cend()), zones});
        }
    }
}

QString SceneRooms::roomOf(const HueScene& scene) const
{
    // A group scene whose group is not a room or zone shown here (an entertainment area, a group some app
    // made) is placed by its lights, like a light scene.
    if (!scene.group_id.isEmpty() && m_at.contains(scene.group_id))
        return scene.group_id;
    if (scene.lights.isEmpty())
        return {};
    for (const Room& room : m_rooms) {
        if (room.zone)
            break;
        if (std::all_of(scene.lights.cbegin(), scene.lights.cend(),
                        [&room](const QString& light) { return room.lights.contains(light); }))
            return room.groupId;
    }
    return {};
}

QString SceneRooms::roomNameOf(const HueScene& scene) const
{
    const QString groupId = roomOf(scene);
    return groupId.isEmpty() ? QString() : m_rooms.at(m_at.value(groupId)).name;
}

QList<SceneRooms::Section> SceneRooms::sections(const QList<HueScene>& scenes) const
{
    QList<Section> byRoom(m_rooms.size() + 1);
    for (const HueScene& scene : scenes) {
        const QString groupId = roomOf(scene);
        byRoom[groupId.isEmpty() ? m_rooms.size() : m_at.value(groupId)].scenes.append(scene);
    }
    QList<Section> result;
    for (qsizetype i = 0; i < byRoom.size(); ++i) {
        if (byRoom.at(i).scenes.isEmpty())
            continue;
        Section& section = byRoom[i];
        if (i < m_rooms.size()) {
            section.groupId = m_rooms.at(i).groupId;
            section.title = m_rooms.at(i).name;
        } else {
            section.title = QCoreApplication::translate("SceneRooms", "Other scenes");
        }
        result.append(std::move(section));
    }
    return result;
}
