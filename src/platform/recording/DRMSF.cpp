#include "DRMSF.h"

#include <cstdlib>

namespace {

constexpr qint64 blocksPerSecond = 75; // IEC 60908
constexpr qint64 secondsPerMinute = 60;

bool registerConverters()
{
    return QMetaType::registerConverter(&DRMSF::description)
           && QMetaType::registerConverter<DRMSF, qint64>(&DRMSF::blocks);
}

}

DRMSF::DRMSF(qint64 blocks)
    : m_blocks(blocks)
{
    [[maybe_unused]] static const bool registered = registerConverters();
}

QString DRMSF::description() const
{
    const qint64 count = std::abs(m_blocks);
    const qint64 seconds = count / blocksPerSecond;
    return QStringLiteral("%1%2:%3:%4")
        .arg(m_blocks < 0 ? QStringLiteral("-") : QString())
        .arg(seconds / secondsPerMinute, 2, 10, QLatin1Char('0'))
        .arg(seconds % secondsPerMinute, 2, 10, QLatin1Char('0'))
        .arg(count % blocksPerSecond, 2, 10, QLatin1Char('0'));
}
