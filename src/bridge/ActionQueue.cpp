#include "bridge/ActionQueue.h"

#include "bridge/BridgeCommands.h"
#include "bridge/BridgeNetwork.h"
#include "bridge/BridgeUrl.h"
#include "bridge/HttpExchange.h"
#include "state/ActivityLog.h"
#include "state/BridgeLink.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

/// The same kind of resource (lamp, room, scene, schedule), the same id, the same property.
bool sameTarget(const ActionQueueItem& a, const ActionQueueItem& b)
{
    return a.item_id == b.item_id && a.target == b.target && a.property == b.property;
}

bool isLampOrRoom(const ActionQueueItem& item)
{
    return item.target == ActionQueueItem::Target::light || item.target == ActionQueueItem::Target::group;
}

/// Group 0 holds every lamp of the bridge: its change of a property decides that property for each lamp and
/// room (everything off, after a room was switched on).
bool everyLamp(const ActionQueueItem& item)
{
    return item.target == ActionQueueItem::Target::group && item.item_id == u"0";
}

/// Whether `newer` decides what `older` would: the same target, or every lamp, for the same property. Steps
/// decide nothing: they add up.
bool covers(const ActionQueueItem& newer, const ActionQueueItem& older)
{
    return sameTarget(newer, older) ||
           (everyLamp(newer) && newer.property == older.property &&
            newer.property != ActionQueue::brightnessIncrease && isLampOrRoom(older));
}

/// A change of `property` of every lamp, as far as telling targets apart goes.
ActionQueueItem everyLampChange(const QString& property)
{
    ActionQueueItem change;
    change.target = ActionQueueItem::Target::group;
    change.item_id = QStringLiteral("0");
    change.property = property;
    return change;
}

/// One text per target and property, for looking up what was sent to it last.
QString targetKey(const ActionQueueItem& item)
{
    return QStringLiteral("%1 %2 %3").arg(int(item.target)).arg(item.property, item.item_id);
}

/// The brightness step of a body: "bri_inc" of the first interface (1 to 254 units), "dimming_delta" of
/// the current one (per cent, "up" or "down"); nothing for a body without one.
std::optional<double> incrementOf(const QJsonObject& body)
{
    if (const QJsonValue increment = body.value(u"bri_inc"); increment.isDouble())
        return increment.toDouble();
    const QJsonObject delta = body.value(u"dimming_delta").toObject();
    if (!delta.value(u"brightness_delta").isDouble())
        return std::nullopt;
    const double size = delta.value(u"brightness_delta").toDouble();
    return delta.value(u"action").toString() == u"down" ? -size : size;
}

/// Writes `increment` into `body` in the form the body has, within what the bridge takes.
void setIncrement(QJsonObject& body, double increment)
{
    if (body.contains(u"bri_inc")) {
        body.insert(QStringLiteral("bri_inc"), std::clamp<qint64>(qint64(increment), -254, 254));
        return;
    }
    QJsonObject delta;
    delta.insert(QStringLiteral("action"), increment < 0 ? QStringLiteral("down") : QStringLiteral("up"));
    delta.insert(QStringLiteral("brightness_delta"), std::min(std::abs(increment), 100.0));
    body.insert(QStringLiteral("dimming_delta"), delta);
}

/// The increment of `step` with every other value of `newer`: above all its "on", which the program worked
/// out after both steps.
QByteArray stepWithValuesOf(const QByteArray& step, const QByteArray& newer)
{
    const std::optional<double> increment = incrementOf(QJsonDocument::fromJson(step).object());
    QJsonObject values = QJsonDocument::fromJson(newer).object();
    if (!increment || !incrementOf(values))
        return step;
    setIncrement(values, *increment);
    return QJsonDocument(values).toJson(QJsonDocument::Compact);
}

/// The request goes to the current interface, which takes the key in a header.
bool isClip(const QUrl& url)
{
    return url.path().startsWith(QLatin1String("/clip/v2/"));
}

} // namespace

ActionQueue::ActionQueue(BridgeLink& settings, QNetworkAccessManager& network, QObject* parent)
    : QObject(parent), m_settings(settings), m_network(network)
{
    // Changes held for want of the bridge's id go as soon as the connection has learnt it.
    connect(&m_settings, &BridgeLink::bridgeContactChanged, this, [this] {
        if (!m_settings.bridgeID().isEmpty() && !m_pending.isEmpty())
            startProcessor();
    });
}

void ActionQueue::enqueue(ActionQueueItem item)
{
    // The insertion runs after the current event, so a command issued from inside a view's handler never
    // changes the queue under that handler.
    QMetaObject::invokeMethod(
        this, [this, item = std::move(item)] { insert(item); }, Qt::QueuedConnection);
    startProcessor();
}

void ActionQueue::startProcessor()
{
    if (m_processor)
        return;
    m_processor = new QTimer(this);
    m_processor->setInterval(currentTickInterval());
    // Waking from idle, the first change goes at once instead of after a tick: the bridge's pace is kept by
    // the ticks that follow, and by the room's own second.
    m_sendSoon = !m_sinceSent.isValid() || m_sinceSent.elapsed() >= currentTickInterval().count();
    connect(m_processor, &QTimer::timeout, this, &ActionQueue::onTick);
    m_processor->start();
}

std::chrono::milliseconds ActionQueue::currentTickInterval() const
{
    return m_settings.bridgeInterface() == BridgeInterface::v2 ? clipTickInterval : tickInterval;
}

void ActionQueue::stopProcessor()
{
    if (!m_processor)
        return;
    // Possibly called from the timer's own tick: let it go later, but forget it now, so that the next enqueue
    // starts a fresh timer.
    m_processor->stop();
    m_processor->deleteLater();
    m_processor = nullptr;
}

void ActionQueue::insert(const ActionQueueItem& item)
{
    m_lastUserActionAt = m_now();

    // Like with like only: lamp "3" and room "3" are different things on a bridge, so a change replaces an
    // older one only of the same kind of resource, the same id and the same property.
    QList<ActionQueueItem> queue = m_pending;
    ActionQueueItem newest = item;
    queue.removeIf([&newest](const ActionQueueItem& pending) {
        const bool replaced = sameTarget(pending, newest);
        // Two presses of Brighter are two steps: an increment still waiting adds to the new one.
        if (replaced && newest.property == brightnessIncrease)
            newest.body = withIncrementsAdded(pending.body, newest.body);
        return replaced;
    });
    queue.append(newest);
    setPending(queue);
    // Posted from here, the tick comes after every change enqueued in the same turn (a burst merges first),
    // and not at all once the queue was stopped meanwhile (sleep).
    if (std::exchange(m_sendSoon, false)) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_processor)
                    onTick();
            },
            Qt::QueuedConnection);
    }
}

void ActionQueue::setPending(const QList<ActionQueueItem>& pending)
{
    if (pending == m_pending)
        return;
    m_pending = pending;
    Q_EMIT pendingChanged();
}

QByteArray ActionQueue::withIncrementsAdded(const QByteArray& older, const QByteArray& newer)
{
    const std::optional<double> a = incrementOf(QJsonDocument::fromJson(older).object());
    QJsonObject second = QJsonDocument::fromJson(newer).object();
    const std::optional<double> b = incrementOf(second);
    if (!a || !b)
        return newer;
    // The bridge takes increments between -254 and 254 (the current interface: -100 and 100 per cent).
    setIncrement(second, *a + *b);
    return QJsonDocument(second).toJson(QJsonDocument::Compact);
}

void ActionQueue::onTick()
{
    QList<ActionQueueItem> queue = m_pending;
    if (m_sincePause.isValid() && m_sincePause.elapsed() < m_pause.count())
        return;
    // Every change carries the key, which goes only to a bridge that proves its id: until the connection has
    // learnt the id (a settings file of an older version has none), the changes wait here.
    if (m_settings.bridgeID().isEmpty() && !queue.isEmpty())
        return stopProcessor();
    m_sincePause.invalidate();
    // The oldest change that may go now: a room's waits for its second, and lamps' go past it meanwhile.
    const bool groupMayGo =
        !m_sinceGroupSent.isValid() || m_sinceGroupSent.elapsed() >= groupInterval.count();
    const auto next = std::find_if(queue.cbegin(), queue.cend(), [groupMayGo](const ActionQueueItem& item) {
        return groupMayGo || item.target != ActionQueueItem::Target::group;
    });
    if (next != queue.cend()) {
        const ActionQueueItem item = *next;
        queue.erase(next);
        setPending(queue);
        if (item.target == ActionQueueItem::Target::group)
            m_sinceGroupSent.start();
        send(item);
    }
    if (queue.isEmpty()) {
        stopProcessor();
        reportIfDrained();
    }
}

void ActionQueue::send(const ActionQueueItem& item)
{
    QNetworkRequest request(item.url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    if (isClip(item.url))
        request.setRawHeader(QByteArrayLiteral("hue-application-key"), m_settings.hueKey().toUtf8());
    BridgeNetwork::prepare(request, m_settings.bridgeIdentity());
    const QByteArray method = item.property == BridgeCommands::unscheduleProperty
                                  ? QByteArrayLiteral("DELETE")
                              : item.url.toString().contains(u"/schedules") ? QByteArrayLiteral("POST")
                                                                            : QByteArrayLiteral("PUT");
    ++m_inFlight;
    m_sinceSent.start();
    const quint64 number = ++m_sendCount;
    m_lastSent.insert(targetKey(item), {number, item.body, item});
    // No rollback: the next refresh brings back the bridge's truth. Only a busy bridge's refusal goes again.
    sendHttpRequest(m_network, request, method, item.body, {sendTimeout, sendDeadline},
                    [this, self = QPointer(this), item, number](const HttpResult& answer) {
                        if (self)
                            onAnswer(item, number, writeOutcome(answer));
                    });
    Q_EMIT sent(item);
}

void ActionQueue::onAnswer(const ActionQueueItem& item, quint64 sendNumber, const WriteOutcome& outcome)
{
    --m_inFlight;
    bool again = false;
    if (outcome.kind == WriteOutcome::Kind::httpError && (outcome.status == 429 || outcome.status == 503))
        again = pauseForBudget(item, sendNumber, outcome.status);
    else if (outcome.ok())
        m_pause = std::chrono::milliseconds(0);
    if (m_inFlight == 0)
        m_lastSent.clear();
    if (m_logRefusals)
        tellUser(item, outcome);
    Q_EMIT answered(item, outcome, again);
    reportIfDrained();
}

void ActionQueue::tellUser(const ActionQueueItem& item, const WriteOutcome& outcome)
{
    // Lost connections are the banner's business, and a busy bridge only makes the queue wait.
    const QString path = bridgeResourcePath(item.url);
    switch (outcome.kind) {
    case WriteOutcome::Kind::refused:
        m_settings.activity().showNotice(
            tr("The bridge refused the change: %1").arg(outcome.detail),
            QStringLiteral("The bridge refused a change of %1: %2").arg(path, outcome.detail));
        break;
    case WriteOutcome::Kind::partly:
        m_settings.activity().showNotice(
            tr("The bridge took only part of the change: %1").arg(outcome.detail),
            QStringLiteral("The bridge took only part of a change of %1: %2").arg(path, outcome.detail));
        break;
    case WriteOutcome::Kind::httpError:
        if (outcome.status != 429 && outcome.status != 503) {
            m_settings.activity().showNotice(
                tr("The bridge answered with an error (HTTP %1)").arg(outcome.status),
                QStringLiteral("The bridge answered a change of %1 with HTTP %2")
                    .arg(path)
                    .arg(outcome.status));
        }
        break;
    case WriteOutcome::Kind::unexpected:
        m_settings.activity().showNotice(
            tr("The bridge's answer could not be read"),
            QStringLiteral("The bridge's answer to a change of %1 could not be read").arg(path));
        break;
    case WriteOutcome::Kind::accepted:
    case WriteOutcome::Kind::timedOut:
    case WriteOutcome::Kind::noAnswer:
        break;
    }
}

bool ActionQueue::pauseForBudget(const ActionQueueItem& item, quint64 sendNumber, int status)
{
    const bool first = m_pause.count() == 0;
    m_pause = first ? firstPause : std::min(m_pause * 2, longestPause);
    m_sincePause.start();
    if (first)
        m_settings.activity().addLogLine(
            QStringLiteral("The bridge is busy (HTTP %1): the next changes wait a little").arg(status));
    // The change it turned away goes again after the pause, unless the user changed the same thing since: the
    // answer may come after a newer change was sent and taken, and sending the old one again would undo it.
    QList<ActionQueueItem> queue = m_pending;
    const auto waiting = std::find_if(queue.begin(), queue.end(), [&item](const ActionQueueItem& pending) {
        return covers(pending, item);
    });
    const LastSent newest = m_lastSent.value(targetKey(item));
    const ActionQueueItem everything = everyLampChange(item.property);
    const bool newerSent =
        newest.number > sendNumber ||
        (covers(everything, item) && m_lastSent.value(targetKey(everything)).number > sendNumber);
    bool again = true;
    if (item.property == brightnessIncrease) {
        // Two presses of Brighter are two steps: a refused step is added into a newer one still waiting, or
        // goes again with the values of a newer one already sent.
        if (waiting != queue.end()) {
            waiting->body = withIncrementsAdded(item.body, waiting->body);
        } else {
            ActionQueueItem retry = item;
            if (newerSent)
                retry.body = stepWithValuesOf(item.body, newest.body);
            queue.prepend(retry);
        }
    } else if (waiting != queue.end() || newerSent) {
        again = false;
    } else {
        // Every lamp turned away after one lamp or room of it was changed and sent since: every lamp goes
        // again, then that newer change again on top of it, so that it stays the user's last word.
        QList<LastSent> since;
        if (everyLamp(item)) {
            for (const LastSent& sent : std::as_const(m_lastSent)) {
                if (sent.number > sendNumber && covers(item, sent.item) && !sameTarget(item, sent.item))
                    since.append(sent);
            }
            std::sort(since.begin(), since.end(),
                      [](const LastSent& a, const LastSent& b) { return a.number < b.number; });
        }
        for (auto newer = since.crbegin(); newer != since.crend(); ++newer)
            queue.prepend(newer->item);
        queue.prepend(item);
    }
    setPending(queue);
    startProcessor();
    return again;
}

void ActionQueue::reportIfDrained()
{
    if (m_inFlight == 0 && !m_processor && m_pending.isEmpty())
        Q_EMIT drained();
}
