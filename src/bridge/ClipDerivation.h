#pragma once

#include "bridge/ClipDecoder.h"
#include "model/HueGroup.h"
#include "model/HueLight.h"
#include "model/HueScene.h"

#include <QList>
#include <QString>

/// The records the views work on, made from one read of the current interface: the same records, in the same
/// units, as a read of the first interface gives for the same home.
struct ClipRecords
{
    QList<HueLight> lights; ///< reachable lamps only, as with the first interface
    QList<HueGroup> groups; ///< rooms, then zones, each in the bridge's order
    QList<HueScene> scenes; ///< scenes, then smart scenes
    /// The `grouped_light` of `bridge_home`, which holds every lamp: "Darkness!" and All On switch it.
    QString homeGroupedLight;
};

namespace ClipDerivation {

/// The id a record keeps: the number of the first interface's `id_v1` ("/lights/3" gives "3") when the
/// resource has one of `prefix`, so that what the user stored by it (lamp order, hidden lamps, room actions,
/// shortcuts) stays valid; its UUID otherwise.
QString recordId(const ClipResource& resource, std::string_view prefix);

/// Derives the records of `home`. A room lists the lamps of its devices, a zone its lamps; a scene's room is
/// its group's record id; lamps out of reach (their `zigbee_connectivity` not "connected") are left out.
ClipRecords derive(const ClipHome& home);

} // namespace ClipDerivation
