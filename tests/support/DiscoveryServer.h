#pragma once

#include <QByteArray>
#include <QObject>
#include <QTcpServer>
#include <QUrl>

/// Stands in for the public bridge discovery service on 127.0.0.1: answers every GET with one fixed body.
class DiscoveryServer final : public QObject
{
    Q_OBJECT

public:
    explicit DiscoveryServer(QObject* parent = nullptr);

    bool listen();
    /// The address to hand to the code under test.
    QUrl url() const;
    void setAnswer(const QByteArray& body) { m_answer = body; }
    /// Close connections without answering.
    void setSilent(bool silent) { m_silent = silent; }
    int requestCount() const { return m_requests; }

private:
    void onConnection();

    QTcpServer m_server;
    QByteArray m_answer;
    bool m_silent = false;
    int m_requests = 0;
};
