#pragma once

#include <QNetworkAccessManager>

#include <memory>

namespace plainhttp {
class ConnectionPool;
}

/// The network access manager of the program and of glowdeckctl. Plain `http://` requests, which is all a
/// bridge speaks, go over its own HTTP/1.1 connections: kept alive between requests, one request at a time
/// each, read in whole chunks on the main thread. Everything else (the discovery service's https, a proxy)
/// goes through Qt's own manager.
///
/// Qt's manager costs about 0.4 ms of CPU per request on loopback, most of it reading every header byte with
/// a system call of its own on a thread of its own; a refresh of an unchanged home is two requests every few
/// seconds, and this makes them cheap. The replies behave as Qt's do: the same signals, attributes, headers
/// and error codes, `finished` exactly once, and `abort()` answering at once.
class BridgeNetworkAccess : public QNetworkAccessManager
{
    Q_OBJECT

public:
    explicit BridgeNetworkAccess(QObject* parent = nullptr);
    ~BridgeNetworkAccess() override;

protected:
    QNetworkReply* createRequest(Operation op, const QNetworkRequest& request, QIODevice* body) override;

private:
    bool usesProxy() const;

    std::unique_ptr<plainhttp::ConnectionPool> m_pool;
};
