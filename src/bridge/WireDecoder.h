#pragma once

#include "bridge/WireTypes.h"

#include <QByteArrayView>

#include <optional>

/// Strict decoding of the bridge's list answers into the wire records, in document order.
///
/// The top level must be a JSON object; each member becomes one element whose `id` is the member name, in the
/// order the bridge wrote them (the order users see). A known key holding a value of the wrong JSON type
/// fails the whole answer; unknown keys are ignored; null counts as absent. An integer written with a zero
/// fraction
/// (`254.0`) is taken as that integer, as the bridge's own firmware sometimes writes them. The texts of the
/// result point into the decoder's buffer and stay valid until the next decode on the same thread.
namespace WireDecoder {

std::optional<HueBridgeGroupsResponse> decodeGroups(QByteArrayView json);
std::optional<HueBridgeLightsResponse> decodeLights(QByteArrayView json);
std::optional<HueBridgeScenesResponse> decodeScenes(QByteArrayView json);

/// Only checks that `json` is well-formed JSON; the baseline the decoders are measured against.
bool parseOnly(QByteArrayView json);

} // namespace WireDecoder
