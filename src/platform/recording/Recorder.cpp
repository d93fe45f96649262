#include "Recorder.h"

bool Recorder::acquireExclusiveAccess()
{
    const std::lock_guard guard(m_accessMutex);
    if (m_accessCount == 0 && !lock())
        return false;
    ++m_accessCount;
    return true;
}

void Recorder::releaseExclusiveAccess()
{
    const std::lock_guard guard(m_accessMutex);
    if (m_accessCount == 0)
        return;
    if (--m_accessCount == 0)
        unlock();
}

bool Recorder::acquireMediaReservation()
{
    const std::lock_guard guard(m_accessMutex);
    ++m_reservationCount;
    return true;
}

void Recorder::releaseMediaReservation()
{
    const std::lock_guard guard(m_accessMutex);
    if (m_reservationCount > 0)
        --m_reservationCount;
}

bool Recorder::isReserved() const
{
    const std::lock_guard guard(m_accessMutex);
    return m_reservationCount > 0;
}

Result<> Recorder::insertBlankMedium(const QString &)
{
    return Failure{QStringLiteral("%1 takes its media by hand.").arg(displayName())};
}
