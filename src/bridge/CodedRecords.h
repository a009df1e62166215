#pragma once

#include "model/ActionQueueItem.h"
#include "model/HueGroup.h"
#include "model/HueLight.h"
#include "model/HueScene.h"

#include <QJsonObject>

#include <optional>

class JsonWriter;

/// The records' own JSON form: one object whose keys are the field names, in field order. The list identity
/// `id` of rooms and scenes is not part of it and is made fresh when a record is read back. Reading is
/// strict: every key must be present with a value of the right type, except the current interface's ids
/// (and a lamp's battery), which records written before them lack.
namespace CodedRecords {

void write(JsonWriter& json, const HueLight& light);
void write(JsonWriter& json, const HueGroup& group);
void write(JsonWriter& json, const HueScene& scene);
void write(JsonWriter& json, const ActionQueueItem& item);

template <typename Record>
QByteArray encode(const Record& record);

std::optional<HueLight> readLight(const QJsonObject& object);
std::optional<HueGroup> readGroup(const QJsonObject& object);
std::optional<HueScene> readScene(const QJsonObject& object);
std::optional<ActionQueueItem> readActionQueueItem(const QJsonObject& object);

} // namespace CodedRecords
