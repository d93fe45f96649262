// What the tests of the track contents share: making trees of files, writing tracks to files,
// running the programs that read images back, comparing what these extract. Main thread.
#pragma once

#include "TrackContent.h"

#include <QByteArrayList>

namespace TreeTools {

// Makes a file and the folders above it. The path is in the encoding of the file system.
void makeFile(const QByteArray &path, const QByteArray &bytes);

void makeFolder(const QByteArray &path); // with those above it
void makeLink(const QByteArray &target, const QByteArray &path);
void makeHardLink(const QByteArray &file, const QByteArray &path);
void makePipe(const QByteArray &path);
void setMode(const QByteArray &path, unsigned mode);

// Bytes that look random and are the same in every run.
[[nodiscard]] QByteArray noise(qint64 length);

[[nodiscard]] QByteArray readFile(const QByteArray &path);

// Writes a track into a new file. The reason of a failure, or an empty text.
[[nodiscard]] QString write(const TrackContent &content, const QByteArray &file);

// Compares a track with a file. The reason of a failure, or an empty text.
[[nodiscard]] QString compare(const TrackContent &content, const QByteArray &file);

// What a program prints; what it says of its failure begins with "failed".
[[nodiscard]] QByteArray run(const QByteArrayList &command);

// The HFS+ volume of an image, which lies where its partition map says, as a file of its own; empty
// where the image has none.
[[nodiscard]] QByteArray cutHfsVolume(const QByteArray &image);

// One line for everything below a folder: path, kind, link target, size and content.
[[nodiscard]] QByteArrayList listing(const QByteArray &folder);

// The contents of the files of a listing, in order; of those that are not empty alone, if so asked.
[[nodiscard]] QByteArrayList contents(const QByteArrayList &listing, bool withEmpty);

}
