#pragma once

#include "bridge/BridgeNetwork.h"

#include <QByteArray>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>
#include <QString>

#include <chrono>
#include <functional>

class QNetworkAccessManager;
class QNetworkReply;

/// What came back from one HTTP request to a bridge or a web service.
struct HttpResult
{
    /// No answer at all: refused, unreachable, timed out, dropped, aborted. An HTTP error status is still an
    /// answer.
    bool transportFailed = false;
    /// Among the transport failures: given up for lack of data, or because the whole exchange took too long.
    bool timedOut = false;
    /// The answer grew past the size cap and was cut off; its body is empty.
    bool tooLarge = false;
    int status = 0;
    QByteArray body;
    /// Why there is no answer, in the network library's words (or the refusal below); empty when there is
    /// one.
    QString error;
    /// The network library's code for the failure: a refused connection and a peer that speaks no TLS are
    /// told apart from the rest when choosing between HTTPS and plain HTTP.
    QNetworkReply::NetworkError networkError = QNetworkReply::NoError;
    /// The bridge's certificate was refused (BridgeNetwork): why, as a sentence. Nothing was sent.
    QString refusal;
    /// Where a redirection (3xx) points, as sent.
    QByteArray location;
    /// What the bridge presented, for an exchange over HTTPS with a bridge.
    BridgeCertificate certificate;
};

/// Answers bigger than this are refused: nothing a bridge or the discovery service sends comes near it, and
/// a hostile answer must not be read into memory.
inline constexpr qint64 maxAnswerBytes = 16 * 1024 * 1024;

/// How long one exchange may take. `idle` counts time without any data moving, like the bridge's own clients
/// do; `total` bounds the whole exchange, so that a peer sending a byte now and then cannot hold it open.
struct HttpTimeouts
{
    std::chrono::milliseconds idle;
    std::chrono::milliseconds total;
};

/// No exchange of this program waits longer than this, whatever the peer does.
inline constexpr std::chrono::milliseconds longestExchange{15000};

/// Sends one request and calls `done` exactly once, on the thread of `network` (the main thread), unless the
/// network manager goes first. Returns the reply, which the caller may abort (then `done` hears of a
/// transport failure); it deletes itself after `done`.
QPointer<QNetworkReply> sendHttpRequest(QNetworkAccessManager& network, QNetworkRequest request,
                                        const QByteArray& method, const QByteArray& body,
                                        HttpTimeouts timeouts, std::function<void(const HttpResult&)> done);
