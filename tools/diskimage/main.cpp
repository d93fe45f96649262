// maplorn-diskimage: makes a disc image of a folder. Exit status: 0 done, 1 failed or wrong usage.

#include "Arguments.h"
#include "ImageFile.h"
#include "Interruption.h"
#include "IsoImage.h"
#include "SourceFile.h"

#include <QFile>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <new>
#include <system_error>

namespace {

// One line, whatever the names in it.
int fail(QString reason)
{
    for (QChar &character : reason)
        if (character.category() == QChar::Other_Control)
            character = u'?';
    std::fprintf(stderr, "maplorn-diskimage: %s\n", reason.toUtf8().constData());
    return 1;
}

int print(const QByteArray &text)
{
    const bool printed = std::fputs(text.constData(), stdout) >= 0 && std::fflush(stdout) == 0;
    return printed ? 0 : fail(QStringLiteral("standard output: ") + qt_error_string(errno));
}

// The name that was asked for, else the folder's.
QString volumeName(const Arguments &arguments, const QByteArray &source)
{
    const QString name = QString::fromUtf8(arguments.volumeName);
    return name.isEmpty() ? QFile::decodeName(source.mid(source.lastIndexOf('/') + 1)) : name;
}

Result<> writeImage(const Arguments &arguments, const QByteArray &source, const QByteArray &output,
                    const std::stop_token &stop)
{
    const auto existing =
        arguments.overwrite ? ImageFile::Existing::Replaced : ImageFile::Existing::Refused;
    Result<ImageFile> file = ImageFile::create(output, existing);
    if (!file)
        return file.failure();
    const Result<TrackContent> content =
        IsoImage::fromPath(source, volumeName(arguments, source),
                           arguments.hfs ? IsoKind::Hybrid : IsoKind::Iso, stop);
    if (!content)
        return content.failure();
    const Result<> written = file.value().write(content.value(), [&stop](qint64) -> Result<> {
        if (stop.stop_requested())
            return Failure{qt_error_string(ECANCELED)};
        return Done{};
    });
    return written ? file.value().finish() : written;
}

Result<> makeImage(const Arguments &arguments, const std::stop_token &stop)
{
    const Result<QByteArray> source = realPath(arguments.source);
    if (!source)
        return source.failure();
    const Result<QByteArray> output = ImageFile::place(arguments.output);
    if (!output)
        return output.failure();
    const QByteArray inside = source.value() == "/" ? source.value() : source.value() + '/';
    if (output.value().startsWith(inside))
        return Failure{QStringLiteral("%1: the image cannot be in the folder that it is made of")
                           .arg(QFile::decodeName(arguments.output))};
    return writeImage(arguments, source.value(), output.value(), stop);
}

// Every failure names a file; what fails everywhere, as threads and memory do, the image.
Result<> makeImage(const Arguments &arguments)
{
    try {
        const Interruption interruption;
        Result<> made = makeImage(arguments, interruption.token());
        if (!made && interruption.token().stop_requested())
            return Failure{QFile::decodeName(arguments.output) + QStringLiteral(": interrupted")};
        return made;
    } catch (const std::system_error &error) {
        return fileFailure(arguments.output, error.code().value());
    } catch (const std::bad_alloc &) {
        return fileFailure(arguments.output, ENOMEM);
    }
}

int run(const Arguments &arguments)
{
    if (const Result<> made = makeImage(arguments); !made)
        return fail(made.error());
    // The image is there, whether anybody reads this or not.
    if (!arguments.quiet && std::printf("created: %s\n", arguments.output.constData()) >= 0)
        std::fflush(stdout);
    return 0;
}

int runWords(const QList<QByteArray> &words)
{
    const Result<Arguments> arguments = Arguments::parse(words);
    if (!arguments)
        return fail(arguments.error());
    switch (arguments.value().task) {
    case Arguments::Task::Help:
        return print(Arguments::help());
    case Arguments::Task::Version:
        return print("maplorn-diskimage " MAPLORN_VERSION "\n");
    case Arguments::Task::Image:
        break;
    }
    return run(arguments.value());
}

}

int main(int argc, char **argv)
{
    // A file that grows too large and a pipe that nobody reads are failed writes.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return runWords(QList<QByteArray>(argv + 1, argv + argc));
    } catch (const std::exception &error) { // no memory
        std::fprintf(stderr, "maplorn-diskimage: %s\n", error.what());
        return 1;
    }
}
