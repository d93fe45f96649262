// The keys of CD-Text: the one under which a burn's properties hold it, and those of the
// dictionaries of a disc and of its tracks. Every value is its own name as text.
#pragma once

#include <QLatin1StringView>

#define DR_NAME(name) inline constexpr QLatin1StringView name(#name)

DR_NAME(DRCDTextKey); // a DRCDTextBlock, or a list of them

// Of the disc and of its tracks.
DR_NAME(DRCDTextTitleKey);      // text
DR_NAME(DRCDTextPerformerKey);  // text
DR_NAME(DRCDTextSongwriterKey); // text
DR_NAME(DRCDTextComposerKey);   // text
DR_NAME(DRCDTextArrangerKey);   // text
DR_NAME(DRCDTextMCNISRCKey);    // text: the disc's catalogue number, a track's recording code

// Of the disc alone.
DR_NAME(DRCDTextSpecialMessageKey);                      // text
DR_NAME(DRCDTextDiscIdentKey);                           // text
DR_NAME(DRCDTextGenreKey);                               // number, as read from a disc
DR_NAME(DRCDTextGenreCodeKey);                           // number, 1 to 28
DR_NAME(DRCDTextClosedKey);                              // text that no player shows
DR_NAME(DRCDTextCopyrightAssertedForTitlesKey);          // boolean
DR_NAME(DRCDTextCopyrightAssertedForNamesKey);           // boolean
DR_NAME(DRCDTextCopyrightAssertedForSpecialMessagesKey); // boolean

// What a disc says of its own CD-Text: only read, never written.
DR_NAME(DRCDTextSizeKey); // bytes
DR_NAME(DRCDTextTOCKey);  // bytes
DR_NAME(DRCDTextTOC2Key); // bytes

#undef DR_NAME
