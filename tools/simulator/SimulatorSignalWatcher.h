#pragma once

#include <QObject>

class QSocketNotifier;

/// Turns SIGINT and SIGTERM, and SIGUSR1, into Qt signals on the main thread (the handler only writes to a
/// socket pair, which is all a signal handler may safely do).
class SimulatorSignalWatcher final : public QObject
{
    Q_OBJECT
public:
    explicit SimulatorSignalWatcher(QObject* parent = nullptr);
    ~SimulatorSignalWatcher() override;

    /// Whether the handlers could be installed.
    bool isWatching() const { return m_notifier != nullptr; }

signals:
    /// SIGINT or SIGTERM arrived.
    void terminationRequested(int signalNumber);
    /// SIGUSR1 arrived: somebody pressed the simulated bridge's link button.
    void linkButtonRequested();

private:
    void onSocketActivated();

    QSocketNotifier* m_notifier = nullptr;
};
