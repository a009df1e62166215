#include "state/LightOrder.h"

#include "state/SettingsStore.h"

#include <QSet>
#include <QStringList>

namespace {

const QString lightOrderKey = QStringLiteral("lightOrder");

} // namespace

namespace LightOrder {

QList<HueLight> apply(const QList<HueLight>& bridgeOrder, const QString& storedOrder)
{
    QList<HueLight> ordered;
    ordered.reserve(bridgeOrder.size());
    QSet<QString> placed;
    for (const QString& id : storedOrder.split(u',', Qt::SkipEmptyParts)) {
        if (placed.contains(id))
            continue;
        for (const HueLight& light : bridgeOrder) {
            if (light.lamp_id == id) {
                ordered.append(light);
                placed.insert(id);
                break;
            }
        }
    }
    for (const HueLight& light : bridgeOrder) {
        if (!placed.contains(light.lamp_id)) {
            ordered.append(light);
            placed.insert(light.lamp_id);
        }
    }
    return ordered;
}

QList<HueLight> apply(const QList<HueLight>& bridgeOrder, const SettingsStore& store)
{
    return apply(bridgeOrder, store.readString(lightOrderKey).value_or(QString()));
}

void save(SettingsStore& store, const QList<HueLight>& lights)
{
    QStringList ids;
    ids.reserve(lights.size());
    for (const HueLight& light : lights)
        ids.append(light.lamp_id);
    store.writeString(lightOrderKey, ids.join(u','));
}

} // namespace LightOrder
