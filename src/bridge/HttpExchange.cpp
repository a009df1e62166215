#include "bridge/HttpExchange.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <memory>

namespace {

/// Network, proxy and protocol failures mean no usable answer; content and server errors (4xx, 5xx) still
/// carry the bridge's body, whose status the bridge clients do not look at.
bool isTransportFailure(QNetworkReply::NetworkError error)
{
    return error != QNetworkReply::NoError && (error < 200 || (error >= 300 && error < 400));
}

} // namespace

void sendHttpRequest(QNetworkAccessManager& network, QNetworkRequest request, const QByteArray& method,
                     const QByteArray& body, std::chrono::milliseconds timeout,
                     std::function<void(const HttpResult&)> done)
{
    request.setTransferTimeout(int(timeout.count()));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    QNetworkReply* reply = network.sendCustomRequest(request, method, body);

    auto tooLarge = std::make_shared<bool>(false);
    auto refuseIfTooLarge = [reply, tooLarge](qint64 size) {
        if (size > maxAnswerBytes && !*tooLarge) {
            *tooLarge = true;
            reply->abort();
        }
    };
    QObject::connect(reply, &QNetworkReply::metaDataChanged, reply, [reply, refuseIfTooLarge] {
        refuseIfTooLarge(reply->header(QNetworkRequest::ContentLengthHeader).toLongLong());
    });
    QObject::connect(reply, &QNetworkReply::downloadProgress, reply,
                     [refuseIfTooLarge](qint64 received, qint64) { refuseIfTooLarge(received); });
    QObject::connect(reply, &QNetworkReply::finished, reply, [reply, tooLarge, done = std::move(done)] {
        HttpResult result;
        result.tooLarge = *tooLarge;
        if (!result.tooLarge) {
            result.transportFailed = isTransportFailure(reply->error());
            result.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
            if (!result.transportFailed)
                result.body = reply->readAll();
        }
        reply->deleteLater();
        done(result);
    });
}
