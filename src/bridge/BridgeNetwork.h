#pragma once

#include "model/BridgeIdentity.h"
#include "model/CertificateSigner.h"

#include <QList>
#include <QNetworkAccessManager>
#include <QSet>
#include <QSslCertificate>

#include <memory>

class QNetworkReply;

/// What a bridge showed of itself on one encrypted exchange.
struct BridgeCertificate
{
    /// The certificate's common name: a bridge's id, as the bridge maker writes it into every bridge's.
    QString bridgeId;
    /// SHA-256 of its public key: what is pinned for a self-signed certificate.
    QByteArray publicKeyHash;
    /// Signed by one of the trusted authorities; false for a self-signed certificate let through by its key.
    bool signedByAuthority = false;
    /// Which of them: the bridge maker or an authority added with `addTrustRoots`, by name; `pinned` for a
    /// self-signed certificate let through by its key.
    CertificateSigner signer;

    bool operator==(const BridgeCertificate&) const = default;
};
Q_DECLARE_METATYPE(BridgeCertificate)

/// The network access manager of the program and of glowdeckctl: Qt's own, with one addition. A request
/// marked as one to a bridge (`prepare`) and sent over HTTPS trusts only the bridge maker's two authorities
/// (and those added with `addTrustRoots`), never the system's, and takes the certificate's common name for
/// the bridge id that it must match, since a bridge's certificate names no address. A refused certificate
/// ends the exchange during the handshake, before anything of the request, the key included, is sent.
/// A request that carries a bridge's key goes nowhere unless it is marked with the id its bridge must
/// prove, and over plain HTTP only to a bridge paired that way: otherwise it fails at once, unsent.
///
/// Connections are kept alive between requests, as Qt does. Every new TLS connection leaves about 8 KB in
/// the TLS context that Qt shares among the connections it keeps for one host, for as long as they are kept:
/// after `connectionsBeforeRelease` new ones, the kept connections are let go once no reply of this manager
/// is left. A long request (the event stream) therefore goes through a manager of its own (`withSameTrust`).
class BridgeNetwork : public QNetworkAccessManager
{
    Q_OBJECT

public:
    /// Trusts the bridge maker's authorities only; the programs add GLOWDECK_BRIDGE_TRUST_ROOTS and
    /// --trust-root.
    explicit BridgeNetwork(QObject* parent = nullptr);
    ~BridgeNetwork() override;

    /// Another manager that trusts what this one trusts, now and after `addTrustRoots` on either, and keeps
    /// connections of its own: for a request that stays open, so that this one's are let go meanwhile.
    std::unique_ptr<BridgeNetwork> withSameTrust() const;

    /// The two authorities that sign Hue bridges' certificates, shipped with the program.
    static QList<QSslCertificate> makerRoots();
    /// Reads extra authorities from a PEM file; empty with `problem` set when there are none to be had.
    static QList<QSslCertificate> readRoots(const QString& fileName, QString* problem);

    /// Trusts another authority for bridges from now on (the tests' own, the demo's, --trust-root).
    void addTrustRoots(const QList<QSslCertificate>& roots);
    QList<QSslCertificate> trustRoots() const;

    /// Marks `request` as going to a bridge that must prove `identity`.
    static void prepare(QNetworkRequest& request, const BridgeIdentity& identity);
    /// What the bridge presented on `reply`, once its handshake is done; empty for plain HTTP.
    static BridgeCertificate certificateOf(const QNetworkReply* reply);
    /// Why the bridge's certificate was refused on `reply`, or why its request, carrying a key, was not sent
    /// at all, as a sentence; empty when neither happened.
    static QString refusalOf(const QNetworkReply* reply);
    /// Who vouched for `leaf`, accepted on `reply` (a reply of a BridgeNetwork): itself by its pinned key
    /// (`selfSigned`), or the trusted root that completed its chain.
    static CertificateSigner signerOf(const QNetworkReply* reply, const QSslCertificate& leaf,
                                      bool selfSigned);

    /// New TLS connections after which the kept ones are let go, once no reply is left.
    static constexpr int connectionsBeforeRelease = 50;
    /// Lets go of the kept connections now, unless a reply of this manager is still there (its request would
    /// end without a word). Not from a reply's signal: do it from the event loop.
    void releaseConnections();

protected:
    QNetworkReply* createRequest(Operation op, const QNetworkRequest& request, QIODevice* body) override;

private:
    struct Trust
    {
        QList<QSslCertificate> roots;
        QList<QSslCertificate> makerRoots; ///< read with the others, to tell them apart
        bool makerRootsRead = false;
    };

    /// Follows `reply` until it is destroyed: until then Qt may still use its connection.
    QNetworkReply* follow(QNetworkReply* reply);
    void onReplyGone(QObject* reply);
    /// Lets go of the kept connections if enough new ones were made and no reply is left.
    void releaseIfDue();

    std::shared_ptr<Trust> m_trust; ///< shared with the managers made by `withSameTrust`
    QSet<QObject*> m_replies;       ///< replies of this manager not destroyed yet
    int m_newConnections = 0;       ///< TLS connections made since the kept ones were last let go
};
