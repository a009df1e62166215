#pragma once

#include "bridge/BridgeAnswer.h"
#include "model/ActionQueueItem.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>

#include <chrono>
#include <functional>

class BridgeLink;
class QNetworkAccessManager;

/// Keeps the newest pending change per target and property and sends one request per tick, so a dragged
/// slider costs the bridge about three requests a second, however fast the user drags. A bridge takes about
/// ten lamp commands and one room command a second, shared by every app in the home: changes of rooms (and of
/// every lamp at once through group 0) go at most once per `groupInterval`, lamps' in the ticks between; a
/// bridge over its budget (429 or 503) pauses the queue, 1 s, then 2, 4, at most 8, and the change it turned
/// away goes again, unless a newer change of the same target and property was sent or waits: a late answer
/// never undoes the user's last command. The queue owns its pending changes and the time of the user's last
/// change; the live updates and the refresh read both here.
class ActionQueue final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ActionQueue)

public:
    static constexpr std::chrono::milliseconds tickInterval{300};
    /// Over the bridge's current interface, whose documented pace is about ten commands a second per lamp
    /// (and still one per room), lamps' changes go at this pace.
    static constexpr std::chrono::milliseconds clipTickInterval{100};
    /// The pace of the bridge this queue sends to.
    std::chrono::milliseconds currentTickInterval() const;
    /// A change the bridge has not taken within this long without data, or this long in all, is dropped; the
    /// next refresh shows the truth.
    static constexpr std::chrono::milliseconds sendTimeout{3000};
    static constexpr std::chrono::milliseconds sendDeadline{5000};
    static constexpr std::chrono::milliseconds groupInterval{1000};
    static constexpr std::chrono::milliseconds firstPause{1000};
    static constexpr std::chrono::milliseconds longestPause{8000};
    /// The property of a room's brightness step; a waiting one adds to a new one instead of being replaced.
    static inline const QString brightnessIncrease = QStringLiteral("brightness_increase");
    /// `newer` with the increment of `older` added to its own, kept within the bridge's -254 to 254 (-100 to
    /// 100 per cent over the current interface), in the form `newer` has.
    static QByteArray withIncrementsAdded(const QByteArray& older, const QByteArray& newer);

    explicit ActionQueue(BridgeLink& settings, QNetworkAccessManager& network, QObject* parent = nullptr);

    /// Queues a change behind the current event and makes sure the drain timer runs.
    void enqueue(ActionQueueItem item);

    /// The changes waiting to be sent, oldest first; `pendingChanged` tells of every change of the list.
    const QList<ActionQueueItem>& pending() const { return m_pending; }
    /// When the user last changed something (queued a change, or touched the window's content): a read of
    /// the bridge before a few seconds have passed would show what the user is still changing as it was.
    QDateTime lastUserActionAt() const { return m_lastUserActionAt; }
    void setLastUserActionAt(const QDateTime& at) { m_lastUserActionAt = at; }

    /// Starts the drain timer when none runs (on wake; its first tick stops it again if there is no work).
    void startProcessor();
    /// Stops the drain timer (on sleep and on quit); queued changes stay queued.
    void stopProcessor();
    bool isProcessing() const { return !m_processor.isNull(); }
    /// Requests sent and not yet answered, failed or timed out.
    int requestsInFlight() const { return m_inFlight; }

    /// Whether a change the bridge refused or answered with an error is shown to the user and logged (the
    /// command-line tool prints each itself).
    void setLogRefusals(bool log) { m_logRefusals = log; }

    /// The clock behind `lastUserActionAt`; tests replace it.
    void setClock(std::function<QDateTime()> now) { m_now = std::move(now); }

Q_SIGNALS:
    /// A request for `item` has just been handed to the network.
    void sent(const ActionQueueItem& item);
    /// The request for `item` ended so. `again`: the bridge was busy and the change goes again after the
    /// pause (a brightness step possibly added into a newer one). The queue acts on no other answer (the
    /// refresh corrects the state); it only tells the user of refusals.
    void answered(const ActionQueueItem& item, const WriteOutcome& outcome, bool again);
    /// Nothing is queued, no timer runs and every request sent has finished.
    void drained();
    /// `pending()` changed: a change was queued, merged, sent or put back.
    void pendingChanged();

private:
    void insert(const ActionQueueItem& item);
    void setPending(const QList<ActionQueueItem>& pending);
    void onTick();
    void send(const ActionQueueItem& item);
    void onAnswer(const ActionQueueItem& item, quint64 sendNumber, const WriteOutcome& outcome);
    void reportIfDrained();
    void tellUser(const ActionQueueItem& item, const WriteOutcome& outcome);
    /// The bridge said it is over its budget: nothing is sent for a while, longer each time in a row. Returns
    /// whether the change it turned away goes again.
    bool pauseForBudget(const ActionQueueItem& item, quint64 sendNumber, int status);

    /// The newest request sent for one target and property.
    struct LastSent
    {
        quint64 number = 0;
        QByteArray body;
        ActionQueueItem item;
    };

    BridgeLink& m_settings;
    QNetworkAccessManager& m_network;
    QList<ActionQueueItem> m_pending;
    QDateTime m_lastUserActionAt = QDateTime::currentDateTimeUtc();
    QPointer<QTimer> m_processor; // null while idle
    std::function<QDateTime()> m_now = [] { return QDateTime::currentDateTimeUtc(); };
    int m_inFlight = 0;
    quint64 m_sendCount = 0;
    QHash<QString, LastSent> m_lastSent; // by target; only answers still to come need it, so it empties
    QElapsedTimer m_sinceGroupSent;      // invalid until a room's change was sent
    QElapsedTimer m_sinceSent;           // invalid until a change was sent
    bool m_sendSoon = false;             // the queue woke from idle: its first change need not wait a tick
    QElapsedTimer m_sincePause;          // invalid while not paused
    std::chrono::milliseconds m_pause{0};
    bool m_logRefusals = true;
};
