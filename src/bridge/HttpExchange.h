#pragma once

#include <QByteArray>
#include <QNetworkRequest>

#include <chrono>
#include <functional>

class QNetworkAccessManager;

/// What came back from one HTTP request to a bridge or a web service.
struct HttpResult
{
    /// No answer at all: refused, unreachable, timed out, dropped. An HTTP error status is still an answer.
    bool transportFailed = false;
    /// The answer grew past the size cap and was cut off; its body is empty.
    bool tooLarge = false;
    int status = 0;
    QByteArray body;
};

/// Answers bigger than this are refused: nothing a bridge or the discovery service sends comes near it, and
/// a hostile answer must not be read into memory.
inline constexpr qint64 maxAnswerBytes = 16 * 1024 * 1024;

/// Sends one request and calls `done` exactly once, on the thread of `network` (the main thread). The
/// time-out counts time without any data, like the bridge's own clients do.
void sendHttpRequest(QNetworkAccessManager& network, QNetworkRequest request, const QByteArray& method,
                     const QByteArray& body, std::chrono::milliseconds timeout,
                     std::function<void(const HttpResult&)> done);
