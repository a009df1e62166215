#pragma once

#include "model/HueGroup.h"
#include "model/HueLight.h"
#include "model/HueScene.h"

#include <QJsonObject>
#include <QString>
#include <QVariantMap>

#include <optional>

/// The one shape in which lamps, rooms and scenes leave Glowdeck for scripts: the records' own field names
/// and order (`lamp_id`, `is_on`, `brightness`, `xy_x`, ...) as `glowdeckctl lights --json` prints them, plus
/// the `bridge_id` of the bridge they are on. As D-Bus values they are plain: strings, 64-bit integers,
/// doubles, booleans and arrays of strings, so that gdbus and Python read them as they are.
namespace RecordFields {

/// The key naming the bridge of a record or an event.
inline const QString bridgeIdKey = QStringLiteral("bridge_id");

QVariantMap of(const HueLight& light, const QString& bridgeId);
QVariantMap of(const HueGroup& group, const QString& bridgeId);
QVariantMap of(const HueScene& scene, const QString& bridgeId);

/// What an event says of a record that was `before` and is `now`: the fields whose value differs, with the
/// record's id (`idKey`) and its bridge always; empty when nothing differs.
QVariantMap changes(const QVariantMap& before, const QVariantMap& now, const QString& idKey);

/// The JSON object of `fields`, each value as the records' JSON writes it.
QJsonObject toJson(const QVariantMap& fields);

/// A record back from its fields, as strict as the records' JSON reading: every field there, of its type.
std::optional<HueLight> readLight(const QVariantMap& fields);
std::optional<HueGroup> readGroup(const QVariantMap& fields);
std::optional<HueScene> readScene(const QVariantMap& fields);

} // namespace RecordFields
