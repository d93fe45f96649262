#include "TestMain.h"

#include "AudioFile.h"
#include "AudioSource.h"
#include "PcmStream.h"
#include "SoundFiles.h"

#include <QFile>

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

// Whether two recordings are the same over their whole common length.
bool agree(const QByteArray &one, const QByteArray &other)
{
    const qsizetype length = std::min(one.size(), other.size());
    return QByteArrayView(one).first(length) == QByteArrayView(other).first(length);
}

bool isSilent(QByteArrayView bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte == 0; });
}

}

class AudioTest : public QObject
{
    Q_OBJECT

    const SoundFiles m_files;

private Q_SLOTS:
    void samples_data();
    void samples();
    void piped_data();
    void piped();
    void lastSector_data();
    void lastSector();
    void lengthNotedByEncoder();
    void streamWithoutNote();
    void cutOutOfLongerStream();
    void tagsAtBothEnds();
    void formatChanges_data();
    void formatChanges();
    void amr();
    void changedFile_data();
    void changedFile();
};

void AudioTest::samples_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<qint64>("blocks");
    const auto row = [](const char *tag, const char *name, const char *arguments,
                        qint64 blocks = 225) {
        QTest::newRow(tag) << text(name) << text(arguments) << blocks;
    };
    row("wav", "a.wav", "");
    row("wav, 8 bits", "a.wav", "-c:a pcm_u8");
    row("wav, 24 bits", "a.wav", "-c:a pcm_s24le");
    row("wav, 32 bits", "a.wav", "-c:a pcm_s32le");
    row("wav, float", "a.wav", "-c:a pcm_f32le");
    row("wav, 64-bit sizes", "a.wav", "-rf64 always");
    row("wav, ADPCM, whose packets are blocks", "a.wav", "-c:a adpcm_ms", 226);
    row("wav, mono", "a.wav", "-ac 1");
    row("wav, six channels", "a.wav", "-ac 6");
    row("wav, 8 kHz", "a.wav", "-ar 8000");
    row("wav, 22.05 kHz mono", "a.wav", "-ar 22050 -ac 1");
    row("wav, 48 kHz", "a.wav", "-ar 48000");
    row("wav, 96 kHz 24 bits", "a.wav", "-ar 96000 -c:a pcm_s24le");
    row("aiff", "a.aiff", "");
    row("aiff, 24 bits", "a.aiff", "-c:a pcm_s24be");
    row("aiff, little-endian", "a.aiff", "-c:a pcm_s16le");
    row("au", "a.au", "-c:a pcm_s16be");
    row("snd, mu-law", "a.snd", "-c:a pcm_mulaw -f au");
    row("caf", "a.caf", "-c:a pcm_s16be");
    row("caf, ALAC: packets without lengths", "a.caf", "-c:a alac");
    row("m4a, ALAC", "a.m4a", "-c:a alac");
    row("m4a, ALAC 24 bits", "a.m4a", "-c:a alac -sample_fmt s32p");
    row("m4a, AAC: what the encoder added", "a.m4a", "-c:a aac");
    row("m4a, AAC 48 kHz", "a.m4a", "-c:a aac -ar 48000");
    row("m4a, AAC 22.05 kHz mono", "a.m4a", "-c:a aac -ar 22050 -ac 1");
    row("m4a, header in front", "a.m4a", "-c:a aac -movflags +faststart");
    row("m4a, in fragments", "a.m4a", "-c:a alac -movflags +frag_keyframe -frag_duration 500000");
    row("m4b", "a.m4b", "-c:a aac -f mp4");
    row("mp3", "a.mp3", "");
    row("mp3, variable rate", "a.mp3", "-q:a 2");
    row("mp3, 320 kbit/s, no bit reservoir", "a.mp3", "-b:a 320k -reservoir 0");
    row("mp3, 48 kHz", "a.mp3", "-ar 48000");
    row("mp3, 22.05 kHz mono: short frames", "a.mp3", "-ar 22050 -ac 1");
    row("mp3, 8 kHz", "a.mp3", "-ar 8000 -ac 1 -b:a 8k");
}

void AudioTest::samples()
{
    QFETCH(QString, name);
    QFETCH(QString, arguments);
    QFETCH(qint64, blocks);
    const QString file = m_files.make(name, arguments);
    const Result<AudioSource> source = AudioSource::open(file, {});
    QCOMPARE(source.error(), QString());
    QString error;
    const QByteArray found = SoundFiles::decode(file, &error);
    QCOMPARE(error, QString());
    QCOMPARE(found.size(), source.value().byteCount());
    QCOMPARE(source.value().blockCount(), blocks);
    const QByteArray expected = SoundFiles::reference(file);
    // That program gives out the padding of the last packet of AAC, which we compare no further.
    QVERIFY(expected.size() > found.size() - AudioSource::sectorSize);
    QVERIFY(agree(found, expected));
    const Result<double> duration = AudioFile::duration(file);
    QCOMPARE(duration.error(), QString());
    // One program notes down whole packets.
    QVERIFY2(std::abs(duration.value() - 3) < 0.07, qPrintable(QString::number(duration.value())));
}

void AudioTest::piped_data()
{
    QTest::addColumn<quint32>("size");
    QTest::newRow("no size") << quint32(0);
    QTest::newRow("largest size") << quint32(0xFFFF'FFFF);
    QTest::newRow("just under two gigabytes") << quint32(0x7FFF'F000);
}

void AudioTest::piped()
{
    QFETCH(quint32, size);
    QByteArray bytes = SoundFiles::read(m_files.original());
    bytes.replace(40, 4, reinterpret_cast<const char *>(&size), 4);
    QString error;
    const QByteArray found = SoundFiles::decode(m_files.write(text("a.wav"), bytes), &error);
    QCOMPARE(error, QString());
    QVERIFY(found == bytes.sliced(44));

    const QString made = m_files.makeByPipe(text("pipe.au"), text("-f au -c:a pcm_s16be"));
    QVERIFY(SoundFiles::decode(made, &error) == bytes.sliced(44));
    QCOMPARE(error, QString());
}

void AudioTest::lastSector_data()
{
    QTest::addColumn<int>("frames");
    QTest::addColumn<int>("blocks");
    QTest::newRow("one frame") << 1 << 1;
    QTest::newRow("a frame less than a sector") << 587 << 1;
    QTest::newRow("a sector") << 588 << 1;
    QTest::newRow("a frame more") << 589 << 2;
}

void AudioTest::lastSector()
{
    QFETCH(int, frames);
    QFETCH(int, blocks);
    const QString file = m_files.make(text("a.wav"), text("-af atrim=end_sample=%1").arg(frames));
    QString error;
    const QByteArray found = SoundFiles::decode(file, &error);
    QCOMPARE(error, QString());
    QCOMPARE(found.size(), qsizetype(blocks) * AudioSource::sectorSize);
    QVERIFY(found.startsWith(SoundFiles::reference(file)));
    QVERIFY(isSilent(QByteArrayView(found).sliced(qsizetype(frames) * 4)));
}

// As the largest music shop writes its files: no edit list, the last packet as long as the others,
// and the true length in a note.
void AudioTest::lengthNotedByEncoder()
{
    const QByteArray value(" 00000000 00000400 00000334 00000000000204CC 00000000 00000000");
    const QByteArray room(48 + value.size(), 'x');
    const QString made = m_files.make(text("a.m4a"), text("-c:a aac -metadata comment=")
                                                         + QString::fromLatin1(room));
    QByteArray bytes = SoundFiles::read(made);
    QByteArray note("----\0\0\0\x1C"
                    "mean\0\0\0\0com.apple.iTunes\0\0\0\x14"
                    "name\0\0\0\0iTunSMPB"
                    "\0\0\0",
                    55);
    note += static_cast<char>(16 + value.size());
    note += QByteArray("data\0\0\0\1\0\0\0\0", 12) + value;
    const qsizetype comment = bytes.indexOf("\xA9"
                                            "cmt");
    QVERIFY(comment > 0);
    bytes.replace(comment, note.size(), note);
    bytes.replace(bytes.indexOf("edts"), 4, "free");
    bytes.replace(bytes.indexOf("stts") + 24, 4, QByteArray("\0\0\4\0", 4));
    QString error;
    const QByteArray found = SoundFiles::decode(m_files.write(text("noted.m4a"), bytes), &error);
    QCOMPARE(error, QString());
    QCOMPARE(found.size(), 225 * AudioSource::sectorSize);
    QVERIFY(found == SoundFiles::decode(made, &error));
}

void AudioTest::streamWithoutNote()
{
    const QString file = m_files.make(text("a.mp3"), text("-q:a 5 -write_xing 0 -id3v2_version 0"));
    QString error;
    const QByteArray found = SoundFiles::decode(file, &error);
    QCOMPARE(error, QString());
    const QByteArray expected = SoundFiles::reference(file);
    QVERIFY(found.startsWith(expected));
    QVERIFY(isSilent(QByteArrayView(found).sliced(expected.size())));
    // Estimated from the first frame's bit rate it would be far off.
    const Result<double> duration = AudioFile::duration(file);
    QCOMPARE(duration.value(), static_cast<double>(expected.size()) / (4 * 44'100));
}

void AudioTest::cutOutOfLongerStream()
{
    m_files.make(text("whole.mp3"), text("-b:a 64k -write_xing 0 -id3v2_version 0"));
    const QString cut =
        m_files.generate(text("cut.mp3"), text("-ss 1 -i %1 -c copy -write_xing 0 -id3v2_version 0")
                                              .arg(m_files.path(text("whole.mp3"))));
    QString error;
    const QByteArray found = SoundFiles::decode(cut, &error);
    QCOMPARE(error, QString());
    const QByteArray expected = SoundFiles::reference(cut);
    QVERIFY(found.startsWith(expected) && expected.size() > qsizetype(3) * 88'200);
    // One that begins within a frame, as recordings from the air do.
    const QString within = m_files.write(text("within.mp3"), SoundFiles::read(cut).sliced(100));
    QVERIFY(found.size() - SoundFiles::decode(within, &error).size()
            <= qsizetype(3) * AudioSource::sectorSize);
    QCOMPARE(error, QString());
}

void AudioTest::tagsAtBothEnds()
{
    const QByteArray bare =
        SoundFiles::read(m_files.make(text("bare.mp3"), text("-write_xing 0 -id3v2_version 0")));
    QString error;
    const QByteArray expected = SoundFiles::decode(m_files.path(text("bare.mp3")), &error);
    const QByteArray id3v2 = QByteArray("ID3\4\0\0\0\0\2\0", 10) + QByteArray(256, '\xFF');
    const QByteArray apeTag = QByteArray(64 - 32, 'x') + QByteArray("APETAGEX")
                              + QByteArray("\xD0\7\0\0\x40\0\0\0\1\0\0\0\0\0\0\0", 16)
                              + QByteArray(8, '\0');
    const QByteArray lyrics = QByteArray("LYRICSBEGININD0000200000021LYRICS200");
    const QByteArray id3v1 = QByteArray("TAG") + QByteArray(125, ' ');
    const QList<QByteArray> files = {id3v2 + bare, id3v2 + id3v2 + bare + id3v1,
                                     bare + apeTag + id3v1, bare + lyrics + id3v1,
                                     bare + QByteArray(100, '\0')};
    for (const QByteArray &bytes : files) {
        const QString file = m_files.write(text("tagged.mp3"), bytes);
        const QByteArray found = SoundFiles::decode(file, &error);
        QCOMPARE(error, QString());
        QVERIFY(found == expected);
    }
}

void AudioTest::formatChanges_data()
{
    QTest::addColumn<QString>("second");
    QTest::newRow("another rate") << text("-ar 48000");
    QTest::newRow("half the rate: other frames") << text("-ar 22050");
    QTest::newRow("mono") << text("-ac 1");
}

void AudioTest::formatChanges()
{
    QFETCH(QString, second);
    const QString bare = text(" -write_xing 0 -id3v2_version 0");
    const QString one = m_files.make(text("one.mp3"), bare);
    const QString two = m_files.make(text("two.mp3"), second + bare);
    const QString both =
        m_files.write(text("both.mp3"), SoundFiles::read(one) + SoundFiles::read(two));
    QString error;
    const QByteArray found = SoundFiles::decode(both, &error);
    QCOMPARE(error, QString());
    const qint64 frames =
        (SoundFiles::reference(one).size() + SoundFiles::reference(two).size()) / 4;
    QVERIFY(std::abs(found.size() / 4 - frames) <= AudioSource::sectorFrames);
    QVERIFY(found.startsWith(SoundFiles::reference(one).chopped(8000)));
}

void AudioTest::amr()
{
    const QString file = m_files.write(text("a.amr"), SoundFiles::amr(150));
    QString error;
    const QByteArray found = SoundFiles::decode(file, &error);
    QCOMPARE(error, QString());
    QCOMPARE(found.size(), 225 * AudioSource::sectorSize);
    QVERIFY(agree(found, SoundFiles::reference(file)));
    QCOMPARE(AudioFile::duration(file).value(), 3.0);
}

void AudioTest::changedFile_data()
{
    QTest::addColumn<bool>("isLonger");
    QTest::addColumn<bool>("whileRead");
    QTest::newRow("longer, before reading") << true << false;
    QTest::newRow("as long, before reading") << false << false;
    QTest::newRow("longer, while read") << true << true;
    QTest::newRow("as long, while read") << false << true;
}

void AudioTest::changedFile()
{
    QFETCH(bool, isLonger);
    QFETCH(bool, whileRead);
    const QString path = m_files.make(text("a.wav"), {});
    const Result<AudioSource> source = AudioSource::open(path, {});
    QVERIFY(source);
    Result<PcmStream> stream = PcmStream::open(source.value());
    QVERIFY(stream);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.seek(isLonger ? file.size() : file.size() - 4));
    QCOMPARE(file.write("xxxx"), 4);
    file.close();
    if (!whileRead)
        stream = PcmStream::open(source.value());
    QString error = stream.error();
    if (stream) {
        QByteArray all(source.value().byteCount(), '\0');
        error = stream.value().read(all.data(), all.size()).error();
    }
    QCOMPARE(error, path + text(": the file has changed meanwhile"));
}

MAPLORN_TEST_MAIN(AudioTest)
#include "audiotest.moc"
