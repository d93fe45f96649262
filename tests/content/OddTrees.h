// Folders that a disc image may lose something of: one case each, named by what would break.
#pragma once

#include <QByteArray>

#include <span>

using MakeTree = void (*)(const QByteArray &folder); // fills a folder that is there and empty
struct OddTree
{
    const char *name;
    MakeTree make;
};

[[nodiscard]] std::span<const OddTree> oddTrees();
