// While one lives, the signals by which a user or a program ends this one (SIGINT, SIGTERM, SIGHUP)
// ask for a stop instead. Made before any other thread, in the main thread.
#pragma once

#include <csignal>
#include <stop_token>
#include <thread>

class Interruption
{
public:
    Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;
    Interruption(Interruption &&) = delete;
    Interruption &operator=(Interruption &&) = delete;
    ~Interruption();

    [[nodiscard]] std::stop_token token() const { return m_stop.get_token(); }

private:
    sigset_t m_signals = {};
    std::stop_source m_stop;
    std::thread m_waiting;
};
