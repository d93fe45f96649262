#include "TerminationSignals.h"

#include "MainQueue.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <span>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::array signals{SIGHUP, SIGINT, SIGTERM};

// Those that a person sends again who does not want to wait. A system sends SIGHUP beside SIGTERM.
constexpr std::array impatient{SIGINT, SIGTERM};

std::array<int, 2> pipeEnds{-1, -1};

// What was told to ignore a signal, as nohup tells it, goes on ignoring it.
void setHandler(std::span<const int> numbers, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : numbers) {
        struct sigaction before = {};
        ::sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN)
            ::sigaction(signal, &action, nullptr);
    }
}

// A handler may do next to nothing: the rest is done where the pipe is read.
void handle(int)
{
    const int error = errno; // of what was interrupted
    setHandler(impatient, SIG_DFL);
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], &byte, 1);
    errno = error;
}

}

TerminationSignals::TerminationSignals()
{
    if (::pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return; // the program ends at once, as others do
    auto *notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> bytes{};
        while (::read(pipeEnds[0], bytes.data(), bytes.size()) > 0) {
        }
        MainQueue::deliver(this, [this] { Q_EMIT received(); });
    });
    setHandler(signals, handle);
}

TerminationSignals::~TerminationSignals()
{
    setHandler(signals, SIG_DFL);
    qDeleteAll(children()); // the notifier, before its file
    for (int &end : pipeEnds)
        ::close(std::exchange(end, -1));
}
