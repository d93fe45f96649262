#include "Interruption.h"

#include <pthread.h>

Interruption::Interruption()
{
    sigemptyset(&m_signals);
    sigaddset(&m_signals, SIGUSR1); // wakes the waiting thread; whoever else sends it is not heard
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        struct sigaction action = {};
        // What whoever started us had us ignore is to stay ignored.
        if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN)
            sigaddset(&m_signals, signal);
    }
    pthread_sigmask(SIG_BLOCK, &m_signals, &m_before);
    m_waiting = std::thread(&Interruption::wait, this);
}

Interruption::~Interruption()
{
    m_ends = true;
    pthread_kill(m_waiting.native_handle(), SIGUSR1);
    m_waiting.join();
    sigaddset(&m_before, SIGUSR1); // one of somebody else's may be left
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

void Interruption::wait()
{
    while (!m_ends) {
        int signal = 0;
        if (sigwait(&m_signals, &signal) == 0 && signal != SIGUSR1)
            m_stop.request_stop();
    }
}
