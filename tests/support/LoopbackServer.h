#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QTcpServer>
#include <QUrl>

/// Stands in for an outside service on 127.0.0.1 (the bridge discovery service, the error collector): keeps
/// every request and answers each with one status and body, or closes the connection without a word.
class LoopbackServer final : public QObject
{
    Q_OBJECT

public:
    struct Request
    {
        QByteArray requestLine;                // "POST /crash/ HTTP/1.1"
        QHash<QByteArray, QByteArray> headers; // names in lower case
        QByteArray body;
    };

    explicit LoopbackServer(QObject* parent = nullptr);

    bool listen();
    /// The address to hand to the code under test, with `path`.
    QUrl url(const QString& path = QStringLiteral("/")) const;
    void setAnswer(const QByteArray& body) { m_answer = body; }
    void setStatus(int status) { m_status = status; }
    /// Close connections without answering.
    void setSilent(bool silent) { m_silent = silent; }
    QList<Request> requests() const { return m_requests; }
    int requestCount() const { return int(m_requests.size()); }

private:
    void onConnection();

    QTcpServer m_server;
    QByteArray m_answer;
    int m_status = 200;
    bool m_silent = false;
    QList<Request> m_requests;
};
