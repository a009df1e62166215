#pragma once

#include "model/HueLight.h"

#include <QList>
#include <QString>

/// The order the user gave the lights in the preferences (`Preferences::lightOrder`).
namespace LightOrder {

/// Lights named in the stored order first, in that order; the others after them in the bridge's order. Empty
/// pieces and unknown ids are passed over; no light is dropped or repeated.
QList<HueLight> apply(const QList<HueLight>& bridgeOrder, const QString& storedOrder);

} // namespace LightOrder
