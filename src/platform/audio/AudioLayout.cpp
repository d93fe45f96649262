#include "AudioLayout.h"

#include "FileBytes.h"
#include "LayoutScans.h"

#include <QByteArrayView>

using namespace LayoutScans;

AudioLayout AudioLayout::of(FileBytes &bytes, Depth depth, const std::stop_token &stop)
{
    const uchar *start = bytes.at(0, 12);
    const QByteArrayView head(start, start ? 12 : 0);
    const QByteArrayView form = head.sliced(head.isEmpty() ? 0 : 8);
    const QByteArrayView box = head.sliced(head.isEmpty() ? 0 : 4).first(form.size());
    if (form == "WAVE")
        return wave(bytes);
    if (head.startsWith("FORM") && (form == "AIFF" || form == "AIFC"))
        return aiff(bytes);
    if (head.startsWith(".snd"))
        return au(bytes);
    if (head.startsWith("caff"))
        return caf(bytes);
    if (head.startsWith("#!AMR"))
        return amr(bytes, stop);
    for (const char *first : {"ftyp", "moov", "mdat", "free", "skip", "wide"})
        if (box == first)
            return mp4(bytes);
    return mpeg(bytes, depth, stop);
}

QString AudioLayout::truncated()
{
    return QStringLiteral("the file is truncated");
}

QString AudioLayout::damaged()
{
    return QStringLiteral("the file is damaged");
}

QString AudioLayout::noAudio()
{
    return QStringLiteral("the file holds no audio");
}

QString AudioLayout::isProtected()
{
    return QStringLiteral("the file is protected against copying");
}

QString AudioLayout::notAudio()
{
    return QStringLiteral("not an audio file of a known kind");
}
