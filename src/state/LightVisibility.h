#pragma once

#include "model/HueLight.h"

#include <QList>

class BridgeLink;

/// Which lights the user wants to see: the lights pane hides lights (`BridgeLink::setLightHidden`), and the
/// drop-down window leaves the hidden ones out of its lights panel. Rooms and the all-off actions still reach
/// every light.
namespace LightVisibility {

/// The lights the lights panel lists: `BridgeHome::lights` in its order, without the hidden ones.
QList<HueLight> shownLights(const BridgeLink& settings);

} // namespace LightVisibility
