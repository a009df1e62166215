#pragma once

#include <QDateTime>
#include <QObject>
#include <QSet>

#include <functional>

class BridgeSession;
class BridgeSessions;
class NotificationSink;
class Preferences;
struct ActionQueueItem;
struct WriteOutcome;

/// Decides what the desktop is told, and in which words: the switch-off timer the user set (always: it
/// answers the user's own action, also where no tray shows a tooltip), and, once the user switched on the
/// General option "Notifications", a timer that went off, a change the bridge refused while the window was
/// closed, and a bridge lost and found again. Each kind replaces its earlier notification; a bridge lost is
/// told once until it is found again.
class DesktopNotifications final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DesktopNotifications)

public:
    /// Follows every session of `sessions`, also those added later. `windowShown` says whether the window
    /// (drop-down or a window of its own) is open: it shows a refusal itself then.
    DesktopNotifications(NotificationSink& sink, Preferences& preferences, BridgeSessions& sessions,
                         std::function<bool()> windowShown, QObject* parent = nullptr);

    /// The user set a switch-off timer of @p minutes that goes off at @p at.
    void switchOffSet(const QDateTime& at, qint64 minutes);
    /// A switch-off timer went off.
    void switchOffWentOff();

private:
    void follow(BridgeSession* session);
    void onAnswered(const BridgeSession& session, const ActionQueueItem& item, const WriteOutcome& outcome,
                    bool again);
    void onConnectedChanged(const BridgeSession& session);
    /// `text`, prefixed with the bridge's name where Glowdeck serves several.
    QString withBridge(const BridgeSession& session, const QString& text) const;

    NotificationSink& m_sink;
    Preferences& m_preferences;
    BridgeSessions& m_sessions;
    std::function<bool()> m_windowShown;
    QSet<const BridgeSession*> m_lost; // told as lost, not yet told as found
};
