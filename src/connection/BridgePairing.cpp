#include "connection/BridgePairing.h"

#include "bridge/BridgeNetwork.h"
#include "bridge/BridgeUrl.h"
#include "bridge/HttpExchange.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QSysInfo>

#include <algorithm>

namespace {

// A bridge answers a link request at once, pressed button or not: a longer wait only ever helps a bridge that
// trickles its answer. The user asks again (or `pair --wait` does).
constexpr HttpTimeouts pairingTimeouts{longestExchange, longestExchange};

/// Bridges hand out 40 letters, digits and dashes. The key goes into every request path and the settings
/// file, so anything much longer, or outside the characters a path takes as they are, is not taken.
bool isUsableKey(const QString& key)
{
    return !key.isEmpty() && key.size() <= 256 && std::all_of(key.begin(), key.end(), [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
               c == u'-' || c == u'_' || c == u'.' || c == u'~';
    });
}

} // namespace

QString BridgePairing::outcomeOf(const QString& reply)
{
    if (reply.isEmpty())
        return BridgePairing::noConnection;
    const QJsonDocument document = QJsonDocument::fromJson(reply.toUtf8());
    if (!document.isArray() || document.array().isEmpty() || !document.array().first().isObject())
        return BridgePairing::noConnection;
    const QJsonObject first = document.array().first().toObject();

    // 101 is "link button not pressed"; 1, "unauthorized user", is treated the same on purpose.
    // Compared as numbers: any other value, however large, is simply another error.
    const double type = first.value(u"error").toObject().value(u"type").toDouble(-1);
    if (type == 1 || type == 101)
        return BridgePairing::pressButton;
    const QJsonValue username = first.value(u"success").toObject().value(u"username");
    if (username.isString() && isUsableKey(username.toString()))
        return username.toString();
    return BridgePairing::noConnection;
}

BridgePairing::BridgePairing(BridgeLink& settings, QNetworkAccessManager& network, QObject* parent)
    : QObject(parent), m_settings(settings), m_network(network)
{}

QString BridgePairing::pressButtonMessage()
{
    return QCoreApplication::translate("BridgePairing", "Bridge responded: Press LINK BUTTON and retry");
}

QString BridgePairing::deviceType(const QString& hostName)
{
    const QString prefix = QStringLiteral("glowdeck#");
    // A bridge answers error 7 for a device name it does not like, and then no key is had at all: only the
    // characters host names are made of are risked.
    const bool plain = std::all_of(hostName.begin(), hostName.end(), [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
               c == u'-' || c == u'_' || c == u'.';
    });
    if (hostName.isEmpty() || !plain)
        return prefix + QStringLiteral("linux");
    return prefix + hostName.left(deviceTypeLimit - prefix.size());
}

QByteArray BridgePairing::linkBody()
{
    const QJsonObject body{{QStringLiteral("devicetype"), deviceType(QSysInfo::machineHostName())}};
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

QString BridgePairing::noConnectionMessage()
{
    return QCoreApplication::translate("BridgePairing",
                                       "Unable to connect to the Hue bridge. Is the IP address correct?");
}

void BridgePairing::postString(const QString& url, const BridgeIdentity& identity,
                               std::function<void(std::optional<QString>)> done)
{
    const QUrl address(url);
    if (!address.isValid() || address.host().isEmpty()) {
        QMetaObject::invokeMethod(
            this, [done = std::move(done)] { done(std::nullopt); }, Qt::QueuedConnection);
        return;
    }
    QNetworkRequest request(address);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    BridgeNetwork::prepare(request, identity);
    sendHttpRequest(m_network, request, QByteArrayLiteral("POST"), linkBody(), pairingTimeouts,
                    [done = std::move(done)](const HttpResult& answer) {
                        if (answer.transportFailed || answer.tooLarge)
                            return done(std::nullopt);
                        done(QString::fromUtf8(answer.body));
                    });
}

void BridgePairing::requestApiKey(const QString& address, std::function<void(PairingOutcome)> done)
{
    const std::optional<BridgeAddress> parsed = BridgeAddress::parse(address);
    if (!parsed) {
        QMetaObject::invokeMethod(
            this,
            [done = std::move(done)] {
                done({noConnection, {}, {}});
            },
            Qt::QueuedConnection);
        return;
    }
    // What is known still counts for one thing: the bridge stored, reached over HTTPS before, is not spoken
    // to in clear again, whatever answers there now. Another address is another bridge, the user's choice.
    const bool storedBridge = sameBridgeAddress(address, m_settings.preferences().bridgeAddress());
    const ProbeKnowledge known =
        storedBridge ? ProbeKnowledge{m_settings.bridgeTransport(), m_settings.bridgeIdentity(), true}
                     : ProbeKnowledge{{}, {}, true};
    probeBridge(m_network, *parsed, known, this, [this, done](const ProbeResult& probe) {
        if (!probe.contact)
            return done({noConnection, {}, probe.refused ? probe.problem : QString()});
        const ProbedBridge contact = *probe.contact;
        // The key request goes only to the bridge just identified, by its id and, if self-signed, its key.
        postString(bridgePublicUrl(contact.endpoint).toString(), contact.identity(),
                   [done, contact](const std::optional<QString>& reply) {
                       done({outcomeOf(reply.value_or(QString())), contact, {}});
                   });
    });
}

void BridgePairing::pairWithBridge()
{
    requestApiKey(m_settings.hueIP(), [this](const PairingOutcome& answer) {
        const QString& outcome = answer.outcome;
        using Reach = BridgeHome::Reach;
        m_settings.home().setBridgeReach(answer.contact             ? Reach::answering
                                         : answer.refusal.isEmpty() ? Reach::notAnswering
                                                                    : Reach::refused);
        if (outcome == pressButton) {
            m_settings.home().setConnectionErrorMessage(pressButtonMessage());
        } else if (outcome == noConnection) {
            m_settings.home().setConnectionErrorMessage(answer.refusal.isEmpty() ? noConnectionMessage()
                                                                                 : answer.refusal);
        } else {
            // The key is stored for good only once the bridge has answered a light read with it.
            m_settings.setHueIP(addressAfter(m_settings.hueIP(), *answer.contact));
            m_settings.setBridgeContact(answer.contact->transport, answer.contact->bridgeId,
                                        answer.contact->pinnedKey);
            m_settings.setBridgeSigner(answer.contact->signer);
            m_settings.setBridgeName(answer.contact->name);
            m_settings.setHueKey(outcome);
        }
        Q_EMIT pairingFinished(outcome);
        if (outcome != pressButton && outcome != noConnection)
            Q_EMIT paired();
    });
}
