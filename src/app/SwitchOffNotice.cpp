#include "app/SwitchOffNotice.h"

#include <QLocale>
#include <QSystemTrayIcon>

namespace {

QString shortTime(const QDateTime& at)
{
    return QLocale().toString(at.toLocalTime().time(), QLocale::ShortFormat);
}

} // namespace

SwitchOffNotice::SwitchOffNotice(QSystemTrayIcon& icon, QObject* parent) : QObject(parent), m_icon(icon) {}

void SwitchOffNotice::setPendingUntil(const QDateTime& at)
{
    m_until = at;
    // Where no notification service runs, the tooltip is the only place that says it. It names
    // the time only: "in 30 minutes" would be wrong a minute later.
    m_icon.setToolTip(at.isValid() ? restingToolTip + QStringLiteral(" \u2014 ") +
                                         tr("All lights switch off at %1.").arg(shortTime(at))
                                   : restingToolTip);
}
