#include "CtlSignalWatcher.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

int signalSockets[2] = {-1, -1};

void onSignal(int signalNumber)
{
    const char byte = char(signalNumber);
    [[maybe_unused]] const ssize_t written = ::write(signalSockets[0], &byte, 1);
}

} // namespace

CtlSignalWatcher::CtlSignalWatcher(QObject* parent) : QObject(parent)
{
    if (signalSockets[0] < 0 && ::socketpair(AF_UNIX, SOCK_STREAM, 0, signalSockets) != 0)
        return;
    m_notifier = new QSocketNotifier(signalSockets[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &CtlSignalWatcher::onSocketActivated);

    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

CtlSignalWatcher::~CtlSignalWatcher()
{
    if (m_notifier) {
        std::signal(SIGINT, SIG_DFL);
        std::signal(SIGTERM, SIG_DFL);
    }
}

void CtlSignalWatcher::onSocketActivated()
{
    char byte = 0;
    if (::read(signalSockets[1], &byte, 1) == 1)
        Q_EMIT stopRequested();
}
