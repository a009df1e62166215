#include "state/LightVisibility.h"

#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

namespace LightVisibility {

QList<HueLight> shownLights(const BridgeLink& settings)
{
    QList<HueLight> shown = settings.home().lights();
    const Preferences& preferences = settings.preferences();
    shown.removeIf([&preferences](const HueLight& light) { return preferences.isLightHidden(light); });
    return shown;
}

} // namespace LightVisibility
