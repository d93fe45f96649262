#include "TestMain.h"

#include "AudioFile.h"
#include "AudioSource.h"
#include "SoundFiles.h"

#include <QDir>
#include <QRandomGenerator>
#include <QtEndian>

#include <functional>
#include <limits>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

using Spoil = std::function<QByteArray(QByteArray bytes)>;

Spoil cut(qsizetype length)
{
    return [length](const QByteArray &bytes) { return bytes.chopped(length); };
}

Spoil keep(qsizetype length)
{
    return [length](const QByteArray &bytes) { return bytes.first(length); };
}

// The second half is not there yet, as while a file is being downloaded.
QByteArray emptyHalf(QByteArray bytes)
{
    const qsizetype half = bytes.size() / 2;
    return bytes.replace(half, bytes.size() - half, QByteArray(bytes.size() - half, '\0'));
}

Spoil emptyEnd(qsizetype length)
{
    return [length](const QByteArray &bytes) -> QByteArray {
        return bytes.chopped(length) + QByteArray(length, '\0');
    };
}

Spoil hole(qsizetype length)
{
    return [length](QByteArray bytes) {
        return bytes.replace(bytes.size() / 2, length, QByteArray(length, '\0'));
    };
}

QByteArray rubbish(QByteArray bytes)
{
    QRandomGenerator noise(7);
    for (qsizetype i = bytes.size() / 2; i < bytes.size() / 2 + 5000; ++i)
        bytes[i] = static_cast<char>(noise.bounded(256));
    return bytes;
}

QByteArray insertion(QByteArray bytes)
{
    return bytes.insert(bytes.size() / 2, QByteArray(777, 'x'));
}

Spoil patch(qsizetype offset, const QByteArray &with)
{
    return [offset, with](QByteArray bytes) { return bytes.replace(offset, with.size(), with); };
}

// Puts something at a place counted from the first appearance of a name.
Spoil patchAt(const char *name, qsizetype offset, const QByteArray &with)
{
    return [name, offset, with](QByteArray bytes) {
        const qsizetype found = bytes.indexOf(name);
        if (found < 0)
            qFatal("%s is not in the file", name);
        return bytes.replace(found + offset, with.size(), with);
    };
}

QByteArray littleEndian(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

const QString truncated = u"the file is truncated"_s;
const QString damaged = u"the file is damaged"_s;

void row(const char *tag, const QString &name, const QString &arguments, const Spoil &spoil,
         const QString &reason)
{
    QTest::newRow(tag) << name << arguments << spoil << reason;
}

// The second joined to the first, with something between.
Spoil joined(const Spoil &first, const QByteArray &between, const Spoil &second)
{
    return [=](const QByteArray &bytes) -> QByteArray {
        return first(bytes) + between + second(bytes);
    };
}

const QString untagged = u"-id3v2_version 0"_s;
const QString bare = u"-write_xing 0 -id3v2_version 0"_s;
const Spoil asItIs = cut(0);
const Spoil nothing = keep(0);

void addMpegFaults()
{
    const QByteArray tag = "TAG"_ba + QByteArray(125, ' ');
    row("mp3 with a note lacks bytes of its last frame", "a.mp3", "", cut(10), truncated);
    row("mp3 with a note lacks its last frame", "a.mp3", "-b:a 320k -ar 48000", cut(960),
        truncated);
    row("mp3 with a note lacks half", "a.mp3", "", cut(20'000), truncated);
    row("mp3 lacks bytes of its last frame", "a.mp3", bare, cut(10), truncated);
    row("mp3 keeps a byte of its last frame", "a.mp3", bare + u" -b:a 320k -ar 48000", cut(959),
        damaged);
    row("mp3 lacks bytes before its tag", "a.mp3", bare, joined(cut(10), tag, nothing), truncated);
    row("mp3 is empty in its second half", "a.mp3", bare, emptyHalf, damaged);
    row("mp3 with a note is empty in its second half", "a.mp3", "", emptyHalf, damaged);
    row("mp3 is empty at its start", "a.mp3", bare, patch(0, QByteArray(5000, '\0')), damaged);
    row("mp3 has a hole", "a.mp3", bare, hole(3000), damaged);
    row("mp3 has a hole of about a frame", "a.mp3", "", hole(500), damaged);
    row("mp3 has rubbish in the middle", "a.mp3", bare, rubbish, damaged);
    row("mp3 has bytes put in", "a.mp3", "", insertion, damaged);
    row("mp3 is empty from within a frame on", "a.mp3", bare, emptyEnd(9900), damaged);
}

QByteArray withoutLastFrame(const QByteArray &bytes)
{
    return bytes.first(bytes.lastIndexOf("\xFF\xFB"));
}

// Several in one file: none of them may get lost.
void addJoinedFaults()
{
    const QByteArray tag = QByteArray("ID3\4\0\0\0\0\2\0", 10) + QByteArray(256, '\xFF');
    const QByteArray zeros(3000, '\0');
    const QByteArray words(3000, 'x');
    const auto joinedRow = [](const char *name, const QString &arguments, const Spoil &first,
                              const QByteArray &between, const Spoil &second,
                              const QString &reason) {
        row(name, "a.mp3", arguments, joined(first, between, second), reason);
    };
    joinedRow("second mp3 lacks bytes", {}, asItIs, {}, cut(10), truncated);
    joinedRow("second mp3 ends in its tag", untagged, asItIs, tag.chopped(10), nothing, truncated);
    joinedRow("first mp3 lacks its last frame", untagged, withoutLastFrame, {}, asItIs, truncated);
    joinedRow("first mp3 lacks its last frame before a tag", untagged, withoutLastFrame, tag,
              asItIs, damaged);
    joinedRow("first mp3 ends within a frame", untagged, cut(100), tag, asItIs, damaged);
    joinedRow("zeros between two mp3", untagged, asItIs, zeros, asItIs, damaged);
    joinedRow("rubbish between two mp3", untagged, asItIs, words, asItIs, damaged);
    joinedRow("mp3 with zeros behind a tag in its middle", bare, asItIs, tag + zeros, asItIs,
              damaged);
    joinedRow("mp3 with zeros behind its tag", bare, nothing, tag + zeros, asItIs, damaged);
}

}

class AudioFaultTest : public QObject
{
    Q_OBJECT

    const SoundFiles m_files;

private Q_SLOTS:
    void refused_data();
    void refused();
    void absurd_data();
    void absurd();
    void cutAnywhere_data();
    void cutAnywhere();
    void noise();
    void noAudio_data();
    void noAudio();
    void otherThanFiles();
};

void AudioFaultTest::refused_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<Spoil>("spoil");
    QTest::addColumn<QString>("reason");
    row("wav lacks a frame", "a.wav", "", cut(4), truncated);
    row("wav lacks half", "a.wav", "", cut(264'600), truncated);
    row("wav ends in its header", "a.wav", "", keep(30), truncated);
    row("aiff lacks a frame", "a.aiff", "", cut(4), truncated);
    row("aiff promises more elsewhere", "a.aiff", "", patchAt("COMM", 10, "\1\2\5\1"), truncated);
    row("au lacks a frame", "a.au", "-c:a pcm_s16be", cut(4), truncated);
    row("caf lacks a frame", "a.caf", "-c:a pcm_s16be", cut(4), truncated);
    row("caf with ALAC lacks its end", "a.caf", "-c:a alac", cut(20'000), truncated);
    row("m4a lacks a byte", "a.m4a", "-c:a aac -movflags +faststart", cut(1), truncated);
    row("m4a lacks half", "a.m4a", "-c:a aac -movflags +faststart", cut(20'000), truncated);
    row("m4a lacks the tables at its end", "a.m4a", "-c:a aac", cut(5000), truncated);
    row("m4a in fragments lacks half", "a.m4a",
        "-c:a alac -movflags +frag_keyframe -frag_duration 500000", cut(200'000), truncated);
    row("m4a is empty in its second half", "a.m4a", "-c:a aac -movflags +faststart", emptyHalf,
        damaged);
    row("ALAC is empty in its second half", "a.m4a", "-c:a alac -movflags +faststart", emptyHalf,
        damaged);
    row("m4a is rubbish for 5000 bytes", "a.m4a", "-c:a aac", rubbish, damaged);
    addMpegFaults();
    addJoinedFaults();
    row("m4a is protected", "a.m4a", "-c:a aac", patchAt("mp4a", 0, "drms"),
        "the file is protected against copying");
    row("wav promises nothing and holds nothing", "a.wav", "-bitexact",
        joined(keep(40), QByteArray(4, '\0'), nothing), "the file holds no audio");
}

void AudioFaultTest::refused()
{
    QFETCH(QString, name);
    QFETCH(QString, arguments);
    QFETCH(Spoil, spoil);
    QFETCH(QString, reason);
    const QByteArray whole = SoundFiles::read(m_files.make(name, arguments));
    const QString file = m_files.write(u"spoilt-"_s + name, spoil(whole));
    QCOMPARE(SoundFiles::refusal(file), file + u": "_s + reason);
}

void AudioFaultTest::absurd_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<Spoil>("spoil");
    const auto add = [](const char *tag, const QString &name, const QString &arguments,
                        const Spoil &spoil) { QTest::newRow(tag) << name << arguments << spoil; };
    const auto zeros = [](qsizetype length) { return QByteArray(length, '\0'); };
    const QByteArray ones(4, '\xFF');
    add("wav without channels", "a.wav", "", patch(22, zeros(2)));
    add("wav with 65,535 channels", "a.wav", "", patch(22, ones.first(2)));
    add("wav at rate 0", "a.wav", "", patch(24, zeros(4)));
    add("wav at rate 1", "a.wav", "", patch(24, littleEndian(1)));
    add("wav at rate 1,000,000,000", "a.wav", "", patch(24, littleEndian(1'000'000'000)));
    add("wav with negative rate", "a.wav", "", patch(24, ones));
    add("wav with blocks of 0 bytes", "a.wav", "-c:a adpcm_ms", patch(32, zeros(2)));
    add("wav with 65,535 bits", "a.wav", "", patch(34, ones.first(2)));
    add("wav with an unknown codec", "a.wav", "", patch(20, QByteArray("\x77\x77")));
    add("wav with a huge chunk", "a.wav", "", patch(16, ones));
    add("aiff without channels", "a.aiff", "", patchAt("COMM", 8, zeros(2)));
    add("aiff at rate NaN", "a.aiff", "", patchAt("COMM", 16, QByteArray(10, '\xFF')));
    add("aiff at rate 0", "a.aiff", "", patchAt("COMM", 16, zeros(10)));
    add("aiff with endless audio", "a.aiff", "", patchAt("COMM", 10, ones));
    add("au with 4 billion channels", "a.au", "-c:a pcm_s16be", patch(20, ones));
    add("au at rate 0", "a.au", "-c:a pcm_s16be", patch(16, zeros(4)));
    add("au with its audio behind the end", "a.au", "-c:a pcm_s16be", patch(4, ones));
    add("caf at rate NaN", "a.caf", "-c:a pcm_s16be", patch(20, QByteArray(8, '\xFF')));
    add("caf without channels", "a.caf", "-c:a pcm_s16be", patch(44, zeros(4)));
    add("caf with 4 billion channels", "a.caf", "-c:a pcm_s16be", patch(44, ones));
    add("caf with a chunk of negative size", "a.caf", "-c:a alac",
        patchAt("kuki", 4, QByteArray(8, '\xFF')));
    add("caf with endless packets", "a.caf", "-c:a alac",
        patchAt("pakt", 12, QByteArray("\x7F") + QByteArray(7, '\xFF')));
    add("m4a with endless samples", "a.m4a", "-c:a aac", patchAt("stsz", 12, ones));
    add("m4a with endless samples of a byte", "a.m4a", "-c:a aac",
        patchAt("stsz", 8, QByteArray("\0\0\0\1", 4) + ones));
    add("m4a with endless durations", "a.m4a", "-c:a aac",
        patchAt("stts", 16, QByteArray("\x7F") + ones.first(3)));
    add("m4a in no time", "a.m4a", "-c:a aac", patchAt("mdhd", 16, zeros(4)));
    add("m4a with a box in itself", "a.m4a", "-c:a aac", patchAt("minf", -4, ones));
}

void AudioFaultTest::absurd()
{
    QFETCH(QString, name);
    QFETCH(QString, arguments);
    QFETCH(Spoil, spoil);
    const QByteArray whole = SoundFiles::read(m_files.make(name, arguments));
    const QString file = m_files.write(u"absurd-"_s + name, spoil(whole));
    QString error;
    const QByteArray found = SoundFiles::decode(file, &error);
    // Some of it is told in a second place as well.
    QVERIFY2(error.startsWith(file + u": "_s)
                 || (error.isEmpty() && found == SoundFiles::decode(m_files.path(name))),
             qPrintable(error));
    const Result<double> duration = AudioFile::duration(file);
    QVERIFY(!duration || (duration.value() > 0 && duration.value() < 1e7));
}

void AudioFaultTest::cutAnywhere_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("arguments");
    QTest::newRow("wav") << u"a.wav"_s << QString();
    QTest::newRow("aiff") << u"a.aiff"_s << QString();
    QTest::newRow("au") << u"a.au"_s << u"-c:a pcm_s16be"_s;
    QTest::newRow("caf") << u"a.caf"_s << u"-c:a alac"_s;
    QTest::newRow("ALAC") << u"a.m4a"_s << u"-c:a alac"_s;
    QTest::newRow("AAC") << u"a.m4a"_s << u"-c:a aac -movflags +faststart"_s;
    QTest::newRow("mp3") << u"a.mp3"_s << QString();
}

// Whatever is missing, no track comes of it that is not the whole one.
void AudioFaultTest::cutAnywhere()
{
    QFETCH(QString, name);
    QFETCH(QString, arguments);
    const QByteArray whole = SoundFiles::read(m_files.make(name, arguments));
    QString error;
    const QByteArray expected = SoundFiles::decode(m_files.path(name));
    QRandomGenerator chance(5);
    for (int i = 0; i < 60; ++i) {
        const qsizetype length = i < 20 ? i * 3 : chance.bounded(1, static_cast<int>(whole.size()));
        const QString file = m_files.write(u"cut-"_s + name, whole.first(length));
        const QByteArray found = SoundFiles::decode(file, &error);
        QVERIFY2(!error.isEmpty() || found == expected, qPrintable(QString::number(length)));
        (void)AudioFile::duration(file);
    }
}

// Bytes changed at random may or may not be noticed; they must not hurt.
void AudioFaultTest::noise()
{
    QRandomGenerator chance(9);
    const QStringList names = {u"a.wav"_s, u"a.aiff"_s, u"a.caf"_s, u"a.m4a"_s, u"a.mp3"_s};
    for (const QString &name : names) {
        const QByteArray whole = SoundFiles::read(m_files.make(name, u"-t 0.3"_s));
        for (int i = 0; i < 150; ++i) {
            QByteArray bytes = whole;
            // Mostly where the headers are, at the start and at the end.
            for (int change = 0; change < 4; ++change) {
                const int from = chance.bounded(std::min(1200, static_cast<int>(bytes.size())));
                const bool atEnd = chance.bounded(2) == 1;
                bytes[atEnd ? bytes.size() - 1 - from : from] =
                    static_cast<char>(chance.bounded(256));
            }
            const QString file = m_files.write(u"noisy-"_s + name, bytes);
            (void)SoundFiles::refusal(file);
            (void)AudioFile::duration(file);
        }
    }
}

void AudioFaultTest::noAudio_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << u"a.mp3"_s << QByteArray();
    QTest::newRow("a byte") << u"a.wav"_s << "R"_ba;
    QTest::newRow("text") << u"a.wav"_s << "Not a sound.\n"_ba.repeated(5000);
    QTest::newRow("zeros") << u"a.mp3"_s << QByteArray(100'000, '\0');
    QTest::newRow("all ones") << u"a.mp3"_s << QByteArray(100'000, '\xFF');
    QTest::newRow("only a tag") << u"a.mp3"_s << QByteArray("ID3\4\0\0\0\0\0\4abcd", 14);
    QTest::newRow("playlist") << u"a.mp3"_s << "#EXTM3U\n/etc/passwd\n"_ba;
    QTest::newRow("amr without frames") << u"a.amr"_s << "#!AMR\n"_ba;
    QTest::newRow("amr that ends within a frame") << u"a.amr"_s << SoundFiles::amr(9).chopped(1);
    QTest::newRow("amr that ends within a pause")
        << u"a.amr"_s << QByteArray(SoundFiles::amr(9) + QByteArray("\x44\0\0", 3));
    QTest::newRow("amr with rubbish") << u"a.amr"_s << QByteArray(SoundFiles::amr(9) + "\xFF\xFF");
    QByteArray samples(200'000, '\0');
    QRandomGenerator chance(3);
    for (char &byte : samples)
        byte = static_cast<char>(chance.bounded(256));
    QTest::newRow("bare samples, as in sd2") << u"a.sd2"_s << samples;
    const SoundFiles files;
    const QString picture =
        files.generate(u"a.png"_s, u"-f lavfi -i testsrc=s=64x64 -frames:v 1"_s);
    QTest::newRow("picture") << u"a.mp3"_s << SoundFiles::read(picture);
    const QString film =
        files.generate(u"a.mp4"_s, u"-f lavfi -i testsrc=s=64x64:d=1 -c:v mpeg4"_s);
    QTest::newRow("film without sound") << u"a.m4a"_s << SoundFiles::read(film);
}

void AudioFaultTest::noAudio()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    const QString file = m_files.write(name, bytes);
    const QString error = SoundFiles::refusal(file);
    QVERIFY2(error.startsWith(file + u": "_s), qPrintable(error));
}

void AudioFaultTest::otherThanFiles()
{
    const QString folder = m_files.path(u"folder.wav"_s);
    QVERIFY(QDir().mkdir(folder));
    const QString pipe = m_files.path(u"pipe.wav"_s);
    QCOMPARE(::mkfifo(qPrintable(pipe), 0600), 0);
    for (const QString &path : {folder, pipe, m_files.path(u"missing.wav"_s)}) {
        const QString error = SoundFiles::refusal(path);
        QVERIFY2(error.startsWith(path + u": "_s), qPrintable(error));
        QCOMPARE(AudioFile::duration(path).error(), error);
    }
}

MAPLORN_TEST_MAIN(AudioFaultTest)
#include "audiofaulttest.moc"
