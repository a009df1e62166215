#pragma once

#include <QDateTime>
#include <QObject>

class QSystemTrayIcon;

/// Tells the user when the lights will switch off after "Off in 5/30/60 minutes": the icon's tooltip for as
/// long as the timer is pending (the desktop notification when it is set is DesktopNotifications'). It
/// keeps no clock of its own: the switch-off timer says when a timer is set, replaced, cancelled, refused,
/// gone off or found again.
class SwitchOffNotice final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SwitchOffNotice)

public:
    /// The tooltip the icon has when nothing is pending.
    static inline const QString restingToolTip = QStringLiteral("Glowdeck");

    explicit SwitchOffNotice(QSystemTrayIcon& icon, QObject* parent = nullptr);

    /// The lights switch off at @p at; invalid: no timer is pending. The tooltip says so.
    void setPendingUntil(const QDateTime& at);
    /// The time the lights switch off, while one is pending.
    QDateTime pendingUntil() const { return m_until; }

private:
    QSystemTrayIcon& m_icon;
    QDateTime m_until;
};
