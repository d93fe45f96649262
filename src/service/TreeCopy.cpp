#include "TreeCopy.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

constexpr qint64 chunkSize = 1 << 20; // bytes between two looks at the stop token

Failure failure(const fs::path &path, const QString &reason)
{
    return Failure{QStringLiteral("%1: %2").arg(QFile::decodeName(path.string().c_str()), reason)};
}

Failure failure(const fs::path &path, const std::error_code &error)
{
    return failure(path, QString::fromStdString(error.message()));
}

class Copier
{
public:
    Copier(fs::path leftOut, std::stop_token stop)
        : m_leftOut(std::move(leftOut))
        , m_stop(std::move(stop))
    {
    }

    Result<> copy(const fs::path &source, const fs::path &target) const
    {
        if (m_stop.stop_requested())
            return failure(source, QStringLiteral("The copying was stopped."));
        std::error_code error;
        const fs::file_status status = fs::symlink_status(source, error);
        if (error)
            return failure(source, error);
        switch (status.type()) {
        case fs::file_type::directory:
            return isLeftOut(source) ? Result<>(Done{}) : copyFolder(source, target, status);
        case fs::file_type::regular:
            return copyFile(source, target, status);
        case fs::file_type::symlink:
            fs::copy_symlink(source, target, error);
            return error ? Result<>(failure(source, error)) : Done{};
        default:
            return Done{};
        }
    }

private:
    [[nodiscard]] bool isLeftOut(const fs::path &folder) const
    {
        std::error_code ignored;
        return !m_leftOut.empty() && fs::equivalent(folder, m_leftOut, ignored);
    }

    Result<> copyFolder(const fs::path &source, const fs::path &target,
                        const fs::file_status &status) const
    {
        std::error_code error;
        fs::create_directory(target, error);
        if (error)
            return failure(target, error);
        fs::directory_iterator entry(source, error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error))
            if (Result<> copied = copy(entry->path(), target / entry->path().filename()); !copied)
                return copied;
        if (error)
            return failure(source, error);
        return keepAttributes(source, target, status);
    }

    Result<> copyFile(const fs::path &source, const fs::path &target,
                      const fs::file_status &status) const
    {
        QFile from;
        QFile to;
        if (!open(from, source, O_RDONLY | O_NOFOLLOW, QIODevice::ReadOnly))
            return failure(source, qt_error_string(errno));
        if (!open(to, target, O_WRONLY | O_CREAT | O_EXCL, QIODevice::WriteOnly))
            return failure(target, qt_error_string(errno));
        QByteArray chunk(chunkSize, Qt::Uninitialized);
        for (;;) {
            const qint64 count = from.read(chunk.data(), chunk.size());
            if (count < 0)
                return failure(source, from.errorString());
            if (count == 0)
                break;
            if (to.write(chunk.constData(), count) != count)
                return failure(target, to.errorString());
            if (m_stop.stop_requested())
                return failure(source, QStringLiteral("The copying was stopped."));
        }
        to.close();
        return keepAttributes(source, target, status);
    }

    // By the name's bytes, which need not be text. False with errno.
    static bool open(QFile &file, const fs::path &path, int flags, QIODevice::OpenMode mode)
    {
        constexpr mode_t ownerOnly = 0600;
        const int descriptor = ::open(path.c_str(), flags | O_CLOEXEC, ownerOnly);
        return descriptor >= 0
               && file.open(descriptor, mode | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle);
    }

    static Result<> keepAttributes(const fs::path &source, const fs::path &target,
                                   const fs::file_status &status)
    {
        std::error_code error;
        const fs::file_time_type changed = fs::last_write_time(source, error);
        if (!error)
            fs::last_write_time(target, changed, error);
        // Write permission for the owner, so that the copy can be replaced and removed again.
        fs::permissions(target, status.permissions() | fs::perms::owner_write, error);
        return Done{};
    }

    fs::path m_leftOut;
    std::stop_token m_stop;
};

fs::path toPath(const QString &path)
{
    return {QFile::encodeName(path).toStdString()};
}

}

bool TreeCopy::remove(const QString &path)
{
    std::error_code error;
    fs::remove_all(toPath(path), error);
    return !error;
}

Result<> TreeCopy::copy(const QString &source, const QString &target, const QString &leftOut,
                        const std::stop_token &stop)
{
    return Copier(toPath(leftOut), stop).copy(toPath(source), toPath(target));
}
