#include "connection/BridgeEventStream.h"

#include "bridge/BridgeNetwork.h"
#include "bridge/BridgeUrl.h"
#include "model/BridgeAddress.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <algorithm>

namespace {

/// What is read from the reply at a time. Qt buffers no more than a few of these before it stops reading
/// from the socket, so a peer that floods the stream waits for the parser, which bounds what it keeps.
constexpr qint64 readChunk = 64 * 1024;

/// Whether `key` can be sent as a header value as it is: printable ASCII, no spaces or line breaks.
bool isHeaderSafe(const QString& key)
{
    return !key.isEmpty() && std::all_of(key.begin(), key.end(),
                                         [](QChar c) { return c.unicode() > 0x20 && c.unicode() < 0x7f; });
}

bool isEventStream(const QByteArray& contentType)
{
    const qsizetype semicolon = contentType.indexOf(';');
    return contentType.first(semicolon < 0 ? contentType.size() : semicolon)
               .trimmed()
               .compare("text/event-stream", Qt::CaseInsensitive) == 0;
}

/// A header value for a sentence: what the peer wrote, within reason.
QString printable(const QByteArray& text)
{
    QString result;
    for (const char c : text.left(60))
        result += c >= 0x20 && c < 0x7f ? QChar::fromLatin1(c) : QChar(u'?');
    return result;
}

QString seconds(std::chrono::milliseconds interval)
{
    return QString::number(double(interval.count()) / 1000.0);
}

} // namespace

BridgeEventStream::BridgeEventStream(QNetworkAccessManager& network, QObject* parent)
    : QObject(parent), m_network(network)
{
    m_retry.setSingleShot(true);
    m_watchdog.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &BridgeEventStream::open);
    connect(&m_watchdog, &QTimer::timeout, this, &BridgeEventStream::onWatchdog);
}

BridgeEventStream::~BridgeEventStream()
{
    drop();
}

void BridgeEventStream::start(const QString& bridgeIP, const QString& apiKey, const BridgeIdentity& identity)
{
    // Every connect of the program may call this; a stream that is up (or on its way) is left as it is.
    if (m_url.isValid() && m_url == bridgeEventStreamUrl(bridgeIP) && m_key == apiKey.toLatin1() &&
        m_identity == identity)
        return;
    stop();
    const std::optional<BridgeAddress> address = BridgeAddress::parse(bridgeIP);
    if (!address || address->scheme != BridgeAddress::https) {
        // The key travels with every request of the stream; the bridge offers it over HTTPS only anyway.
        refuseLater(address && address->scheme == BridgeAddress::http
                        ? QStringLiteral("The bridge at %1 is reached over plain HTTP; its event stream is "
                                         "only used over HTTPS.")
                              .arg(address->hostAndPort())
                        : QStringLiteral("The bridge's address names no HTTPS transport."));
        return;
    }
    if (!isHeaderSafe(apiKey)) {
        refuseLater(QStringLiteral("The bridge's key cannot be sent in a request header."));
        return;
    }
    m_url = bridgeEventStreamUrl(bridgeIP);
    if (!m_url.isValid()) {
        refuseLater(QStringLiteral("The bridge's address cannot form the event stream's address."));
        return;
    }
    m_key = apiKey.toLatin1();
    m_identity = identity;
    open();
}

void BridgeEventStream::stop()
{
    drop();
    m_retry.stop();
    m_url = QUrl();
    m_key.clear();
    m_failures = 0;
}

void BridgeEventStream::refuseLater(const QString& reason)
{
    const quint64 attempt = m_attempt;
    QMetaObject::invokeMethod(
        this,
        [this, attempt, reason] {
            if (attempt == m_attempt)
                emit unavailable(reason);
        },
        Qt::QueuedConnection);
}

void BridgeEventStream::open()
{
    drop();
    if (m_leaving) {
        // The attempt before goes first, its reply destroyed, so that nothing uses the connection let go.
        const quint64 attempt = m_attempt;
        connect(
            m_leaving, &QObject::destroyed, this,
            [this, attempt] {
                if (attempt == m_attempt)
                    open();
            },
            Qt::QueuedConnection);
        return;
    }
    // A manager of the stream's own keeps only the stream's connection, and every new one leaves its TLS
    // session behind in what Qt keeps of the old: a new attempt starts afresh. On a manager shared with
    // other requests this does nothing while one of them is under way.
    if (auto* network = qobject_cast<BridgeNetwork*>(&m_network))
        network->releaseConnections();
    QNetworkRequest request(m_url);
    BridgeNetwork::prepare(request, m_identity);
    request.setRawHeader(QByteArrayLiteral("hue-application-key"), m_key);
    request.setRawHeader(QByteArrayLiteral("Accept"), QByteArrayLiteral("text/event-stream"));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);

    m_parser.emplace();
    m_headJudged = false;
    QNetworkReply* reply = m_network.get(request);
    m_reply = reply;
    reply->setReadBufferSize(4 * readChunk);
    connect(reply, &QNetworkReply::metaDataChanged, this, [this] { onHead(); });
    connect(reply, &QNetworkReply::readyRead, this, &BridgeEventStream::onReadyRead);
    connect(reply, &QNetworkReply::finished, this, &BridgeEventStream::onFinished);
    m_watchdog.start(m_timings.head);
}

bool BridgeEventStream::onHead()
{
    if (m_headJudged)
        return m_live;
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status == 0)
        return false; // no head yet
    m_headJudged = true;
    const QByteArray contentType = m_reply->rawHeader(QByteArrayLiteral("Content-Type"));
    if (status == 200 && isEventStream(contentType)) {
        m_live = true;
        m_upSince.start();
        m_watchdog.start(m_timings.silence);
        emit connected();
        return m_live; // a handler may have stopped it
    }
    // Answers that will not change by asking again soon: bridges without the stream answer 404, and a key
    // the bridge does not know stays unknown until the program pairs again (and starts the stream anew).
    if (status == 404)
        end(Ending::unavailable, QStringLiteral("The bridge has no event stream (HTTP 404)."));
    else if (status == 401 || status == 403)
        end(Ending::unavailable,
            QStringLiteral("The bridge refused the key for its event stream (HTTP %1).").arg(status));
    else if (status == 200)
        end(Ending::unavailable, QStringLiteral("The bridge answered with \"%1\" instead of an event stream.")
                                     .arg(printable(contentType)));
    else
        end(Ending::disconnected,
            QStringLiteral("The bridge answered the event stream's request with HTTP %1.").arg(status));
    return false;
}

void BridgeEventStream::onReadyRead()
{
    if (!m_reply || !onHead())
        return;
    const QPointer<BridgeEventStream> self(this);
    const quint64 attempt = m_attempt;
    while (m_reply->bytesAvailable() > 0) {
        const QByteArray bytes = m_reply->read(readChunk);
        // Any byte counts as life, a keep-alive comment or half an event.
        m_watchdog.start(m_timings.silence);
        for (const ServerSentEvent& event : m_parser->feed(bytes)) {
            QString problem;
            const std::optional<BridgeEventBatch> batch = decodeBridgeEvents(event.data, &problem);
            if (!batch) {
                end(Ending::disconnected,
                    QStringLiteral("The bridge sent an unreadable event: %1").arg(problem), true);
                return;
            }
            if (batch->isEmpty() && batch->problems.isEmpty())
                continue;
            emit changes(*batch);
            if (!self || attempt != m_attempt)
                return;
        }
        if (m_parser->failed()) {
            end(Ending::disconnected, m_parser->problem(), true);
            return;
        }
    }
}

void BridgeEventStream::onFinished()
{
    // The last bytes may complete an event, or the head may come only with the end.
    const QPointer<BridgeEventStream> self(this);
    const quint64 attempt = m_attempt;
    onReadyRead();
    if (!self || attempt != m_attempt || !m_reply)
        return;
    const QString refusal = BridgeNetwork::refusalOf(m_reply);
    if (!refusal.isEmpty())
        end(Ending::disconnected, refusal);
    else if (m_reply->error() != QNetworkReply::NoError)
        end(Ending::disconnected, QStringLiteral("The event stream failed: %1").arg(m_reply->errorString()));
    else
        end(Ending::disconnected, QStringLiteral("The bridge ended its event stream."));
}

void BridgeEventStream::onWatchdog()
{
    if (m_live)
        end(Ending::disconnected,
            QStringLiteral("The event stream sent nothing for %1 s.").arg(seconds(m_timings.silence)));
    else
        end(Ending::disconnected, QStringLiteral("The bridge did not answer the event stream's request "
                                                 "within %1 s.")
                                      .arg(seconds(m_timings.head)));
}

void BridgeEventStream::end(Ending ending, const QString& reason, bool broken)
{
    // Only a stream that stayed up for a while was no failure. One that ends soon after opening was, even
    // when it brought an event, and so was one that broke its framing or sent nonsense, however long it ran:
    // a bridge doing either every time would otherwise be asked every second, and read in full each time.
    const bool worked = m_live && !broken && m_upSince.elapsed() >= m_timings.stableAfter.count();
    drop();
    if (ending == Ending::unavailable) {
        m_failures = 0;
        m_retry.start(m_timings.longestRetry);
        emit unavailable(reason);
        return;
    }
    m_failures = worked ? 1 : m_failures + 1;
    // Doubling from the first wait; past six doublings the longest wait is reached for any sensible setting.
    const int doublings = std::min(m_failures - 1, 16);
    m_retry.start(
        std::min<std::chrono::milliseconds>(m_timings.firstRetry * (1 << doublings), m_timings.longestRetry));
    emit disconnected(reason);
}

void BridgeEventStream::drop()
{
    ++m_attempt;
    m_watchdog.stop();
    m_live = false;
    m_parser.reset();
    if (QNetworkReply* reply = m_reply) {
        m_reply = nullptr;
        m_leaving = reply;
        disconnect(reply, nullptr, this, nullptr);
        // Dropped from within the reply's own error or head signal (a 404), an abort now would report a
        // second error to it: end it once control is back in the event loop.
        QTimer::singleShot(0, reply, [reply] {
            if (reply->isRunning())
                reply->abort();
            reply->deleteLater();
        });
    }
}
