#include "TestMain.h"

#include "AudioSource.h"
#include "PcmReader.h"
#include "SoundFiles.h"

#include <QFile>
#include <QtEndian>

#include <stop_token>

using namespace Qt::StringLiterals;

namespace {

QString cancelled()
{
    return u"The job was cancelled."_s;
}

}

class PcmReaderTest : public QObject
{
    Q_OBJECT

    [[nodiscard]] AudioSource source(const QString &path) const
    {
        const Result<AudioSource> opened = AudioSource::open(path, {});
        if (!opened)
            qFatal("%s", qPrintable(opened.error()));
        return opened.value();
    }
    [[nodiscard]] AudioSource longSource(const QString &name) const;

    const SoundFiles m_files;

private Q_SLOTS:
    void order();
    void none();
    void memory();
    void failureInItsTurn();
    void stop();
    void stopBefore();
    void destruction();
};

// Eighty minutes that take no room: a file with a hole.
AudioSource PcmReaderTest::longSource(const QString &name) const
{
    constexpr quint32 length = 80 * 60 * 176'400; // bytes
    QByteArray header = SoundFiles::read(m_files.original()).first(44);
    qToLittleEndian(length, header.data() + 40);
    QFile file(m_files.write(name, header));
    if (!file.resize(44 + qint64(length)))
        qFatal("no room");
    return source(file.fileName());
}

void PcmReaderTest::order()
{
    QList<AudioSource> sources;
    QList<QByteArray> expected;
    for (int i = 1; i <= 9; ++i) {
        const QString file = m_files.make(u"%1.wav"_s.arg(i), u"-ss 0.%1"_s.arg(i));
        sources.append(source(file));
        expected.append(SoundFiles::decode(file));
    }
    PcmReader reader(sources, {});
    for (const QByteArray &wanted : expected) {
        QByteArray found;
        for (;;) {
            const Result<QByteArray> piece = reader.next();
            QCOMPARE(piece.error(), QString());
            QCOMPARE(piece.value().size() % AudioSource::sectorSize, 0);
            QVERIFY(piece.value().size() <= 65'536);
            if (piece.value().isEmpty())
                break;
            found.append(piece.value());
        }
        QVERIFY(found == wanted);
    }
    QVERIFY(reader.next().value().isEmpty());
    QCOMPARE(reader.buffered(), 0);
}

void PcmReaderTest::none()
{
    PcmReader reader({}, {});
    QVERIFY(reader.next().value().isEmpty());
}

void PcmReaderTest::memory()
{
    // The second and third fill up what they may before the first is read at all.
    const AudioSource longest = longSource(u"long.wav"_s);
    PcmReader reader({longest, longest, longest}, {});
    QTRY_VERIFY_WITH_TIMEOUT(reader.buffered() > PcmReader::mostBuffered / 2, 10'000);
    QTest::qWait(200);
    QVERIFY(reader.buffered() <= PcmReader::mostBuffered);
    qint64 length = 0;
    for (;;) {
        const Result<QByteArray> piece = reader.next();
        QCOMPARE(piece.error(), QString());
        QVERIFY(reader.buffered() <= PcmReader::mostBuffered);
        if (piece.value().isEmpty())
            break;
        length += piece.value().size();
    }
    QCOMPARE(length, longest.byteCount());
}

void PcmReaderTest::failureInItsTurn()
{
    const QString vanishing = m_files.make(u"vanishing.wav"_s, {});
    const AudioSource good = source(m_files.original());
    const QList<AudioSource> sources = {good, good, source(vanishing), good};
    QVERIFY(QFile::remove(vanishing));
    PcmReader reader(sources, {});
    int ends = 0;
    QString error;
    while (error.isEmpty() && ends < 4) {
        const Result<QByteArray> piece = reader.next();
        error = piece.error();
        ends += piece && piece.value().isEmpty() ? 1 : 0;
    }
    QCOMPARE(ends, 2);
    QVERIFY2(error.startsWith(vanishing + u": "_s), qPrintable(error));
    QCOMPARE(reader.next().error(), error);
}

void PcmReaderTest::stop()
{
    std::stop_source stopping;
    const AudioSource longest = longSource(u"long.wav"_s);
    PcmReader reader({longest, longest, longest}, stopping.get_token());
    QVERIFY(reader.next());
    stopping.request_stop();
    QCOMPARE(reader.next().error(), cancelled());
}

void PcmReaderTest::stopBefore()
{
    std::stop_source stopping;
    stopping.request_stop();
    QCOMPARE(AudioSource::open(m_files.original(), stopping.get_token()).error(), cancelled());
    PcmReader reader({source(m_files.original())}, stopping.get_token());
    QCOMPARE(reader.next().error(), cancelled());
}

void PcmReaderTest::destruction()
{
    const AudioSource longest = longSource(u"long.wav"_s);
    for (int i = 0; i < 20; ++i) {
        PcmReader reader({longest, longest}, {});
        if (i % 2 == 0)
            QVERIFY(reader.next());
    }
}

MAPLORN_TEST_MAIN(PcmReaderTest)
#include "pcmreadertest.moc"
