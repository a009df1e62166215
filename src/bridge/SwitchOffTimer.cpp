#include "bridge/SwitchOffTimer.h"

#include "bridge/ActionQueue.h"
#include "bridge/BridgeAnswer.h"
#include "bridge/HueHelper.h"
#include "model/ActionQueueItem.h"

#include <algorithm>
#include <limits>

SwitchOffTimer::SwitchOffTimer(ActionQueue& queue, HueHelper& helper, QObject* parent)
    : QObject(parent), m_helper(helper)
{
    m_expiry.setSingleShot(true);
    connect(&m_expiry, &QTimer::timeout, this, [this] {
        m_ours.clear();
        setFiresAt({});
    });
    connect(&queue, &ActionQueue::answered, this, &SwitchOffTimer::onAnswered);
}

void SwitchOffTimer::start(qint64 minutes)
{
    deleteOurs();
    m_token = QStringLiteral("switch-off-%1").arg(++m_generation);
    m_helper.switchAllOffAfterMinutes(minutes, m_token);
    const QDateTime at = m_clock().addSecs(minutes * 60);
    m_expiry.start(int(std::min<qint64>(minutes * 60 * 1000, std::numeric_limits<int>::max())));
    setFiresAt(at);
}

void SwitchOffTimer::cancel()
{
    deleteOurs();
    m_token.clear(); // a request still under way is deleted when its answer comes
    m_expiry.stop();
    setFiresAt({});
}

void SwitchOffTimer::deleteOurs()
{
    for (const QString& id : std::as_const(m_ours))
        m_helper.deleteSchedule(id);
    m_ours.clear();
}

void SwitchOffTimer::onAnswered(const ActionQueueItem& item, const WriteOutcome& outcome, bool again)
{
    if (item.property != QLatin1String("schedule") || !item.item_id.startsWith(QLatin1String("switch-off-")))
        return;
    if (item.item_id != m_token) {
        // Replaced or cancelled before the bridge said which schedule it made.
        if (outcome.ok() && !outcome.createdId.isEmpty())
            m_helper.deleteSchedule(outcome.createdId);
        return;
    }
    // The bridge was busy, which refuses nothing: the queue sends the timer again after its pause.
    if (again)
        return;
    if (outcome.ok() && !outcome.createdId.isEmpty()) {
        m_ours.append(outcome.createdId);
        return;
    }
    // Refused, or never answered: no timer is known to be pending.
    m_token.clear();
    m_expiry.stop();
    setFiresAt({});
}

void SwitchOffTimer::setFiresAt(const QDateTime& at)
{
    m_firesAt = at;
    Q_EMIT changed();
}
