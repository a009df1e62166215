#pragma once

#include "bridge/WireTypes.h"

#include <QByteArrayView>

#include <cstddef>
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

/// A list with more members than this is refused before any member is decoded: a real bridge holds a few
/// hundred lamps, rooms or scenes at most, and a hostile answer must not cost seconds of work and gigabytes.
inline constexpr std::size_t maxListMembers = 1000;

/// Each sets `*memberCount`, when given, to the number of members of the top-level object (0 when there is no
/// such object), so that a refused long list can be told from a malformed one.
std::optional<HueBridgeGroupsResponse> decodeGroups(QByteArrayView json, std::size_t* memberCount = nullptr);
std::optional<HueBridgeLightsResponse> decodeLights(QByteArrayView json, std::size_t* memberCount = nullptr);
std::optional<HueBridgeScenesResponse> decodeScenes(QByteArrayView json, std::size_t* memberCount = nullptr);

/// Only checks that `json` is well-formed JSON; the baseline the decoders are measured against.
bool parseOnly(QByteArrayView json);

} // namespace WireDecoder
