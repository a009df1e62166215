#include "connection/BridgeProbe.h"

#include "bridge/BridgeNetwork.h"
#include "bridge/BridgeUrl.h"
#include "bridge/HttpExchange.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QPointer>

namespace {

// A bridge answers its public configuration at once; a list read takes as long.
constexpr HttpTimeouts probeTimeouts{std::chrono::milliseconds(4000), std::chrono::milliseconds(10000)};

/// One probe under way: the bases still to try, in order.
struct Probe
{
    QNetworkAccessManager& network;
    BridgeAddress address;
    ProbeKnowledge known;
    QPointer<QObject> context;
    std::function<void(const ProbeResult&)> done;
    QStringList bases;
    bool redirected = false;

    void next();
    void onAnswer(const QString& base, const HttpResult& answer);
    /// Answers once and ends the probe.
    void finish(const ProbeResult& result)
    {
        const auto answer = std::move(done);
        const QPointer<QObject> receiver = context;
        delete this;
        if (receiver)
            answer(result);
    }
    QString at() const { return QStringLiteral("The bridge at %1").arg(address.hostAndPort()); }
    QString usedHttpsBefore() const
    {
        return at() +
               QStringLiteral(" was reached over HTTPS before; Glowdeck does not use plain HTTP with it.");
    }
};

void Probe::next()
{
    if (bases.isEmpty())
        return finish({{}, at() + QStringLiteral(" does not answer."), false, true});
    const QString base = bases.takeFirst();
    QNetworkRequest request(bridgePublicUrl(base, {QStringLiteral("config")}));
    // No key goes with this request; what it learns is checked against what the bridge says below.
    BridgeIdentity identity = known.mayLearn ? BridgeIdentity{} : known.identity;
    // A self-signed certificate is trusted only when the user pairs: then its key is pinned.
    identity.trustOnFirstUse = known.mayLearn;
    BridgeNetwork::prepare(request, identity);
    sendHttpRequest(network, request, QByteArrayLiteral("GET"), {}, probeTimeouts,
                    [this, base](const HttpResult& answer) { onAnswer(base, answer); });
}

void Probe::onAnswer(const QString& base, const HttpResult& answer)
{
    const bool overHttps = base.startsWith(BridgeAddress::https + u':');
    if (!answer.refusal.isEmpty())
        return finish({{}, answer.refusal, true});
    if (answer.transportFailed) {
        const bool noTls = answer.networkError == QNetworkReply::ConnectionRefusedError ||
                           answer.networkError == QNetworkReply::SslHandshakeFailedError;
        if (overHttps && noTls && !bases.isEmpty())
            return next();
        // Most often a bridge that is restarting; plain HTTP would be the next try for a bridge not known.
        if (overHttps && noTls && known.transport == BridgeAddress::https && address.scheme.isEmpty())
            return finish(
                {{},
                 at() + QStringLiteral(" does not answer over HTTPS as it did before; it may be "
                                       "off or restarting. Glowdeck waits for it there and does not "
                                       "use plain HTTP with it."),
                 true});
        return finish({{},
                       at() + (answer.timedOut ? QStringLiteral(" answers too slowly.")
                                               : QStringLiteral(" does not answer.")),
                       false,
                       true});
    }
    if (answer.status >= 300 && answer.status < 400) {
        // The newest bridge sends plain HTTP to HTTPS. Only the same host is followed: a redirect elsewhere
        // could take the bridge's traffic anywhere.
        const QUrl from(base);
        const QUrl to = from.resolved(QUrl(QString::fromUtf8(answer.location)));
        if (!overHttps && !redirected && to.scheme() == BridgeAddress::https &&
            to.host().compare(from.host(), Qt::CaseInsensitive) == 0) {
            redirected = true;
            BridgeAddress https = address;
            https.scheme.clear();
            https.port = to.port();
            bases = {https.base(BridgeAddress::https)};
            return next();
        }
        return finish(
            {{}, at() + QStringLiteral(" sent Glowdeck elsewhere (HTTP %1).").arg(answer.status), false});
    }
    const QJsonObject config = QJsonDocument::fromJson(answer.body).object();
    const QString bridgeId = config.value(u"bridgeid").toString().toUpper();
    if (answer.status < 200 || answer.status >= 300 || !BridgeIdentity::isBridgeId(bridgeId))
        return finish(
            {{},
             at() + QStringLiteral(" answers, but not as a Hue bridge does (HTTP %1).").arg(answer.status),
             false});
    if (overHttps && answer.certificate.bridgeId != bridgeId)
        return finish({{},
                       at() + QStringLiteral(" presented a certificate for another bridge (%1).")
                                  .arg(answer.certificate.bridgeId),
                       true});
    if (!known.mayLearn && !known.identity.bridgeId.isEmpty() &&
        bridgeId.compare(known.identity.bridgeId, Qt::CaseInsensitive) != 0)
        return finish({{}, at() + QStringLiteral(" is another bridge (%1).").arg(bridgeId), true});
    // Whatever it says of itself: over plain HTTP anybody can say it.
    if (!overHttps && known.transport == BridgeAddress::https)
        return finish({{}, usedHttpsBefore(), true});
    ProbedBridge contact;
    contact.endpoint = base;
    contact.transport = overHttps ? BridgeAddress::https : BridgeAddress::http;
    contact.bridgeId = bridgeId;
    if (overHttps && !answer.certificate.signedByAuthority)
        contact.pinnedKey = answer.certificate.publicKeyHash;
    if (overHttps)
        contact.signer = answer.certificate.signer;
    contact.name = config.value(u"name").toString();
    finish({contact, {}, false});
}

} // namespace

bool needsProbe(const BridgeAddress& address, const QString& transport, const QString& bridgeId)
{
    if (bridgeId.isEmpty())
        return true;
    if (address.scheme == BridgeAddress::http)
        return false;
    const bool known = !bridgeId.isEmpty() && !transport.isEmpty();
    return !(known && (transport == BridgeAddress::https || !address.scheme.isEmpty()));
}

QString addressAfter(const QString& given, const ProbedBridge& contact)
{
    const std::optional<BridgeAddress> address = BridgeAddress::parse(given);
    return address && address->base(contact.transport) == contact.endpoint ? given : contact.endpoint;
}

bool sameBridgeAddress(const QString& one, const QString& other)
{
    const std::optional<BridgeAddress> a = BridgeAddress::parse(one);
    const std::optional<BridgeAddress> b = BridgeAddress::parse(other);
    return a && b && a->host.compare(b->host, Qt::CaseInsensitive) == 0 && a->port == b->port;
}

QString describeTransport(const QString& transport, const CertificateSigner& signer)
{
    if (transport == BridgeAddress::http)
        return QStringLiteral("plain HTTP (this bridge offers no encryption)");
    if (transport != BridgeAddress::https)
        return {};
    switch (signer.kind) {
    case CertificateSigner::Kind::pinned:
        return QStringLiteral("HTTPS (this bridge's certificate is not signed by the bridge maker; "
                              "trusted since pairing)");
    case CertificateSigner::Kind::maker:
        return QStringLiteral("HTTPS (certificate signed by the bridge maker)");
    case CertificateSigner::Kind::added:
        return QStringLiteral("HTTPS (certificate signed by %1, an authority added to the trusted ones, "
                              "not by the bridge maker)")
            .arg(signer.name);
    case CertificateSigner::Kind::unknown:
        break;
    }
    // Known again at the next answer of the bridge.
    return QStringLiteral("HTTPS (its certificate is checked at every connection)");
}

void probeBridge(QNetworkAccessManager& network, const BridgeAddress& address, const ProbeKnowledge& known,
                 QObject* context, std::function<void(const ProbeResult&)> done)
{
    // It deletes itself when it answers.
    auto* probe = new Probe{network, address, known, context, std::move(done), {}, false};
    const bool httpsBefore = known.transport == BridgeAddress::https;
    if (address.scheme == BridgeAddress::http && httpsBefore) {
        // Nothing is sent: the answer would prove nothing, and pairing there would send a key in clear.
        QMetaObject::invokeMethod(
            &network,
            [probe] {
                probe->finish({{}, probe->usedHttpsBefore(), true});
            },
            Qt::QueuedConnection);
        return;
    }
    if (!address.scheme.isEmpty())
        probe->bases = {address.base(address.scheme)};
    else if (httpsBefore)
        probe->bases = {address.base(BridgeAddress::https)};
    else
        probe->bases = {address.base(BridgeAddress::https), address.base(BridgeAddress::http)};
    probe->next();
}
