#include "commands/SwitchOffTimer.h"

#include "bridge/ActionQueue.h"
#include "bridge/BridgeAnswer.h"
#include "bridge/BridgeCommands.h"
#include "bridge/BridgeNetwork.h"
#include "bridge/BridgeUrl.h"
#include "bridge/HttpExchange.h"
#include "bridge/ResourceFetch.h"
#include "model/ActionQueueItem.h"
#include "state/ActivityLog.h"
#include "state/BridgeLink.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QRegularExpression>

#include <algorithm>
#include <limits>

namespace {

/// Milliseconds for a QTimer, which counts in int.
int timerMilliseconds(qint64 milliseconds)
{
    return int(std::clamp<qint64>(milliseconds, 0, std::numeric_limits<int>::max()));
}

} // namespace

SwitchOffTimer::SwitchOffTimer(BridgeLink& settings, QNetworkAccessManager& network, ActionQueue& queue,
                               BridgeCommands& commands, QObject* parent)
    : QObject(parent), m_settings(settings), m_network(network), m_commands(commands)
{
    m_expiry.setSingleShot(true);
    connect(&m_expiry, &QTimer::timeout, this, [this] {
        m_ours.clear();
        ++m_revision;
        setFiresAt({});
        Q_EMIT wentOff();
    });
    connect(&queue, &ActionQueue::answered, this, &SwitchOffTimer::onAnswered);
}

void SwitchOffTimer::start(qint64 minutes)
{
    deleteOurs();
    m_token = QStringLiteral("switch-off-%1").arg(++m_generation);
    m_awaitingAnswer = true;
    ++m_revision;
    m_commands.switchAllOffAfterMinutes(minutes, m_token);
    const QDateTime at = m_clock().addSecs(minutes * 60);
    m_expiry.start(timerMilliseconds(minutes * 60 * 1000));
    setFiresAt(at);
}

void SwitchOffTimer::cancel()
{
    deleteOurs();
    m_token.clear(); // a request still under way is deleted when its answer comes
    m_awaitingAnswer = false;
    ++m_revision;
    m_expiry.stop();
    setFiresAt({});
}

void SwitchOffTimer::deleteOurs()
{
    for (const QString& id : std::as_const(m_ours))
        deleteSchedule(id);
    m_ours.clear();
}

void SwitchOffTimer::deleteSchedule(const QString& id)
{
    m_deleting.append(id);
    m_commands.deleteSchedule(id);
}

void SwitchOffTimer::onAnswered(const ActionQueueItem& item, const WriteOutcome& outcome, bool again)
{
    if (item.property == BridgeCommands::unscheduleProperty) {
        // Done, or given up: either way the bridge's list tells the truth from now on.
        if (!again)
            m_deleting.removeAll(item.item_id);
        return;
    }
    if (item.property != QLatin1String("schedule") || !item.item_id.startsWith(QLatin1String("switch-off-")))
        return;
    if (item.item_id != m_token) {
        // Replaced or cancelled before the bridge said which schedule it made.
        if (outcome.ok() && !outcome.createdId.isEmpty())
            deleteSchedule(outcome.createdId);
        return;
    }
    // The bridge was busy, which refuses nothing: the queue sends the timer again after its pause.
    if (again)
        return;
    m_awaitingAnswer = false;
    ++m_revision;
    if (outcome.ok() && !outcome.createdId.isEmpty()) {
        m_ours.append(outcome.createdId);
        return;
    }
    // Refused, or never answered: no timer is known to be pending.
    m_token.clear();
    m_expiry.stop();
    setFiresAt({});
    // A request that got no answer may have reached the bridge all the same.
    if (outcome.kind == WriteOutcome::Kind::timedOut || outcome.kind == WriteOutcome::Kind::noAnswer)
        findOnBridge();
}

void SwitchOffTimer::findOnBridge()
{
    const QUrl url =
        bridgeResourceUrl(m_settings.bridgeEndpoint(), m_settings.hueKey(), {QStringLiteral("schedules")});
    if (m_settings.hueKey().isEmpty() || !url.isValid())
        return;
    QNetworkRequest request(url);
    BridgeNetwork::prepare(request, m_settings.bridgeIdentity());
    sendHttpRequest(m_network, request, QByteArrayLiteral("GET"), {}, {fetchTimeout, fetchDeadline},
                    [this, self = QPointer(this), revision = m_revision,
                     address = m_commands.switchOffCommandAddress()](const HttpResult& answer) {
                        if (self)
                            onSchedules(answer, revision, address);
                    });
}

void SwitchOffTimer::onSchedules(const HttpResult& answer, int revision, const QString& commandAddress)
{
    const QDateTime now = m_clock();
    const std::optional<QMap<QString, QDateTime>> found =
        answer.transportFailed || answer.status < 200 || answer.status > 299
            ? std::nullopt
            : pendingTimers(answer.body, commandAddress, now);
    if (!found) {
        QString why = QStringLiteral("the answer (HTTP %1) is no list of schedules").arg(answer.status);
        if (answer.transportFailed)
            why = answer.error;
        else if (const QStringList errors = bridgeErrors(answer.body); !errors.isEmpty())
            why = errors.join(QStringLiteral("; "));
        m_settings.activity().addLogLine(
            QStringLiteral("The bridge's timers could not be read: %1").arg(why));
        return;
    }
    // A timer set, cancelled or answered since the read went out is newer than what the bridge listed.
    if (revision != m_revision || m_awaitingAnswer)
        return;
    QStringList ours;
    QDateTime first;
    for (auto it = found->cbegin(); it != found->cend(); ++it) {
        if (m_deleting.contains(it.key()))
            continue;
        ours.append(it.key());
        if (!first.isValid() || it.value() < first)
            first = it.value();
    }
    m_ours = ours;
    if (ours.isEmpty()) {
        m_token.clear();
        m_expiry.stop();
        if (m_firesAt.isValid())
            setFiresAt({});
        return;
    }
    // Restarted from the bridge's time: a suspend stops the clock of a running timer here.
    m_expiry.start(timerMilliseconds(now.msecsTo(first)));
    if (first.toLocalTime() != m_firesAt)
        setFiresAt(first.toLocalTime());
}

std::optional<QMap<QString, QDateTime>> SwitchOffTimer::pendingTimers(const QByteArray& schedules,
                                                                      const QString& commandAddress,
                                                                      const QDateTime& now)
{
    const QJsonDocument document = QJsonDocument::fromJson(schedules);
    if (!document.isObject())
        return std::nullopt;
    // How a bridge writes a timer: hours, minutes and seconds, two digits each.
    static const QRegularExpression timerPattern(QStringLiteral("^PT(\\d\\d):([0-5]\\d):([0-5]\\d)$"));
    QMap<QString, QDateTime> pending;
    const QJsonObject list = document.object();
    for (auto it = list.constBegin(); it != list.constEnd(); ++it) {
        const QJsonObject schedule = it.value().toObject();
        const QJsonObject command = schedule.value(u"command").toObject();
        if (schedule.value(u"name").toString() != BridgeCommands::switchOffScheduleName ||
            command.value(u"address").toString() != commandAddress ||
            schedule.value(u"status").toString() != QLatin1String("enabled"))
            continue;
        const QRegularExpressionMatch timer = timerPattern.match(schedule.value(u"localtime").toString());
        // The bridge writes the start in UTC, without a zone.
        const QString started = schedule.value(u"starttime").toString();
        const QDateTime start(QDate::fromString(started.left(10), Qt::ISODate),
                              QTime::fromString(started.mid(11), Qt::ISODate), Qt::UTC);
        if (!timer.hasMatch() || started.size() != 19 || !start.isValid())
            continue;
        const qint64 seconds = (timer.captured(1).toLongLong() * 60 + timer.captured(2).toLongLong()) * 60 +
                               timer.captured(3).toLongLong();
        const QDateTime at = start.addSecs(seconds);
        if (at > now)
            pending.insert(it.key(), at);
    }
    return pending;
}

void SwitchOffTimer::setFiresAt(const QDateTime& at)
{
    m_firesAt = at;
    Q_EMIT changed();
}
