#pragma once

#include "CtlArguments.h"
#include "CtlBridge.h"
#include "SignalWatcher.h"

#include "bridge/BridgeEvents.h"
#include "bridge/ResourceFetch.h"

#include <QObject>

#include <memory>
#include <vector>

class BridgeEventStream;
class BridgeNetwork;

/// `glowdeckctl watch`: follows the event stream of every paired bridge (or of the one picked) and prints
/// every change of a lamp or room as it arrives, one line each (or one JSON object a line, with its
/// "bridge_id"), flushed at once for the scripts and status bars that read it line by line. The lamps' and
/// rooms' names come from one read of both lists at the start, read again whenever an event says they
/// changed. Runs until SIGINT or SIGTERM and then exits 0, or 1 when a bridge could not be watched; a stream
/// that drops is said on standard error and opened again. A bridge that has no stream, is reached over plain
/// HTTP or has no key is said at once; the run fails at once when that leaves none.
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
    /// One bridge watched: its stream and the names of its lamps and rooms.
    struct Watched;

    void onReached(Watched& bridge);
    /// Reads the names of the lamps and/or rooms afresh; the stream opens once the first names of both are
    /// in.
    void readNames(Watched& bridge, bool lights, bool rooms);
    void onLights(Watched& bridge, const LightsResult& result);
    void onRooms(Watched& bridge, const GroupsResult& result);
    /// One list of names is in (or failed: `failure`, empty when the read printed its own message).
    void onNamesRead(Watched& bridge, bool ok, const QString& failure);
    void onConnected(Watched& bridge);
    void onChanges(Watched& bridge, const BridgeEventBatch& batch);
    void onDisconnected(Watched& bridge, const QString& reason);
    void onUnavailable(Watched& bridge, const QString& reason);
    /// `bridge` cannot be watched (the reason is printed); the run ends when none is left.
    void fail(Watched& bridge);
    void printLine(const Watched& bridge, const QString& text, QByteArray json);
    void finish(int exitStatus);

    CtlInvocation m_invocation;
    std::unique_ptr<BridgeNetwork> m_network;
    std::vector<std::unique_ptr<Watched>> m_bridges;
    SignalWatcher m_signals;
    bool m_failed = false; ///< a bridge could not be watched
    bool m_finished = false;
};
