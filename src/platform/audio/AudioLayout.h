// How an audio file is built, found without decoding: its kind, the bytes that hold the audio, and
// whether everything that its own headers promise is there. FFmpeg reads on over what is missing
// or damaged, so this is looked at first. Any thread.
#pragma once

#include <QList>
#include <QString>

#include <stop_token>

class FileBytes;

struct AudioLayout
{
    // Of which the rate of every kind that is counted here is a whole part, so that nothing is
    // lost to rounding.
    static constexpr qint64 ticksPerSecond = 14'112'000;

    struct Gap
    {
        qint64 begin = 0;
        qint64 end = 0;
    };

    const char *demuxer = nullptr; // FFmpeg's name of the kind of file; null when it is none
    qint64 begin = 0; // the bytes that the demuxer is shown, without the tags of an mp3
    qint64 end = 0;
    QList<Gap> gaps; // between them, in their order: what the demuxer is not shown
    bool isMpeg = false;
    bool openEnded = false; // the header does not tell how much audio follows
    qint64 frames = 0;      // audio frames, of the kinds that are counted here (mp3, amr), else 0
    qint64 ticks = 0;       // and their playing time
    QString fault;          // why the audio is not all there; empty when it is

    // Header leaves the frames of an mp3 that tells its length uncounted, and so truncation of
    // them unnoticed.
    enum class Depth { Header, Whole };
    [[nodiscard]] static AudioLayout of(FileBytes &bytes, Depth depth, const std::stop_token &stop);

    [[nodiscard]] static QString truncated();
    [[nodiscard]] static QString damaged();
    [[nodiscard]] static QString noAudio();
    [[nodiscard]] static QString isProtected();
    [[nodiscard]] static QString notAudio();
};
