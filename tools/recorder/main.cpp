// maplorn-recorder: prints the recorders and their state, inserts and ejects the media of the
// virtual recorder. Exit status: 0 done, 1 failed or refused, 2 wrong usage.

#include "MediaTypes.h"
#include "RecorderCommands.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;

int fail(int exitStatus, const QString &reason)
{
    QTextStream(stderr) << QStringLiteral("maplorn-recorder: ") << reason << Qt::endl;
    return exitStatus;
}

int print(const Result<QString> &text)
{
    if (!text)
        return fail(failed, text.error());
    QTextStream(stdout) << text.value();
    return 0;
}

void describe(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        QStringLiteral("Prints the state of the virtual recorder, inserts and ejects its media.\n\n"
                       "Commands:\n"
                       "  list         print each recorder's name and folder, separated by a tab\n"
                       "  status       print the recorder's state and what medium is in it\n"
                       "  insert TYPE  insert a blank medium; a written disc in its place is kept\n"
                       "  eject        take the medium out; a written disc is kept\n\n"
                       "Types: %1\n\n"
                       "Exit status: 0 done, 1 failed or refused, 2 wrong usage.")
            .arg(RecorderCommands::insertableTypes()));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("command"),
                                 QStringLiteral("list, status, insert or eject"));
    parser.addPositionalArgument(QStringLiteral("TYPE"),
                                 QStringLiteral("the type of medium to insert"),
                                 QStringLiteral("[TYPE]"));
}

// What is wrong with the command line; empty where nothing is.
QString usageFault(const QStringList &words)
{
    static const QStringList plain{QStringLiteral("list"), QStringLiteral("status"),
                                   QStringLiteral("eject")};
    if (words.isEmpty())
        return QStringLiteral("a command is missing: list, status, insert TYPE or eject");
    const bool insert = words.first() == QLatin1String("insert");
    if (!insert && !plain.contains(words.first()))
        return QStringLiteral("\"%1\" is no command: list, status, insert TYPE or eject")
            .arg(words.first());
    if (insert && words.size() < 2)
        return QStringLiteral("insert needs a type: %1").arg(RecorderCommands::insertableTypes());
    if (insert && !MediaTypes::findByCommandName(words.at(1)))
        return QStringLiteral("\"%1\" is no type of medium: %2")
            .arg(words.at(1), RecorderCommands::insertableTypes());
    const qsizetype expected = insert ? 2 : 1;
    if (words.size() > expected)
        return QStringLiteral("\"%1\" is too much").arg(words.at(expected));
    return {};
}

int run(const QStringList &words)
{
    const auto created = VirtualRecorder::create(VirtualRecorder::defaultFolder());
    if (!created)
        return fail(failed, created.error());
    VirtualRecorder &recorder = *created.value();
    const QString &command = words.first();
    if (command == QLatin1String("list"))
        return print(RecorderCommands::list(recorder));
    if (command == QLatin1String("status"))
        return print(RecorderCommands::status(recorder));
    if (command == QLatin1String("insert"))
        return print(
            RecorderCommands::insert(recorder, *MediaTypes::findByCommandName(words.at(1))));
    return print(RecorderCommands::eject(recorder));
}

}

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("maplorn-recorder"));
    QCoreApplication::setApplicationVersion(QStringLiteral(MAPLORN_VERSION));
    QCommandLineParser parser;
    describe(parser);
    if (!parser.parse(QCoreApplication::arguments()))
        return fail(wrongUsage, parser.errorText());
    if (parser.isSet(QStringLiteral("version")))
        parser.showVersion();
    if (parser.isSet(QStringLiteral("help")))
        parser.showHelp();
    const QStringList words = parser.positionalArguments();
    if (const QString fault = usageFault(words); !fault.isEmpty())
        return fail(wrongUsage, fault);
    return run(words);
}
