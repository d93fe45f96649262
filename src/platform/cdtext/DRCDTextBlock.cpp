#include "DRCDTextBlock.h"

DRCDTextBlock DRCDTextBlock::cdTextBlockWithLanguage(const QString &language, Encoding encoding)
{
    DRCDTextBlock block;
    block.m_language = language;
    block.m_encoding = encoding;
    return block;
}

void DRCDTextBlock::setTrackDictionaries(const QList<QVariantMap> &dictionaries)
{
    m_dictionaries = dictionaries;
}
