#include "CDTextChoices.h"

#include "Localized.h"

#include <QComboBox>

#include <algorithm>
#include <array>

namespace {

struct EncodingChoice
{
    const char *title;
    int tag;
    DRCDTextBlock::Encoding encoding;
};

constexpr std::array encodings{
    EncodingChoice{"ISO-Latin-1", 513, DRCDTextBlock::Encoding::IsoLatin1},
    EncodingChoice{"7-bit ASCII", 1536, DRCDTextBlock::Encoding::Ascii},
};

// The codes count from 1 (Red Book, CD-Text genre codes; 0 is "not used").
constexpr std::array genres{
    QT_TRANSLATE_NOOP("CDText", "Unknown"),
    QT_TRANSLATE_NOOP("CDText", "Adult Contemporary"),
    QT_TRANSLATE_NOOP("CDText", "Alternative Rock"),
    QT_TRANSLATE_NOOP("CDText", "Childrens"),
    QT_TRANSLATE_NOOP("CDText", "Classical"),
    QT_TRANSLATE_NOOP("CDText", "Contemporary Christian"),
    QT_TRANSLATE_NOOP("CDText", "Country"),
    QT_TRANSLATE_NOOP("CDText", "Dance"),
    QT_TRANSLATE_NOOP("CDText", "Easy Listening"),
    QT_TRANSLATE_NOOP("CDText", "Erotic"),
    QT_TRANSLATE_NOOP("CDText", "Folk"),
    QT_TRANSLATE_NOOP("CDText", "Gospel"),
    QT_TRANSLATE_NOOP("CDText", "Hip Hop"),
    QT_TRANSLATE_NOOP("CDText", "Jazz"),
    QT_TRANSLATE_NOOP("CDText", "Latin"),
    QT_TRANSLATE_NOOP("CDText", "Musical"),
    QT_TRANSLATE_NOOP("CDText", "New Age"),
    QT_TRANSLATE_NOOP("CDText", "Opera"),
    QT_TRANSLATE_NOOP("CDText", "Operetta"),
    QT_TRANSLATE_NOOP("CDText", "Pop"),
    QT_TRANSLATE_NOOP("CDText", "Rap"),
    QT_TRANSLATE_NOOP("CDText", "Reggae"),
    QT_TRANSLATE_NOOP("CDText", "Rock"),
    QT_TRANSLATE_NOOP("CDText", "Rhythm And Blues"),
    QT_TRANSLATE_NOOP("CDText", "Sound Effects"),
    QT_TRANSLATE_NOOP("CDText", "Soundtrack"),
    QT_TRANSLATE_NOOP("CDText", "Spoken Word"),
    QT_TRANSLATE_NOOP("CDText", "World Music"),
};

}

void CDTextChoices::initEncodings(QComboBox *encodingPopUp)
{
    for (const EncodingChoice &choice : encodings)
        encodingPopUp->addItem(QString::fromLatin1(choice.title), choice.tag);
}

void CDTextChoices::initGenres(QComboBox *genrePopUp)
{
    for (const char *title : genres)
        genrePopUp->addItem(localized("CDText", title), genrePopUp->count() + 1);
}

std::optional<DRCDTextBlock::Encoding> CDTextChoices::encodingOf(int tag)
{
    const auto *found = std::ranges::find(encodings, tag, &EncodingChoice::tag);
    return found == encodings.end() ? std::nullopt : std::optional(found->encoding);
}
