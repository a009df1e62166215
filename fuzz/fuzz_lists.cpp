// One libFuzzer target per list answer, chosen at build time: the bytes are a bridge's answer to GET lights,
// groups or scenes, taken through the whole decoding and derivation as a refresh does.
#include "bridge/ResourceFetch.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray body = QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
#if defined(GLOWDECK_FUZZ_LIGHTS)
    const LightsResult result = lightsFromBody(body);
#elif defined(GLOWDECK_FUZZ_GROUPS)
    const GroupsResult result = groupsFromBody(body);
#else
    const ScenesResult result = scenesFromBody(body);
#endif
    // The invariants every caller relies on: a failure has no records and says why, a success has no message.
    if (result.ok() != result.message.isEmpty() || (!result.ok() && !result.records.isEmpty()))
        __builtin_trap();
    return 0;
}
