#pragma once

#include <QObject>

class QSocketNotifier;

/// Turns SIGINT and SIGTERM (and, when asked, SIGUSR1) into Qt signals on the main thread, so that a tool
/// that runs until it is stopped ends through its event loop. The handler only writes to a socket pair, which
/// is all a signal handler may safely do. POSIX only: the simulator and glowdeckctl's watch are built there.
class SignalWatcher final : public QObject
{
    Q_OBJECT
public:
    /// `withUser1`: SIGUSR1 too, as `user1Received`.
    explicit SignalWatcher(bool withUser1 = false, QObject* parent = nullptr);
    ~SignalWatcher() override;

    /// Whether the handlers could be installed.
    bool isWatching() const { return m_notifier != nullptr; }

signals:
    /// SIGINT or SIGTERM arrived.
    void terminationRequested(int signalNumber);
    /// SIGUSR1 arrived (the simulator: somebody pressed its link button).
    void user1Received();

private:
    void onSocketActivated();

    QSocketNotifier* m_notifier = nullptr;
    bool m_withUser1 = false;
};
