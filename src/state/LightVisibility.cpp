#include "state/LightVisibility.h"

#include "state/AppSettings.h"
#include "state/SettingsStore.h"

namespace LightVisibility {

QString hiddenKey(const HueLight& light)
{
    return QStringLiteral("hide_light_") + light.unique_id;
}

bool isHidden(const SettingsStore& store, const HueLight& light)
{
    return store.readBool(hiddenKey(light));
}

void setHidden(SettingsStore& store, const HueLight& light, bool hidden)
{
    store.writeBool(hiddenKey(light), hidden);
}

QList<HueLight> shownLights(const AppSettings& settings)
{
    QList<HueLight> shown = settings.lights();
    shown.removeIf([&settings](const HueLight& light) { return isHidden(settings.store(), light); });
    return shown;
}

} // namespace LightVisibility
