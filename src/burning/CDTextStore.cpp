#include "CDTextStore.h"

CDTextStore::CDTextStore(const QString &firstLanguage)
    : m_cdTextBlockDict{{firstLanguage, {QVariantMap()}}}
{
}

bool CDTextStore::contains(const QString &language) const
{
    return m_cdTextBlockDict.contains(language);
}

QList<QVariantMap> CDTextStore::list(const QString &language) const
{
    return m_cdTextBlockDict.value(language);
}

QVariantMap CDTextStore::element(const QString &language, qsizetype index) const
{
    return list(language).value(index);
}

void CDTextStore::store(const QString &language, qsizetype index, const QVariantMap &values,
                        qsizetype trackCount)
{
    if (!contains(language))
        addLanguage(language, trackCount);
    QList<QVariantMap> &list = m_cdTextBlockDict[language];
    if (list.size() <= index)
        list.resize(index + 1);
    list[index].insert(values);
}

void CDTextStore::addLanguage(const QString &language, qsizetype trackCount)
{
    m_cdTextBlockDict.insert(language, QList<QVariantMap>(1 + trackCount));
}

void CDTextStore::removeLanguage(const QString &language)
{
    m_cdTextBlockDict.remove(language);
}

void CDTextStore::appendTrack(const QString &language)
{
    if (const auto list = m_cdTextBlockDict.find(language); list != m_cdTextBlockDict.end())
        list->append(QVariantMap());
}

void CDTextStore::removeTrack(const QString &language, qsizetype track)
{
    const auto list = m_cdTextBlockDict.find(language);
    if (list != m_cdTextBlockDict.end() && track + 1 < list->size())
        list->removeAt(track + 1);
}

QVariantMap CDTextStore::toMap() const
{
    QVariantMap map;
    for (auto language = m_cdTextBlockDict.cbegin(); language != m_cdTextBlockDict.cend();
         ++language) {
        QVariantList list;
        for (const QVariantMap &element : *language)
            list.append(element);
        map.insert(language.key(), list);
    }
    return map;
}

bool CDTextStore::isWorthKeeping() const
{
    return !m_cdTextBlockDict.isEmpty() && !m_cdTextBlockDict.first().value(0).isEmpty();
}
