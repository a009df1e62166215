#pragma once

#include "CtlArguments.h"
#include "CtlBridge.h"
#include "SignalWatcher.h"

#include "bridge/BridgeEvents.h"
#include "bridge/ResourceFetch.h"

#include <QHash>
#include <QObject>

#include <memory>

class BridgeEventStream;
class BridgeNetwork;

/// `glowdeckctl watch`: follows the bridge's event stream and prints every change of a lamp or room as it
/// arrives, one line each (or one JSON object a line), flushed at once for the scripts and status bars that
/// read it line by line. The lamps' and rooms' names come from one read of both lists at the start, read
/// again whenever an event says they changed. Runs until SIGINT or SIGTERM and then exits 0; a stream that
/// drops is said on standard error and opened again. Fails at once when the bridge has no stream, is reached
/// over plain HTTP, or there is no key.
class CtlWatch final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CtlWatch)

public:
    explicit CtlWatch(CtlInvocation invocation, QObject* parent = nullptr);
    ~CtlWatch() override;

    /// Starts watching; finished() follows exactly once, on a signal or a failure. Call it from the running
    /// event loop.
    void start();

Q_SIGNALS:
    /// A CtlExitStatus: done (stopped by a signal), or failed with the reason already printed.
    void finished(int exitStatus);

private:
    void onReached();
    /// Reads the names of the lamps and/or rooms afresh; the stream opens once the first names of both are
    /// in.
    void readNames(bool lights, bool rooms);
    void onLights(const LightsResult& result);
    void onRooms(const GroupsResult& result);
    /// One list of names is in (or failed: `failure`, empty when the read printed its own message).
    void onNamesRead(bool ok, const QString& failure);
    void onConnected();
    void onChanges(const BridgeEventBatch& batch);
    void onDisconnected(const QString& reason);
    void onUnavailable(const QString& reason);
    void printLine(const QString& text, const QByteArray& json);
    void finish(int exitStatus);

    CtlInvocation m_invocation;
    std::unique_ptr<BridgeNetwork> m_network;
    std::unique_ptr<CtlBridge> m_bridge;
    std::unique_ptr<BridgeEventStream> m_stream;
    SignalWatcher m_signals;
    QHash<QString, QString> m_lightNames; ///< by lamp id
    QHash<QString, QString> m_roomNames;  ///< by group id, rooms and zones
    int m_firstReads = 0;                 ///< lists of the first read still to come
    bool m_opened = false;                ///< the stream was answered once
    bool m_lost = false;                  ///< the stream ended and is not back yet
    bool m_finished = false;
};
