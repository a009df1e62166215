#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

/// One colour of a scene's palette, which the bridge plays in turn when the scene runs dynamically.
struct ScenePaletteColour
{
    float x = 0; ///< CIE x and y
    float y = 0;
    double brightness = -1; ///< per cent; -1 when the palette gives none

    bool operator==(const ScenePaletteColour&) const = default;
};

/// One scene stored on the bridge. `id` is made fresh for every record and only identifies it in lists.
struct HueScene
{
    QUuid id;
    QString scene_id;
    QString name;
    QStringList lights;
    QString type;
    QString group_id; ///< the room or zone of a group scene, as the bridge names it; empty for a light scene
    /// The scene's id on the bridge's current interface, for recalling it there; empty when it was read over
    /// the first interface. A smart scene (type "SmartScene") has only this id.
    QString v2_id;
    /// The colours and the speed (0 to 1) the bridge plays the scene with dynamically; empty and -1 when the
    /// bridge gives none.
    QList<ScenePaletteColour> palette;
    double speed = -1;

    /// A smart scene chooses its own scene by the time of day; it is recalled differently.
    bool isSmart() const { return type == QLatin1String("SmartScene"); }

    bool operator==(const HueScene&) const = default;
};
