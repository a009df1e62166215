#include "app/DesktopNotifications.h"

#include "app/NotificationSink.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeAnswer.h"
#include "bridge/BridgeCommands.h"
#include "model/ActionQueueItem.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/Preferences.h"

#include <QLocale>

namespace {

// Each kind has one notification at a time: a newer one replaces it.
const QString timerTopic = QStringLiteral("timer");

QString refusalTopic(const BridgeSession& session)
{
    return QStringLiteral("refused %1").arg(quintptr(&session));
}

QString bridgeTopic(const BridgeSession& session)
{
    return QStringLiteral("bridge %1").arg(quintptr(&session));
}

} // namespace

DesktopNotifications::DesktopNotifications(NotificationSink& sink, Preferences& preferences,
                                           BridgeSessions& sessions, std::function<bool()> windowShown,
                                           QObject* parent)
    : QObject(parent), m_sink(sink), m_preferences(preferences), m_sessions(sessions),
      m_windowShown(std::move(windowShown))
{
    for (BridgeSession* session : m_sessions.all())
        follow(session);
    connect(&m_sessions, &BridgeSessions::added, this, &DesktopNotifications::follow);
    connect(&m_sessions, &BridgeSessions::removed, this,
            [this](BridgeSession* session) { m_lost.remove(session); });
}

void DesktopNotifications::follow(BridgeSession* session)
{
    connect(&session->queue(), &ActionQueue::answered, this,
            [this, session](const ActionQueueItem& item, const WriteOutcome& outcome, bool again) {
                onAnswered(*session, item, outcome, again);
            });
    connect(&session->link().home(), &BridgeHome::bridgeConnectedChanged, this,
            [this, session] { onConnectedChanged(*session); });
}

void DesktopNotifications::switchOffSet(const QDateTime& at, qint64 minutes)
{
    const QString time = QLocale().toString(at.toLocalTime().time(), QLocale::ShortFormat);
    m_sink.show(timerTopic, tr("Lights off at %1").arg(time),
                tr("All lights switch off in %n minute(s).", nullptr, int(minutes)));
}

void DesktopNotifications::switchOffWentOff()
{
    if (m_preferences.notifiesEvents())
        m_sink.show(timerTopic, tr("Lights off"), tr("The switch-off timer went off."));
}

void DesktopNotifications::onAnswered(const BridgeSession& session, const ActionQueueItem& item,
                                      const WriteOutcome& outcome, bool again)
{
    // The open window shows the refusal itself; a timer already gone from the bridge is nothing to report.
    if (again || !m_preferences.notifiesEvents() || m_windowShown() ||
        item.property == BridgeCommands::unscheduleProperty)
        return;
    QString why;
    switch (outcome.kind) {
    case WriteOutcome::Kind::refused:
        why = outcome.detail;
        break;
    case WriteOutcome::Kind::httpError:
        why = tr("It answered with an error (HTTP %1).").arg(outcome.status);
        break;
    case WriteOutcome::Kind::unexpected:
        why = tr("Its answer could not be read.");
        break;
    case WriteOutcome::Kind::partly:
        m_sink.show(refusalTopic(session), withBridge(session, tr("The bridge took only part of a change")),
                    outcome.detail);
        return;
    case WriteOutcome::Kind::accepted:
    case WriteOutcome::Kind::timedOut:
    case WriteOutcome::Kind::noAnswer:
        // A bridge that does not answer is told as lost, not change by change.
        return;
    }
    m_sink.show(refusalTopic(session), withBridge(session, tr("The bridge refused a change")), why);
}

void DesktopNotifications::onConnectedChanged(const BridgeSession& session)
{
    const BridgeLink& link = session.link();
    const QString name = m_sessions.nameOf(session);
    if (link.home().bridgeConnected()) {
        if (m_lost.remove(&session))
            m_sink.show(bridgeTopic(session), tr("Found the bridge %1 again").arg(name),
                        tr("It answers, and Glowdeck shows its lights as they are now."));
        return;
    }
    // Disconnect forgets the key first: that loss is the user's own doing.
    if (!m_preferences.notifiesEvents() || link.hueKey().isEmpty() || m_lost.contains(&session))
        return;
    m_lost.insert(&session);
    m_sink.show(bridgeTopic(session), tr("Lost the bridge %1").arg(name),
                tr("It does not answer. Glowdeck keeps trying, and looks for it on your network in case it "
                   "moved."));
}

QString DesktopNotifications::withBridge(const BridgeSession& session, const QString& text) const
{
    return m_sessions.size() > 1 ? tr("%1: %2").arg(m_sessions.nameOf(session), text) : text;
}
