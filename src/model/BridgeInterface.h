#pragma once

#include <QString>

/// Which of the bridge's two interfaces a session reads and writes: the current one (CLIP v2, HTTPS only) or
/// the first one, which older bridges have alone. Learnt at every connect, never stored: a bridge may be
/// updated to offer the current one.
enum class BridgeInterface
{
    unknown, ///< not asked yet
    v1,
    v2,
};

/// "interface v2", "interface v1 (older bridge)"; empty while unknown.
inline QString describeInterface(BridgeInterface interface)
{
    switch (interface) {
    case BridgeInterface::v2:
        return QStringLiteral("interface v2");
    case BridgeInterface::v1:
        return QStringLiteral("interface v1 (older bridge)");
    case BridgeInterface::unknown:
        break;
    }
    return {};
}
