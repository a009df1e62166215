#pragma once

#include <QObject>

#include <memory>

/// Tells the application that the computer is about to sleep or has woken up. This base class never says
/// anything: it is the back-end for systems (or sessions) without such notices. CMake compiles exactly one
/// `createSleepWatcher`.
class SleepWatcher : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SleepWatcher)

public:
    using QObject::QObject;

Q_SIGNALS:
    void aboutToSleep();
    void wokeUp();
};

/// The watcher for this platform; a silent one when the system's notices cannot be reached.
std::unique_ptr<SleepWatcher> createSleepWatcher();
