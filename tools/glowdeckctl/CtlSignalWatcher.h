#pragma once

#include <QObject>

class QSocketNotifier;

/// Turns SIGINT and SIGTERM into a Qt signal on the main thread, so that a command that runs until it is
/// stopped ends through the event loop and exits 0. The handler only writes to a socket pair, which is all a
/// signal handler may safely do.
class CtlSignalWatcher final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CtlSignalWatcher)

public:
    explicit CtlSignalWatcher(QObject* parent = nullptr);
    /// Gives SIGINT and SIGTERM back their default action.
    ~CtlSignalWatcher() override;

    /// Whether the handlers could be installed; if not, the signals end the program as they always do.
    bool isWatching() const { return m_notifier != nullptr; }

Q_SIGNALS:
    /// SIGINT (Ctrl+C) or SIGTERM arrived.
    void stopRequested();

private:
    void onSocketActivated();

    QSocketNotifier* m_notifier = nullptr;
};
