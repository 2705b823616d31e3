#include "ExitSignals.h"

#include <cerrno>
#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace {
int g_pipe[2] = {-1, -1};
}

ExitSignals::ExitSignals(std::initializer_list<int> signalNumbers, QObject *parent)
    : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, g_pipe) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(g_pipe[1], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &ExitSignals::onReadable);
    struct sigaction action = {};
    action.sa_handler = &ExitSignals::handle;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int signalNumber : signalNumbers)
        ::sigaction(signalNumber, &action, nullptr);
}

ExitSignals::~ExitSignals()
{
    m_notifier.reset();
    ::close(g_pipe[0]);
    ::close(g_pipe[1]);
    g_pipe[0] = g_pipe[1] = -1;
}

void ExitSignals::handle(int signalNumber)
{
    const int saved = errno;
    const unsigned char byte = static_cast<unsigned char>(signalNumber);
    if (::write(g_pipe[0], &byte, 1) < 0) {
        // Nothing can be reported from a signal handler; a full socket means one is pending.
    }
    errno = saved;
}

void ExitSignals::onReadable()
{
    unsigned char byte = 0;
    if (::read(g_pipe[1], &byte, 1) == 1)
        Q_EMIT received(byte);
}
