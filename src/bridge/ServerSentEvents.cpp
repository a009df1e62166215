#include "bridge/ServerSentEvents.h"

QList<ServerSentEvent> ServerSentEvents::feed(QByteArrayView bytes)
{
    QList<ServerSentEvent> events;
    const char* const text = bytes.data();
    const qsizetype size = bytes.size();
    qsizetype at = 0;
    while (at < size && !failed()) {
        if (m_afterCarriageReturn) {
            m_afterCarriageReturn = false;
            if (text[at] == '\n') {
                ++at;
                continue;
            }
        }
        qsizetype end = at;
        while (end < size && text[end] != '\n' && text[end] != '\r')
            ++end;
        const QByteArrayView piece(text + at, end - at);
        if (m_line.size() + piece.size() > maxLineBytes) {
            fail(QStringLiteral("The event stream sent a line longer than %1 bytes.").arg(maxLineBytes));
            break;
        }
        if (end == size) {
            m_line.append(piece);
            break;
        }
        // Most lines arrive whole and are read where they lie.
        if (m_line.isEmpty()) {
            takeLine(piece, events);
        } else {
            m_line.append(piece);
            takeLine(m_line, events);
            m_line.clear();
        }
        m_afterCarriageReturn = text[end] == '\r';
        at = end + 1;
    }
    return events;
}

void ServerSentEvents::takeLine(QByteArrayView line, QList<ServerSentEvent>& events)
{
    if (!m_started) {
        m_started = true;
        if (line.startsWith(QByteArrayView("\xEF\xBB\xBF")))
            line = line.sliced(3);
    }
    if (line.isEmpty()) {
        if (m_hasData)
            events.append(ServerSentEvent{m_lastEventId, m_event, m_data});
        m_data.clear();
        m_event.clear();
        m_hasData = false;
        return;
    }
    if (line.front() == ':') {
        ++m_comments;
        return;
    }
    const qsizetype colon = line.indexOf(':');
    const QByteArrayView field = colon < 0 ? line : line.first(colon);
    QByteArrayView value = colon < 0 ? QByteArrayView() : line.sliced(colon + 1);
    if (value.startsWith(' '))
        value = value.sliced(1);

    if (field == "data") {
        if (m_data.size() + (m_hasData ? 1 : 0) + value.size() > maxEventBytes) {
            fail(QStringLiteral("The event stream sent an event with more than %1 bytes of data.")
                     .arg(maxEventBytes));
            return;
        }
        if (m_hasData)
            m_data.append('\n');
        m_data.append(value);
        m_hasData = true;
    } else if (field == "event") {
        m_event = value.toByteArray();
    } else if (field == "id") {
        if (!value.contains('\0'))
            m_lastEventId = value.toByteArray();
    }
    // "retry" and unknown fields are left alone.
}

void ServerSentEvents::fail(QString problem)
{
    m_problem = std::move(problem);
    // Nothing more is read, so nothing kept is needed.
    m_line.clear();
    m_data.clear();
    m_event.clear();
}
