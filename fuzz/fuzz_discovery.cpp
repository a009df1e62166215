// The discovery service's answer: a JSON array of bridges (or one object), each entry read or passed over.
#include "connection/BridgeDiscovery.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray answer(reinterpret_cast<const char*>(data), qsizetype(size));
    QStringList problems;
    (void)BridgeDiscovery::bridgeAddressesFromServiceAnswer(answer, &problems);
    return 0;
}
