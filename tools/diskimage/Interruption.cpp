#include "Interruption.h"

#include <pthread.h>

Interruption::Interruption()
{
    sigemptyset(&m_signals);
    sigaddset(&m_signals, SIGUSR1); // our own: the end of the wait
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action = {};
        // What whoever started us had us ignore is to stay ignored.
        if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN)
            sigaddset(&m_signals, signal);
    }
    pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
    m_waiting = std::thread([this] {
        int signal = 0;
        if (sigwait(&m_signals, &signal) == 0 && signal != SIGUSR1)
            m_stop.request_stop();
    });
}

Interruption::~Interruption()
{
    pthread_kill(m_waiting.native_handle(), SIGUSR1);
    m_waiting.join();
}
