#include "state/LightVisibility.h"

#include "state/AppSettings.h"
#include "state/BridgeHome.h"

namespace LightVisibility {

QList<HueLight> shownLights(const AppSettings& settings)
{
    QList<HueLight> shown = settings.home().lights();
    const Preferences& preferences = settings.preferences();
    shown.removeIf([&preferences](const HueLight& light) { return preferences.isLightHidden(light); });
    return shown;
}

} // namespace LightVisibility
