#pragma once

#include "model/HueLight.h"

#include <QList>
#include <QString>

class AppSettings;
class SettingsStore;

/// Which lights the user wants to see: the lights pane stores a "hide_light_" + `unique_id` flag per light,
/// and the drop-down window leaves the hidden ones out of its lights panel. Rooms and the all-off actions
/// still reach every light.
namespace LightVisibility {

/// The settings key of a light's flag.
QString hiddenKey(const HueLight& light);
/// true only when the flag is stored as true; a light never shown in the pane is visible.
bool isHidden(const SettingsStore& store, const HueLight& light);
void setHidden(SettingsStore& store, const HueLight& light, bool hidden);

/// The lights the lights panel lists: `AppSettings::lights` in its order, without the hidden ones.
QList<HueLight> shownLights(const AppSettings& settings);

} // namespace LightVisibility
