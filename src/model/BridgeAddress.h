#pragma once

#include <QString>

#include <optional>

/// A bridge's address as a person gives it: "HOST", "HOST:PORT", "https://HOST[:PORT]" or
/// "http://HOST[:PORT]", where HOST is a name, an IPv4 address or an IPv6 address in brackets. Nothing else:
/// no path, query, user or fragment, so nothing typed can reach a request path.
struct BridgeAddress
{
    static inline const QString https = QStringLiteral("https");
    static inline const QString http = QStringLiteral("http");

    QString scheme; ///< "https", "http", or empty when the address names none
    QString host;   ///< without brackets
    int port = -1;  ///< -1 when the address names none

    /// The address, or why `text` is not one (in `problem`, a sentence naming what was wrong).
    static std::optional<BridgeAddress> parse(const QString& text, QString* problem = nullptr);

    /// Where requests go when the bridge is reached over `transport` ("https" or "http"): "https://HOST",
    /// "http://HOST:8080". An address with a scheme of its own keeps it, whatever `transport` says.
    QString base(const QString& transport) const;
    /// The transport this address leaves no choice about: its own scheme, else empty.
    const QString& fixedTransport() const { return scheme; }
    /// "HOST" or "HOST:PORT" (IPv6 in brackets), for messages.
    QString hostAndPort() const;

    bool operator==(const BridgeAddress&) const = default;
};
