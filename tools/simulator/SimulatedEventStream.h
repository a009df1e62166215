#pragma once

#include "SimulatedResources.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

class SimulatedHome;
class SimulatorHttpConnection;

/// The listeners of a bridge's event stream (Server-Sent Events) and what they are told: every change of
/// the home since the last event, found by comparing the home with what was announced last. Changes are
/// collected until the next turn of the event loop (or for the merge interval), so that the changes of one
/// request arrive together in one event.
class SimulatedEventStream final : public QObject
{
    Q_OBJECT
public:
    /// What the stream sends besides its greeting and keep-alives.
    enum class Content
    {
        Events,    ///< the changes
        Nothing,   ///< keep-alives only
        Malformed, ///< something broken in place of each event
    };

    /// Reads @p home, which must outlive the stream.
    explicit SimulatedEventStream(const SimulatedHome& home, QObject* parent = nullptr);
    ~SimulatedEventStream() override;

    /// Answers the request waiting on @p connection with the stream, and keeps it as a listener.
    void open(SimulatorHttpConnection* connection);
    /// The home changed: tell the listeners soon.
    void homeChanged();
    /// Takes the home as it is now as announced, without an event (its ids changed with the bridge id).
    void rebase();
    /// Closes every stream at once, without an end.
    void dropAll();
    /// Ends every stream properly.
    void endAll();
    int listeners() const;

    void setContent(Content content) { m_content = content; }
    /// 0: streams last until a side closes them. Applies to streams opened afterwards.
    void setLifetime(int milliseconds) { m_lifetimeMs = std::max(0, milliseconds); }
    void setKeepAliveInterval(int milliseconds);
    void setMergeInterval(int milliseconds) { m_mergeMs = std::max(0, milliseconds); }

private:
    void onListenerClosed();
    void flush();
    void sendKeepAlive();
    void sendToAll(const QByteArray& text);
    /// "id: <unix seconds>:<counter of that second>" and the data lines of one event.
    QByteArray event(const QByteArray& data);

    const SimulatedHome& m_home;
    QList<QPointer<SimulatorHttpConnection>> m_listeners;
    SimulatedResources::List m_announced;
    QTimer m_keepAlive;
    QTimer m_merge;
    Content m_content = Content::Events;
    int m_lifetimeMs = 0;
    int m_mergeMs = 0;
    qint64 m_eventSecond = 0;
    int m_eventCounter = 0;
    int m_nextMalformed = 0;
};
