#include "TestMain.h"

#include "AudioDurations.h"
#include "AudioTools.h"
#include "SoundFiles.h"

#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

class AudioDurationsTest : public QObject
{
    Q_OBJECT

    const SoundFiles m_files;

private Q_SLOTS:
    void wholeSeconds_data();
    void wholeSeconds();
    void changedFileIsMeasuredAgain();
    void remembered();
    void severalThreads();
};

void AudioDurationsTest::wholeSeconds_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("arguments");
    const auto row = [](const char *tag, const QString &name, const QString &arguments) {
        QTest::newRow(tag) << name << arguments;
    };
    row("wav", "a.wav", "");
    row("aiff", "a.aiff", "");
    row("au", "a.au", "");
    row("caf", "a.caf", "");
    row("m4a", "a.m4a", "-c:a alac");
    row("AAC, longer in its packets", "a.m4a", "-c:a aac");
    row("mp3, longer in its frames", "a.mp3", "");
    // The whole frames would make 60 s out of it.
    row("mp3 just under a minute", "a.mp3", "-t 59.99");
}

void AudioDurationsTest::wholeSeconds()
{
    QFETCH(QString, name);
    QFETCH(QString, arguments);
    const QString file = m_files.generate(
        name, u"-f lavfi -i aevalsrc=0.3*sin(2000*t):s=44100 -t 59.9 %1"_s.arg(arguments));
    QCOMPARE(AudioDurations::seconds(file), 59);
    QCOMPARE(MiscTool::getAudioFileDuration(QUrl::fromLocalFile(file)), 59);
}

void AudioDurationsTest::changedFileIsMeasuredAgain()
{
    const QString file = m_files.make(u"changing.wav"_s, {});
    QCOMPARE(AudioDurations::seconds(file), 3);
    m_files.make(u"changing.wav"_s, u"-t 2"_s);
    QCOMPARE(AudioDurations::seconds(file), 2);
    QVERIFY(QFile::remove(file));
    QCOMPARE(AudioDurations::seconds(file), 0);
    m_files.write(u"changing.wav"_s, "no sound");
    QCOMPARE(AudioDurations::seconds(file), 0);
    m_files.make(u"changing.wav"_s, {});
    QCOMPARE(AudioDurations::seconds(file), 3);
    QCOMPARE(MiscTool::getAudioFileDuration(QUrl(u"http://localhost/a.wav"_s)), 0);
    QCOMPARE(MiscTool::getAudioFileDuration({}), 0);
}

void AudioDurationsTest::remembered()
{
    const QString file = m_files.make(u"remembered.mp3"_s, {});
    QCOMPARE(AudioDurations::seconds(file), 3);
    const auto written = std::filesystem::last_write_time(file.toStdString());
    m_files.write(u"remembered.mp3"_s, QByteArray(QFileInfo(file).size(), 'x'));
    std::filesystem::last_write_time(file.toStdString(), written);
    QCOMPARE(AudioDurations::seconds(file), 3); // looks as it did, so it is not read again
}

void AudioDurationsTest::severalThreads()
{
    QStringList paths;
    for (int i = 1; i < 6; ++i)
        paths.append(m_files.make(u"%1.m4a"_s.arg(i), u"-t 1.5"_s));
    std::vector<int> sums(8, 0);
    {
        std::vector<std::jthread> threads;
        threads.reserve(sums.size());
        for (int &sum : sums)
            threads.emplace_back([&sum, &paths] {
                for (const QString &path : paths)
                    sum += AudioDurations::seconds(path);
            });
    }
    QCOMPARE(sums, std::vector<int>(8, 5));
}

MAPLORN_TEST_MAIN(AudioDurationsTest)
#include "audiodurationstest.moc"
