#pragma once

#include <QByteArray>
#include <QHash>
#include <QHostAddress>
#include <QObject>
#include <QString>

class QTcpSocket;

/// One HTTP/1.1 request as read off a connection.
struct SimulatorHttpRequest
{
    QByteArray method;
    QByteArray target;                     ///< as sent, query included
    QString path;                          ///< decoded path without the query
    QHash<QByteArray, QByteArray> headers; ///< names in lower case
    QByteArray body;
    QHostAddress peer; ///< who sent it
};

/// One client connection of the simulator's small HTTP/1.1 server. Reads requests with Content-Length
/// bodies, hands them out one at a time (an answer may come later, for a simulated slow bridge) and keeps the
/// connection alive between them unless the client asks to close. Can also be dropped without any answer.
class SimulatorHttpConnection final : public QObject
{
    Q_OBJECT
public:
    /// Takes over @p socket (re-parented to this connection).
    explicit SimulatorHttpConnection(QTcpSocket* socket, QObject* parent = nullptr);
    ~SimulatorHttpConnection() override;

    /// Answers the request handed out last; the next one is read afterwards.
    void respond(int status, const QByteArray& contentType, const QByteArray& body);
    /// Closes the TCP connection at once, without an answer.
    void abortConnection();

signals:
    /// A complete request arrived. Exactly one respond() or abortConnection() must follow, now or later.
    void requestReady(SimulatorHttpConnection* connection, const SimulatorHttpRequest& request);

private:
    enum class Parse
    {
        Incomplete,
        Complete,
        Bad,
    };

    void onReadyRead();
    void onDisconnected();
    void processBuffer();
    Parse parseRequest(SimulatorHttpRequest* request, int* failureStatus);
    void writeResponse(int status, const QByteArray& contentType, const QByteArray& body, bool close);

    QTcpSocket* m_socket = nullptr;
    QByteArray m_buffer;
    bool m_busy = false; // a request was handed out and waits for its answer
    bool m_closeAfterAnswer = false;
    bool m_headRequest = false;
    bool m_continueSent = false; // "100 Continue" already written for the request being read
    bool m_gone = false;
};
