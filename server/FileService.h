// The operations on the files of the store, from a request's arguments to the answer. Any thread.
#pragma once

#include "FileTree.h"

namespace FileService {

enum Operation { Upload, List, Size, Remove };

// Of the path behind the context; null for any other path.
[[nodiscard]] std::optional<Operation> operation(const QByteArray &path);

// What a request addresses; null where an argument is missing.
struct Place
{
    FileKeys keys;
    QByteArray file;
};
// Whether it may be a place in the tree. A list is of a folder and needs no file.
[[nodiscard]] bool isValid(Operation operation, const Place &place);

// ASCII, without a line break: {"Result":[…]} for a list that has names, a number for a size,
// "true" for a file that was removed; else "false". Not for an upload, which comes in pieces.
[[nodiscard]] QByteArray answer(const FileTree &tree, Operation operation, const Place &place);

// The Content-Type of a picture by its name; null for any other file. What else people have
// stored, a web page say, would act in a browser with the rights of the service's own pages.
[[nodiscard]] const char *pictureType(const QByteArray &name);

}
