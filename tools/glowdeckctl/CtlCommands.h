#pragma once

#include "CtlArguments.h"
#include "CtlBridge.h"
#include "CtlOutput.h"

#include "bridge/ResourceFetch.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>
#include <vector>

class ActionQueue;
class BridgeLink;
struct ActionQueueItem;
struct WriteOutcome;
class BridgeCommands;
class BridgeSession;
class BridgeNetwork;

/// Runs one checked list or change command against the paired bridges, one session each, side by side: reads
/// the list it needs afresh from each, then prints them or sends the change through the same BridgeCommands
/// and ActionQueue as the tray menu, waits for the bridge's answer to every change, and reports the status: a
/// bridge that sent no list, a change refused, answered with an HTTP error, not answered in time or not
/// answered at all fails the run. A change goes to the one bridge that has the lamp, room or scene.
class CtlCommands final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CtlCommands)

public:
    /// A run that makes no progress for this long is given up, so a silent bridge cannot keep it waiting.
    static constexpr std::chrono::seconds patience{15};

    explicit CtlCommands(CtlInvocation invocation, QObject* parent = nullptr);
    ~CtlCommands() override;

    /// Starts the command; finished() follows exactly once. Call it from the running event loop.
    void start();

Q_SIGNALS:
    /// A CtlExitStatus: done, or failed with the reason already printed.
    void finished(int exitStatus);

private:
    /// One bridge of the run: its session and the lists read from it.
    struct Served;

    void fetchRecords(Served& served);
    /// The whole home, read over the current interface in one request.
    void onHome(Served& served, const HomeResult& result);
    void onLights(Served& served, const LightsResult& result);
    void onGroups(Served& served, const GroupsResult& result);
    void onScenes(Served& served, const ScenesResult& result);
    /// One bridge's lists are in, or it failed; the command goes on once every bridge is done.
    void onRead(Served& served);
    void onAllRead();
    /// Prints the records of every bridge that answered, as one table or one JSON array.
    void printLists();
    /// The lists read from `served`, as the output and the lookup take them.
    static CtlHome homeOf(const Served& served);
    /// Sends the change of `light`, `room` or `scene` to the one bridge that has the record it names.
    void changeTarget();
    void changeLight(Served& served, const HueLight& light);
    void changeGroup(Served& served, const HueGroup& group);
    /// all-on, all-off and all-off --in: one request per bridge.
    void switchAll();
    /// Waits for the queues of `commanded` to send what the commands just handed to them, and for the
    /// answers.
    void awaitQueues(const QList<Served*>& commanded);
    void onAnswered(const Served& served, const ActionQueueItem& item, const WriteOutcome& outcome,
                    bool again);
    void onDrained();
    /// Reports a failed list read.
    template <typename Result>
    void failRead(Served& served, const Result& result);
    void giveUp();
    void finish(int exitStatus);

    CtlInvocation m_invocation;
    std::unique_ptr<BridgeNetwork> m_network;
    std::vector<std::unique_ptr<Served>> m_bridges;
    int m_reading = 0;         ///< bridges whose lists are still to come
    int m_draining = 0;        ///< queues still sending or waiting for answers
    bool m_readFailed = false; ///< a bridge was not reached or sent no list
    QTimer m_watchdog;
    QStringList m_failures; ///< one line per distinct failed change
    QString m_afterDrain;   ///< printed once every change went through
    bool m_finished = false;
};
