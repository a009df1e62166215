// The discovery service's answer: one JSON object with "internalipaddress", or nothing.
#include "connection/BridgeDiscovery.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray answer(reinterpret_cast<const char*>(data), qsizetype(size));
    (void)BridgeDiscovery::bridgeAddressFromServiceAnswer(answer);
    return 0;
}
