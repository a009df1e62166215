#pragma once

#include "bridge/ResourceFetch.h"
#include "model/BridgeInterface.h"

#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <functional>

class ActionQueue;
class BridgeLink;
struct HttpResult;
class BridgeDiscovery;
class LiveUpdates;
class BridgePairing;
class QNetworkAccessManager;

/// Which interface the bridge at `endpoint` offers, from its answer to `GET /clip/v2/resource/bridge` (sent
/// with `key`, checked against `identity`): v2 for 200, v1 over plain HTTP (asked nothing) and for any other
/// status; nothing when it did not answer or was busy (429, 503), when it is to be asked again later.
/// `done` runs once, unless `context` goes first.
void askBridgeInterface(QNetworkAccessManager& network, const QString& endpoint, const QString& key,
                        const BridgeIdentity& identity, QObject* context,
                        std::function<void(std::optional<BridgeInterface>, const HttpResult&)> done);

/// Keeps the shared state in step with the bridge: pairs when there is no key, reads lights, rooms and
/// scenes, refreshes them on a timer (every 3.5 s, or once a minute while the bridge pushes its changes over
/// its event stream), persists an address and key that have worked, and forgets the key on disconnect. Runs
/// on the main thread.
///
/// At most one read of each list is under way: a read that is still running when the next one starts (a
/// bridge that trickles its answer) is aborted first and counts as a failed connection. So a bridge that
/// heals is read afresh at the next tick.
class BridgeConnection final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BridgeConnection)

public:
    static constexpr std::chrono::milliseconds refreshInterval{3500};
    /// While the bridge pushes its changes, lights and rooms are read this often only, in case one was lost.
    static constexpr std::chrono::milliseconds safetyNetInterval{60000};
    /// A refresh right after a user action would overwrite the change the user is still making.
    static constexpr std::chrono::seconds quietAfterUserAction{3};
    /// A paired bridge that has not answered at its address this many times in a row (or answered as another
    /// bridge) is looked for elsewhere on the network, at most once per `searchInterval`.
    static constexpr int missesBeforeSearch = 3;
    static constexpr std::chrono::minutes searchInterval{1};
    /// A problem that comes back at every tick is logged at most this often, with a count.
    static constexpr std::chrono::minutes repeatsLoggedEvery{1};

    /// Reads nothing within a few seconds of the user's last change in `queue`, whose pending changes the
    /// live updates hold against the bridge's events. The event stream goes through `streamNetwork`, else
    /// through `network`.
    BridgeConnection(BridgeLink& settings, QNetworkAccessManager& network, BridgePairing& pairing,
                     const ActionQueue& queue, QNetworkAccessManager* streamNetwork = nullptr,
                     QObject* parent = nullptr);

    /// The clock behind the skip rule, the scene minutes and the searches; tests replace it.
    void setClock(std::function<QDateTime()> now) { m_now = std::move(now); }
    /// What looks for a bridge that moved (the router gave it another address); none: it is only waited for.
    void setBridgeFinder(BridgeDiscovery* finder);

    /// With a key: makes sure the bridge at `hueIP` is the one paired (its certificate, over HTTPS where it
    /// offers it), then reads all three lists, and makes sure the refresh timer runs (one timer, however
    /// often this is called). Without one: starts pairing, which connects again when it succeeds.
    void connectToBridge();
    /// Empties lights and rooms, forgets the key (also the stored one) and marks the bridge disconnected. The
    /// address, the scenes and the refresh timer are kept.
    void disconnectFromBridge();

    /// Each starts a read of its list, aborting one still under way. A light read that succeeds after failed
    /// ones (or as the first one) also reads the scenes, which otherwise wait for their quarter hour. Over
    /// the bridge's current interface each reads the whole home (`refreshHome`).
    void refreshLights();
    void refreshGroups();
    void refreshScenes();
    /// Reads lamps, rooms, zones and scenes in one request over the bridge's current interface, aborting a
    /// read still under way.
    void refreshHome();

    /// Creates the refresh timer when none runs, and opens the bridge's event stream again once it is
    /// reached.
    void startBridgeStateRefresher();
    /// Stops it and closes the event stream (on sleep and on quit).
    void stopBridgeStateRefresher();
    /// The ticks' pace: every 3.5 s, or once a minute while the bridge pushes its changes.
    std::chrono::milliseconds currentRefreshInterval() const;
    LiveUpdates& liveUpdates() const { return *m_live; }
    bool isRefreshing() const { return !m_refresher.isNull(); }

    /// One refresh tick, as the timer runs it: nothing within 3 s of the last user action; otherwise lights
    /// and rooms, and scenes too in minutes 0, 15, 30 and 45 of the hour.
    void refreshTick();

Q_SIGNALS:
    /// A light read finished and its outcome was applied (ok() tells which).
    void lightsRefreshed(const LightsResult& result);
    void groupsRefreshed(const GroupsResult& result);
    void scenesRefreshed(const ScenesResult& result);
    /// The paired bridge was found at a new address and is used there from now on, with the same key.
    void bridgeMoved(const QString& bridgeId, const QString& from, const QString& to);

private:
    /// The read of one list under way, if any.
    struct ListRead
    {
        PendingRead reply;
        quint64 started = 0;   ///< reads started so far
        quint64 answered = 0;  ///< the newest read whose answer was taken
        quint64 startedAt = 0; ///< when the newest read started, counted in reads of all lists
        /// The list changed after the read under way was sent: read it again once that one answers.
        bool again = false;

        /// Aborts the read under way (it answers as a failed connection) and numbers the next one, which is
        /// read number `order` of all lists.
        quint64 next(quint64 order);
        /// Aborts the read under way and drops the answers of every read started so far.
        void forget();
        /// Whether the answer of read `serial` is still news: a newer read may have answered first.
        bool take(quint64 serial);
        /// A read was started and has not answered yet (it may be downloading or being decoded).
        bool pending() const { return started > answered; }
    };

    /// Reaches the bridge anew (BridgeProbe) and reads the lists once it proved who it is.
    void reach();
    /// Says what was wrong with an answer that came but could not be used.
    void reportUnusableAnswer(const LightsResult& result);
    void onLights(const LightsResult& result, quint64 order);
    void onScenes(const ScenesResult& result);
    /// Reads the lists named (LiveUpdates::List) without aborting a read under way: one that is under way is
    /// followed by another once it answered, since the change may have come after the bridge answered it.
    void readAfresh(int lists);
    /// The bridge at its address proved who it is: learn which interface it offers (once per connect), read
    /// all three lists and listen to its changes.
    void onReached();
    /// Asks the bridge whether it offers the current interface: `GET /clip/v2/resource/bridge` answering 200
    /// over HTTPS. A bridge over plain HTTP, or answering 404, is read over the first one. Reads the lists
    /// once it knows.
    void learnInterface();
    /// Reads every list over the interface learnt.
    void readEverything();
    void onHome(const HomeResult& result, quint64 order);
    bool overClip() const;
    /// The bridge did not answer at its address, or answered as another bridge.
    void onMissed();
    void searchForBridge();
    /// Logs `line`; the same line again within a minute is only counted, and said once the minute is over
    /// with how often it came ("… (18 times in the last minute)"), so that a bridge failing the same way at
    /// every tick does not fill the log.
    void logRepeating(const QString& line);
    /// Says how often the line logged last came again without being logged, if it did.
    void flushRepeats();

    BridgeLink& m_settings;
    QNetworkAccessManager& m_network;
    BridgePairing& m_pairing;
    const ActionQueue& m_queue;
    QPointer<QTimer> m_refresher; // null while not refreshing
    LiveUpdates* m_live;
    int m_deferredReads = 0; ///< lists to read once the user has let go (LiveUpdates::List)
    std::function<QDateTime()> m_now = [] { return QDateTime::currentDateTime(); };
    ListRead m_lightsRead;
    ListRead m_groupsRead;
    ListRead m_scenesRead;
    // The last answer of each list, so an unchanged bridge costs a comparison per tick, not a decode.
    std::shared_ptr<ListMemo<LightsResult>> m_lightsMemo = std::make_shared<ListMemo<LightsResult>>();
    std::shared_ptr<ListMemo<GroupsResult>> m_groupsMemo = std::make_shared<ListMemo<GroupsResult>>();
    std::shared_ptr<ListMemo<ScenesResult>> m_scenesMemo = std::make_shared<ListMemo<ScenesResult>>();
    std::shared_ptr<ListMemo<HomeResult>> m_homeMemo = std::make_shared<ListMemo<HomeResult>>();
    /// The interface question is under way: the lists wait for its answer.
    bool m_learning = false;
    quint64 m_readsStarted = 0;
    /// No light read has succeeded since the start or since the last failed one: the scenes may be stale.
    bool m_scenesStale = true;
    /// The bridge at the address proved its identity since the last connect; until then ticks reach for it
    /// instead of reading.
    bool m_reached = false;
    bool m_reaching = false;
    /// The bridge stopped answering: ask it who it is before reading again, even when it is known.
    bool m_mustAsk = false;
    QPointer<BridgeDiscovery> m_finder;
    int m_misses = 0;
    bool m_searching = false;
    QDateTime m_lastSearch;
    /// The line logged last by logRepeating(), when, and how often it came again since.
    struct Repeats
    {
        QString line;
        QDateTime loggedAt;
        int since = 0;
    } m_repeats;
};
