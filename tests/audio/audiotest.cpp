#include "TestMain.h"

#include "AudioFile.h"
#include "AudioSource.h"
#include "PcmStream.h"
#include "SoundFiles.h"

#include <QDateTime>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

// Whether two recordings are the same over their whole common length.
bool agree(const QByteArray &one, const QByteArray &other)
{
    const qsizetype length = std::min(one.size(), other.size());
    return QByteArrayView(one).first(length) == QByteArrayView(other).first(length);
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
    void monoIsCopied_data();
    void monoIsCopied();
    void lengthNotedByEncoder();
    void amr_data();
    void amr();
    void changedFile_data();
    void changedFile();
};

void AudioTest::samples_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<qint64>("blocks");
    const auto row = [](const char *tag, const QString &name, const QString &arguments,
                        qint64 blocks = 225) { QTest::newRow(tag) << name << arguments << blocks; };
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
    const QByteArray found = SoundFiles::decode(file);
    QCOMPARE(found.size(), source.value().byteCount());
    QCOMPARE(source.value().blockCount(), blocks);
    const QByteArray expected = SoundFiles::reference(file, arguments.contains(u"-ac 1"_s));
    // That program gives out the padding of the last packet of AAC, which we compare no further.
    QVERIFY(expected.size() > found.size() - AudioSource::sectorSize);
    QVERIFY(agree(found, expected));
    const Result<double> duration = AudioFile::duration(file);
    QCOMPARE(duration.error(), QString());
    QVERIFY2(SoundFiles::isLength(duration.value(), blocks),
             qPrintable(QString::number(duration.value())));
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
    const QByteArray found = SoundFiles::decode(m_files.write(u"a.wav"_s, bytes));
    QVERIFY(found == bytes.sliced(44));

    const QString made = m_files.makeByPipe(u"pipe.au"_s, u"-f au -c:a pcm_s16be"_s);
    QVERIFY(SoundFiles::decode(made) == bytes.sliced(44));
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
    const QString file = m_files.make(u"a.wav"_s, u"-af atrim=end_sample=%1"_s.arg(frames));
    const QByteArray found = SoundFiles::decode(file);
    QCOMPARE(found.size(), qsizetype(blocks) * AudioSource::sectorSize);
    QVERIFY(found.startsWith(SoundFiles::reference(file)));
    QVERIFY(SoundFiles::isSilent(QByteArrayView(found).sliced(qsizetype(frames) * 4)));
}

void AudioTest::monoIsCopied_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("arguments");
    QTest::newRow("wav") << u"a.wav"_s << QString();
    QTest::newRow("wav, a left channel and no right one")
        << u"a.wav"_s << u"-c:a pcm_s24le -channel_layout FL"_s;
    QTest::newRow("aiff") << u"a.aiff"_s << QString();
    QTest::newRow("caf") << u"a.caf"_s << u"-c:a pcm_s16be"_s;
    QTest::newRow("ALAC") << u"a.m4a"_s << u"-c:a alac"_s;
}

void AudioTest::monoIsCopied()
{
    QFETCH(QString, name);
    QFETCH(QString, arguments);
    const QString pan = u"-af pan=mono|c0=c0 "_s;
    const QByteArray one = SoundFiles::read(m_files.make(u"one.raw"_s, pan + u"-f s16le"_s));
    QByteArray expected;
    for (qsizetype i = 0; i < one.size(); i += 2)
        expected += one.sliced(i, 2) + one.sliced(i, 2);
    const QByteArray found = SoundFiles::decode(m_files.make(name, pan + arguments));
    QVERIFY(found == expected);
}

// As the largest music shop writes its files: no edit list, the last packet as long as the others,
// and the true length in a note.
void AudioTest::lengthNotedByEncoder()
{
    const QByteArray value(" 00000000 00000400 00000334 00000000000204CC 00000000 00000000");
    const QByteArray room(48 + value.size(), 'x');
    const QString made =
        m_files.make(u"a.m4a"_s, u"-c:a aac -metadata comment="_s + QString::fromLatin1(room));
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
    const QByteArray found = SoundFiles::decode(m_files.write(u"noted.m4a"_s, bytes));
    QCOMPARE(found.size(), 225 * AudioSource::sectorSize);
    QVERIFY(found == SoundFiles::decode(made));
    QCOMPARE(AudioFile::duration(m_files.path(u"noted.m4a"_s)).value(), 3.0);
}

void AudioTest::amr_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QByteArray>("pause");
    QTest::addColumn<QByteArray>("tail");
    const QByteArray sid("\x44\0\0\0\0\0", 6);
    const QByteArray noData("\x7C");
    const QByteArray frames = SoundFiles::amr(60).sliced(6);
    const QByteArray head = SoundFiles::amr(60);
    QTest::newRow("no pause") << head << QByteArray() << frames + frames.first(qsizetype(30) * 32);
    QTest::newRow("pause") << head << (sid + noData.repeated(7) + sid + noData.repeated(21))
                           << frames;
    QTest::newRow("pause at the start") << head.first(6) << noData.repeated(90) << frames;
    QTest::newRow("pause at the end") << head + frames << sid.repeated(30) << QByteArray();
    QTest::newRow("nothing but a pause") << head.first(6) << sid.repeated(150) << QByteArray();
    const QByteArray wide = "#!AMR-WB\n" + QByteArray("\x04" + QByteArray(17, 'x')).repeated(60);
    const QByteArray wideSid("\x4C\0\0\0\0\0", 6);
    QTest::newRow("pause, wide band")
        << wide << wideSid + QByteArray("\x7C\x74") + wideSid.repeated(27) << wide.sliced(9);
}

void AudioTest::amr()
{
    QFETCH(QByteArray, head);
    QFETCH(QByteArray, pause);
    QFETCH(QByteArray, tail);
    const QString file = m_files.write(u"a.amr"_s, head + pause + tail);
    const QByteArray found = SoundFiles::decode(file);
    QCOMPARE(found.size(), 225 * AudioSource::sectorSize);
    QCOMPARE(AudioFile::duration(file).value(), 3.0);
    // Without the resampler's reach at either end of the speech.
    constexpr qsizetype reach = qsizetype(100) * 4;
    const QByteArray before = head.size() > 9
                                  ? SoundFiles::reference(m_files.write(u"head.amr"_s, head), true)
                                  : QByteArray();
    QVERIFY(agree(found, before.chopped(std::min(before.size(), reach))));
    if (!pause.isEmpty())
        QVERIFY(SoundFiles::isSilent(
            QByteArrayView(found).sliced(before.size() + reach, 15 * 882 * 4)));
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
    const QString path = m_files.make(u"a.wav"_s, {});
    const Result<AudioSource> source = AudioSource::open(path, {});
    QVERIFY(source);
    Result<PcmStream> stream = PcmStream::open(source.value());
    QVERIFY(stream);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.seek(isLonger ? file.size() : file.size() - 4));
    QCOMPARE(file.write("xxxx"), 4);
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(1), // no tick of a coarse clock
                             QFileDevice::FileModificationTime));
    file.close();
    if (!whileRead)
        stream = PcmStream::open(source.value());
    QString error = stream.error();
    if (stream) {
        QByteArray all(source.value().byteCount(), '\0');
        error = stream.value().read(all.data(), all.size()).error();
    }
    QCOMPARE(error, path + u": the file has changed meanwhile"_s);
}

MAPLORN_TEST_MAIN(AudioTest)
#include "audiotest.moc"
