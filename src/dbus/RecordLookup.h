#pragma once

#include "model/HueGroup.h"
#include "model/HueLight.h"
#include "model/HueScene.h"

#include <QList>
#include <QString>

/// Finding the lamp, room or scene a user or a script names, on one bridge or several: the one place that
/// decides what an id is and when a name is meant. glowdeckctl and the D-Bus interface both ask it.
namespace RecordLookup {

/// One record found: the bridge (its index in the lists given) and the record's index in that bridge's list.
struct Match
{
    qsizetype bridge = 0;
    qsizetype index = 0;

    bool operator==(const Match&) const = default;
};

/// A record's id as the window and the lists show it.
inline QString idOf(const HueLight& light)
{
    return light.lamp_id;
}
inline QString idOf(const HueGroup& group)
{
    return group.group_id;
}
inline QString idOf(const HueScene& scene)
{
    return scene.scene_id;
}

/// Whether `id` is one of the ids the record answers to: the one shown, or the UUID the bridge's current
/// interface gives it (scripts may keep either).
template <typename Record>
bool hasId(const Record& record, const QString& id)
{
    return idOf(record) == id || (!record.v2_id.isEmpty() && record.v2_id.compare(id, Qt::CaseInsensitive) == 0);
}

/// The records of `bridges` (one list per bridge) that `key` names: those with that id, else, when no record
/// has it, those with that name (without regard to case). An id wins over a name, so that a lamp called "2"
/// never hides lamp 2. More than one match is ambiguous: the caller names them and sends nothing.
template <typename Record>
QList<Match> find(const QList<QList<Record>>& bridges, const QString& key)
{
    QList<Match> byId;
    QList<Match> byName;
    for (qsizetype b = 0; b < bridges.size(); ++b) {
        const QList<Record>& records = bridges.at(b);
        for (qsizetype i = 0; i < records.size(); ++i) {
            if (hasId(records.at(i), key))
                byId.append({b, i});
            else if (records.at(i).name.compare(key, Qt::CaseInsensitive) == 0)
                byName.append({b, i});
        }
    }
    return byId.isEmpty() ? byName : byId;
}

} // namespace RecordLookup
