#pragma once

#include "model/BridgeAddress.h"
#include "model/BridgeIdentity.h"
#include "model/CertificateSigner.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class QNetworkAccessManager;
struct HttpResult;

/// What one probe learnt of a bridge: how it was reached and who it proved to be (the parts of its
/// BridgeContact that a probe can tell, and who vouched for its certificate).
struct ProbedBridge
{
    QString endpoint;     ///< the base of every request: "https://192.168.1.5", "http://10.0.0.2:8080"
    QString transport;    ///< "https" or "http"
    QString bridgeId;     ///< as its configuration says, upper case
    QByteArray pinnedKey; ///< a self-signed certificate's key, trusted now; empty when an authority signed it
    QString name;         ///< the name the bridge's owner gave it
    /// Who vouched for its certificate over HTTPS: the bridge maker, an authority added by name, or its key
    /// pinned at pairing.
    CertificateSigner signer;

    /// What later requests to this bridge must find it proving.
    BridgeIdentity identity() const { return {bridgeId, pinnedKey, false, transport == BridgeAddress::http}; }

    bool operator==(const ProbedBridge&) const = default;
};

/// The outcome of one probe: a contact, or why there is none.
struct ProbeResult
{
    std::optional<ProbedBridge> contact;
    QString problem;
    /// The bridge answered but its identity was refused (as opposed to not answering at all), or it was not
    /// asked in the only way left, plain HTTP, having been reached over HTTPS before.
    bool refused = false;
    /// Nothing usable answered at all: no connection, or no answer in time.
    bool silent = false;
};

/// What is already known about the bridge at an address, and how much may be learnt afresh.
struct ProbeKnowledge
{
    /// The transport used before: after "https" plain HTTP is never tried, not even to pair again, whatever
    /// answers there. Only for the address the bridge was known at; another address is another bridge.
    QString transport;
    /// The identity the bridge proved before; empty id: none yet.
    BridgeIdentity identity;
    /// Pairing, chosen by the user: a new bridge id and a self-signed certificate may be trusted now.
    bool mayLearn = false;
};

/// Whether the bridge at `address` must be asked who it is and how to reach it before a request with the key
/// goes to it: always while its id is not known, since no request with the key goes to a bridge without one.
/// Not for a bridge known by its id and transport, whose certificate every request checks, nor when the
/// address says plain HTTP itself; a bridge reached in clear at an address without a scheme is asked again,
/// in case it offers HTTPS by now.
bool needsProbe(const BridgeAddress& address, const QString& transport, const QString& bridgeId);

/// The address to keep for a bridge given as `given` and reached as `contact`: `given` itself, unless the
/// bridge sent Glowdeck elsewhere (plain HTTP redirected to HTTPS on another port): then where it was
/// reached.
QString addressAfter(const QString& given, const ProbedBridge& contact);

/// Whether two addresses name the same host and port, whatever scheme either gives: what was learnt about a
/// bridge at one holds at the other.
bool sameBridgeAddress(const QString& one, const QString& other);

/// How a bridge is reached, as the connection pane and glowdeckctl say it: "HTTPS (certificate signed by the
/// bridge maker)" only when one of the maker's authorities signed it, "HTTPS (certificate signed by NAME, an
/// authority added to the trusted ones)", "plain HTTP (this bridge offers no encryption)"...; empty for an
/// empty transport.
QString describeTransport(const QString& transport, const CertificateSigner& signer);

/// Finds out how to reach the bridge at an address and that it is the bridge it should be, by reading its
/// public configuration (no key is sent). A bare HOST is tried as https://HOST first and as http://HOST only
/// when that port refuses the connection or speaks no TLS, and never for a bridge known over HTTPS; HOST:PORT
/// the same on that port; an address with a scheme means just that. A redirect from plain HTTP to HTTPS on
/// the same host is followed. The
/// certificate's bridge id must be the one the configuration reports, and the one known before unless
/// `mayLearn`.
void probeBridge(QNetworkAccessManager& network, const BridgeAddress& address, const ProbeKnowledge& known,
                 QObject* context, std::function<void(const ProbeResult&)> done);
