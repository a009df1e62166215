#pragma once

#include <QDateTime>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <optional>

class ActionQueue;
class BridgeLink;
class BridgeCommands;
class QNetworkAccessManager;
struct ActionQueueItem;
struct HttpResult;
struct WriteOutcome;

/// The one switch-off timer Glowdeck keeps on the bridge ("Off in N minutes"). A new one replaces it: the
/// schedule the bridge made for the old one is deleted by the id it answered with, also when that answer
/// comes only after the new choice. Cancel deletes it. A busy bridge (429, 503) is no refusal: the timer
/// stays pending while the queue sends it again. The bridge keeps the timer through a restart or a suspend of
/// this program; `findOnBridge` takes it up again. Schedules other programs made are never touched.
class SwitchOffTimer final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SwitchOffTimer)

public:
    SwitchOffTimer(BridgeLink& settings, QNetworkAccessManager& network, ActionQueue& queue,
                   BridgeCommands& commands, QObject* parent = nullptr);

    /// Everything goes off in @p minutes, instead of at the time set before.
    void start(qint64 minutes);
    /// Nothing goes off.
    void cancel();
    /// Reads the bridge's schedules and takes up this program's pending timers, set in an earlier run or
    /// before a suspend: the first one's time is shown, and Cancel deletes them. One that went off or was
    /// deleted meanwhile is forgotten.
    void findOnBridge();
    /// When the lights go off; invalid while no timer is pending.
    QDateTime firesAt() const { return m_firesAt; }

    /// The clock `firesAt` is reckoned from; tests replace it.
    void setClock(std::function<QDateTime()> clock) { m_clock = std::move(clock); }

    /// This program's timers in a bridge's answer to "GET /schedules" that go off after @p now: schedule id
    /// -> when. Ours carry BridgeCommands's name, switch off through @p commandAddress (which holds our key)
    /// and are enabled; their time is the start (in UTC) plus the "PThh:mm:ss" they were given. Empty
    /// optional when the answer is no list of schedules.
    static std::optional<QMap<QString, QDateTime>>
    pendingTimers(const QByteArray& schedules, const QString& commandAddress, const QDateTime& now);

Q_SIGNALS:
    /// A timer was set, replaced, cancelled, refused by the bridge, went off, or was found on the bridge.
    void changed();
    /// The timer's time came while this program ran (sent after `changed`): the bridge switched the lights
    /// off.
    void wentOff();

private:
    void onAnswered(const ActionQueueItem& item, const WriteOutcome& outcome, bool again);
    void onSchedules(const HttpResult& answer, int revision, const QString& commandAddress);
    void deleteOurs();
    void deleteSchedule(const QString& id);
    void setFiresAt(const QDateTime& at);

    BridgeLink& m_settings;
    QNetworkAccessManager& m_network;
    BridgeCommands& m_commands;
    QString m_token; // the item id of the newest request; answers to older ones are deleted at once
    int m_generation = 0;
    bool m_awaitingAnswer = false; // the newest request is queued or under way
    QStringList m_ours;            // schedule ids the bridge gave our timers and that are not deleted yet
    QStringList m_deleting;        // schedule ids whose deletion is queued or under way
    int m_revision = 0; // counts the changes made here; a read of the bridge from before one is stale
    QDateTime m_firesAt;
    QTimer m_expiry; // the bridge deletes a timer that went off by itself
    std::function<QDateTime()> m_clock = [] { return QDateTime::currentDateTime(); };
};
