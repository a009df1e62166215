#include "SignalWatcher.h"

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

SignalWatcher::SignalWatcher(bool withUser1, QObject* parent) : QObject(parent), m_withUser1(withUser1)
{
    if (signalSockets[0] < 0 && ::socketpair(AF_UNIX, SOCK_STREAM, 0, signalSockets) != 0)
        return;
    m_notifier = new QSocketNotifier(signalSockets[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &SignalWatcher::onSocketActivated);

    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
    if (m_withUser1)
        ::sigaction(SIGUSR1, &action, nullptr);
}

SignalWatcher::~SignalWatcher()
{
    if (m_notifier) {
        std::signal(SIGINT, SIG_DFL);
        std::signal(SIGTERM, SIG_DFL);
        if (m_withUser1)
            std::signal(SIGUSR1, SIG_DFL);
    }
}

void SignalWatcher::onSocketActivated()
{
    char byte = 0;
    if (::read(signalSockets[1], &byte, 1) != 1)
        return;
    if (int(byte) == SIGUSR1)
        emit user1Received();
    else
        emit terminationRequested(int(byte));
}
