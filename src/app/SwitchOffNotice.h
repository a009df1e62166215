#pragma once

#include <QDateTime>
#include <QObject>
#include <QTimer>

#include <functional>

class QSystemTrayIcon;

/// Tells the user when the lights will switch off after "Off in 5/30/60 minutes": a tray notification where
/// the tray shows messages, and the icon's tooltip in every case until that time has come.
class SwitchOffNotice final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SwitchOffNotice)

public:
    /// The tooltip the icon has when nothing is pending.
    static inline const QString restingToolTip = QStringLiteral("Glowdeck");

    explicit SwitchOffNotice(QSystemTrayIcon& icon, QObject* parent = nullptr);

    /// The clock; tests replace it.
    void setClock(std::function<QDateTime()> now) { m_now = std::move(now); }

    /// The bridge will switch everything off @p minutes from now. A later call replaces an earlier one.
    void announce(qint64 minutes);
    /// The time the lights switch off, while one is pending.
    QDateTime pendingUntil() const { return m_until; }

    /// What the notification says.
    static QString message(const QDateTime& at, qint64 minutes);

private:
    void onPassed();

    QSystemTrayIcon& m_icon;
    QTimer m_passed;
    QDateTime m_until;
    std::function<QDateTime()> m_now = [] { return QDateTime::currentDateTime(); };
};
