#pragma once

#include "bridge/BridgeNetwork.h"

#include <QHostAddress>
#include <QNetworkRequest>

/// The program's network access manager, counting the requests made through it, so a test can prove that
/// nothing was sent at all, and keeping where each would have gone. A request for anywhere but loopback is
/// sent to a closed loopback port instead (it fails as a refused connection): a test can show that the code
/// would have asked a stranger without anything leaving this computer.
class CountingNetwork final : public BridgeNetwork
{
public:
    int requests = 0;
    QList<QUrl> urls; ///< as asked, before any redirection to loopback

protected:
    QNetworkReply* createRequest(Operation op, const QNetworkRequest& request, QIODevice* body) override
    {
        ++requests;
        urls.append(request.url());
        const QHostAddress host(request.url().host());
        if (host.isLoopback() || request.url().host() == u"localhost")
            return BridgeNetwork::createRequest(op, request, body);
        QNetworkRequest contained = request;
        contained.setUrl(QUrl(QStringLiteral("http://127.0.0.1:1/")));
        return BridgeNetwork::createRequest(op, contained, body);
    }
};
