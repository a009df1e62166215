#include "app/platform/linux/LogindSleepWatcher.h"

#include <QDBusConnection>

bool LogindSleepWatcher::subscribe()
{
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return false;
    return bus.connect(QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
                       QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"),
                       this, SLOT(onPrepareForSleep(bool)));
}

void LogindSleepWatcher::onPrepareForSleep(bool sleeping)
{
    if (sleeping)
        Q_EMIT aboutToSleep();
    else
        Q_EMIT wokeUp();
}

std::unique_ptr<SleepWatcher> createSleepWatcher()
{
    auto watcher = std::make_unique<LogindSleepWatcher>();
    if (!watcher->subscribe())
        return std::make_unique<SleepWatcher>();
    return watcher;
}
