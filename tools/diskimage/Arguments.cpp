#include "Arguments.h"

#include <QFile>

#include <array>

namespace {

constexpr const char *command = "makehybrid";

struct Flag
{
    const char *name;
    bool Arguments::*member;
};
constexpr std::array<Flag, 3> flags = {{
    {"-hfs", &Arguments::hfs},
    {"-ov", &Arguments::overwrite},
    {"-quiet", &Arguments::quiet},
}};

struct Option
{
    const char *name;
    QByteArray Arguments::*member;
};
constexpr std::array<Option, 2> options = {{
    {"-o", &Arguments::output},
    {"-default-volume-name", &Arguments::volumeName},
}};

template <typename Table>
const auto *find(const Table &table, const QByteArray &word)
{
    for (const auto &entry : table)
        if (word == entry.name)
            return &entry;
    return static_cast<const typename Table::value_type *>(nullptr);
}

Failure wrong(const char *text, const QByteArray &word)
{
    return Failure{QString::fromLatin1(text).arg(QFile::decodeName(word))};
}

// The command and the folder, in any order: the folder may have the command's name.
Result<Arguments> withWords(Arguments arguments, QList<QByteArray> words)
{
    if (!words.removeOne(QByteArray(command)))
        return Failure{QStringLiteral("the command is missing: makehybrid")};
    if (words.isEmpty())
        return Failure{QStringLiteral("the source folder is missing")};
    if (words.size() > 1)
        return wrong("\"%1\" is too much", words.at(1));
    if (arguments.output.isEmpty())
        return Failure{QStringLiteral("the output is missing: -o FILE")};
    arguments.source = words.constFirst();
    return arguments;
}

}

Result<Arguments> Arguments::parse(const QList<QByteArray> &words)
{
    Arguments arguments;
    QList<QByteArray> plain;
    QList<QByteArray> given;
    bool onlyPlain = false;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QByteArray &word = words.at(i);
        if (onlyPlain || !word.startsWith('-')) {
            plain.append(word);
        } else if (word == "--") {
            onlyPlain = true;
        } else if (word == "--help" || word == "--version") {
            arguments.task = word == "--help" ? Task::Help : Task::Version;
            return arguments;
        } else if (const Flag *flag = find(flags, word)) {
            arguments.*flag->member = true;
        } else if (const Option *option = find(options, word)) {
            if (given.contains(word))
                return wrong("%1 is given twice", word);
            if (i + 1 == words.size())
                return wrong("%1 needs a value", word);
            given.append(word);
            arguments.*option->member = words.at(++i);
        } else {
            return wrong("unknown option %1", word);
        }
    }
    return withWords(std::move(arguments), std::move(plain));
}

const char *Arguments::help()
{
    return "Usage: maplorn-diskimage makehybrid [options] -o FILE FOLDER\n"
           "\n"
           "Makes a disc image of a folder: ISO 9660 with Rock Ridge and Joliet.\n"
           "\n"
           "Options, in any order:\n"
           "  -o FILE                    the image\n"
           "  -hfs                       with an HFS+ volume of the same files\n"
           "  -default-volume-name NAME  the volume's name; the folder's name without it\n"
           "  -ov                        replace an image that is there\n"
           "  -quiet                     print nothing but the reason of a failure\n"
           "  --                         what follows is no option\n"
           "  --help                     print this and exit\n"
           "  --version                  print the version and exit\n"
           "\n"
           "Exit status: 0 done, 1 failed; then an image that was there is as it was.\n";
}
