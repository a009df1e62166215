#include "state/LightVisibility.h"

#include "state/AppSettings.h"

namespace LightVisibility {

QList<HueLight> shownLights(const AppSettings& settings)
{
    QList<HueLight> shown = settings.lights();
    const Preferences& preferences = settings.preferences();
    shown.removeIf([&preferences](const HueLight& light) { return preferences.isLightHidden(light); });
    return shown;
}

} // namespace LightVisibility
