// The fixed lists of the CD-Text editor: encodings and genres, in the order of its pop-ups. Main
// thread.
#pragma once

#include "DRCDTextBlock.h"

#include <optional>

class QComboBox;

namespace CDTextChoices {

// The tag of a language whose encoding was not chosen.
inline constexpr int noEncoding = 0;

// Fill a pop-up; the item's data is its tag. The first encoding's tag is the one of new pages.
void initEncodings(QComboBox *encodingPopUp);
void initGenres(QComboBox *genrePopUp);

// The encoding that a tag stands for; null for any other number.
[[nodiscard]] std::optional<DRCDTextBlock::Encoding> encodingOf(int tag);

}
