#pragma once

#include "model/BridgeAddress.h"
#include "model/BridgeIdentity.h"

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <optional>

/// Everything about reaching one bridge, kept and saved whole: where it is, the key it gave Glowdeck, how it
/// was reached and who it proved to be. Requests are built from the contact as it is when they are queued or
/// sent; nothing else carries the key.
struct BridgeContact
{
    /// Its bridge id, upper case; empty until the bridge has proved it.
    QString id;
    /// The address as the user gave it or as it was found: any form BridgeAddress takes.
    QString address;
    /// The application key the bridge handed out at pairing; empty before pairing and after a disconnect.
    QString key;
    /// "https" or "http" once learnt, else empty.
    QString transport;
    /// SHA-256 of the public key of the bridge's self-signed certificate, trusted when it was paired; empty
    /// when an authority signs its certificate (hexadecimal in JSON).
    QByteArray certificate;
    /// The bridge's own name (its configuration's "name"), for display.
    QString name;

    /// What the bridge at `address` must prove: the id and the pinned key; plain HTTP only for a bridge that
    /// was paired that way.
    BridgeIdentity identity() const { return {id, certificate, false, transport == BridgeAddress::http}; }
    /// The base every request to the bridge starts with ("https://192.168.1.5"): `address` with its own
    /// scheme, or with the transport learnt; empty while neither says how to reach it.
    QString endpoint() const;

    /// `{"id":…,"address":…,"key":…,"transport":…,"certificate":…,"name":…}`, every member present.
    QJsonObject toJson() const;
    /// The contact `value` holds. Strict: a value that is no object is refused (nothing, with the reason in
    /// `problems`); a member of the wrong type or shape (an id that is no bridge id, an unknown transport, a
    /// certificate that is not 32 bytes of hexadecimal) is dropped with a line in `problems` and the rest
    /// kept. Absent members are empty.
    static std::optional<BridgeContact> fromJson(const QJsonValue& value, QStringList* problems = nullptr);

    bool operator==(const BridgeContact&) const = default;
};
