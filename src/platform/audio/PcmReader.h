// Reads sources one after the other while worker threads, one a core, decode ahead in bounded
// memory. The source being read may always proceed, so that the others never hold it up. One
// thread at a time; the workers are its own.
#pragma once

#include "AudioSource.h"

#include <QByteArray>
#include <QList>

#include <memory>

class PcmReader
{
public:
    static constexpr qint64 mostBuffered = 64LL * 1024 * 1024; // bytes

    PcmReader(const QList<AudioSource> &sources, const std::stop_token &stop);
    ~PcmReader(); // ends its threads promptly
    PcmReader(const PcmReader &) = delete;
    PcmReader &operator=(const PcmReader &) = delete;

    // The next whole sectors of the source being read, some 64 KiB and never of two sources; empty
    // at that source's end, and then the next source is being read. A failure of a source is
    // returned when its turn comes; a stop request fails with "The job was cancelled.".
    [[nodiscard]] Result<QByteArray> next();

    // Bytes that were decoded and are not read yet, or are being decoded; at most mostBuffered.
    [[nodiscard]] qint64 buffered() const;

private:
    class Workers;
    std::unique_ptr<Workers> m_workers;
};
