#include "TrackWriter.h"

#include "SourceFile.h"

#include <cerrno>
#include <unistd.h>

namespace {

constexpr qint64 pageSize = 4096; // bytes

}

Result<> TrackWriter::bytes(qint64 start, const char *data, qint64 length)
{
    while (length > 0) {
        const ssize_t put = ::pwrite(m_descriptor, data, static_cast<size_t>(length), start);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0) {
            const int error = put < 0 ? errno : ENOSPC;
            return m_path.isEmpty() ? Failure{qt_error_string(error)} : fileFailure(m_path, error);
        }
        data += put;
        start += put;
        length -= put;
    }
    return Done{};
}

Result<> TrackWriter::zeros(qint64 /*start*/, qint64 /*length*/)
{
    return Done{}; // what is not written in the file reads as zeros
}

Result<> TrackWriter::piece(qint64 start, const SourceFile &file, qint64 offset, qint64 length)
{
    // Where the pages of the two files do not match, the kernel takes longer than we.
    const bool pagesMatch = (start - offset) % pageSize == 0;
    const qint64 copied =
        m_way == Way::KernelCopies && pagesMatch ? copyInKernel(start, file, offset, length) : 0;
    if (copied == length)
        return Done{};
    // Refused between these file systems, at the end of a file that shrank, or failed: reading
    // and writing by turns goes on where that is possible, and tells which side failed.
    if (!m_buffer)
        m_buffer.reset(new char[TrackPass::chunkSize]);
    const Result<> got = file.read(m_buffer.get(), offset + copied, length - copied);
    return got ? bytes(start + copied, m_buffer.get(), length - copied) : got;
}

qint64 TrackWriter::copyInKernel(qint64 start, const SourceFile &file, qint64 offset,
                                 qint64 length) const
{
    off_t from = offset;
    off_t to = start;
    const off_t end = offset + length;
    while (from < end) {
        const ssize_t copied = ::copy_file_range(file.descriptor(), &from, m_descriptor, &to,
                                                 static_cast<size_t>(end - from), 0);
        if (copied == 0 || (copied < 0 && errno != EINTR))
            break;
    }
    return from - offset;
}
