#pragma once

#include "app/SleepWatcher.h"

/// Sleep and wake from systemd-logind: the Manager's PrepareForSleep(true) comes before the system sleeps,
/// PrepareForSleep(false) after it woke up.
class LogindSleepWatcher final : public SleepWatcher
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LogindSleepWatcher)

public:
    LogindSleepWatcher() = default;

    /// Subscribes on the system bus; false when there is no system bus (a container, a CI machine).
    bool subscribe();

private Q_SLOTS:
    // A slot by name, because Qt D-Bus connects signals through the meta-object only.
    void onPrepareForSleep(bool sleeping);
};
