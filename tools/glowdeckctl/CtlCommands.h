#pragma once

#include "CtlArguments.h"
#include "CtlBridge.h"

#include "bridge/ResourceFetch.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>

class ActionQueue;
class BridgeLink;
struct ActionQueueItem;
struct WriteOutcome;
class BridgeCommands;
class BridgeSession;
class BridgeNetwork;

/// Runs one checked list or change command against the bridge: reads the list it needs afresh, then prints it
/// or sends the change through the same BridgeCommands and ActionQueue as the tray menu, waits for the
/// bridge's answer to every change, and reports the status: a change refused, answered with an HTTP error,
/// not answered in time or not answered at all fails the run.
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
    bool openSettings();
    void fetchRecords();
    void onLights(const LightsResult& result);
    void onGroups(const GroupsResult& result);
    void onScenes(const ScenesResult& result);
    void printScenes();
    void changeLight(const HueLight& light);
    void changeGroup(const HueGroup& group);
    void switchAllOff(const QList<HueLight>& lights);
    /// Waits for the queue to send what the commands just handed to it, and for the answers.
    void awaitQueue();
    void onAnswered(const ActionQueueItem& item, const WriteOutcome& outcome, bool again);
    void onDrained();
    /// Reports a failed list read.
    template <typename Result>
    void failFetch(const Result& result);
    void failUnknown(const QString& what);
    void giveUp();
    void finish(int exitStatus);

    CtlInvocation m_invocation;
    std::unique_ptr<BridgeNetwork> m_network;
    CtlBridge m_bridge;
    BridgeLink* m_settings = nullptr;         // the bridge's, once it is open
    std::unique_ptr<BridgeSession> m_session; // the bridge's, once it is open
    ActionQueue* m_queue = nullptr;
    BridgeCommands* m_commands = nullptr;
    QTimer m_watchdog;
    QStringList m_failures; ///< one line per distinct failed change
    bool m_finished = false;
};
