#pragma once

#include <QByteArray>
#include <QHash>
#include <QHostAddress>
#include <QObject>
#include <QString>

class QTcpSocket;
class QTimer;

/// One HTTP/1.1 request as read off a connection.
struct SimulatorHttpRequest
{
    QByteArray method;
    QByteArray target;                     ///< as sent, query included
    QString path;                          ///< decoded path without the query
    QHash<QByteArray, QByteArray> headers; ///< names in lower case
    QByteArray body;
    QHostAddress peer;      ///< who sent it
    bool encrypted = false; ///< it came over TLS
};

/// One client connection of the simulator's small HTTP/1.1 server. Reads requests with Content-Length
/// bodies, hands them out one at a time (an answer may come later, for a simulated slow bridge) and keeps the
/// connection alive between them unless the client asks to close. Can also be dropped without any answer, or
/// answer with a stream that goes on until either side ends it (an event stream).
class SimulatorHttpConnection final : public QObject
{
    Q_OBJECT
public:
    /// Takes over @p socket (re-parented to this connection).
    explicit SimulatorHttpConnection(QTcpSocket* socket, QObject* parent = nullptr);
    ~SimulatorHttpConnection() override;

    /// Answers the request handed out last; the next one is read afterwards.
    void respond(int status, const QByteArray& contentType, const QByteArray& body);
    /// The same, with further header lines ("Location" of a redirection).
    void respondWithHeaders(int status, const QByteArray& contentType, const QByteArray& body,
                            const QList<std::pair<QByteArray, QByteArray>>& headers);
    /// The same answer, its body trickled out: the head at once, then @p chunkBytes of the body, a pause of
    /// @p intervalMs, and so on, like a bridge on a failing link. Stops when the client hangs up.
    void respondDripping(int status, const QByteArray& contentType, const QByteArray& body, int chunkBytes,
                         int intervalMs);
    /// Closes the TCP connection at once, without an answer.
    void abortConnection();

    /// Answers the request handed out last with the head only: the body follows in writeStream() pieces,
    /// each sent at once (chunked transfer encoding; plain until the close for an HTTP/1.0 client), until
    /// endStream(). The connection takes no further request.
    void respondStreaming(int status, const QByteArray& contentType,
                          const QList<std::pair<QByteArray, QByteArray>>& headers = {});
    /// Sends the next piece of a streaming answer.
    void writeStream(const QByteArray& data);
    /// Ends a streaming answer properly and closes the connection.
    void endStream();
    bool isStreaming() const { return m_streaming && !m_gone; }

signals:
    /// A complete request arrived. Exactly one respond() or abortConnection() must follow, now or later.
    void requestReady(SimulatorHttpConnection* connection, const SimulatorHttpRequest& request);
    /// The connection is over: the client hung up, it was dropped, or closed after its answer. Once.
    void closed();

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
    QByteArray responseBytes(int status, const QByteArray& contentType, const QByteArray& body,
                             bool close) const;
    void writeResponse(int status, const QByteArray& contentType, const QByteArray& body, bool close);
    void onDripTick();
    void finishAnswer(bool close);
    /// Notes that the connection is over, and says so once.
    void setGone();

    QTcpSocket* m_socket = nullptr;
    QList<std::pair<QByteArray, QByteArray>> m_extraHeaders; ///< for the answer being written
    QByteArray m_buffer;
    bool m_busy = false; // a request was handed out and waits for its answer
    bool m_closeAfterAnswer = false;
    bool m_headRequest = false;
    bool m_continueSent = false; // "100 Continue" already written for the request being read
    bool m_gone = false;
    bool m_http10 = false;    // the request being answered came as HTTP/1.0, which knows no chunks
    bool m_streaming = false; // respondStreaming() answered; the body goes on
    QByteArray m_dripping;    // what is still to be trickled out
    int m_dripChunk = 0;
    bool m_closeAfterDrip = false;
    QTimer* m_dripTimer = nullptr;
};
