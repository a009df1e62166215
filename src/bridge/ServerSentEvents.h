#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

/// One complete event of a Server-Sent Events stream.
struct ServerSentEvent
{
    /// The last event id in force when the event was complete (the stream's, not necessarily the event's
    /// own).
    QByteArray id;
    /// The event's type; empty for the default type ("message").
    QByteArray event;
    /// The event's data lines, joined with '\n'.
    QByteArray data;

    bool operator==(const ServerSentEvent&) const = default;
};

/// Reads a Server-Sent Events stream as its bytes arrive, in pieces cut anywhere (within a line, between the
/// '\r' and '\n' of one line ending). Follows the framing browsers use: lines end in "\n", "\r\n" or "\r";
/// "field: value" loses one space after the colon; a line without a colon is a field with no value; lines
/// starting with ':' are comments; an empty line completes the event, unless no data line came since the
/// last one. "retry" is not honoured: the caller keeps its own pace of reconnecting.
///
/// Memory stays bounded whatever the peer sends: a line longer than `maxLineBytes`, or an event with more
/// than `maxEventBytes` of data, fails the parser, which takes nothing more; the stream must be dropped.
class ServerSentEvents final
{
public:
    /// Far more than the bridge's largest event line (its changes of one second merged into one line).
    static constexpr qsizetype maxLineBytes = 1024 * 1024;
    static constexpr qsizetype maxEventBytes = 4 * 1024 * 1024;

    /// Takes the next bytes of the stream and returns the events they complete, in order. Events completed
    /// before a failure within `bytes` are returned; nothing after it is read.
    QList<ServerSentEvent> feed(QByteArrayView bytes);

    /// The stream broke a limit: nothing more is taken.
    bool failed() const { return !m_problem.isEmpty(); }
    /// Why it failed, as a sentence; empty while it has not.
    QString problem() const { return m_problem; }
    /// The newest event id the stream gave; ids holding a NUL are ignored, as browsers do.
    QByteArray lastEventId() const { return m_lastEventId; }
    /// Comment lines so far: a bridge sends one to greet and some to keep a quiet stream alive.
    qint64 commentsSeen() const { return m_comments; }

private:
    /// Handles one complete line, without its ending.
    void takeLine(QByteArrayView line, QList<ServerSentEvent>& events);
    void fail(QString problem);

    QByteArray m_line; // the unfinished line
    QByteArray m_data;
    QByteArray m_event;
    QByteArray m_lastEventId;
    bool m_hasData = false;
    bool m_afterCarriageReturn = false; // a '\n' right after it belongs to the same line ending
    bool m_started = false;             // past the byte order mark, if there was one
    qint64 m_comments = 0;
    QString m_problem;
};
