// A position or length on a disc, counted in blocks (frames) of which 75 make a second. A value;
// any thread. In a QVariant it converts to its text and to its count of blocks.
#pragma once

#include <QMetaType>
#include <QString>

#include <compare>

class DRMSF
{
public:
    DRMSF()
        : DRMSF(0)
    {
    }
    explicit DRMSF(qint64 blocks);

    [[nodiscard]] qint64 blocks() const { return m_blocks; }

    // "mm:ss:ff", each at least two digits; minutes go beyond 99.
    [[nodiscard]] QString description() const;

    auto operator<=>(const DRMSF &) const = default; // NOLINT(modernize-use-nullptr): sees a 0

private:
    qint64 m_blocks;
};

Q_DECLARE_METATYPE(DRMSF)
