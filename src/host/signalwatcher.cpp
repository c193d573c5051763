#include "host/signalwatcher.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr int watched[] = {SIGINT, SIGTERM, SIGHUP, SIGUSR1, SIGUSR2};

// A signal handler may call very few functions. Therefore it only writes the signal's number to a
// pipe that the event loop reads.
volatile std::sig_atomic_t writeEnd = -1;

extern "C" void forward(int number)
{
    const int before = errno;
    const auto byte = static_cast<unsigned char>(number);
    [[maybe_unused]] const ssize_t written = ::write(writeEnd, &byte, sizeof byte);
    errno = before;
}

void setHandler(int number, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
}

} // namespace

SignalWatcher::SignalWatcher(QObject *parent)
    : QObject(parent)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        qFatal("Host - cannot create the signal pipe");
    readEnd = ends[0];
    writeEnd = ends[1];

    notifier = new QSocketNotifier(readEnd, QSocketNotifier::Read, this);
    notifier->setEnabled(false);
    connect(notifier, &QSocketNotifier::activated, this, &SignalWatcher::deliver);
    for (const int number : watched)
        setHandler(number, forward);
}

SignalWatcher::~SignalWatcher()
{
    for (const int number : watched)
        setHandler(number, SIG_DFL);
    ::close(writeEnd);
    writeEnd = -1;
    ::close(readEnd);
}

void SignalWatcher::watch()
{
    notifier->setEnabled(true);
}

void SignalWatcher::deliver()
{
    unsigned char number = 0;
    while (::read(readEnd, &number, sizeof number) == sizeof number) {
        if (number == SIGUSR1)
            Q_EMIT pauseRequested();
        else if (number == SIGUSR2)
            Q_EMIT resumeRequested();
        else if (number == SIGHUP)
            Q_EMIT reloadRequested();
        else
            Q_EMIT stopRequested();
    }
}
