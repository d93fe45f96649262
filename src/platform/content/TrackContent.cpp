#include "TrackContent.h"

#include "SourceFile.h"
#include "TrackPass.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace {

constexpr qint64 pageSize = 4096; // bytes

class Writer : public TrackSink
{
public:
    Writer(int descriptor, const QByteArray &path)
        : m_descriptor(descriptor)
        , m_path(path)
    {
    }

    Result<> bytes(qint64 start, const char *data, qint64 length) override
    {
        while (length > 0) {
            const ssize_t put = ::pwrite(m_descriptor, data, static_cast<size_t>(length), start);
            if (put < 0 && errno == EINTR)
                continue;
            if (put <= 0)
                return failure(put < 0 ? errno : ENOSPC);
            data += put;
            start += put;
            length -= put;
        }
        return Done{};
    }

    // The output got its whole length before, and what is not written in it reads as zeros.
    Result<> zeros(qint64 /*start*/, qint64 /*length*/) override { return Done{}; }

    Result<> piece(qint64 start, const SourceFile &file, qint64 offset, qint64 length) override
    {
        // Where the pages of the two files do not match, the kernel takes longer than we.
        const bool pagesMatch = (start - offset) % pageSize == 0;
        const qint64 copied = pagesMatch ? copyInKernel(start, file, offset, length) : 0;
        if (copied == length)
            return Done{};
        // Refused between these file systems, at the end of a file that shrank, or failed: reading
        // and writing by turns goes on where that is possible, and tells which side failed.
        if (!m_buffer)
            m_buffer.reset(new char[TrackPass::chunkSize]);
        const Result<> got = file.read(m_buffer.get(), offset + copied, length - copied);
        return got ? bytes(start + copied, m_buffer.get(), length - copied) : got;
    }

    [[nodiscard]] Failure failure(int error) const
    {
        return m_path.isEmpty() ? Failure{qt_error_string(error)} : fileFailure(m_path, error);
    }

private:
    qint64 copyInKernel(qint64 start, const SourceFile &file, qint64 offset, qint64 length) const
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

    const int m_descriptor;
    const QByteArray m_path;
    std::unique_ptr<char[]> m_buffer; // made only where the kernel does not copy
};

class Comparer : public TrackSink
{
public:
    explicit Comparer(int descriptor)
        : m_descriptor(descriptor)
    {
    }

    Result<> bytes(qint64 start, const char *data, qint64 length) override
    {
        if (Result<> got = read(start, length); !got)
            return got;
        if (std::memcmp(m_found.get(), data, static_cast<size_t>(length)) == 0)
            return Done{};
        const auto *different = std::mismatch(data, data + length, m_found.get()).first;
        return differs(start + (different - data));
    }

    Result<> zeros(qint64 start, qint64 length) override
    {
        std::memset(m_wanted.get(), 0, static_cast<size_t>(length));
        return bytes(start, m_wanted.get(), length);
    }

    Result<> piece(qint64 start, const SourceFile &file, qint64 offset, qint64 length) override
    {
        const Result<> got = file.read(m_wanted.get(), offset, length);
        return got ? bytes(start, m_wanted.get(), length) : got;
    }

private:
    Result<> read(qint64 start, qint64 length)
    {
        for (qint64 done = 0; done < length;) {
            const ssize_t got = ::pread(m_descriptor, m_found.get() + done,
                                        static_cast<size_t>(length - done), start + done);
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0)
                return Failure{qt_error_string(errno)};
            if (got == 0)
                return differs(start + done);
            done += got;
        }
        return Done{};
    }

    static Failure differs(qint64 position)
    {
        return Failure{QStringLiteral("Block %1 of the track is not what it should be")
                           .arg(position / TrackContent::blockSize)};
    }

    const int m_descriptor;
    std::unique_ptr<char[]> m_found{new char[TrackPass::chunkSize]};
    std::unique_ptr<char[]> m_wanted{new char[TrackPass::chunkSize]};
};

}

TrackContent::TrackContent(QList<Extent> extents, qint64 blockCount)
    : m_extents(std::move(extents))
    , m_blockCount(blockCount)
{
}

Result<TrackContent> TrackContent::fromImageFile(const QString &path)
{
    Result<QByteArray> file = realPath(QFile::encodeName(path));
    if (!file)
        return file.failure();
    Extent extent;
    extent.path = std::move(file.value());
    struct stat status = {};
    if (::stat(extent.path.constData(), &status) != 0)
        return fileFailure(extent.path, errno);
    if (!S_ISREG(status.st_mode) || status.st_size == 0)
        return Failure{QStringLiteral("%1: not a disc image").arg(path)};
    extent.length = extent.fileSize = status.st_size;
    extent.modified = status.st_mtim.tv_sec;
    if (const Result<SourceFile> readable = SourceFile::open(extent); !readable)
        return readable.failure();
    const qint64 blockCount = (extent.length + blockSize - 1) / blockSize;
    return TrackContent({extent}, blockCount);
}

Result<> TrackContent::writeTo(int fileDescriptor, const Advance &advance) const
{
    return writeToPath({}, fileDescriptor, advance);
}

Result<> TrackContent::writeToPath(const QByteArray &path, int fileDescriptor,
                                   const Advance &advance) const
{
    Writer writer(fileDescriptor, path);
    if (::ftruncate(fileDescriptor, byteCount()) != 0)
        return writer.failure(errno);
    return TrackPass(writer, advance).run(m_extents, byteCount());
}

Result<> TrackContent::compareWith(int fileDescriptor, const Advance &advance) const
{
    Comparer comparer(fileDescriptor);
    return TrackPass(comparer, advance).run(m_extents, byteCount());
}
