#pragma once

#include "bridge/BridgeNetwork.h"

/// The program's network access manager, counting the requests made through it, so a test can prove that
/// nothing was sent at all.
class CountingNetwork final : public BridgeNetwork
{
public:
    int requests = 0;

protected:
    QNetworkReply* createRequest(Operation op, const QNetworkRequest& request, QIODevice* body) override
    {
        ++requests;
        return BridgeNetwork::createRequest(op, request, body);
    }
};
