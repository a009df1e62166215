#include "SimulatedEventStream.h"

#include "SimulatedHome.h"
#include "SimulatorHttpConnection.h"

#include <QDateTime>
#include <QJsonDocument>

#include <iterator>

namespace {

constexpr int DefaultKeepAliveMs = 10'000;

// What a broken bridge, a proxy or a cut line may hand a client instead of an event, one after another.
const char* const MalformedEvents[] = {
    "data: [{\"type\":\"update\",\"data\":[{\n\n",
    "data: <html><body>Internal error</body></html>\n\n",
    "data: {\"type\":\"update\",\"data\":\"not a list\"}\n\n",
    "data: "
    "[{\"type\":\"update\",\"data\":[{\"id_v1\":\"/lights/1\",\"type\":\"light\",\"on\":{\"on\":\"yes\"},"
    "\"dimming\":{\"brightness\":\"bright\"}}]}]\n\n",
    "data: [{\"creationtime\":\n data: 17}]\nid\n:\n\n",
    "data: \x01\xff\xfe\n\n",
};

} // namespace

SimulatedEventStream::SimulatedEventStream(const SimulatedHome& home, QObject* parent)
    : QObject(parent), m_home(home)
{
    m_keepAlive.setInterval(DefaultKeepAliveMs);
    connect(&m_keepAlive, &QTimer::timeout, this, &SimulatedEventStream::sendKeepAlive);
    m_merge.setSingleShot(true);
    connect(&m_merge, &QTimer::timeout, this, &SimulatedEventStream::flush);
}

SimulatedEventStream::~SimulatedEventStream()
{
    for (const QPointer<SimulatorHttpConnection>& listener : std::as_const(m_listeners)) {
        if (listener)
            disconnect(listener, nullptr, this, nullptr);
    }
}

void SimulatedEventStream::open(SimulatorHttpConnection* connection)
{
    connection->respondStreaming(200, "text/event-stream",
                                 {{"Cache-Control", "no-cache"}, {"Access-Control-Allow-Origin", "*"}});
    if (!connection->isStreaming())
        return; // a HEAD request, or a client that left meanwhile
    if (listeners() == 0) {
        // Nobody heard of the changes so far: the first listener starts from the home as it is.
        m_announced = SimulatedResources::render(m_home);
        m_keepAlive.start();
    }
    m_listeners.append(connection);
    connect(connection, &SimulatorHttpConnection::closed, this, &SimulatedEventStream::onListenerClosed);
    connection->writeStream(": hi\n\n");
    if (m_lifetimeMs > 0)
        QTimer::singleShot(m_lifetimeMs, connection, [connection] { connection->endStream(); });
}

void SimulatedEventStream::onListenerClosed()
{
    m_listeners.removeIf([](const QPointer<SimulatorHttpConnection>& listener) {
        return !listener || !listener->isStreaming();
    });
    if (m_listeners.isEmpty()) {
        m_keepAlive.stop();
        m_merge.stop();
    }
}

int SimulatedEventStream::listeners() const
{
    return int(std::count_if(m_listeners.begin(), m_listeners.end(),
                             [](const QPointer<SimulatorHttpConnection>& listener) {
                                 return listener && listener->isStreaming();
                             }));
}

void SimulatedEventStream::setKeepAliveInterval(int milliseconds)
{
    m_keepAlive.setInterval(std::max(1, milliseconds));
}

void SimulatedEventStream::homeChanged()
{
    // A timer that runs already is not restarted: a busy home must not hold its events back for ever.
    if (listeners() > 0 && !m_merge.isActive())
        m_merge.start(m_mergeMs);
}

void SimulatedEventStream::rebase()
{
    m_merge.stop();
    m_announced = SimulatedResources::render(m_home);
}

void SimulatedEventStream::flush()
{
    if (listeners() == 0)
        return;
    SimulatedResources::List now = SimulatedResources::render(m_home);
    const QJsonArray containers = SimulatedResources::changes(
        m_announced, now, QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ssZ")));
    m_announced = std::move(now);
    if (containers.isEmpty())
        return;
    switch (m_content) {
    case Content::Events:
        sendToAll(event(QJsonDocument(containers).toJson(QJsonDocument::Compact)));
        break;
    case Content::Nothing:
        break;
    case Content::Malformed:
        sendToAll(MalformedEvents[m_nextMalformed]);
        m_nextMalformed = (m_nextMalformed + 1) % int(std::size(MalformedEvents));
        break;
    }
}

QByteArray SimulatedEventStream::event(const QByteArray& data)
{
    const qint64 second = QDateTime::currentSecsSinceEpoch();
    if (second != m_eventSecond) {
        m_eventSecond = second;
        m_eventCounter = 0;
    }
    return "id: " + QByteArray::number(second) + ':' + QByteArray::number(m_eventCounter++) +
           "\ndata: " + data + "\n\n";
}

void SimulatedEventStream::sendKeepAlive()
{
    sendToAll(": keep-alive\n\n");
}

void SimulatedEventStream::sendToAll(const QByteArray& text)
{
    // A copy: a write may find a listener gone, which changes the list.
    const QList<QPointer<SimulatorHttpConnection>> listeners = m_listeners;
    for (const QPointer<SimulatorHttpConnection>& listener : listeners) {
        if (listener)
            listener->writeStream(text);
    }
}

void SimulatedEventStream::dropAll()
{
    const QList<QPointer<SimulatorHttpConnection>> listeners = m_listeners;
    for (const QPointer<SimulatorHttpConnection>& listener : listeners) {
        if (listener)
            listener->abortConnection();
    }
}

void SimulatedEventStream::endAll()
{
    const QList<QPointer<SimulatorHttpConnection>> listeners = m_listeners;
    for (const QPointer<SimulatorHttpConnection>& listener : listeners) {
        if (listener)
            listener->endStream();
    }
}
