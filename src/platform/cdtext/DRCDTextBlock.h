// The CD-Text of one language: what a burn writes of the disc and of each track. A value, copied
// freely; any thread.
#pragma once

#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariantMap>

class DRCDTextBlock
{
public:
    // How the texts stand on the disc; the numbers are those of the platform's text encodings.
    enum class Encoding { Ascii = 1, IsoLatin1 = 5 };

    DRCDTextBlock() = default;

    // language: ISO 639-1 code; empty for none.
    [[nodiscard]] static DRCDTextBlock cdTextBlockWithLanguage(const QString &language,
                                                               Encoding encoding);

    // Element 0 is the disc's dictionary, element N + 1 that of track N (from 0), with the keys of
    // DRCDTextKeys.h. Missing elements and keys are read as empty, those beyond the tracks are left
    // out.
    void setTrackDictionaries(const QList<QVariantMap> &dictionaries);

    [[nodiscard]] const QList<QVariantMap> &trackDictionaries() const { return m_dictionaries; }
    [[nodiscard]] QString language() const { return m_language; }
    [[nodiscard]] Encoding encoding() const { return m_encoding; }

    friend bool operator==(const DRCDTextBlock &, const DRCDTextBlock &) = default;

private:
    QString m_language;
    Encoding m_encoding = Encoding::IsoLatin1;
    QList<QVariantMap> m_dictionaries;
};

Q_DECLARE_METATYPE(DRCDTextBlock)
