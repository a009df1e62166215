#pragma once

#include "bridge/BridgeEvents.h"
#include "bridge/ServerSentEvents.h"
#include "model/BridgeIdentity.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <optional>

class QNetworkAccessManager;
class QNetworkReply;

/// How patient the event stream is. The defaults are the program's; tests shorten them.
struct EventStreamTimings
{
    /// The wait before the first attempt after a failure; each further failure in a row doubles it.
    std::chrono::milliseconds firstRetry{1000};
    /// The longest wait between attempts, and the pace of asking a bridge that has no stream.
    std::chrono::milliseconds longestRetry{60000};
    /// A stream that stayed up this long worked: after it ends, the waits start again at `firstRetry`.
    std::chrono::milliseconds stableAfter{30000};
    /// A stream that sends nothing at all for this long, not even a keep-alive comment, is dead.
    std::chrono::milliseconds silence{90000};
    /// The head of the answer must come this soon after the request.
    std::chrono::milliseconds head{15000};
};

/// Keeps one event stream of a bridge open ("GET /eventstream/clip/v2") and turns its events into batches of
/// changes. The request goes through the given network manager marked with the bridge's identity, so a
/// BridgeNetwork checks the bridge's certificate as for every other request; the stream is only used over
/// HTTPS, since it carries the key. Runs on the main thread. A BridgeNetwork of the stream's own lets its
/// connection go at every new attempt (`BridgeNetwork::withSameTrust`).
///
/// Every attempt that ends, other than by `stop()` or `start()`, ends in exactly one signal: `disconnected`
/// (the stream ended, broke, stayed silent, or could not be opened; another attempt follows after 1, 2, 4 …
/// at most 60 s) or `unavailable` (the bridge has no stream or refuses the key; asked again once a minute;
/// for an address without HTTPS or an unusable key, never). No event is asked for again after a gap, so
/// after `connected()` the lists must be read afresh: what changed in between is not told.
class BridgeEventStream final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BridgeEventStream)

public:
    /// `network` must outlive the stream.
    explicit BridgeEventStream(QNetworkAccessManager& network, QObject* parent = nullptr);
    ~BridgeEventStream() override;

    /// Opens the stream of the bridge at `bridgeIP` ("https://HOST[:PORT]", as the connection found it) with
    /// `apiKey`, which must prove `identity`. With the same three while it runs, nothing changes; with
    /// others, the stream open or waiting is ended first, silently.
    void start(const QString& bridgeIP, const QString& apiKey, const BridgeIdentity& identity);
    /// Ends the stream and every attempt to come, silently (sleep, quit, disconnect).
    void stop();
    /// The bridge answered with its stream and it has not ended since.
    bool isLive() const { return m_live; }

    /// Takes effect from the next attempt on.
    void setTimings(const EventStreamTimings& timings) { m_timings = timings; }

Q_SIGNALS:
    /// The bridge answered with its stream: changes arrive from now on.
    void connected();
    /// One event's changes, in the bridge's order; only events that change something or had problems.
    void changes(const BridgeEventBatch& batch);
    /// The stream ended or could not be opened (`reason`, a sentence); the next attempt is scheduled.
    void disconnected(const QString& reason);
    /// The bridge has no stream, or refuses the key for it (`reason`, a sentence).
    void unavailable(const QString& reason);

private:
    enum class Ending
    {
        disconnected, ///< said with `disconnected`, tried again after the back-off
        unavailable,  ///< said with `unavailable`, tried again at the slow end
    };

    void open();
    /// Judges the answer's head once it is there; false when the attempt ended.
    bool onHead();
    void onReadyRead();
    void onFinished();
    void onWatchdog();
    /// Ends the attempt under way, schedules the next one as `ending` says, and tells why.
    void end(Ending ending, const QString& reason, bool broken = false);
    /// Ends the attempt under way without a word.
    void drop();
    /// Says `reason` later, so that `start()` never calls back into its caller.
    void refuseLater(const QString& reason);

    QNetworkAccessManager& m_network;
    EventStreamTimings m_timings;
    QUrl m_url;
    QByteArray m_key;
    BridgeIdentity m_identity;

    QPointer<QNetworkReply> m_reply;
    QPointer<QNetworkReply> m_leaving;        // the reply of the attempt before, until it is destroyed
    std::optional<ServerSentEvents> m_parser; // one per attempt
    quint64 m_attempt = 0;                    // counts attempts started and dropped, to spot re-entry
    bool m_headJudged = false;
    bool m_live = false;
    QElapsedTimer m_upSince;
    int m_failures = 0; // attempts in a row that failed
    QTimer m_retry;
    QTimer m_watchdog; // the head's deadline, then the silence limit
};
