#include "Watch.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

int signalSockets[2] = {-1, -1};

extern "C" void onStopSignal(int)
{
    const char byte = 1;
    // Nothing else is safe in a signal handler.
    [[maybe_unused]] const ssize_t written = ::write(signalSockets[0], &byte, 1);
}

} // namespace

StopOnSignal::StopOnSignal(QObject *parent)
    : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, signalSockets) != 0)
        return;
    m_notifier = new QSocketNotifier(signalSockets[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &StopOnSignal::onReadable);
    struct sigaction action = {};
    action.sa_handler = onStopSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

StopOnSignal::~StopOnSignal()
{
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    delete m_notifier;
    for (int &socket : signalSockets) {
        if (socket >= 0)
            ::close(socket);
        socket = -1;
    }
}

void StopOnSignal::onReadable()
{
    char byte = 0;
    [[maybe_unused]] const ssize_t got = ::read(signalSockets[1], &byte, 1);
    emit stopRequested();
}
