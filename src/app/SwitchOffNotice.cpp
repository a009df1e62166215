#include "app/SwitchOffNotice.h"

#include <QLocale>
#include <QSystemTrayIcon>

namespace {
constexpr int shownMilliseconds = 8000;
} // namespace

SwitchOffNotice::SwitchOffNotice(QSystemTrayIcon& icon, QObject* parent) : QObject(parent), m_icon(icon)
{
    m_passed.setSingleShot(true);
    connect(&m_passed, &QTimer::timeout, this, &SwitchOffNotice::onPassed);
}

QString SwitchOffNotice::message(const QDateTime& at, qint64 minutes)
{
    const QString time = QLocale().toString(at.time(), QLocale::ShortFormat);
    // The menu offers 5, 30 and 60 minutes: always more than one.
    return tr("All lights switch off at %1, in %2 minutes.").arg(time).arg(minutes);
}

void SwitchOffNotice::announce(qint64 minutes)
{
    const QDateTime now = m_now();
    m_until = now.addSecs(minutes * 60);
    const QString text = message(m_until, minutes);
    // Where the tray cannot show messages (some panels), the tooltip is the only place that says it.
    m_icon.setToolTip(restingToolTip + QStringLiteral(" \u2014 ") + text);
    if (QSystemTrayIcon::supportsMessages())
        m_icon.showMessage(restingToolTip, text, QSystemTrayIcon::Information, shownMilliseconds);
    m_passed.start(std::chrono::milliseconds(now.msecsTo(m_until)));
}

void SwitchOffNotice::onPassed()
{
    m_until = QDateTime();
    m_icon.setToolTip(restingToolTip);
}
