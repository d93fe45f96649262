// While one lives, the signals by which a user or a program ends this one (SIGINT, SIGTERM, SIGHUP,
// SIGQUIT) ask for a stop instead. Made before any other thread, in the main thread.
#pragma once

#include <atomic>
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
    void wait();

    sigset_t m_signals = {};
    sigset_t m_before = {};
    std::stop_source m_stop;
    std::atomic<bool> m_ends = false;
    std::thread m_waiting;
};
