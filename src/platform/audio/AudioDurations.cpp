#include "AudioDurations.h"

#include "AudioFile.h"
#include "FileBytes.h"

#include <QFile>
#include <QHash>

#include <mutex>
#include <optional>

namespace {

struct Measured
{
    qint64 size = 0;     // bytes
    qint64 modified = 0; // nanoseconds since 1970
    int seconds = 0;
};

class Memory
{
public:
    static Memory &instance()
    {
        static Memory memory;
        return memory;
    }

    std::optional<int> find(const QString &path, const struct stat &status)
    {
        const std::scoped_lock lock(m_mutex);
        const auto found = m_files.constFind(path);
        if (found == m_files.cend() || found->size != status.st_size
            || found->modified != FileBytes::nanoseconds(status))
            return {};
        return found->seconds;
    }

    void keep(const QString &path, const struct stat &status, int seconds)
    {
        constexpr qsizetype most = 10'000;
        const std::scoped_lock lock(m_mutex);
        if (m_files.size() >= most)
            m_files.clear();
        m_files.insert(path, {status.st_size, FileBytes::nanoseconds(status), seconds});
    }

private:
    std::mutex m_mutex; // not held while a file is measured
    QHash<QString, Measured> m_files;
};

}

int AudioDurations::seconds(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return 0;
    if (const std::optional<int> known = Memory::instance().find(path, status))
        return *known;
    // Looked at before it is measured: a file that changes meanwhile is measured again.
    const Result<double> duration = AudioFile::duration(path);
    const int seconds = duration ? static_cast<int>(duration.value()) : 0;
    Memory::instance().keep(path, status, seconds);
    return seconds;
}
