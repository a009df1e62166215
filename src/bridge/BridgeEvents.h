#pragma once

#include <QByteArrayView>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>

/// What one event of the bridge's stream says about one lamp; only the fields it names are set.
struct LightChange
{
    QString lampId; ///< "7" for the lamp the bridge's list interface calls /lights/7; empty without "id_v1"
    QString resourceId; ///< the lamp's UUID on the current interface; empty when the event gave none
    std::optional<bool> on;
    std::optional<qint64> brightness;          ///< 1 to 254, as the lists give it
    std::optional<std::pair<float, float>> xy; ///< CIE x and y, each 0 to 1
    std::optional<qint64> colorTemperature;    ///< mirek; left out while the lamp shows a colour

    bool operator==(const LightChange&) const = default;
};

/// What one event says about the combined state of a room or zone.
struct GroupChange
{
    QString groupId;    ///< "3" for /groups/3; empty without "id_v1"
    QString resourceId; ///< the UUID of the room's or zone's grouped_light; empty when the event gave none
    std::optional<bool> anyOn;
    std::optional<qint64> brightness; ///< 1 to 254

    bool operator==(const GroupChange&) const = default;
};

/// The changes of one event, in the order the bridge wrote them; several changes of one lamp or group are
/// merged into one entry (later fields win), placed where the first one was. Where a change cannot be told
/// lamp by lamp (a lamp added, a room renamed, a lamp gone out of reach), the list it touches must be read
/// again: the `relist` flags say which.
struct BridgeEventBatch
{
    QList<LightChange> lights;
    QList<GroupChange> groups;
    bool relistLights = false;
    bool relistGroups = false; ///< rooms and zones
    bool relistScenes = false;
    /// What was left out of the event and why, for the log; never fatal.
    QStringList problems;

    bool isEmpty() const
    {
        return lights.isEmpty() && groups.isEmpty() && !relistLights && !relistGroups && !relistScenes;
    }
    bool operator==(const BridgeEventBatch&) const = default;
};
Q_DECLARE_METATYPE(BridgeEventBatch)

/// Decodes the data of one event of the bridge's stream: a JSON array of containers ("update", "add",
/// "delete", "error"), each with the resources it concerns. Returns nothing, with `problem` set to a
/// sentence, when the data is not such an array (the stream is then not to be trusted and is dropped). Within
/// it, unknown fields and resource types are ignored; a resource of a known type with a field of the wrong
/// type is left out, noted in `problems`, and its list marked for reading again; values out of range are left
/// out. Thread-safe (one parser per thread).
std::optional<BridgeEventBatch> decodeBridgeEvents(QByteArrayView data, QString* problem);
