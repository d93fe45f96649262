#include "TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array signals{SIGHUP, SIGINT, SIGTERM};

// All that a handler may do is to write into a pipe.
std::array<int, 2> pipeEnds{-1, -1};

void handle(int)
{
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], &byte, 1);
}

void setHandler(void (*handler)(int), int flags)
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    for (const int signal : signals)
        ::sigaction(signal, &action, nullptr);
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
        Q_EMIT received();
    });
    setHandler(handle, SA_RESTART | SA_RESETHAND);
}

TerminationSignals::~TerminationSignals()
{
    setHandler(SIG_DFL, 0);
    qDeleteAll(children()); // the notifier, before its file
    for (int &end : pipeEnds)
        ::close(std::exchange(end, -1));
}
