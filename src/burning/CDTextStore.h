// The texts of an audio disc while they are edited: for each language, by its title, one
// dictionary for the disc followed by one for each track, with the keys of DRCDTextKeys.h. A
// language's list may be missing, shorter or longer than the tracks. A value; main thread.
#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QVariantMap>

class CDTextStore
{
public:
    // Holds the first language with a disc that has no texts.
    explicit CDTextStore(const QString &firstLanguage);

    [[nodiscard]] bool contains(const QString &language) const;

    // The dictionaries of a language; none where it has no list.
    [[nodiscard]] QList<QVariantMap> list(const QString &language) const;
    // Element 0 is the disc, N + 1 track N; empty where there is none.
    [[nodiscard]] QVariantMap element(const QString &language, qsizetype index) const;

    // Puts values into an element, over those of the same keys. An element that is missing is made,
    // and so is the list, for that many tracks: what somebody has typed is not lost.
    void store(const QString &language, qsizetype index, const QVariantMap &values,
               qsizetype trackCount);

    void addLanguage(const QString &language, qsizetype trackCount);
    void removeLanguage(const QString &language);

    // A track came, or went, in that language alone; nothing happens where it has no list.
    void appendTrack(const QString &language);
    void removeTrack(const QString &language, qsizetype track);

    // Nothing is left, not even the first language.
    void clear() { m_cdTextBlockDict.clear(); }

    // As it is kept in a property list: language to a list of dictionaries.
    [[nodiscard]] QVariantMap toMap() const;

    // Whether the disc has anything in the language that comes first.
    [[nodiscard]] bool isWorthKeeping() const;

private:
    QMap<QString, QList<QVariantMap>> m_cdTextBlockDict;
};
