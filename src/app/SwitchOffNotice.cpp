#include "app/SwitchOffNotice.h"

#include <QLocale>
#include <QSystemTrayIcon>

namespace {
constexpr int shownMilliseconds = 8000;

QString shortTime(const QDateTime& at)
{
    return QLocale().toString(at.toLocalTime().time(), QLocale::ShortFormat);
}

} // namespace

SwitchOffNotice::SwitchOffNotice(QSystemTrayIcon& icon, QObject* parent) : QObject(parent), m_icon(icon) {}

QString SwitchOffNotice::message(const QDateTime& at, qint64 minutes)
{
    return tr("All lights switch off at %1, in %n minutes.", nullptr, int(minutes)).arg(shortTime(at));
}

void SwitchOffNotice::setPendingUntil(const QDateTime& at)
{
    m_until = at;
    // Where the tray cannot show messages (some panels), the tooltip is the only place that says it. It names
    // the time only: "in 30 minutes" would be wrong a minute later.
    m_icon.setToolTip(at.isValid() ? restingToolTip + QStringLiteral(" \u2014 ") +
                                         tr("All lights switch off at %1.").arg(shortTime(at))
                                   : restingToolTip);
}

void SwitchOffNotice::announce(const QDateTime& at, qint64 minutes)
{
    if (QSystemTrayIcon::supportsMessages())
        m_icon.showMessage(restingToolTip, message(at, minutes), QSystemTrayIcon::Information,
                           shownMilliseconds);
}
