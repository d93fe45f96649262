// The command line of maplorn-diskimage. Paths are what the system passed, whatever the locale.
// Main thread.
#pragma once

#include "Result.h"

#include <QByteArray>
#include <QList>

struct Arguments
{
    enum class Task { Image, Help, Version };

    Task task = Task::Image;
    QByteArray source;
    QByteArray output;
    QByteArray volumeName; // UTF-8; empty where none is given
    bool hfs = false;
    bool overwrite = false;
    bool quiet = false;

    // The words behind the program's name, in any order. Fails with what is wrong with them.
    [[nodiscard]] static Result<Arguments> parse(const QList<QByteArray> &words);

    [[nodiscard]] static const char *help();
};
