// Sound files for the tests, made by the ffmpeg program or byte by byte in a folder that is removed
// at the end, and what that program decodes from them. Main thread.
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>

class AudioSource;

class SoundFiles
{
public:
    // Three seconds of noise and tones, 44.1 kHz 16-bit stereo: 225 sectors to the frame.
    SoundFiles();

    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
    [[nodiscard]] QString original() const { return path(QStringLiteral("original.wav")); }

    // Makes a file from the original; the arguments stand between input and output.
    QString make(const QString &name, const QString &arguments) const;
    // The same, but the program writes into a pipe and cannot go back to its header.
    QString makeByPipe(const QString &name, const QString &arguments) const;
    // Makes a file from nothing but what the arguments say.
    QString generate(const QString &name, const QString &arguments) const;

    QString write(const QString &name, const QByteArray &bytes) const;
    [[nodiscard]] static QByteArray read(const QString &path);

    // What the program makes of a file: 44.1 kHz, 16-bit, stereo. One channel is copied to both,
    // which it has to be told.
    [[nodiscard]] static QByteArray reference(const QString &path, bool isMono = false);

    // What we make of it; the error goes to the second one, and is empty without one.
    [[nodiscard]] static QByteArray decode(const QString &path, QString *error);
    [[nodiscard]] static QByteArray decode(const QString &path); // an error fails the test
    [[nodiscard]] static QString refusal(const QString &path);   // the error alone

    [[nodiscard]] static bool isSilent(QByteArrayView bytes);

    // Whether a playing time in seconds is that of so many sectors, the last one begun counted.
    [[nodiscard]] static bool isLength(double seconds, qint64 blocks);

    // Frames of AMR-NB at 12.2 kbit/s, with noise for content.
    [[nodiscard]] static QByteArray amr(int frames);

private:
    QTemporaryDir m_folder;
};
