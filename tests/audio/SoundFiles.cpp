#include "SoundFiles.h"

#include "AudioSource.h"
#include "PcmStream.h"

#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

namespace {

QByteArray ffmpeg(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral("ffmpeg"),
                  QStringList{QStringLiteral("-nostdin"), QStringLiteral("-v"),
                              QStringLiteral("error"), QStringLiteral("-y")}
                      + arguments);
    if (!process.waitForFinished(60'000) || process.exitCode() != 0)
        qFatal("ffmpeg: %s", process.readAllStandardError().constData());
    return process.readAllStandardOutput();
}

QStringList words(const QString &text)
{
    return text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

}

SoundFiles::SoundFiles()
{
    generate(QStringLiteral("original.wav"),
             QStringLiteral("-f lavfi -i aevalsrc=0.3*sin(2000*t)+0.2*(random(0)-0.5)"
                            "|0.4*sin(5000*t)+0.1*(random(1)-0.5):s=44100:d=3 -bitexact"));
}

QString SoundFiles::make(const QString &name, const QString &arguments) const
{
    ffmpeg(QStringList{QStringLiteral("-i"), original()} + words(arguments)
           + QStringList{path(name)});
    return path(name);
}

QString SoundFiles::makeByPipe(const QString &name, const QString &arguments) const
{
    return write(name, ffmpeg(QStringList{QStringLiteral("-i"), original()} + words(arguments)
                              + QStringList{QStringLiteral("-")}));
}

QString SoundFiles::generate(const QString &name, const QString &arguments) const
{
    ffmpeg(words(arguments) + QStringList{path(name)});
    return path(name);
}

QString SoundFiles::write(const QString &name, const QByteArray &bytes) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s cannot be written", qPrintable(file.fileName()));
    return file.fileName();
}

QByteArray SoundFiles::read(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(path));
    return file.readAll();
}

QByteArray SoundFiles::reference(const QString &path, bool isMono)
{
    const QString filter = QStringLiteral(" -af pan=stereo|c0=c0|c1=c0 ");
    return ffmpeg(
        QStringList{QStringLiteral("-i"), path}
        + words((isMono ? filter : QString()) + QStringLiteral("-f s16le -ac 2 -ar 44100 -")));
}

QByteArray SoundFiles::decode(const QString &path, QString *error)
{
    error->clear();
    const Result<AudioSource> source = AudioSource::open(path, {});
    *error = source.error();
    if (!source)
        return {};
    Result<PcmStream> stream = PcmStream::open(source.value());
    *error = stream.error();
    if (!stream)
        return {};
    // An odd size, so that pieces begin within a frame.
    QByteArray piece(50'001, '\x55');
    QByteArray all;
    for (;;) {
        const Result<qint64> got = stream.value().read(piece.data(), piece.size());
        *error = got.error();
        if (!got || got.value() == 0)
            return all;
        all.append(piece.constData(), got.value());
    }
}

QByteArray SoundFiles::decode(const QString &path)
{
    QString error;
    QByteArray all = decode(path, &error);
    if (!error.isEmpty())
        QTest::qFail(qPrintable(error), __FILE__, __LINE__);
    return all;
}

QString SoundFiles::refusal(const QString &path)
{
    QString error;
    (void)decode(path, &error);
    return error;
}

bool SoundFiles::isSilent(QByteArrayView bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte == 0; });
}

bool SoundFiles::isLength(double seconds, qint64 blocks)
{
    constexpr double rounding = 1e-6;
    const double sectors = seconds * 75;
    return sectors > static_cast<double>(blocks) - 1 - rounding
           && sectors < static_cast<double>(blocks) + rounding;
}

QByteArray SoundFiles::amr(int frames)
{
    QRandomGenerator noise(1);
    QByteArray bytes("#!AMR\n");
    for (int frame = 0; frame < frames; ++frame) {
        bytes.append('\x3C');
        for (int i = 1; i < 32; ++i)
            bytes.append(static_cast<char>(noise.bounded(256)));
    }
    return bytes;
}
