#include "AudioTracks.h"

#include "AudioTools.h"
#include "DRMSF.h"
#include "Localized.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace {

constexpr quint32 blocksPerSecond = 75;

struct Column
{
    const char *title;
    QString (*text)(const AudioTrackEntry &entry, int row);
};

constexpr std::array columns{
    Column{QT_TRANSLATE_NOOP("BurnAudio", "No"),
           [](const AudioTrackEntry &, int row) { return QString::asprintf("%d", row + 1); }},
    Column{QT_TRANSLATE_NOOP("BurnAudio", "Track"),
           [](const AudioTrackEntry &entry, int) { return entry.Track; }},
    Column{QT_TRANSLATE_NOOP("BurnAudio", "Duration"),
           [](const AudioTrackEntry &entry, int) { return entry.Duration; }},
    Column{QT_TRANSLATE_NOOP("BurnAudio", "Path"),
           [](const AudioTrackEntry &entry, int) { return entry.Path; }},
};

quint32 blocksOf(const QString &path)
{
    return static_cast<quint32>(MiscTool::getAudioFileDuration(QUrl::fromLocalFile(path)))
           * blocksPerSecond;
}

}

const QStringList &AudioTracks::extensions()
{
    static const QStringList list{
        QStringLiteral("m4a"), QStringLiteral("m4b"),  QStringLiteral("m4p"), QStringLiteral("mp3"),
        QStringLiteral("caf"), QStringLiteral("aiff"), QStringLiteral("au"),  QStringLiteral("sd2"),
        QStringLiteral("wav"), QStringLiteral("snd"),  QStringLiteral("amr")};
    return list;
}

QStringList AudioTracks::accepted(const QStringList &paths)
{
    QStringList files;
    std::ranges::copy_if(paths, std::back_inserter(files), [](const QString &path) {
        const QFileInfo file(path);
        return !file.isDir() && extensions().contains(file.suffix().toLower());
    });
    return files;
}

bool AudioTracks::isAdded(const QString &path) const
{
    return std::ranges::any_of(m_data,
                               [&](const AudioTrackEntry &entry) { return entry.Path == path; });
}

void AudioTracks::append(const QString &path)
{
    const int row = rowCount();
    beginInsertRows({}, row, row);
    m_data.append({QFileInfo(path).fileName(), DRMSF(blocksOf(path)).description(), path});
    endInsertRows();
}

void AudioTracks::removeAt(qsizetype index)
{
    beginResetModel(); // the numbers of the tracks behind it change too
    m_data.removeAt(index);
    endResetModel();
}

void AudioTracks::clear()
{
    beginResetModel();
    m_data.clear();
    endResetModel();
}

quint32 AudioTracks::totalBlocks() const
{
    quint32 total = 0;
    for (const AudioTrackEntry &entry : m_data)
        total += blocksOf(entry.Path);
    return total;
}

int AudioTracks::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_data.size());
}

int AudioTracks::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(columns.size());
}

QVariant AudioTracks::data(const QModelIndex &index, int role) const
{
    const bool isShown = role == Qt::DisplayRole || role == Qt::ToolTipRole;
    if (!isShown || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Column &column = columns.at(static_cast<size_t>(index.column()));
    return column.text(m_data.at(index.row()), index.row());
}

QVariant AudioTracks::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    return localized("BurnAudio", columns.at(static_cast<size_t>(section)).title);
}
