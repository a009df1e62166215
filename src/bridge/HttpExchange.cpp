#include "bridge/HttpExchange.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

#include <algorithm>
#include <memory>

namespace {

/// Network, proxy and protocol failures mean no usable answer; content and server errors (4xx, 5xx) still
/// carry the bridge's body, whose status the bridge clients decide about.
bool isTransportFailure(QNetworkReply::NetworkError error)
{
    return error != QNetworkReply::NoError && (error < 200 || (error >= 300 && error < 400));
}

/// How one exchange is going; shared by the reply's handlers and its timers.
struct Exchange
{
    bool tooLarge = false;
    bool timedOut = false;
};

QTimer* singleShot(QNetworkReply* reply, std::chrono::milliseconds interval)
{
    auto* timer = new QTimer(reply);
    timer->setSingleShot(true);
    timer->setInterval(interval);
    return timer;
}

} // namespace

QPointer<QNetworkReply> sendHttpRequest(QNetworkAccessManager& network, QNetworkRequest request,
                                        const QByteArray& method, const QByteArray& body,
                                        HttpTimeouts timeouts, std::function<void(const HttpResult&)> done)
{
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    QNetworkReply* reply = network.sendCustomRequest(request, method, body);
    auto exchange = std::make_shared<Exchange>();

    // Both clocks belong to the reply, so they stop with it. Giving up is an abort, which finishes the reply.
    QTimer* idle = singleShot(reply, std::min(timeouts.idle, longestExchange));
    QTimer* deadline = singleShot(reply, std::min(timeouts.total, longestExchange));
    for (QTimer* timer : {idle, deadline}) {
        QObject::connect(timer, &QTimer::timeout, reply, [reply, exchange] {
            exchange->timedOut = true;
            reply->abort();
        });
        timer->start();
    }
    const auto moved = [idle] { idle->start(); };
    QObject::connect(reply, &QNetworkReply::uploadProgress, idle, moved);
    QObject::connect(reply, &QNetworkReply::metaDataChanged, idle, moved);

    auto refuseIfTooLarge = [reply, exchange](qint64 size) {
        if (size > maxAnswerBytes && !exchange->tooLarge) {
            exchange->tooLarge = true;
            reply->abort();
        }
    };
    QObject::connect(reply, &QNetworkReply::metaDataChanged, reply, [reply, refuseIfTooLarge] {
        refuseIfTooLarge(reply->header(QNetworkRequest::ContentLengthHeader).toLongLong());
    });
    QObject::connect(reply, &QNetworkReply::downloadProgress, reply,
                     [refuseIfTooLarge, moved](qint64 received, qint64) {
                         moved();
                         refuseIfTooLarge(received);
                     });
    QObject::connect(
        reply, &QNetworkReply::finished, reply, [reply, exchange, idle, deadline, done = std::move(done)] {
            idle->stop();
            deadline->stop();
            HttpResult result;
            result.tooLarge = exchange->tooLarge;
            if (!result.tooLarge) {
                result.timedOut = exchange->timedOut;
                result.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
                // Qt files "400 Bad Request" under its protocol errors; the current interface answers a
                // refused change so, with the reason in its body.
                const bool answered = reply->error() == QNetworkReply::ProtocolInvalidOperationError &&
                                      result.status >= 400 && !result.timedOut;
                result.transportFailed = isTransportFailure(reply->error()) && !answered;
                result.certificate = BridgeNetwork::certificateOf(reply);
                result.refusal = BridgeNetwork::refusalOf(reply);
                if (result.transportFailed) {
                    result.networkError = reply->error();
                    result.error = result.refusal.isEmpty() ? reply->errorString() : result.refusal;
                } else {
                    result.body = reply->readAll();
                    result.location = reply->rawHeader(QByteArrayLiteral("Location"));
                }
            }
            reply->deleteLater();
            done(result);
        });
    return reply;
}
