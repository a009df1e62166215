#include "state/ActivityLog.h"

#include "state/Console.h"
#include "state/Redaction.h"

#include <QTimer>

ActivityLog::ActivityLog(QObject* parent) : QObject(parent), m_noticeExpiry(new QTimer(this))
{
    m_noticeExpiry->setSingleShot(true);
    m_noticeExpiry->setInterval(noticeSeconds * 1000);
    connect(m_noticeExpiry, &QTimer::timeout, this, [this] {
        if (!std::exchange(m_notice, QString()).isEmpty())
            Q_EMIT noticeChanged();
    });
}

void ActivityLog::setKey(const void* owner, const QString& key)
{
    if (key.isEmpty())
        m_keys.remove(owner);
    else
        m_keys.insert(owner, key);
}

void ActivityLog::addLogLine(const QString& message)
{
    // The log is kept, shown and sent with reports: no key gets into it. The keys' shape in request paths is
    // cleaned whether or not any key is known.
    QString line = message;
    if (m_keys.isEmpty())
        line = redacted(line, QString());
    for (const QString& key : std::as_const(m_keys))
        line = redacted(line, key);
    printLine(line);
    // Dropping the whole log at the cap is cheaper than trimming it and loses nothing anyone reads.
    if (m_lines.size() >= capacity)
        m_lines.clear();
    m_lines.append(line);
    Q_EMIT logChanged();
}

void ActivityLog::showNotice(const QString& message, const QString& logLine)
{
    addLogLine(logLine.isEmpty() ? message : logLine);
    m_noticeExpiry->start();
    if (m_notice == message)
        return;
    m_notice = message;
    Q_EMIT noticeChanged();
}

void ActivityLog::setSettingsSaveError(const QString& error)
{
    if (!error.isEmpty())
        addLogLine(QStringLiteral("Settings could not be saved: %1").arg(error));
    m_saveError = error;
    Q_EMIT settingsSaveErrorChanged();
}
