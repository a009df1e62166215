#include "bridge/BridgeNetwork.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QNetworkReply>
#include <QSslConfiguration>
#include <QSslKey>
#include <QTimer>

#include <algorithm>

namespace {

constexpr auto identityAttribute = QNetworkRequest::Attribute(QNetworkRequest::User + 41);
constexpr char certificateProperty[] = "glowdeckBridgeCertificate";
constexpr char refusalProperty[] = "glowdeckBridgeRefusal";

/// Qt checks the certificate's names against this instead of the address, and keeps connections for reuse
/// under it: a connection opened to learn who a bridge is never carries a request meant for a known one.
/// ".invalid" names nothing, so Qt's own check always leaves the decision to ours.
const QString anyBridgeName = QStringLiteral("any-bridge.invalid");
const QString firstUseName = QStringLiteral("first-use.invalid");

QByteArray publicKeyHash(const QSslCertificate& certificate)
{
    return QCryptographicHash::hash(certificate.publicKey().toDer(), QCryptographicHash::Sha256);
}

QString commonName(const QSslCertificate& certificate)
{
    return certificate.subjectInfo(QSslCertificate::CommonName).value(0);
}

QString where(const QNetworkReply* reply)
{
    const QUrl url = reply->url();
    const QString host = url.host().contains(u':') ? u'[' + url.host() + u']' : url.host();
    return url.port() < 0 || url.port() == 443 ? host : host + u':' + QString::number(url.port());
}

/// The verdict on one handshake: empty when the certificate is the bridge's, else why not.
QString judge(const QSslCertificate& leaf, const QList<QSslError>& errors, const BridgeIdentity& identity,
              const QString& at, bool* selfSignedAccepted)
{
    const QString name = commonName(leaf);
    const auto said = [&at](const char* text) {
        return QCoreApplication::translate("BridgeNetwork", text).arg(at);
    };
    if (leaf.isNull())
        return said(QT_TRANSLATE_NOOP("BridgeNetwork", "The bridge at %1 presented no certificate."));
    const bool nameMatches = identity.bridgeId.isEmpty()
                                 ? BridgeIdentity::isBridgeId(name)
                                 : name.compare(identity.bridgeId, Qt::CaseInsensitive) == 0;
    if (!nameMatches) {
        return BridgeIdentity::isBridgeId(name)
                   ? QCoreApplication::translate(
                         "BridgeNetwork", "The bridge at %1 presented a certificate for another bridge (%2).")
                         .arg(at, name.toUpper())
                   : said(QT_TRANSLATE_NOOP(
                         "BridgeNetwork",
                         "The bridge at %1 presented a certificate that is not a Hue bridge's."));
    }
    // The name was checked above; what is left is the signature and the dates.
    QList<QSslError::SslError> kinds;
    for (const QSslError& error : errors) {
        if (error.error() != QSslError::HostNameMismatch)
            kinds.append(error.error());
    }
    if (kinds.isEmpty())
        return {};
    if (leaf.isSelfSigned()) {
        const QByteArray key = publicKeyHash(leaf);
        if (!identity.pinnedKey.isEmpty()) {
            if (key != identity.pinnedKey)
                return said(QT_TRANSLATE_NOOP("BridgeNetwork",
                                              "The bridge at %1 presented a different certificate "
                                              "than when it was paired: pair again to trust it."));
            *selfSignedAccepted = true;
            return {};
        }
        if (identity.trustOnFirstUse) {
            *selfSignedAccepted = true;
            return {};
        }
        return said(QT_TRANSLATE_NOOP("BridgeNetwork",
                                      "The bridge at %1 presented a certificate that is not "
                                      "signed by the bridge maker: pair again to trust it."));
    }
    if (kinds.contains(QSslError::CertificateExpired))
        return said(QT_TRANSLATE_NOOP("BridgeNetwork", "The bridge at %1 presented an expired certificate."));
    if (kinds.contains(QSslError::CertificateNotYetValid))
        return said(QT_TRANSLATE_NOOP("BridgeNetwork", "The bridge at %1 presented a certificate that is not "
                                                       "valid yet (is this computer's clock right?)."));
    return said(QT_TRANSLATE_NOOP("BridgeNetwork",
                                  "The bridge at %1 presented a certificate that is not a Hue bridge's."));
}

/// How an authority calls itself: its common name, else its organisation.
QString authorityName(const QSslCertificate& root)
{
    const QString name = commonName(root);
    return !name.isEmpty() ? name : root.subjectInfo(QSslCertificate::Organization).value(0);
}

/// Whether `certificate` names `root`'s subject as its issuer, attribute by attribute.
bool namesAsIssuer(const QSslCertificate& certificate, const QSslCertificate& root)
{
    QList<QByteArray> attributes = root.subjectInfoAttributes();
    attributes += certificate.issuerInfoAttributes();
    return std::all_of(attributes.cbegin(), attributes.cend(), [&](const QByteArray& attribute) {
        return certificate.issuerInfo(attribute) == root.subjectInfo(attribute);
    });
}

/// Whether `request` carries a bridge's key: in the header of the newer interface, or as the path segment
/// after "/api" of the older one. Only the link request ("/api") and the public configuration
/// ("/api/config") go to a bridge without one. The path is read as a server reads it, without regard to
/// case, dot segments or repeated slashes.
bool carriesKey(const QNetworkRequest& request)
{
    if (request.hasRawHeader(QByteArrayLiteral("hue-application-key")))
        return true;
    QString path = request.url().adjusted(QUrl::NormalizePathSegments).path(QUrl::FullyDecoded).toLower();
    while (path.contains(u"//"))
        path.replace(QStringLiteral("//"), QStringLiteral("/"));
    if (path.endsWith(u'/'))
        path.chop(1);
    return path.startsWith(QStringLiteral("/api/")) && path != u"/api/config";
}

/// Why a request that carries a key must not be sent as it is marked, as a sentence; empty when it may go.
/// The key is the bridge's password: it goes only to a bridge that proves the id it was paired with, and in
/// clear only to one that was paired in clear.
QString keyRefusal(const QNetworkRequest& request, const QVariant& marked)
{
    const QUrl url = request.url();
    const QString host = url.host().contains(u':') ? u'[' + url.host() + u']' : url.host();
    const QString at = url.port() < 0 ? host : host + u':' + QString::number(url.port());
    const BridgeIdentity identity = marked.value<BridgeIdentity>();
    if (!marked.isValid() || !BridgeIdentity::isBridgeId(identity.bridgeId) || identity.trustOnFirstUse)
        return QCoreApplication::translate("BridgeNetwork", "The bridge's key was not sent to %1: the bridge "
                                                            "there has not proved which bridge it is yet.")
            .arg(at);
    if (url.scheme() != u"https" && !(url.scheme() == u"http" && identity.pairedOverPlainHttp))
        return QCoreApplication::translate("BridgeNetwork", "The bridge's key was not sent to %1 over plain "
                                                            "HTTP: bridge %2 was paired over HTTPS.")
            .arg(at, identity.bridgeId.toUpper());
    return {};
}

/// The answer to a request refused before it was sent: it fails at once, with the refusal, and nothing
/// reaches the network.
class RefusedReply final : public QNetworkReply
{
public:
    RefusedReply(QNetworkAccessManager::Operation op, const QNetworkRequest& request, const QString& refusal,
                 QObject* parent)
        : QNetworkReply(parent)
    {
        setRequest(request);
        setUrl(request.url());
        setOperation(op);
        setProperty(refusalProperty, refusal);
        setError(QNetworkReply::ProtocolFailure, refusal);
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
        // Like any reply, it finishes once the caller has connected to it.
        QMetaObject::invokeMethod(
            this,
            [this] {
                setFinished(true);
                Q_EMIT errorOccurred(error());
                Q_EMIT finished();
            },
            Qt::QueuedConnection);
    }

    void abort() override {}
    qint64 bytesAvailable() const override { return 0; }

protected:
    qint64 readData(char*, qint64) override { return -1; }
};

void record(QNetworkReply* reply, const QSslCertificate& leaf, bool selfSigned)
{
    reply->setProperty(certificateProperty, QVariant::fromValue(BridgeCertificate{
                                                commonName(leaf).toUpper(), publicKeyHash(leaf), !selfSigned,
                                                BridgeNetwork::signerOf(reply, leaf, selfSigned)}));
}

} // namespace

BridgeNetwork::BridgeNetwork(QObject* parent)
    : QNetworkAccessManager(parent), m_trust(std::make_shared<Trust>())
{
    // Emitted once per new connection: a request on a kept connection has no handshake of its own.
    connect(this, &QNetworkAccessManager::encrypted, this, [this] { ++m_newConnections; });
}

BridgeNetwork::~BridgeNetwork()
{
    // Qt deletes the replies left after this part of the manager is gone.
    for (QObject* reply : std::as_const(m_replies))
        disconnect(reply, nullptr, this, nullptr);
}

std::unique_ptr<BridgeNetwork> BridgeNetwork::withSameTrust() const
{
    auto network = std::make_unique<BridgeNetwork>();
    network->m_trust = m_trust;
    return network;
}

void BridgeNetwork::releaseConnections()
{
    if (!m_replies.isEmpty())
        return;
    m_newConnections = 0;
    clearConnectionCache();
}

QNetworkReply* BridgeNetwork::follow(QNetworkReply* reply)
{
    m_replies.insert(reply);
    connect(reply, &QObject::destroyed, this, &BridgeNetwork::onReplyGone);
    return reply;
}

void BridgeNetwork::onReplyGone(QObject* reply)
{
    if (!m_replies.remove(reply) || !m_replies.isEmpty() || m_newConnections < connectionsBeforeRelease)
        return;
    // Qt shares one TLS context among the connections it keeps for a host, and OpenSSL keeps the session
    // tickets of every connection made with it in that context (about 8 KB each, with the bridge's
    // certificate, for hours) although Qt never resumes a session from there. Letting the kept connections
    // go frees the context. Qt's network thread ends with them: only once the reply is fully gone, never
    // from within its destruction, and only if no request was sent meanwhile.
    QTimer::singleShot(0, this, [this] { releaseIfDue(); });
}

void BridgeNetwork::releaseIfDue()
{
    if (m_newConnections >= connectionsBeforeRelease)
        releaseConnections();
}

QList<QSslCertificate> BridgeNetwork::makerRoots()
{
    Q_INIT_RESOURCE(bridge_trust);
    QList<QSslCertificate> roots;
    for (const char* name : {":/bridge/trust/root-bridge.pem", ":/bridge/trust/hue-root-ca-01.pem"})
        roots += QSslCertificate::fromPath(QString::fromLatin1(name));
    return roots;
}

QList<QSslCertificate> BridgeNetwork::readRoots(const QString& fileName, QString* problem)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        *problem = QStringLiteral("cannot read %1: %2").arg(fileName, file.errorString());
        return {};
    }
    const QList<QSslCertificate> roots = QSslCertificate::fromData(file.read(1024 * 1024), QSsl::Pem);
    if (roots.isEmpty())
        *problem = QStringLiteral("%1 holds no PEM certificate").arg(fileName);
    return roots;
}

QList<QSslCertificate> BridgeNetwork::trustRoots() const
{
    // Read at the first HTTPS request, not at start: reading a certificate loads the TLS library, which
    // the tray icon does not need to show.
    if (!m_trust->makerRootsRead) {
        m_trust->makerRoots = makerRoots();
        m_trust->roots = m_trust->makerRoots + m_trust->roots;
        m_trust->makerRootsRead = true;
    }
    return m_trust->roots;
}

void BridgeNetwork::addTrustRoots(const QList<QSslCertificate>& roots)
{
    for (const QSslCertificate& root : roots) {
        if (!root.isNull() && !m_trust->roots.contains(root))
            m_trust->roots.append(root);
    }
    // A connection kept from before trusted less; the next request starts afresh.
    clearConnectionCache();
    m_newConnections = 0;
}

void BridgeNetwork::prepare(QNetworkRequest& request, const BridgeIdentity& identity)
{
    request.setAttribute(identityAttribute, QVariant::fromValue(identity));
}

BridgeCertificate BridgeNetwork::certificateOf(const QNetworkReply* reply)
{
    if (const QVariant recorded = reply->property(certificateProperty); recorded.isValid())
        return recorded.value<BridgeCertificate>();
    // A kept-alive connection has no handshake of its own: it was judged when it was opened, for requests
    // that expect the same (Qt keeps connections apart by the name verified), so its certificate stands.
    const QSslCertificate leaf = reply->sslConfiguration().peerCertificate();
    if (leaf.isNull() || !reply->request().attribute(identityAttribute).isValid())
        return {};
    return {commonName(leaf).toUpper(), publicKeyHash(leaf), !leaf.isSelfSigned(),
            signerOf(reply, leaf, leaf.isSelfSigned())};
}

CertificateSigner BridgeNetwork::signerOf(const QNetworkReply* reply, const QSslCertificate& leaf,
                                          bool selfSigned)
{
    using Kind = CertificateSigner::Kind;
    const auto* network = qobject_cast<const BridgeNetwork*>(reply->manager());
    if (selfSigned)
        return {Kind::pinned, {}};
    if (!network)
        return {};
    // Qt checked the chain against the trusted roots alone but does not say which one ended it: a root sent
    // along is that one, else the one the top certificate names as its issuer.
    const QList<QSslCertificate> roots = network->trustRoots();
    const auto signer = [network](const QSslCertificate& root) {
        return CertificateSigner{network->m_trust->makerRoots.contains(root) ? Kind::maker : Kind::added,
                                 authorityName(root)};
    };
    QList<QSslCertificate> chain = reply->sslConfiguration().peerCertificateChain();
    if (chain.isEmpty())
        chain = {leaf};
    for (const QSslCertificate& certificate : std::as_const(chain)) {
        if (roots.contains(certificate))
            return signer(certificate);
    }
    // Where an added root bears the same name as one of the maker's, the added one is named: a bridge is
    // never said to be vouched for by its maker on the word of a look-alike.
    CertificateSigner found;
    for (const QSslCertificate& root : roots) {
        if (!namesAsIssuer(chain.last(), root))
            continue;
        found = signer(root);
        if (found.kind == Kind::added)
            break;
    }
    return found;
}

QString BridgeNetwork::refusalOf(const QNetworkReply* reply)
{
    return reply->property(refusalProperty).toString();
}

QNetworkReply* BridgeNetwork::createRequest(Operation op, const QNetworkRequest& original, QIODevice* body)
{
    const QVariant marked = original.attribute(identityAttribute);
    if (carriesKey(original)) {
        if (const QString refusal = keyRefusal(original, marked); !refusal.isEmpty())
            return new RefusedReply(op, original, refusal, this);
    }
    // A request sent back to back with the one before, before the event loop came round, lets the kept
    // connections go itself. No reply of this manager is left, so none is in one of its signals here (but
    // `destroyed`, from which nothing here sends a request).
    releaseIfDue();
    if (!marked.isValid() || original.url().scheme() != u"https")
        return follow(QNetworkAccessManager::createRequest(op, original, body));

    const BridgeIdentity identity = marked.value<BridgeIdentity>();
    QNetworkRequest request = original;
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    // Only these authorities: a certificate that the system's store vouches for is still not a bridge's.
    tls.setCaCertificates(trustRoots());
    tls.setPeerVerifyMode(QSslSocket::VerifyPeer);
    request.setSslConfiguration(tls);
    request.setPeerVerifyName(!identity.bridgeId.isEmpty() ? identity.bridgeId.toLower()
                              : identity.trustOnFirstUse   ? firstUseName
                                                           : anyBridgeName);

    QNetworkReply* reply = follow(QNetworkAccessManager::createRequest(op, request, body));
    // Both run during the handshake, before the request is written.
    connect(reply, &QNetworkReply::sslErrors, reply, [reply, identity](const QList<QSslError>& errors) {
        bool selfSigned = false;
        QSslCertificate leaf = reply->sslConfiguration().peerCertificate();
        if (leaf.isNull() && !errors.isEmpty())
            leaf = errors.first().certificate();
        const QString refusal = judge(leaf, errors, identity, where(reply), &selfSigned);
        if (!refusal.isEmpty()) {
            reply->setProperty(refusalProperty, refusal);
            return; // not ignored: Qt ends the connection
        }
        record(reply, leaf, selfSigned);
        reply->ignoreSslErrors(errors);
    });
    connect(reply, &QNetworkReply::encrypted, reply, [reply] {
        // Without errors Qt found the chain good and the name equal to the bridge id.
        if (!reply->property(certificateProperty).isValid())
            record(reply, reply->sslConfiguration().peerCertificate(), false);
    });
    return reply;
}
