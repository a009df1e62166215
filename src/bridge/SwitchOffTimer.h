#pragma once

#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>

class ActionQueue;
class HueHelper;
struct ActionQueueItem;
struct WriteOutcome;

/// The one switch-off timer Glowdeck keeps on the bridge ("Off in N minutes"). A new one replaces it: the
/// schedule the bridge made for the old one is deleted by the id it answered with, also when that answer
/// comes only after the new choice. Cancel deletes it. A busy bridge (429, 503) is no refusal: the timer
/// stays pending while the queue sends it again. Schedules other programs made are never touched.
class SwitchOffTimer final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SwitchOffTimer)

public:
    SwitchOffTimer(ActionQueue& queue, HueHelper& helper, QObject* parent = nullptr);

    /// Everything goes off in @p minutes, instead of at the time set before.
    void start(qint64 minutes);
    /// Nothing goes off.
    void cancel();
    /// When the lights go off; invalid while no timer is pending.
    QDateTime firesAt() const { return m_firesAt; }

    /// The clock `firesAt` is reckoned from; tests replace it.
    void setClock(std::function<QDateTime()> clock) { m_clock = std::move(clock); }

Q_SIGNALS:
    /// A timer was set, replaced, cancelled, refused by the bridge, or went off.
    void changed();

private:
    void onAnswered(const ActionQueueItem& item, const WriteOutcome& outcome, bool again);
    void deleteOurs();
    void setFiresAt(const QDateTime& at);

    HueHelper& m_helper;
    QString m_token; // the item id of the newest request; answers to older ones are deleted at once
    int m_generation = 0;
    QStringList m_ours; // schedule ids the bridge gave our timers and that are not deleted yet
    QDateTime m_firesAt;
    QTimer m_expiry; // the bridge deletes a timer that went off by itself
    std::function<QDateTime()> m_clock = [] { return QDateTime::currentDateTime(); };
};
