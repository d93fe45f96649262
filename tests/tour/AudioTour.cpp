#include "AudioTour.h"

#include "DRDevice.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QProcess>
#include <QTabWidget>
#include <QTableView>
#include <QtEndian>

#include <array>
#include <cmath>
#include <numbers>

namespace {

constexpr int rate = 44100;

struct Tone
{
    const char *name;
    double frequency; // Hz
    int seconds;
};

constexpr std::array tones{Tone{"Low Tone", 220, 20}, Tone{"Middle Tone", 440, 15},
                           Tone{"High Tone", 880, 12}};

const QStringList englishTitles{QStringLiteral("Low Tone"), QStringLiteral("Middle Tone"),
                                QStringLiteral("High Tone")};
const QStringList germanTitles{QStringLiteral("Tiefer Ton"), QStringLiteral("Mittlerer Ton"),
                               QStringLiteral("Hoher Ton")};

// A wave file of a sine, 16-bit stereo.
QByteArray wave(const Tone &tone)
{
    constexpr int channels = 2;
    constexpr int sampleSize = 2;
    const quint32 size = static_cast<quint32>(tone.seconds) * rate * channels * sampleSize;
    QByteArray bytes;
    const auto append = [&bytes](auto number) {
        number = qToLittleEndian(number);
        bytes.append(reinterpret_cast<const char *>(&number), sizeof number);
    };
    bytes += "RIFF";
    append(size + 36);
    bytes += "WAVEfmt ";
    append(quint32(16));
    append(quint16(1)); // PCM
    append(quint16(channels));
    append(quint32(rate));
    append(quint32(rate * channels * sampleSize));
    append(quint16(channels * sampleSize));
    append(quint16(8 * sampleSize));
    bytes += "data";
    append(size);
    for (int i = 0; i < tone.seconds * rate; ++i) {
        const double phase = 2 * std::numbers::pi * tone.frequency * i / rate;
        const auto sample = static_cast<qint16>(12000 * std::sin(phase));
        append(sample);
        append(sample);
    }
    return bytes;
}

}

void AudioTour::run()
{
    openModule(QStringLiteral("Music"));
    insert(QStringLiteral("CD-RW"));
    openModule(QStringLiteral("Music")); // which looks at the new medium
    addFiles(makeFiles());
    writeTexts();
    shootNarrow(QStringLiteral("music-narrow"));
    burn(QStringLiteral("music"));
    readBack();
}

QStringList AudioTour::makeFiles() const
{
    QStringList files;
    for (const Tone &tone : tones) {
        files.append(m_shots + u'/' + QLatin1StringView(tone.name) + QStringLiteral(".wav"));
        QFile file(files.last());
        require(file.open(QIODevice::WriteOnly) && file.write(wave(tone)) > 0,
                QStringLiteral("%1 cannot be written").arg(files.last()));
    }
    return files;
}

void AudioTour::addFiles(const QStringList &files) const
{
    say(QStringLiteral("Adding %1").arg(files.join(QStringLiteral(", "))));
    click(find<QWidget>("addButton"));
    choose(u'"' + files.join(QStringLiteral("\" \"")) + u'"', QStringLiteral("music-chooser"));
    auto *table = find<QTableView>("table");
    waitFor([&] { return table->model()->rowCount() == files.size(); },
            QStringLiteral("the files were not added"), measured);
    shoot(QStringLiteral("music-tracks"));
}

void AudioTour::writeTexts() const
{
    say(QStringLiteral("Writing titles in two languages"));
    click(find<QWidget>("cdtextButton"));
    waitFor([this] { return isShown("cdtextPanel"); }, QStringLiteral("no CD-Text editor"));
    find<QCheckBox>("cdtextEnabledCheckBox")->setChecked(true);
    writeLanguage(QStringLiteral("Three Tones"), englishTitles);
    find<QTabWidget>("tabView")->setCurrentIndex(0);
    type("discPerformerField", QStringLiteral("A Sine"));
    pick("genrePopUp", QStringLiteral("Sound Effects"));
    shoot(QStringLiteral("music-cdtext-disc"));
    pick("availableLanguagePopUp", QStringLiteral("German"));
    click(find<QWidget>("addLanguageButton"));
    writeLanguage(QStringLiteral("Drei Töne"), germanTitles);
    shoot(QStringLiteral("music-cdtext-track"));
    click(find<QPushButton>("saveButton"));
    waitFor([this] { return !isShown("cdtextPanel"); }, QStringLiteral("the editor stays"));
}

void AudioTour::writeLanguage(const QString &discTitle, const QStringList &titles) const
{
    auto *tabs = find<QTabWidget>("tabView");
    tabs->setCurrentIndex(0);
    type("discTitleField", discTitle);
    tabs->setCurrentIndex(1);
    for (int track = 0; track < titles.size(); ++track) {
        auto *tracks = find<QComboBox>("tracksPopUp");
        pick("tracksPopUp", tracks->itemText(track));
        type("trackTitleField", titles.at(track));
    }
}

// As a keyboard does it, so that the page notices; letters that a test cannot key in are pasted.
void AudioTour::type(const char *field, const QString &text) const
{
    auto *edit = find<QLineEdit>(field);
    edit->setText(text);
    Q_EMIT edit->textEdited(text);
}

void AudioTour::readBack()
{
    say(QStringLiteral("Reading the disc back with cd-info"));
    const QString sheet =
        DRDevice::devices().value(0).ioRegistryEntryPath() + QStringLiteral("/medium/disc.cue");
    QProcess reader;
    reader.start(QStringLiteral("cd-info"),
                 {QStringLiteral("--no-device-info"), QStringLiteral("--no-cddb"),
                  QStringLiteral("--cue-file=") + sheet});
    require(reader.waitForFinished(), QStringLiteral("cd-info: ") + reader.errorString());
    const QString output = QString::fromUtf8(reader.readAllStandardOutput());
    const qsizetype texts = output.indexOf(QLatin1StringView("CD-TEXT"));
    say(output.mid(texts).trimmed());
    for (const QString &title :
         englishTitles + germanTitles
             + QStringList{QStringLiteral("Three Tones"), QStringLiteral("A Sine")})
        require(output.contains(title), QStringLiteral("the disc does not say “%1”").arg(title));
}
