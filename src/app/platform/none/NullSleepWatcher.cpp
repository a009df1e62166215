#include "app/SleepWatcher.h"

std::unique_ptr<SleepWatcher> createSleepWatcher()
{
    return std::make_unique<SleepWatcher>();
}
