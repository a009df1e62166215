#include "SimulatorHttpConnection.h"

#include <QSslSocket>
#include <QTcpSocket>
#include <QTimer>
#include <QUrl>

#include <cctype>

namespace {

constexpr qsizetype MaximumHeaderBytes = 64 * 1024;
constexpr qint64 MaximumBodyBytes = 4 * 1024 * 1024;

QByteArray reasonPhrase(int status)
{
    switch (status) {
    case 100:
        return "Continue";
    case 200:
        return "OK";
    case 301:
        return "Moved Permanently";
    case 400:
        return "Bad Request";
    case 403:
        return "Forbidden";
    case 404:
        return "Not Found";
    case 413:
        return "Payload Too Large";
    case 429:
        return "Too Many Requests";
    case 431:
        return "Request Header Fields Too Large";
    case 501:
        return "Not Implemented";
    case 505:
        return "HTTP Version Not Supported";
    default:
        return "Unknown";
    }
}

} // namespace

SimulatorHttpConnection::SimulatorHttpConnection(QTcpSocket* socket, QObject* parent)
    : QObject(parent), m_socket(socket)
{
    m_socket->setParent(this);
    // Answers are small: without this, Nagle's algorithm and the client's delayed acknowledgement hold every
    // answer back by some 40 ms, like no real bridge does.
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(m_socket, &QTcpSocket::readyRead, this, &SimulatorHttpConnection::onReadyRead);
    connect(m_socket, &QTcpSocket::disconnected, this, &SimulatorHttpConnection::onDisconnected);
    if (m_socket->bytesAvailable() > 0)
        QMetaObject::invokeMethod(this, &SimulatorHttpConnection::onReadyRead, Qt::QueuedConnection);
}

SimulatorHttpConnection::~SimulatorHttpConnection() = default;

void SimulatorHttpConnection::onReadyRead()
{
    m_buffer += m_socket->readAll();
    processBuffer();
}

void SimulatorHttpConnection::onDisconnected()
{
    setGone();
    deleteLater();
}

void SimulatorHttpConnection::setGone()
{
    if (m_gone)
        return;
    m_gone = true;
    emit closed();
}

void SimulatorHttpConnection::processBuffer()
{
    // One request at a time: the next is read only after the current one was answered, which keeps answers
    // in order even for a client that pipelines.
    if (m_busy || m_gone)
        return;
    SimulatorHttpRequest request;
    int failureStatus = 400;
    switch (parseRequest(&request, &failureStatus)) {
    case Parse::Incomplete:
        return;
    case Parse::Bad:
        m_busy = true;
        writeResponse(failureStatus, "text/plain", reasonPhrase(failureStatus) + '\n', true);
        return;
    case Parse::Complete:
        m_busy = true;
        request.peer = m_socket->peerAddress();
        request.encrypted = qobject_cast<QSslSocket*>(m_socket) != nullptr;
        emit requestReady(this, request);
        return;
    }
}

SimulatorHttpConnection::Parse SimulatorHttpConnection::parseRequest(SimulatorHttpRequest* request,
                                                                     int* failureStatus)
{
    // A request starts with its method's letters. Anything else, a TLS greeting above all, is refused at
    // once, as web servers do, instead of waiting for a header end that never comes.
    if (!m_buffer.isEmpty() && !std::isalpha(static_cast<unsigned char>(m_buffer.front())))
        return Parse::Bad;
    const qsizetype headerEnd = m_buffer.indexOf("\r\n\r\n");
    if (headerEnd < 0) {
        if (m_buffer.size() <= MaximumHeaderBytes)
            return Parse::Incomplete;
        *failureStatus = 431;
        return Parse::Bad;
    }

    const QList<QByteArray> lines = m_buffer.left(headerEnd).split('\n');
    const QList<QByteArray> requestLine = lines.first().trimmed().split(' ');
    if (requestLine.size() != 3 || requestLine.at(0).isEmpty() || requestLine.at(1).isEmpty())
        return Parse::Bad;
    const QByteArray version = requestLine.at(2);
    if (version != "HTTP/1.1" && version != "HTTP/1.0") {
        *failureStatus = version.startsWith("HTTP/") ? 505 : 400;
        return Parse::Bad;
    }
    request->method = requestLine.at(0).toUpper();
    request->target = requestLine.at(1);
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const QByteArray line = lines.at(i).trimmed();
        const qsizetype colon = line.indexOf(':');
        if (colon <= 0)
            return Parse::Bad;
        request->headers.insert(line.left(colon).trimmed().toLower(), line.mid(colon + 1).trimmed());
    }
    if (request->headers.contains("transfer-encoding")) {
        *failureStatus = 501; // bodies come with Content-Length from every client that talks to a bridge
        return Parse::Bad;
    }
    qint64 length = 0;
    if (request->headers.contains("content-length")) {
        bool ok = false;
        length = request->headers.value("content-length").toLongLong(&ok);
        if (!ok || length < 0)
            return Parse::Bad;
        if (length > MaximumBodyBytes) {
            *failureStatus = 413;
            return Parse::Bad;
        }
    }
    const qsizetype bodyStart = headerEnd + 4;
    if (m_buffer.size() - bodyStart < length) {
        if (!m_continueSent && request->headers.value("expect").toLower() == "100-continue") {
            m_continueSent = true;
            m_socket->write("HTTP/1.1 100 Continue\r\n\r\n");
        }
        return Parse::Incomplete;
    }
    request->body = m_buffer.mid(bodyStart, length);
    m_buffer.remove(0, bodyStart + length);
    m_continueSent = false;

    QByteArray target = request->target;
    if (target.startsWith("http://") || target.startsWith("https://")) {
        const qsizetype pathStart = target.indexOf('/', target.indexOf("//") + 2);
        target = pathStart < 0 ? QByteArray("/") : target.mid(pathStart);
    }
    const qsizetype query = target.indexOf('?');
    request->path = QUrl::fromPercentEncoding(query < 0 ? target : target.left(query));

    const QByteArray connection = request->headers.value("connection").toLower();
    m_closeAfterAnswer =
        version == "HTTP/1.0" ? !connection.contains("keep-alive") : connection.contains("close");
    m_headRequest = request->method == "HEAD";
    m_http10 = version == "HTTP/1.0";
    return Parse::Complete;
}

void SimulatorHttpConnection::respond(int status, const QByteArray& contentType, const QByteArray& body)
{
    if (!m_busy || m_gone || m_streaming)
        return;
    writeResponse(status, contentType, body, m_closeAfterAnswer);
}

void SimulatorHttpConnection::respondWithHeaders(int status, const QByteArray& contentType,
                                                 const QByteArray& body,
                                                 const QList<std::pair<QByteArray, QByteArray>>& headers)
{
    m_extraHeaders = headers;
    respond(status, contentType, body);
    m_extraHeaders.clear();
}

QByteArray SimulatorHttpConnection::responseBytes(int status, const QByteArray& contentType,
                                                  const QByteArray& body, bool close) const
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + ' ' + reasonPhrase(status) + "\r\n";
    head += "Cache-Control: no-store, no-cache, must-revalidate, post-check=0, pre-check=0\r\n";
    head += "Pragma: no-cache\r\n";
    head += "Access-Control-Allow-Origin: *\r\n";
    head += "Content-Type: " + contentType + "\r\n";
    for (const auto& [name, value] : m_extraHeaders)
        head += name + ": " + value + "\r\n";
    head += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    head += close ? "Connection: close\r\n\r\n" : "Connection: Keep-Alive\r\n\r\n";
    return m_headRequest ? head : head + body;
}

void SimulatorHttpConnection::writeResponse(int status, const QByteArray& contentType, const QByteArray& body,
                                            bool close)
{
    // One write for head and body, so that they leave in one segment.
    m_socket->write(responseBytes(status, contentType, body, close));
    finishAnswer(close);
}

void SimulatorHttpConnection::finishAnswer(bool close)
{
    m_busy = false;
    if (close) {
        setGone();
        m_socket->disconnectFromHost(); // flushes what was written first
        return;
    }
    // Queued, so a client that sent several requests at once is not served from inside this call.
    QMetaObject::invokeMethod(this, &SimulatorHttpConnection::processBuffer, Qt::QueuedConnection);
}

void SimulatorHttpConnection::respondDripping(int status, const QByteArray& contentType,
                                              const QByteArray& body, int chunkBytes, int intervalMs)
{
    if (!m_busy || m_gone || m_streaming)
        return;
    // The head leaves at once, as from a bridge whose link fails mid-answer: the client sees progress, and
    // only a limit on the whole exchange ends the wait.
    const QByteArray answer = responseBytes(status, contentType, body, m_closeAfterAnswer);
    const qsizetype bodyStart = answer.size() - (m_headRequest ? 0 : body.size());
    m_socket->write(answer.left(bodyStart));
    m_dripping = answer.mid(bodyStart);
    m_dripChunk = std::max(1, chunkBytes);
    m_closeAfterDrip = m_closeAfterAnswer;
    if (!m_dripTimer) {
        m_dripTimer = new QTimer(this);
        connect(m_dripTimer, &QTimer::timeout, this, &SimulatorHttpConnection::onDripTick);
    }
    m_dripTimer->setInterval(std::max(1, intervalMs));
    onDripTick();
    m_dripTimer->start();
}

void SimulatorHttpConnection::onDripTick()
{
    if (m_gone) {
        m_dripTimer->stop();
        return;
    }
    m_socket->write(m_dripping.left(m_dripChunk));
    m_socket->flush();
    m_dripping.remove(0, m_dripChunk);
    if (m_dripping.isEmpty()) {
        m_dripTimer->stop();
        finishAnswer(m_closeAfterDrip);
    }
}

void SimulatorHttpConnection::abortConnection()
{
    if (m_gone)
        return;
    m_busy = false;
    setGone();
    m_socket->abort();
    deleteLater();
}

void SimulatorHttpConnection::respondStreaming(int status, const QByteArray& contentType,
                                               const QList<std::pair<QByteArray, QByteArray>>& headers)
{
    if (!m_busy || m_gone || m_streaming)
        return;
    m_streaming = true;
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + ' ' + reasonPhrase(status) + "\r\n";
    head += "Content-Type: " + contentType + "\r\n";
    for (const auto& [name, value] : headers)
        head += name + ": " + value + "\r\n";
    // Without a length the client reads on until the last chunk, or until the close; either way it sees each
    // piece as it comes. The connection belongs to the stream to its end.
    if (!m_http10 && !m_headRequest)
        head += "Transfer-Encoding: chunked\r\n";
    head += "Connection: close\r\n\r\n";
    m_socket->write(head);
    m_socket->flush();
    if (m_headRequest) {
        m_streaming = false;
        finishAnswer(true);
    }
}

void SimulatorHttpConnection::writeStream(const QByteArray& data)
{
    if (!isStreaming() || data.isEmpty())
        return;
    if (m_http10)
        m_socket->write(data);
    else
        m_socket->write(QByteArray::number(data.size(), 16) + "\r\n" + data + "\r\n");
    m_socket->flush();
}

void SimulatorHttpConnection::endStream()
{
    if (!isStreaming())
        return;
    if (!m_http10)
        m_socket->write("0\r\n\r\n");
    finishAnswer(true);
}
