#pragma once

#include <QString>

/// The one rule applied to everything Glowdeck sends out (crash reports, the start-up notice, the debug
/// report) and to every log line it keeps:
///
///  1. every occurrence of the stored bridge key, as it stands and percent-encoded, becomes "[redacted]";
///  2. in a request path, a segment right after "/api/" made of at least 8 ASCII letters, digits, '-' or '_'
///     (the shape of every key a bridge hands out; no word of its interface is that long) becomes
///     "[redacted]", so "/api/1a2B3c4D5e/lights" reads "/api/[redacted]/lights" even when the key is not, or
///     no longer, the stored one.
///
/// Anything that mirrors this elsewhere (the debug report script) applies the same two steps in this order.
/// Applying the rule twice changes nothing more.
QString redacted(const QString& text, const QString& storedKey);

/// What replaces a secret.
inline const QString redactionMark = QStringLiteral("[redacted]");
