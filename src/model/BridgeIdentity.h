#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>

#include <algorithm>

/// What the bridge answering a request must prove about itself over HTTPS. Plain HTTP proves nothing; a
/// bridge reached that way is one that offers no encryption at all. A request that carries a key goes only
/// where an identity with a bridge id says it may (`BridgeNetwork`).
struct BridgeIdentity
{
    /// The bridge id its certificate must name, compared without regard to case. Empty: any certificate that
    /// the bridge maker signed for a bridge will do (reading a bridge's public configuration before pairing).
    QString bridgeId;
    /// SHA-256 of the public key of a self-signed certificate trusted when the bridge was paired (bridges
    /// with old firmware sign their own); empty when there is none.
    QByteArray pinnedKey;
    /// A self-signed certificate is let through and its key reported, so that pairing can pin it. Only for
    /// requests that carry no key.
    bool trustOnFirstUse = false;
    /// The bridge was paired over plain HTTP, as bridges of the first generation offer nothing else: its key
    /// may travel in clear. False for every bridge that spoke HTTPS.
    bool pairedOverPlainHttp = false;

    /// Whether `text` has the shape of a bridge id: 16 hexadecimal digits.
    static bool isBridgeId(const QString& text)
    {
        return text.size() == 16 && std::all_of(text.begin(), text.end(), [](QChar c) {
                   return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
               });
    }

    bool operator==(const BridgeIdentity&) const = default;
};
Q_DECLARE_METATYPE(BridgeIdentity)
