#include "TestMain.h"

#include "AudioDurations.h"
#include "AudioFile.h"
#include "AudioSource.h"
#include "SoundFiles.h"

using namespace Qt::StringLiterals;

namespace {

const QByteArray id3v2 = QByteArray("ID3\4\0\0\0\0\2\0", 10) + QByteArray(256, '\xFF');
const QByteArray id3v1 = "TAG"_ba + QByteArray(125, ' ');
const QByteArray lyrics = "LYRICSBEGININD0000200000021LYRICS200";

// With a footer, and a header too when it is not the older version.
QByteArray apeTag(bool hasHeader)
{
    const auto end = [&](char place) -> QByteArray {
        return "APETAGEX"_ba + QByteArray("\xD0\7\0\0\x40\0\0\0\1\0\0\0\0\0\0", 15)
               + (hasHeader ? place : '\0') + QByteArray(8, '\0');
    };
    return (hasHeader ? end('\xA0') : QByteArray()) + QByteArray(32, 'x') + end('\x80');
}

// The position of a frame in an mp3 without tags at 44.1 kHz and 128 kbit/s.
qsizetype frameStart(const QByteArray &bytes, int index)
{
    qsizetype offset = 0;
    for (int i = 0; i < index; ++i)
        offset += 417 + ((bytes[offset + 2] & 2) != 0 ? 1 : 0);
    return offset;
}

}

class MpegAudioTest : public QObject
{
    Q_OBJECT

    // Whether we make of a file what the program makes of another, and tell its length before.
    void compare(const QByteArray &bytes, const QString &like) const;

    const SoundFiles m_files;

private Q_SLOTS:
    void streamWithoutNote();
    void cutOutOfLongerStream();
    void joined_data();
    void joined();
    void besideSound_data();
    void besideSound();
    void formatChanges_data();
    void formatChanges();
    void wholeSeconds_data();
    void wholeSeconds();
};

void MpegAudioTest::compare(const QByteArray &bytes, const QString &like) const
{
    const QString file = m_files.write(u"compared.mp3"_s, bytes);
    const QByteArray found = SoundFiles::decode(file);
    const QByteArray expected = SoundFiles::reference(like);
    QVERIFY(found.size() - expected.size() < AudioSource::sectorSize);
    QVERIFY(found.startsWith(expected));
    QVERIFY(SoundFiles::isSilent(QByteArrayView(found).sliced(expected.size())));
    const Result<double> duration = AudioFile::duration(file);
    QVERIFY2(SoundFiles::isLength(duration.value(), found.size() / AudioSource::sectorSize),
             qPrintable(QString::number(duration.value(), 'g', 12)));
}

void MpegAudioTest::streamWithoutNote()
{
    const QString file = m_files.make(u"a.mp3"_s, u"-q:a 5 -write_xing 0 -id3v2_version 0"_s);
    compare(SoundFiles::read(file), file);
    // Estimated from the first frame's bit rate it would be far off.
    QCOMPARE(AudioFile::duration(file).value(),
             static_cast<double>(SoundFiles::reference(file).size()) / (4 * 44'100));
}

void MpegAudioTest::cutOutOfLongerStream()
{
    m_files.make(u"whole.mp3"_s, u"-b:a 64k -write_xing 0 -id3v2_version 0"_s);
    const QString cut = m_files.generate(
        u"cut.mp3"_s,
        u"-ss 1 -i %1 -c copy -write_xing 0 -id3v2_version 0"_s.arg(m_files.path(u"whole.mp3"_s)));
    const QByteArray found = SoundFiles::decode(cut);
    const QByteArray expected = SoundFiles::reference(cut);
    QVERIFY(found.startsWith(expected) && expected.size() > qsizetype(3) * 88'200);
    // One that begins within a frame, as recordings from the air do.
    const QString within = m_files.write(u"within.mp3"_s, SoundFiles::read(cut).sliced(100));
    QVERIFY(found.size() - SoundFiles::decode(within).size()
            <= qsizetype(3) * AudioSource::sectorSize);
}

void MpegAudioTest::joined_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QString untagged = u" -id3v2_version 0"_s;
    const auto made = [&](const QString &arguments) {
        return SoundFiles::read(m_files.make(u"part.mp3"_s, arguments + untagged));
    };
    const QByteArray noted = made({});
    const QByteArray variable = made(u"-q:a 4 -t 2"_s);
    const QByteArray shortOne = made(u"-t 0.1"_s);
    const QByteArray bare = made(u"-write_xing 0"_s);
    QTest::newRow("no tag between: the first note's length") << noted + noted;
    QTest::newRow("ID3v2 between") << id3v2 + noted + id3v2 + noted;
    QTest::newRow("ID3v1 between") << noted + id3v1 + noted + id3v1;
    QTest::newRow("APE tag between") << noted + apeTag(true) + noted + apeTag(true);
    QTest::newRow("all of them between")
        << id3v2 + noted + apeTag(true) + id3v1 + id3v2 + id3v2 + noted + apeTag(false) + id3v1;
    QTest::newRow("padding behind the second tag")
        << noted + id3v2 + QByteArray(5000, '\0') + noted;
    QTest::newRow("a short one, which the first note hides") << noted + shortOne;
    QTest::newRow("a short one behind a tag") << noted + id3v2 + shortOne;
    QTest::newRow("three, of several kinds") << variable + id3v1 + noted + id3v2 + variable;
    QTest::newRow("the second without a note") << noted + bare;
    QTest::newRow("the first without a note") << bare + noted;
    QTest::newRow("neither with a note") << bare + bare;
}

void MpegAudioTest::joined()
{
    QFETCH(QByteArray, bytes);
    compare(bytes, m_files.write(u"joined.mp3"_s, bytes));
}

void MpegAudioTest::besideSound_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("middle");
    QTest::addColumn<QByteArray>("behind");
    QTest::addColumn<bool>("isNoted");
    const QByteArray none;
    const QByteArray zeros(60'000, '\0');
    const QByteArray words = "Ripped with care.\r\n"_ba.repeated(3000);
    const auto row = [](const char *tag, const QByteArray &before, const QByteArray &middle,
                        const QByteArray &behind, bool isNoted) {
        QTest::newRow(tag) << before << middle << behind << isNoted;
    };
    row("ID3v2", id3v2, none, none, false);
    row("two ID3v2 and ID3v1", id3v2 + id3v2, none, id3v1, false);
    row("APE tag without header, ID3v1", none, none, apeTag(false) + id3v1, false);
    row("lyrics, ID3v1", none, none, lyrics + id3v1, false);
    row("some zeros at the end", none, none, QByteArray(100, '\0'), false);
    row("ID3v2 in the middle", none, id3v2, none, false);
    row("ID3v1 in the middle", id3v2, id3v1, none, false);
    row("APE tag in the middle of a noted file", none, apeTag(true), none, true);
    row("zeros behind the first tag", id3v2 + zeros.repeated(5), none, none, true);
    row("zeros at the end of a noted file", id3v2, none, zeros, true);
    row("zeros behind the last tag", none, none, id3v1 + zeros, true);
    row("text at the end of a noted file", none, none, words, true);
    row("zeros at the end", none, none, zeros.first(20'000), false);
    row("text at the end", none, none, words, false);
    row("text behind the last tag", id3v2, none, id3v1 + words, false);
}

void MpegAudioTest::besideSound()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, middle);
    QFETCH(QByteArray, behind);
    QFETCH(bool, isNoted);
    const QString plain = m_files.make(
        u"plain.mp3"_s, isNoted ? u"-id3v2_version 0"_s : u"-id3v2_version 0 -write_xing 0"_s);
    QByteArray bytes = SoundFiles::read(plain);
    if (!middle.isEmpty()) {
        // The frame of the note is smaller than the others.
        const qsizetype first = isNoted ? bytes.indexOf("\xFF\xFB", 2) : 0;
        bytes.insert(first + frameStart(bytes.sliced(first), 50), middle);
    }
    compare(before + bytes + behind, plain);
}

void MpegAudioTest::formatChanges_data()
{
    QTest::addColumn<QString>("second");
    QTest::newRow("another rate") << u"-ar 48000"_s;
    QTest::newRow("half the rate: other frames") << u"-ar 22050"_s;
    QTest::newRow("mono") << u"-ac 1"_s;
}

void MpegAudioTest::formatChanges()
{
    QFETCH(QString, second);
    const QString bare = u" -write_xing 0 -id3v2_version 0"_s;
    const QString one = m_files.make(u"one.mp3"_s, bare);
    const QString two = m_files.make(u"two.mp3"_s, second + bare);
    const QString both =
        m_files.write(u"both.mp3"_s, SoundFiles::read(one) + SoundFiles::read(two));
    const QByteArray found = SoundFiles::decode(both);
    const qint64 frames =
        (SoundFiles::reference(one).size() + SoundFiles::reference(two).size()) / 4;
    QVERIFY(std::abs(found.size() / 4 - frames) <= AudioSource::sectorFrames);
    QVERIFY(found.startsWith(SoundFiles::reference(one).chopped(8000)));
}

// Frames of 24 ms, added up, must not lose a second to rounding.
void MpegAudioTest::wholeSeconds_data()
{
    QTest::addColumn<int>("rate");
    QTest::addColumn<int>("frames");
    QTest::addColumn<int>("seconds");
    QTest::newRow("48 kHz") << 48'000 << 375 << 9;
    QTest::newRow("48 kHz, a frame less") << 48'000 << 374 << 8;
    QTest::newRow("32 kHz") << 32'000 << 250 << 9;
    QTest::newRow("24 kHz") << 24'000 << 375 << 9;
    QTest::newRow("44.1 kHz") << 44'100 << 1225 << 32;
}

void MpegAudioTest::wholeSeconds()
{
    QFETCH(int, rate);
    QFETCH(int, frames);
    QFETCH(int, seconds);
    // A frame of the file that is made, as often as is wanted.
    const QByteArray made = SoundFiles::read(m_files.generate(
        u"one.mp3"_s,
        u"-f lavfi -i anullsrc=r=%1:cl=stereo -t 1 -b:a 64k -write_xing 0 -id3v2_version 0"_s.arg(
            rate)));
    const QByteArray frame = made.first(made.indexOf(made.first(2), 2));
    const QString file = m_files.write(u"whole.mp3"_s, frame.repeated(frames));
    const Result<AudioSource> source = AudioSource::open(file, {});
    QCOMPARE(source.error(), QString());
    QCOMPARE(AudioDurations::seconds(file), seconds);
    QCOMPARE(source.value().blockCount() / 75, seconds);
}

MAPLORN_TEST_MAIN(MpegAudioTest)
#include "mpegaudiotest.moc"
