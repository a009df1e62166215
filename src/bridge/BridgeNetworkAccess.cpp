#include "bridge/BridgeNetworkAccess.h"

#include <QNetworkProxy>
#include <QNetworkReply>
#include <QPointer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <utility>
#include <vector>

namespace plainhttp {

namespace {

/// A status line and headers longer than this are not an answer of a bridge.
constexpr qsizetype maxHeadBytes = 64 * 1024;
/// A kept-alive connection nobody uses is closed after this long; a refresh every few seconds keeps one busy.
constexpr std::chrono::seconds idleLifetime{30};
/// Idle connections kept per bridge; more only come from bursts, and are closed when the burst is over.
constexpr int maxIdlePerHost = 4;
/// Headers of a request that say how it is framed on the wire.
constexpr std::array<QByteArrayView, 4> framingHeaders{"Host", "Content-Length", "Connection",
                                                       "Transfer-Encoding"};

QByteArray methodOf(QNetworkAccessManager::Operation op, const QNetworkRequest& request)
{
    switch (op) {
    case QNetworkAccessManager::GetOperation:
        return QByteArrayLiteral("GET");
    case QNetworkAccessManager::PutOperation:
        return QByteArrayLiteral("PUT");
    case QNetworkAccessManager::PostOperation:
        return QByteArrayLiteral("POST");
    case QNetworkAccessManager::DeleteOperation:
        return QByteArrayLiteral("DELETE");
    case QNetworkAccessManager::HeadOperation:
        return QByteArrayLiteral("HEAD");
    case QNetworkAccessManager::CustomOperation:
        return request.attribute(QNetworkRequest::CustomVerbAttribute).toByteArray();
    case QNetworkAccessManager::UnknownOperation:
        break;
    }
    return {};
}

/// The error Qt's own manager reports for an HTTP error status, so callers cannot tell the two apart.
QNetworkReply::NetworkError errorForStatus(int status)
{
    switch (status) {
    case 401:
        return QNetworkReply::AuthenticationRequiredError;
    case 403:
        return QNetworkReply::ContentAccessDenied;
    case 404:
        return QNetworkReply::ContentNotFoundError;
    case 405:
        return QNetworkReply::ContentOperationNotPermittedError;
    case 409:
        return QNetworkReply::ContentConflictError;
    case 410:
        return QNetworkReply::ContentGoneError;
    case 500:
        return QNetworkReply::InternalServerError;
    case 501:
        return QNetworkReply::OperationNotImplementedError;
    case 503:
        return QNetworkReply::ServiceUnavailableError;
    default:
        return status < 500 ? QNetworkReply::UnknownContentError : QNetworkReply::UnknownServerError;
    }
}

std::pair<QNetworkReply::NetworkError, QString> errorForSocket(const QTcpSocket& socket, const QString& host)
{
    switch (socket.error()) {
    case QAbstractSocket::ConnectionRefusedError:
        return {QNetworkReply::ConnectionRefusedError, QStringLiteral("Connection refused")};
    case QAbstractSocket::RemoteHostClosedError:
        return {QNetworkReply::RemoteHostClosedError, QStringLiteral("Connection closed")};
    case QAbstractSocket::HostNotFoundError:
        return {QNetworkReply::HostNotFoundError, QStringLiteral("Host %1 not found").arg(host)};
    case QAbstractSocket::SocketTimeoutError:
        return {QNetworkReply::TimeoutError, socket.errorString()};
    default:
        return {QNetworkReply::UnknownNetworkError, socket.errorString()};
    }
}

/// Whether a comma-separated header value names `token`, ignoring case ("Connection: Keep-Alive, Upgrade").
bool hasToken(const QByteArray& value, QByteArrayView token)
{
    const QList<QByteArray> parts = value.split(',');
    return std::any_of(parts.begin(), parts.end(), [token](const QByteArray& part) {
        return part.trimmed().compare(token, Qt::CaseInsensitive) == 0;
    });
}

} // namespace

class Connection;

/// One request and its answer, as Qt's own replies present them.
class Reply final : public QNetworkReply
{
public:
    Reply(QNetworkAccessManager::Operation op, const QNetworkRequest& request, QByteArray method,
          QByteArray body, QObject* parent)
        : QNetworkReply(parent), m_method(std::move(method)), m_body(std::move(body))
    {
        setOperation(op);
        setRequest(request);
        setUrl(request.url());
        open(QIODevice::ReadOnly);
    }

    const QByteArray& method() const { return m_method; }
    const QByteArray& body() const { return m_body; }
    bool isDone() const { return m_done; }

    /// Set once the request was sent again after a kept-alive connection turned out to be closed.
    bool retried = false;

    void attach(Connection* connection) { m_connection = connection; }

    void abort() override;

    qint64 bytesAvailable() const override
    {
        return m_data.size() - m_readPos + QNetworkReply::bytesAvailable();
    }

    void receiveHead(int status, const QByteArray& reason,
                     const QList<std::pair<QByteArray, QByteArray>>& headers)
    {
        m_status = status;
        setAttribute(QNetworkRequest::HttpStatusCodeAttribute, status);
        setAttribute(QNetworkRequest::HttpReasonPhraseAttribute, reason);
        for (const auto& [name, value] : headers)
            setRawHeader(name, value);
        m_total = header(QNetworkRequest::ContentLengthHeader).toLongLong(&m_totalKnown);
        emit metaDataChanged();
    }

    void receiveBody(QByteArray chunk)
    {
        m_received += chunk.size();
        if (m_data.isEmpty())
            m_data = std::move(chunk);
        else
            m_data += chunk;
        emit readyRead();
        if (!m_done)
            emit downloadProgress(m_received, m_totalKnown ? m_total : -1);
    }

    void sent() { emit uploadProgress(m_body.size(), m_body.size()); }

    /// The whole answer is in.
    void complete()
    {
        if (m_status >= 400) {
            const QString reason = attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString();
            finish(errorForStatus(m_status), QStringLiteral("Error transferring %1 - server replied: %2")
                                                 .arg(url().toDisplayString(), reason));
        } else {
            finish(NoError, {});
        }
    }

    void fail(NetworkError code, const QString& text) { finish(code, text); }

protected:
    qint64 readData(char* data, qint64 maxSize) override
    {
        const qint64 n = std::min<qint64>(maxSize, m_data.size() - m_readPos);
        if (n <= 0)
            return m_done ? -1 : 0;
        std::copy_n(m_data.constData() + m_readPos, n, data);
        m_readPos += n;
        if (m_readPos == m_data.size()) {
            m_data.clear();
            m_readPos = 0;
        }
        return n;
    }

private:
    void finish(NetworkError code, const QString& text)
    {
        if (m_done)
            return;
        m_done = true;
        m_connection = nullptr;
        if (code != NoError) {
            setError(code, text);
            emit errorOccurred(code);
        }
        setFinished(true);
        emit finished();
        if (auto* manager = qobject_cast<QNetworkAccessManager*>(parent()))
            emit manager->finished(this);
    }

    QByteArray m_method;
    QByteArray m_body;
    QPointer<Connection> m_connection;
    QByteArray m_data;
    qsizetype m_readPos = 0;
    qint64 m_received = 0;
    qint64 m_total = 0;
    bool m_totalKnown = false;
    int m_status = 0;
    bool m_done = false;
};

class ConnectionPool;

/// One TCP connection to a bridge, carrying one exchange at a time and kept open between them when the
/// bridge allows it.
class Connection final : public QObject
{
public:
    Connection(ConnectionPool& pool, QString host, quint16 port, QObject* parent);
    ~Connection() override;

    const QString& host() const { return m_host; }
    quint16 port() const { return m_port; }
    bool isIdle() const { return !m_reply && m_socket.state() == QAbstractSocket::ConnectedState; }

    void start(Reply* reply);
    /// The reply was aborted: the rest of its answer is of no use, and neither is the connection.
    void abandon() { close(); }

private:
    enum class Stage
    {
        StatusLine,
        Headers,
        FixedBody,
        ChunkSize,
        ChunkData,
        ChunkEnd,
        Trailers,
        UntilClose
    };

    void onConnected();
    void onReadyRead();
    void onBytesWritten();
    void onSocketError();

    void writeRequest();
    /// Reads what has arrived as far as it goes; false when it is not HTTP.
    bool parse();
    std::optional<QByteArray> takeLine();
    bool headDone();
    void deliverBody(qint64 maxBytes);
    void completeExchange();
    void failExchange(QNetworkReply::NetworkError code, const QString& text);
    void close();

    ConnectionPool& m_pool;
    QString m_host;
    quint16 m_port;
    QTcpSocket m_socket;
    QTimer m_idleTimer;
    QPointer<Reply> m_reply;
    int m_exchanges = 0;

    // The answer being read.
    QByteArray m_in;
    qsizetype m_pos = 0;
    Stage m_stage = Stage::StatusLine;
    bool m_answerStarted = false;
    bool m_http10 = false;
    int m_status = 0;
    QByteArray m_reason;
    QList<std::pair<QByteArray, QByteArray>> m_headers;
    qsizetype m_headBytes = 0;
    qint64 m_remaining = 0;
    bool m_keepAlive = true;
};

/// The connections of one manager.
class ConnectionPool
{
public:
    explicit ConnectionPool(QObject* owner) : m_owner(owner) {}
    ~ConnectionPool() { qDeleteAll(m_connections); }
    ConnectionPool(const ConnectionPool&) = delete;
    ConnectionPool& operator=(const ConnectionPool&) = delete;

    void start(Reply* reply, bool freshConnection = false)
    {
        const QUrl url = reply->url();
        const QString host = url.host();
        const auto port = quint16(url.port(80));
        if (!freshConnection) {
            for (Connection* connection : m_connections) {
                if (connection->host() == host && connection->port() == port && connection->isIdle())
                    return connection->start(reply);
            }
        }
        auto* connection = new Connection(*this, host, port, m_owner);
        m_connections.push_back(connection);
        connection->start(reply);
    }

    /// Whether a connection that just finished an exchange may wait for the next one.
    bool mayKeep(const Connection* done) const
    {
        return std::count_if(m_connections.begin(), m_connections.end(), [done](const Connection* c) {
                   return c != done && c->host() == done->host() && c->port() == done->port() && c->isIdle();
               }) < maxIdlePerHost;
    }

    void remove(Connection* connection)
    {
        const auto it = std::find(m_connections.begin(), m_connections.end(), connection);
        if (it == m_connections.end())
            return;
        m_connections.erase(it);
        connection->deleteLater();
    }

private:
    QObject* m_owner;
    std::vector<Connection*> m_connections;
};

void Reply::abort()
{
    if (m_done)
        return;
    if (Connection* connection = m_connection)
        connection->abandon();
    finish(OperationCanceledError, QStringLiteral("Operation canceled"));
}

Connection::Connection(ConnectionPool& pool, QString host, quint16 port, QObject* parent)
    : QObject(parent), m_pool(pool), m_host(std::move(host)), m_port(port)
{
    // A bridge is on the local network: no proxy stands between it and us.
    m_socket.setProxy(QNetworkProxy::NoProxy);
    m_idleTimer.setSingleShot(true);
    m_idleTimer.setInterval(idleLifetime);
    connect(&m_idleTimer, &QTimer::timeout, this, &Connection::close);
    connect(&m_socket, &QTcpSocket::connected, this, &Connection::onConnected);
    connect(&m_socket, &QTcpSocket::readyRead, this, &Connection::onReadyRead);
    connect(&m_socket, &QTcpSocket::bytesWritten, this, &Connection::onBytesWritten);
    connect(&m_socket, &QTcpSocket::errorOccurred, this, &Connection::onSocketError);
}

Connection::~Connection()
{
    // The socket goes after this object's own part: nothing it says on its way out may reach us.
    m_socket.disconnect(this);
    m_socket.abort();
}

void Connection::start(Reply* reply)
{
    m_idleTimer.stop();
    m_reply = reply;
    reply->attach(this);
    m_in.clear();
    m_pos = 0;
    m_stage = Stage::StatusLine;
    m_answerStarted = false;
    m_headers.clear();
    m_headBytes = 0;
    m_keepAlive = true;
    if (m_socket.state() == QAbstractSocket::ConnectedState)
        writeRequest();
    else if (m_socket.state() == QAbstractSocket::UnconnectedState)
        m_socket.connectToHost(m_host, m_port);
}

void Connection::onConnected()
{
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    if (m_reply)
        writeRequest();
}

void Connection::writeRequest()
{
    const QUrl url = m_reply->url();
    QByteArray target = url.path(QUrl::FullyEncoded).toLatin1();
    if (target.isEmpty())
        target = "/";
    if (url.hasQuery())
        target += '?' + url.query(QUrl::FullyEncoded).toLatin1();
    QByteArray host = url.host(QUrl::FullyEncoded).toLatin1();
    if (host.contains(':'))
        host = '[' + host + ']';
    if (m_port != 80)
        host += ':' + QByteArray::number(m_port);

    const QByteArray& body = m_reply->body();
    QByteArray message;
    message.reserve(256 + body.size());
    message += m_reply->method() + ' ' + target + " HTTP/1.1\r\nHost: " + host + "\r\n";
    const QNetworkRequest request = m_reply->request();
    // The framing is this connection's to decide.
    const auto isFraming = [](const QByteArray& name) {
        return std::any_of(framingHeaders.begin(), framingHeaders.end(), [&name](QByteArrayView framing) {
            return name.compare(framing, Qt::CaseInsensitive) == 0;
        });
    };
    for (const QByteArray& name : request.rawHeaderList()) {
        if (!isFraming(name))
            message += name + ": " + request.rawHeader(name) + "\r\n";
    }
    if (!body.isEmpty() || m_reply->method() == "PUT" || m_reply->method() == "POST")
        message += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    message += "\r\n";
    message += body;
    m_socket.write(message);
}

void Connection::onBytesWritten()
{
    if (m_socket.bytesToWrite() == 0 && m_reply && !m_reply->body().isEmpty())
        m_reply->sent();
}

void Connection::onReadyRead()
{
    if (!m_reply) {
        // Nothing was asked: a bridge talking out of turn, or the rest of an abandoned answer.
        close();
        return;
    }
    m_answerStarted = true;
    if (m_pos == m_in.size()) {
        m_in = m_socket.readAll();
        m_pos = 0;
    } else {
        m_in += m_socket.readAll();
    }
    if (!parse())
        failExchange(QNetworkReply::ProtocolFailure,
                     QStringLiteral("Invalid HTTP answer from %1").arg(m_host));
}

void Connection::onSocketError()
{
    if (m_reply && m_socket.bytesAvailable() > 0)
        onReadyRead();
    if (!m_reply)
        return close();
    if (m_socket.error() == QAbstractSocket::RemoteHostClosedError) {
        if (m_stage == Stage::UntilClose)
            return completeExchange();
        // A kept-alive connection the bridge had closed just before the request went out: one more try on a
        // fresh connection, as long as nothing of an answer came back.
        if (!m_answerStarted && m_exchanges > 0 && !m_reply->retried) {
            Reply* reply = m_reply;
            m_reply = nullptr;
            reply->retried = true;
            close();
            return m_pool.start(reply, true);
        }
    }
    const auto [code, text] = errorForSocket(m_socket, m_host);
    failExchange(code, text);
}

std::optional<QByteArray> Connection::takeLine()
{
    const qsizetype end = m_in.indexOf('\n', m_pos);
    if (end < 0)
        return std::nullopt;
    qsizetype length = end - m_pos;
    if (length > 0 && m_in.at(end - 1) == '\r')
        --length;
    QByteArray line = m_in.mid(m_pos, length);
    m_headBytes += end + 1 - m_pos;
    m_pos = end + 1;
    return line;
}

bool Connection::parse()
{
    while (m_reply) {
        switch (m_stage) {
        case Stage::StatusLine:
        case Stage::Headers:
        case Stage::ChunkSize:
        case Stage::ChunkEnd:
        case Stage::Trailers: {
            const std::optional<QByteArray> line = takeLine();
            if (m_headBytes > maxHeadBytes || (!line && m_headBytes + m_in.size() - m_pos > maxHeadBytes))
                return false;
            if (!line)
                return true;
            if (m_stage == Stage::StatusLine) {
                // "HTTP/1.1 200 OK"
                if (!line->startsWith("HTTP/1.") || line->size() < 12 || line->at(8) != ' ')
                    return false;
                bool ok = false;
                m_status = line->mid(9, 3).toInt(&ok);
                if (!ok || m_status < 100 || (line->size() > 12 && line->at(12) != ' '))
                    return false;
                m_http10 = line->at(7) == '0';
                m_reason = line->mid(13);
                m_stage = Stage::Headers;
            } else if (m_stage == Stage::Headers) {
                if (line->isEmpty()) {
                    if (!headDone())
                        return false;
                    continue;
                }
                const qsizetype colon = line->indexOf(':');
                if (colon <= 0 || line->front() == ' ' || line->front() == '\t')
                    return false;
                m_headers.append({line->left(colon).trimmed(), line->mid(colon + 1).trimmed()});
            } else if (m_stage == Stage::ChunkSize) {
                bool ok = false;
                const qsizetype extension = line->indexOf(';');
                m_remaining = (extension < 0 ? *line : line->left(extension)).trimmed().toLongLong(&ok, 16);
                if (!ok || m_remaining < 0)
                    return false;
                m_stage = m_remaining == 0 ? Stage::Trailers : Stage::ChunkData;
            } else if (m_stage == Stage::ChunkEnd) {
                if (!line->isEmpty())
                    return false;
                m_stage = Stage::ChunkSize;
            } else if (line->isEmpty()) {
                completeExchange();
            }
            break;
        }
        case Stage::FixedBody:
        case Stage::ChunkData: {
            if (m_pos == m_in.size())
                return true;
            deliverBody(m_remaining);
            if (!m_reply)
                return true;
            if (m_remaining == 0) {
                if (m_stage == Stage::ChunkData)
                    m_stage = Stage::ChunkEnd;
                else
                    completeExchange();
            }
            break;
        }
        case Stage::UntilClose:
            if (m_pos < m_in.size())
                deliverBody(m_in.size() - m_pos);
            return true;
        }
    }
    return true;
}

bool Connection::headDone()
{
    // Interim answers ("100 Continue") come before the real one.
    if (m_status < 200) {
        if (m_status == 101)
            return false;
        m_headers.clear();
        m_stage = Stage::StatusLine;
        return true;
    }
    QByteArray connection, transferEncoding;
    std::optional<qint64> contentLength;
    for (const auto& [name, value] : std::as_const(m_headers)) {
        if (name.compare("Connection", Qt::CaseInsensitive) == 0) {
            connection = value;
        } else if (name.compare("Transfer-Encoding", Qt::CaseInsensitive) == 0) {
            transferEncoding = value;
        } else if (name.compare("Content-Length", Qt::CaseInsensitive) == 0) {
            bool ok = false;
            const qint64 length = value.toLongLong(&ok);
            if (!ok || length < 0 || (contentLength && *contentLength != length))
                return false;
            contentLength = length;
        }
    }
    m_keepAlive = m_http10 ? hasToken(connection, "keep-alive") : !hasToken(connection, "close");

    const bool noBody = m_reply->method() == "HEAD" || m_status == 204 || m_status == 304;
    if (noBody) {
        m_stage = Stage::Trailers; // only to be done: completeExchange() below
    } else if (!transferEncoding.isEmpty()) {
        if (!hasToken(transferEncoding, "chunked"))
            return false;
        m_stage = Stage::ChunkSize;
    } else if (contentLength) {
        m_stage = Stage::FixedBody;
        m_remaining = *contentLength;
    } else {
        m_stage = Stage::UntilClose;
        m_keepAlive = false;
    }
    m_headBytes = 0;

    QPointer<Reply> reply = m_reply;
    reply->receiveHead(m_status, m_reason, m_headers);
    if (!reply || reply->isDone() || reply != m_reply)
        return true; // aborted on seeing the head (too large, say); parse() sees that m_reply is gone
    if (noBody || (m_stage == Stage::FixedBody && m_remaining == 0))
        completeExchange();
    return true;
}

void Connection::deliverBody(qint64 maxBytes)
{
    const qint64 n = std::min<qint64>(maxBytes, m_in.size() - m_pos);
    QByteArray chunk = m_pos == 0 && n == m_in.size() ? std::exchange(m_in, {}) : m_in.mid(m_pos, n);
    m_pos = m_in.isEmpty() ? 0 : m_pos + n;
    m_remaining -= n;
    // The reply may be aborted by what it tells (the size cap): parse() then stops.
    m_reply->receiveBody(std::move(chunk));
}

void Connection::completeExchange()
{
    Reply* reply = m_reply;
    m_reply = nullptr;
    ++m_exchanges;
    const bool leftovers = m_pos < m_in.size() || m_socket.bytesAvailable() > 0;
    m_in.clear();
    m_pos = 0;
    // Free before the reply tells its owner, who may send the next request at once.
    if (m_keepAlive && !leftovers && m_socket.state() == QAbstractSocket::ConnectedState &&
        m_pool.mayKeep(this))
        m_idleTimer.start();
    else
        close();
    reply->complete();
}

void Connection::failExchange(QNetworkReply::NetworkError code, const QString& text)
{
    Reply* reply = m_reply;
    m_reply = nullptr;
    close();
    if (reply)
        reply->fail(code, text);
}

void Connection::close()
{
    m_idleTimer.stop();
    m_socket.disconnect(this);
    m_socket.abort();
    m_reply = nullptr;
    m_pool.remove(this);
}

} // namespace plainhttp

BridgeNetworkAccess::BridgeNetworkAccess(QObject* parent)
    : QNetworkAccessManager(parent), m_pool(std::make_unique<plainhttp::ConnectionPool>(this))
{}

BridgeNetworkAccess::~BridgeNetworkAccess() = default;

bool BridgeNetworkAccess::usesProxy() const
{
    const QNetworkProxy::ProxyType type = proxy().type();
    return proxyFactory() || (type != QNetworkProxy::DefaultProxy && type != QNetworkProxy::NoProxy);
}

QNetworkReply* BridgeNetworkAccess::createRequest(Operation op, const QNetworkRequest& request,
                                                  QIODevice* body)
{
    const QUrl url = request.url();
    QByteArray method = plainhttp::methodOf(op, request);
    const bool plain = url.scheme() == u"http" && !url.host().isEmpty() && !usesProxy() &&
                       (!body || !body->isSequential()) &&
                       QList<QByteArray>{"GET", "PUT", "POST", "DELETE", "HEAD"}.contains(method);
    if (!plain)
        return QNetworkAccessManager::createRequest(op, request, body);

    auto* reply =
        new plainhttp::Reply(op, request, std::move(method), body ? body->readAll() : QByteArray(), this);
    // Like Qt's own replies, nothing happens before the caller has had the chance to connect to the reply.
    QMetaObject::invokeMethod(
        this,
        [this, reply = QPointer<plainhttp::Reply>(reply)] {
            if (reply && !reply->isDone())
                m_pool->start(reply);
        },
        Qt::QueuedConnection);
    return reply;
}
