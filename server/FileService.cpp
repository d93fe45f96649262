#include "FileService.h"

#include <QHash>

namespace {

constexpr qsizetype longestReply = 64 << 20; // bytes: what the clients take

// As a JSON text of ASCII characters, since clients read no others.
QByteArray quoted(const QByteArray &name)
{
    QByteArray text = "\"";
    for (const QChar c : QString::fromUtf8(name)) {
        if (c == u'"')
            text += "\\\"";
        else if (c.unicode() >= 0x20 && c.unicode() < 0x7f)
            text += c.toLatin1(); // a backslash is in no name
        else
            text += "\\u" + QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
    }
    return text + '"';
}

QByteArray list(const QByteArrayList &names)
{
    QByteArray members;
    for (const QByteArray &name : names)
        members += (members.isEmpty() ? "" : ",") + quoted(name);
    if (members.isEmpty() || members.size() > longestReply)
        return "false";
    return "{\"Result\":[" + members + "]}";
}

QByteArray size(const std::optional<FileTree::File> &file)
{
    return file ? QByteArray::number(file->size) : QByteArray("false");
}

}

std::optional<FileService::Operation> FileService::operation(const QByteArray &path)
{
    static const QHash<QByteArray, Operation> operations{{"UploadService", Upload},
                                                         {"GetFilesService", List},
                                                         {"GetFileSizeService", Size},
                                                         {"DeleteFileService", Remove}};
    const auto found = operations.find(path);
    return found == operations.end() ? std::nullopt : std::optional(*found);
}

bool FileService::isValid(Operation operation, const Place &place)
{
    return FileTree::areValid(place.keys)
           && (operation == List || FileTree::isValidName(place.file));
}

QByteArray FileService::answer(const FileTree &tree, Operation operation, const Place &place)
{
    switch (operation) {
    case List:
        return list(tree.names(place.keys));
    case Size:
        return size(tree.find(place.keys, place.file));
    case Remove:
        return tree.remove(place.keys, place.file) ? "true" : "false";
    case Upload:
        break;
    }
    return "false";
}

const char *FileService::pictureType(const QByteArray &name)
{
    static const QHash<QByteArray, const char *> types{
        {".png", "image/png"}, {".jpg", "image/jpeg"}, {".jpeg", "image/jpeg"}};
    return types.value(name.mid(name.lastIndexOf('.')).toLower());
}
