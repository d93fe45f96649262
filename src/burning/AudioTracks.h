// The tracks of an audio disc to be, in their order: the list, and the table that shows it. Main
// thread.
#pragma once

#include <QAbstractTableModel>

struct AudioTrackEntry
{
    QString Track;    // the file's name
    QString Duration; // "mm:ss:ff", whole seconds
    QString Path;     // which file it is
};

class AudioTracks : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    // Extensions of the files that can be tracks, without dots.
    [[nodiscard]] static const QStringList &extensions();
    // Those of the files that can be tracks.
    [[nodiscard]] static QStringList accepted(const QStringList &paths);

    [[nodiscard]] const QList<AudioTrackEntry> &data() const { return m_data; }
    [[nodiscard]] bool isEmpty() const { return m_data.isEmpty(); }
    [[nodiscard]] bool isAdded(const QString &path) const;

    // Measures the file, unless that was done before, and appends it.
    void append(const QString &path);
    void removeAt(qsizetype index);
    void clear();

    // Blocks of all tracks, whole seconds each, measured anew; counted as in 32 bits.
    [[nodiscard]] quint32 totalBlocks() const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

private:
    QList<AudioTrackEntry> m_data;
};
