#include "TreeTools.h"

#include <QCryptographicHash>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <climits>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString pass(const TrackContent &content, const QByteArray &name, QIODevice::OpenMode mode,
             Result<> (TrackContent::*function)(int, const Advance &) const)
{
    QFile file(QFile::decodeName(name));
    if (!file.open(mode))
        return file.errorString();
    qint64 total = 0;
    bool small = true;
    const Result<> done = (content.*function)(file.handle(), [&](qint64 bytes) {
        small = small && bytes > 0 && bytes <= 262'144;
        total += bytes;
        return Done{};
    });
    if (done && (!small || total != content.byteCount()))
        return QStringLiteral("wrong progress");
    return done.error();
}

// Leaves the holes out, so that four gigabytes of them cost no time.
void copyPart(const QByteArray &from, const QByteArray &to, qint64 start, qint64 length)
{
    QFile source(QFile::decodeName(from));
    QFile copy(QFile::decodeName(to));
    QVERIFY(source.open(QIODevice::ReadOnly));
    QVERIFY(copy.open(QIODevice::ReadWrite | QIODevice::Truncate));
    QVERIFY(copy.resize(length));
    const off_t end = start + length;
    for (off_t at = start; (at = ::lseek(source.handle(), at, SEEK_DATA)) >= 0 && at < end;) {
        const off_t hole = std::min(::lseek(source.handle(), at, SEEK_HOLE), end);
        QVERIFY(source.seek(at) && copy.seek(at - start));
        QCOMPARE(copy.write(source.read(hole - at)), qint64(hole - at));
        at = hole;
    }
}

QByteArray fileLine(const QByteArray &bytes)
{
    return " " + QByteArray::number(bytes.size()) + " "
           + QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
}

}

void TreeTools::makeFile(const QByteArray &path, const QByteArray &bytes)
{
    makeFolder(path.first(path.lastIndexOf('/')));
    // QFile itself cannot name what is no text in the encoding of the file system.
    QFile file;
    FILE *handle = std::fopen(path.constData(), "wb");
    QVERIFY2(handle, path.constData());
    QVERIFY(file.open(handle, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle));
    QCOMPARE(file.write(bytes), bytes.size());
}

void TreeTools::makeFolder(const QByteArray &path)
{
    std::filesystem::create_directories(path.toStdString());
}

void TreeTools::makeLink(const QByteArray &target, const QByteArray &path)
{
    QCOMPARE(::symlink(target.constData(), path.constData()), 0);
}

void TreeTools::makeHardLink(const QByteArray &file, const QByteArray &path)
{
    QCOMPARE(::link(file.constData(), path.constData()), 0);
}

void TreeTools::makePipe(const QByteArray &path)
{
    QCOMPARE(::mkfifo(path.constData(), 0600), 0);
}

void TreeTools::setMode(const QByteArray &path, unsigned mode)
{
    QCOMPARE(::chmod(path.constData(), mode), 0);
}

QByteArray TreeTools::noise(qint64 length)
{
    QByteArray bytes((length + 3) / 4 * 4, Qt::Uninitialized);
    QRandomGenerator generator(1);
    generator.fillRange(reinterpret_cast<quint32 *>(bytes.data()), bytes.size() / 4);
    return bytes.first(length);
}

QByteArray TreeTools::readFile(const QByteArray &path)
{
    QFile file;
    FILE *handle = std::fopen(path.constData(), "rb");
    if (!handle || !file.open(handle, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return "cannot be read";
    return file.readAll();
}

QString TreeTools::write(const TrackContent &content, const QByteArray &file)
{
    return pass(content, file, QIODevice::ReadWrite | QIODevice::Truncate, &TrackContent::writeTo);
}

QString TreeTools::compare(const TrackContent &content, const QByteArray &file)
{
    return pass(content, file, QIODevice::ReadOnly, &TrackContent::compareWith);
}

QByteArray TreeTools::run(const QByteArrayList &command)
{
    QStringList words;
    for (const QByteArray &word : command)
        words.append(QFile::decodeName(word));
    QProcess process;
    process.start(words.takeFirst(), words);
    if (!process.waitForFinished(120'000) || process.exitStatus() != QProcess::NormalExit
        || process.exitCode() != 0)
        return "failed: " + command.first() + process.errorString().toUtf8()
               + process.readAllStandardError();
    return process.readAllStandardOutput();
}

QByteArray TreeTools::cutHfsVolume(const QByteArray &image)
{
    const QByteArray said = run({"xorriso", "-indev", image, "-report_system_area", "plain"});
    QByteArray number;
    for (const QByteArray &line : said.split('\n')) {
        const QByteArrayList words = line.simplified().split(' ');
        if (line.startsWith("APM partition type") && words.last() == "Apple_HFS")
            number = words.at(4);
        if (!line.startsWith("APM start and size") || words.value(5) != number)
            continue;
        const QByteArray volume = image + ".hfs";
        copyPart(image, volume, words.at(6).toLongLong() * 512, words.at(7).toLongLong() * 512);
        return volume;
    }
    return {};
}

QByteArrayList TreeTools::listing(const QByteArray &folder)
{
    QByteArrayList lines;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(folder.toStdString())) {
        const QByteArray path = QByteArray::fromStdString(entry.path().string());
        struct stat status = {};
        if (::lstat(path.constData(), &status) != 0)
            return {"cannot be read"};
        QByteArray line =
            path.mid(folder.size()) + " " + QByteArray::number(status.st_mode & S_IFMT, 8);
        std::array<char, PATH_MAX> target = {};
        if (S_ISLNK(status.st_mode))
            line += " "
                    + QByteArray(target.data(),
                                 ::readlink(path.constData(), target.data(), target.size()));
        if (S_ISREG(status.st_mode))
            line += fileLine(readFile(path));
        lines.append(line);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

QByteArrayList TreeTools::contents(const QByteArrayList &listing, bool withEmpty)
{
    QByteArrayList found;
    for (const QByteArray &line : listing) {
        const QByteArrayList words = line.split(' ');
        if (words.value(words.size() - 3) == "100000"
            && (withEmpty || words.value(words.size() - 2) != "0"))
            found.append(words.last());
    }
    std::sort(found.begin(), found.end());
    return found;
}
