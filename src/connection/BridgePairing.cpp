#include "connection/BridgePairing.h"

#include "bridge/HttpExchange.h"
#include "state/AppSettings.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>

#include <cmath>

namespace {

// A bridge answers a link request at once, pressed button or not: a longer wait only ever helps a bridge that
// trickles its answer. The user asks again (or `pair --wait` does).
constexpr HttpTimeouts pairingTimeouts{longestExchange, longestExchange};

/// The outcome of one link answer: only its first element counts.
QString outcomeOf(const QString& reply)
{
    if (reply.isEmpty())
        return BridgePairing::noConnection;
    const QJsonDocument document = QJsonDocument::fromJson(reply.toUtf8());
    if (!document.isArray() || document.array().isEmpty() || !document.array().first().isObject())
        return BridgePairing::noConnection;
    const QJsonObject first = document.array().first().toObject();

    // 101 is "link button not pressed"; 1, "unauthorized user", is treated the same on purpose.
    const QJsonValue type = first.value(u"error").toObject().value(u"type");
    if (type.isDouble() && std::trunc(type.toDouble()) == type.toDouble()) {
        const qint64 code = qint64(type.toDouble());
        if (code == 1 || code == 101)
            return BridgePairing::pressButton;
    }
    const QJsonValue username = first.value(u"success").toObject().value(u"username");
    if (username.isString() && !username.toString().isEmpty())
        return username.toString();
    return BridgePairing::noConnection;
}

} // namespace

BridgePairing::BridgePairing(AppSettings& settings, QNetworkAccessManager& network, QObject* parent)
    : QObject(parent), m_settings(settings), m_network(network)
{}

QString BridgePairing::pressButtonMessage()
{
    return QCoreApplication::translate("BridgePairing", "Bridge responded: Press LINK BUTTON and retry");
}

QString BridgePairing::noConnectionMessage()
{
    return QCoreApplication::translate("BridgePairing",
                                       "Unable to connect to the Hue bridge. Is the IP address correct?");
}

void BridgePairing::postString(const QString& url, std::function<void(std::optional<QString>)> done)
{
    const QUrl address(url);
    if (!address.isValid() || address.host().isEmpty()) {
        QMetaObject::invokeMethod(
            this, [done = std::move(done)] { done(std::nullopt); }, Qt::QueuedConnection);
        return;
    }
    QNetworkRequest request(address);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    sendHttpRequest(m_network, request, QByteArrayLiteral("POST"), linkBody, pairingTimeouts,
                    [done = std::move(done)](const HttpResult& answer) {
                        if (answer.transportFailed || answer.tooLarge)
                            return done(std::nullopt);
                        done(QString::fromUtf8(answer.body));
                    });
}

void BridgePairing::requestApiKey(const QString& ip, std::function<void(QString)> done)
{
    postString(QStringLiteral("http://") + ip + QStringLiteral("/api"),
               [done = std::move(done)](const std::optional<QString>& reply) {
                   done(outcomeOf(reply.value_or(QString())));
               });
}

void BridgePairing::pairWithBridge()
{
    requestApiKey(m_settings.hueIP(), [this](const QString& outcome) {
        if (outcome == pressButton) {
            m_settings.setConnectionErrorMessage(pressButtonMessage());
        } else if (outcome == noConnection) {
            m_settings.setConnectionErrorMessage(noConnectionMessage());
        } else {
            // The key is stored for good only once the bridge has answered a light read with it.
            m_settings.setHueKey(outcome);
        }
        Q_EMIT pairingFinished(outcome);
        if (outcome != pressButton && outcome != noConnection)
            Q_EMIT paired();
    });
}
