#include "AmrFrame.h"
#include "FileBytes.h"
#include "LayoutScans.h"

#include <QByteArrayView>

AudioLayout LayoutScans::amr(FileBytes &bytes, const std::stop_token &stop)
{
    AudioLayout layout;
    layout.demuxer = "amr";
    layout.end = bytes.size();
    const uchar *magic = bytes.at(0, 9);
    const bool isWide = magic && QByteArrayView(magic, 9) == "#!AMR-WB\n";
    if (!isWide && QByteArrayView(bytes.at(0, 6), 6) != "#!AMR\n") {
        layout.fault = AudioLayout::notAudio();
        return layout;
    }
    qint64 offset = isWide ? 9 : 6;
    while (const uchar *first = bytes.at(offset, 1)) {
        if (stop.stop_requested())
            return layout;
        const int size = AmrFrame::size(*first, isWide);
        if (size == 0 || offset + size > layout.end) {
            layout.fault = size == 0 ? AudioLayout::damaged() : AudioLayout::truncated();
            break;
        }
        offset += size;
        ++layout.frames;
    }
    layout.ticks = layout.frames * (AudioLayout::ticksPerSecond / AmrFrame::perSecond);
    return layout;
}
