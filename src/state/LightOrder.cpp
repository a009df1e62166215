#include "state/LightOrder.h"

#include <QHash>
#include <QSet>
#include <QStringList>

namespace LightOrder {

QList<HueLight> apply(const QList<HueLight>& bridgeOrder, const QString& storedOrder)
{
    // Runs on every refresh: an index of the bridge's lights keeps it linear in a home of hundreds of lights
    // whose stored order names them all. The first light of an id wins, as the bridge listed them.
    QHash<QString, qsizetype> firstOfId;
    firstOfId.reserve(bridgeOrder.size());
    for (qsizetype i = 0; i < bridgeOrder.size(); ++i) {
        if (!firstOfId.contains(bridgeOrder.at(i).lamp_id))
            firstOfId.insert(bridgeOrder.at(i).lamp_id, i);
    }
    QList<HueLight> ordered;
    ordered.reserve(bridgeOrder.size());
    QSet<QString> placed;
    placed.reserve(bridgeOrder.size());
    for (const QString& id : storedOrder.split(u',', Qt::SkipEmptyParts)) {
        const auto found = firstOfId.constFind(id);
        if (found == firstOfId.cend() || placed.contains(id))
            continue;
        ordered.append(bridgeOrder.at(*found));
        placed.insert(id);
    }
    for (const HueLight& light : bridgeOrder) {
        if (!placed.contains(light.lamp_id)) {
            ordered.append(light);
            placed.insert(light.lamp_id);
        }
    }
    return ordered;
}

} // namespace LightOrder
