// One pass over a source's samples: 44,100 Hz, 16-bit little-endian, stereo. The thread that
// runs it.
#pragma once

#include "AudioSource.h"

#include <QByteArray>

#include <memory>

class PcmDecoder;

class PcmStream
{
public:
    [[nodiscard]] static Result<PcmStream> open(const AudioSource &source);

    PcmStream(PcmStream &&other) noexcept;
    PcmStream &operator=(PcmStream &&other) noexcept;
    ~PcmStream();

    // The next bytes: exactly size of them, fewer only at the end (0 then); in total byteCount().
    // Fails, naming the file, when it is truncated, damaged, or no longer what it was when the
    // source was opened. The last bytes are given out only after the whole file proved good.
    [[nodiscard]] Result<qint64> read(char *buffer, qint64 size);

private:
    explicit PcmStream(const AudioSource &source);
    [[nodiscard]] Result<> decodeMore();
    [[nodiscard]] Result<> finish();

    std::unique_ptr<PcmDecoder> m_decoder;
    qint64 m_frames = 0;  // that the source has, without the silence at the end
    qint64 m_total = 0;   // bytes
    qint64 m_given = 0;   // bytes
    qint64 m_decoded = 0; // frames
    bool m_isEnded = false;
    QByteArray m_ready; // decoded and not given out, from m_readyStart on
    qsizetype m_readyStart = 0;
};
