// maplorn-service: keeps the tables and files of Maplorn Disc and serves its web pages.
#include "Database.h"
#include "FileTree.h"
#include "HttpServer.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int defaultPort = 8765;

struct Options
{
    QString folder;
    ServerSettings server;
    bool isChild = false;
};

QCommandLineOption option(const char *name, const char *description, const char *value = "",
                          const char *preset = "")
{
    return QCommandLineOption(QLatin1StringView(name), QLatin1StringView(description),
                              QLatin1StringView(value), QLatin1StringView(preset));
}

// "/app" for "app", "/app" and "app/"; "" for none.
QByteArray contextOf(QString text)
{
    while (text.startsWith(u'/'))
        text.remove(0, 1);
    while (text.endsWith(u'/'))
        text.chop(1);
    return text.isEmpty() ? QByteArray() : '/' + text.toUtf8();
}

// The first line of the file, or of standard input where the name is empty.
Result<QByteArray> passwordFrom(const QString &name)
{
    QFile file(name);
    const bool isOpen = name.isEmpty()
                            ? file.open(stdin, QIODevice::ReadOnly | QIODevice::Unbuffered)
                            : file.open(QIODevice::ReadOnly);
    const QString source = name.isEmpty() ? QStringLiteral("standard input") : name;
    if (!isOpen)
        return Failure{QStringLiteral("%1: %2").arg(source, file.errorString())};
    const QByteArray password = file.readLine().trimmed();
    if (password.isEmpty())
        return Failure{QStringLiteral("%1: holds no password").arg(source)};
    return password;
}

Result<Options> optionsOf(const QCommandLineParser &parser)
{
    Options options;
    options.folder = parser.value(QStringLiteral("data"));
    if (options.folder.isEmpty())
        return Failure{
            QStringLiteral("--data is missing: the folder that holds the database and the files")};
    const QString mebibytes = parser.value(QStringLiteral("max-file-size"));
    const uint fileSize = mebibytes.toUInt();
    if (fileSize == 0)
        return Failure{QStringLiteral("%1: not a size in MiB").arg(mebibytes)};
    options.server.longestFile = static_cast<qint64>(fileSize) << 20;
    const QString address = parser.value(QStringLiteral("address"));
    if (!options.server.address.setAddress(address))
        return Failure{QStringLiteral("%1: not an address").arg(address)};
    bool isPort = false;
    options.server.port = parser.value(QStringLiteral("port")).toUShort(&isPort);
    if (!isPort)
        return Failure{QStringLiteral("%1: not a port").arg(parser.value(QStringLiteral("port")))};
    options.server.context = contextOf(parser.value(QStringLiteral("context")));
    options.isChild = parser.isSet(QStringLiteral("child"));
    const QString passwordFile = parser.value(QStringLiteral("password-file"));
    if (passwordFile.isEmpty() && !options.isChild)
        return Failure{
            QStringLiteral("--password-file is missing: a file whose first line is the password")};
    const Result<QByteArray> password = passwordFrom(passwordFile);
    if (!password)
        return password.failure();
    options.server.password = password.value();
    return options;
}

int fail(const QString &reason)
{
    std::fprintf(stderr, "maplorn-service: %s\n", qUtf8Printable(reason));
    return EXIT_FAILURE;
}

// SIGTERM and SIGINT as a file that becomes readable. Before any thread begins.
int blockedSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    return signalfd(-1, &signals, SFD_CLOEXEC);
}

// The application keeps the pipe open as long as it lives.
void endWithParent(QSocketNotifier &notifier)
{
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [] {
        char byte = 0;
        if (read(STDIN_FILENO, &byte, 1) <= 0)
            QCoreApplication::quit();
    });
}

int serve(const Options &options, int signals)
{
    if (const Result<> prepared = Database::prepare(options.folder); !prepared)
        return fail(prepared.error());
    const Result<FileTree> files = FileTree::open(options.folder + QStringLiteral("/files"));
    if (!files)
        return fail(files.error());
    const Result<std::unique_ptr<HttpServer>> server =
        HttpServer::start(options.server, files.value());
    if (!server)
        return fail(server.error());
    qInfo("listening on %s, port %d", qUtf8Printable(options.server.address.toString()),
          server.value()->port());
    QSocketNotifier ended(signals, QSocketNotifier::Read);
    QObject::connect(&ended, &QSocketNotifier::activated, &ended, &QCoreApplication::quit);
    QSocketNotifier orphaned(STDIN_FILENO, QSocketNotifier::Read);
    orphaned.setEnabled(options.isChild);
    endWithParent(orphaned);
    if (options.isChild) {
        std::printf("%d\n", server.value()->port());
        std::fflush(stdout);
    }
    const int result = QCoreApplication::exec();
    qInfo("ended");
    return result;
}

}

int main(int argc, char **argv)
{
    const int signals = blockedSignals();
    umask(S_IRWXG | S_IRWXO); // the database holds passwords
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("maplorn-service"));
    QCoreApplication::setApplicationVersion(QStringLiteral(MAPLORN_VERSION));
    qSetMessagePattern(QStringLiteral("%{time yyyy-MM-dd HH:mm:ss} maplorn-service: %{message}"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Keeps the tables of Maplorn Disc in an SQLite database, and its files in a folder, and "
        "serves its web pages."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        option("data", "The folder that holds the database and the files; made if it is missing.",
               "folder"),
        option("address", "The address to listen on (127.0.0.1).", "address", "127.0.0.1"),
        option("port", "The port to listen on (8765); 0 for any free one.", "port",
               std::to_string(defaultPort).c_str()),
        option("context", "The path that all addresses begin with (none).", "path"),
        option("password-file", "A file whose first line is the password of the service.", "file"),
        option("max-file-size", "The largest file that is stored, in MiB (64).", "MiB", "64"),
        option("child", "For the application: reads the password from standard input, prints the "
                        "port, and ends when standard input ends."),
    });
    parser.process(application);
    const Result<Options> options = optionsOf(parser);
    return options ? serve(options.value(), signals) : fail(options.error());
}
