#include "TrackSheets.h"

#include "CDTextToc.h"
#include "DRMSF.h"

namespace {

QByteArray msf(qint64 blocks)
{
    return DRMSF(blocks).description().toLatin1();
}

}

QByteArray TrackSheets::cueSheet(const QList<qint64> &lengths, bool hasCDText)
{
    QByteArray sheet = hasCDText ? "CDTEXTFILE \"disc.cdt\"\n" : "";
    sheet += "FILE \"disc.bin\" BINARY\n";
    qint64 start = 0;
    for (qsizetype i = 0; i < lengths.size(); ++i) {
        const QByteArray number = QByteArray::number(i + 1).rightJustified(2, '0');
        sheet += "  TRACK " + number + " AUDIO\n    INDEX 01 " + msf(start) + '\n';
        start += lengths.at(i);
    }
    return sheet;
}

// The pause of two seconds before the first track is understood; SWAP, since raw files are read as
// big-endian.
QByteArray TrackSheets::tocFile(const QList<qint64> &lengths, const QList<DRCDTextBlock> &cdText)
{
    const auto count = static_cast<int>(lengths.size());
    QByteArray sheet = "CD_DA\n" + CDTextToc::ofDisc(cdText, count);
    qint64 start = 0;
    for (int i = 0; i < count; ++i) {
        const qint64 length = lengths.at(i);
        sheet += "TRACK AUDIO\n" + CDTextToc::ofTrack(cdText, count, i) + "FILE \"disc.bin\" SWAP "
                 + msf(start) + ' ' + msf(length) + '\n';
        start += length;
    }
    return sheet;
}
