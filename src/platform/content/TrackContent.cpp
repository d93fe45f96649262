#include "TrackContent.h"

#include "ParallelPass.h"
#include "SourceFile.h"
#include "TrackPass.h"
#include "TrackWriter.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace {

class Comparer : public ByteSink
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
    extent.modified = changeTime(status);
    if (const Result<SourceFile> readable = SourceFile::open(extent); !readable)
        return readable.failure();
    const qint64 blockCount = (extent.length + blockSize - 1) / blockSize;
    return TrackContent({extent}, blockCount);
}

Result<> TrackContent::writeTo(int fileDescriptor, const Advance &advance) const
{
    if (::ftruncate(fileDescriptor, byteCount()) != 0)
        return Failure{qt_error_string(errno)};
    TrackWriter writer(fileDescriptor, {}, TrackWriter::Way::KernelCopies);
    return TrackPass(writer, advance).run(m_extents, 0, byteCount());
}

Result<> TrackContent::writeToPath(const QByteArray &path, int fileDescriptor,
                                   const Advance &advance) const
{
    if (::ftruncate(fileDescriptor, byteCount()) != 0)
        return fileFailure(path, errno);
    return ParallelPass(m_extents, byteCount(), advance).run([&] {
        return std::make_unique<TrackWriter>(fileDescriptor, path,
                                             TrackWriter::Way::ReadsAndWrites);
    });
}

Result<> TrackContent::passTo(TrackSink &sink, const Advance &advance) const
{
    return TrackPass(sink, advance).run(m_extents, 0, byteCount());
}

Result<> TrackContent::compareWith(int fileDescriptor, const Advance &advance) const
{
    Comparer comparer(fileDescriptor);
    return TrackPass(comparer, advance).run(m_extents, 0, byteCount());
}
