// The bridge's answer to the link request (POST /api): the outcome is a usable key or one of the two words.
#include "connection/BridgePairing.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString reply = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    const QString outcome = BridgePairing::outcomeOf(reply);
    if (outcome.isEmpty() || outcome.size() > 256 || outcome.contains(u'/'))
        __builtin_trap();
    return 0;
}
