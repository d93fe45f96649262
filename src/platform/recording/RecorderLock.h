// Keeps other programs off a recorder: a lock on a file, which ends with the process that holds
// it, however that ends. Any thread, one call at a time.
#pragma once

#include <QString>

class RecorderLock
{
public:
    explicit RecorderLock(const QString &path)
        : m_path(path)
    {
    }
    ~RecorderLock() { release(); }
    RecorderLock(const RecorderLock &) = delete;
    RecorderLock &operator=(const RecorderLock &) = delete;

    // False when it is held already, here or elsewhere, and when the file cannot be made.
    [[nodiscard]] bool acquire();
    void release();

    // Whether another holder has it; asking does not take it, not even for a moment.
    [[nodiscard]] static bool isHeldElsewhere(const QString &path);

private:
    QString m_path;
    int m_file = -1; // open while held
};
