// Writes a track into a regular file that has the track's whole length already and is zero. One
// thread; several writers may fill one file.
#pragma once

#include "TrackPass.h"

class TrackWriter : public TrackSink
{
public:
    // One thread is faster where the kernel copies from file to file. Two, who would wait for each
    // other in that, are faster when each reads while the other one writes.
    enum class Way { KernelCopies, ReadsAndWrites };

    // The failures to write begin with the path where that is not empty.
    TrackWriter(int descriptor, QByteArray path, Way way)
        : m_descriptor(descriptor)
        , m_path(std::move(path))
        , m_way(way)
    {
    }

    Result<> bytes(qint64 start, const char *data, qint64 length) override;
    Result<> zeros(qint64 start, qint64 length) override;
    Result<> piece(qint64 start, const SourceFile &file, qint64 offset, qint64 length) override;

private:
    [[nodiscard]] qint64 copyInKernel(qint64 start, const SourceFile &file, qint64 offset,
                                      qint64 length) const;

    const int m_descriptor;
    const QByteArray m_path;
    const Way m_way;
    std::unique_ptr<char[]> m_buffer; // made only where the kernel does not copy
};
