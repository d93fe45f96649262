// An audio file opened by FFmpeg: the parameters of its audio stream, and its packets one after
// the other. Whatever FFmpeg would read over, lost bytes or a stop request, ends in a failure that
// names the file. One thread at a time.
#pragma once

#include "AudioLayout.h"
#include "AvHandles.h"
#include "FileBytes.h"

#include <stop_token>

struct AVStream;

class AudioInput
{
public:
    [[nodiscard]] static Result<std::unique_ptr<AudioInput>>
    open(FileBytes bytes, const AudioLayout &layout, const std::stop_token &stop);

    ~AudioInput();

    // The audio stream, with what is known of it after its first packets.
    [[nodiscard]] const AVStream &stream() const { return *m_stream; }
    [[nodiscard]] const AVFormatContext &format() const { return *m_format; }

    // The next packet of the audio stream, owned by this object until the next call; null at the
    // end of the file.
    [[nodiscard]] Result<const AVPacket *> next();

    // The file's name before a reason, or that the work was stopped, or that reading failed.
    [[nodiscard]] Failure failure(const QString &reason) const;
    [[nodiscard]] const FileBytes &bytes() const { return m_bytes; }
    [[nodiscard]] const AudioLayout &layout() const { return m_layout; }
    [[nodiscard]] const std::stop_token &stop() const { return m_stop; }

private:
    AudioInput(FileBytes bytes, const AudioLayout &layout, std::stop_token stop);
    [[nodiscard]] Result<> begin();
    [[nodiscard]] QString checkStream() const; // why it cannot be used; empty when it can
    [[nodiscard]] bool isEndedByFile() const;

    // Bytes from m_position on, fewer before a gap; 0 at the end.
    [[nodiscard]] qint64 readShown(void *to, qint64 length);
    static int readBytes(void *input, uint8_t *to, int length);
    static int64_t seekBytes(void *input, int64_t offset, int whence);

    FileBytes m_bytes;
    const AudioLayout m_layout;
    const std::stop_token m_stop;
    qint64 m_position = 0; // in what the demuxer is shown
    AvHandle<AVIOContext> m_io;
    AvHandle<AVFormatContext> m_format;
    AvHandle<AVPacket> m_packet;
    qint64 m_size = 0; // of what the demuxer is shown
    AVStream *m_stream = nullptr;
};
