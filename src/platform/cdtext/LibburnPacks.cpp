#include "LibburnPacks.h"

#include "LibburnMessages.h"

#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <sys/types.h>

#include <libburn/libburn.h>

namespace {

using Codes = std::array<int, 8>;

struct Free
{
    void operator()(burn::burn_session *session) const { burn::burn_session_free(session); }
    void operator()(burn::burn_track *track) const { burn::burn_track_free(track); }
    void operator()(unsigned char *packs) const { std::free(packs); }
};
using Session = std::unique_ptr<burn::burn_session, Free>;
using Track = std::unique_ptr<burn::burn_track, Free>;
using Packs = std::unique_ptr<unsigned char, Free>;

// libburn copies the bytes, but asks for them as if it changed them.
unsigned char *mutableBytes(QByteArray &bytes)
{
    return reinterpret_cast<unsigned char *>(bytes.data());
}

bool setTexts(burn::burn_session *session, const QList<burn::burn_track *> &tracks, int block,
              CDTextPayload::Texts texts)
{
    if (burn::burn_session_set_cdtext(session, block, texts.packType, nullptr,
                                      mutableBytes(texts.disc), int(texts.disc.size()), 0)
        <= 0)
        return false;
    for (qsizetype track = 0; track < texts.tracks.size(); ++track) {
        QByteArray &text = texts.tracks[track];
        if (burn::burn_track_set_cdtext(tracks.at(track), block, texts.packType, nullptr,
                                        mutableBytes(text), int(text.size()), 0)
            <= 0)
            return false;
    }
    return true;
}

bool setCodes(burn::burn_session *session, const QList<LibburnPacks::Block> &blocks)
{
    Codes characters;
    Codes copyrights;
    Codes languages;
    for (Codes *codes : {&characters, &copyrights, &languages})
        codes->fill(-1);
    for (qsizetype block = 0; block < blocks.size(); ++block) {
        const auto at = std::size_t(block);
        characters[at] = blocks.at(block).characterCode;
        copyrights[at] = blocks.at(block).copyright;
        languages[at] = blocks.at(block).language;
    }
    return burn::burn_session_set_cdtext_par(session, characters.data(), copyrights.data(),
                                             languages.data(), 0)
           > 0;
}

// The tracks belong to the session.
QList<burn::burn_track *> addTracks(burn::burn_session *session, int trackCount)
{
    QList<burn::burn_track *> tracks;
    while (tracks.size() < trackCount) {
        const Track track(burn::burn_track_create());
        if (!track || burn::burn_session_add_track(session, track.get(), BURN_POS_END) <= 0)
            break;
        tracks.append(track.get());
    }
    return tracks;
}

// Nothing where libburn refuses.
std::optional<QByteArray> packs(const QList<LibburnPacks::Block> &blocks, int trackCount)
{
    if (!LibburnMessages::isReady())
        return std::nullopt;
    // Always a fresh session: making packs after texts were taken away crashes libburn.
    const Session session(burn::burn_session_create());
    if (!session)
        return std::nullopt;
    const QList<burn::burn_track *> tracks = addTracks(session.get(), trackCount);
    if (tracks.size() < trackCount || !setCodes(session.get(), blocks))
        return std::nullopt;
    for (qsizetype block = 0; block < blocks.size(); ++block) {
        for (const CDTextPayload::Texts &texts : blocks.at(block).payload) {
            if (!setTexts(session.get(), tracks, int(block), texts))
                return std::nullopt;
        }
    }
    unsigned char *bytes = nullptr;
    int count = 0;
    const int result = burn::burn_cdtext_from_session(session.get(), &bytes, &count, 0);
    const Packs owner(bytes);
    if (result <= 0)
        return std::nullopt;
    return QByteArray(reinterpret_cast<const char *>(bytes), qsizetype(count) * 18);
}

}

Result<QByteArray> LibburnPacks::make(const QList<Block> &blocks, int trackCount)
{
    const QMutexLocker locker(&LibburnMessages::besideDrives());
    const LibburnMessages messages;
    const std::optional<QByteArray> made = packs(blocks, trackCount);
    const QString message = messages.complaint();
    if (made)
        return *made;
    return Failure{message.isEmpty() ? QStringLiteral("no reason given") : message};
}
