#include "IsoPlan.h"

#include "HfsPlusNames.h"
#include "IsoOptions.h"
#include "SourceFile.h"

#define LIBISOFS_WITHOUT_LIBBURN
#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <libisofs/libisofs.h>
#include <memory>
#include <mutex>

namespace {

template <auto function>
struct Release
{
    template <typename T>
    void operator()(T *object) const
    {
        function(object);
    }
};

void endSource(burn_source *source)
{
    source->cancel(source);
    source->free_data(source);
    std::free(source); // NOLINT: allocated by a C library
}

using Image = std::unique_ptr<IsoImage, Release<iso_image_unref>>;
using Options = std::unique_ptr<IsoWriteOpts, Release<iso_write_opts_free>>;
using Source = std::unique_ptr<burn_source, Release<endSource>>;

// libisofs has one message queue and one set of settings in the process.
std::timed_mutex libraryMutex;

// libisofs at work, for who holds the mutex.
class Library
{
public:
    Library()
    {
        std::array never = std::to_array("NEVER");
        std::array none = std::to_array("");
        std::array charset = std::to_array("UTF-8");
        iso_init_with_flag(1); // the locale is the application's affair
        iso_set_msgs_severities(m_loss.data(), never.data(), none.data());
        iso_set_local_charset(charset.data(), 0);
    }
    ~Library() { iso_finish(); }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;
    Library(Library &&) = delete;
    Library &operator=(Library &&) = delete;

    // The message of a failed call; where it succeeded, the first one that tells of a loss.
    [[nodiscard]] Result<> check(int result)
    {
        std::array<char, ISO_MSGS_MESSAGE_LEN> text = {};
        std::array<char, 80> severity = {}; // as long as the manual demands
        QString first;
        int code = 0;
        int image = 0;
        while (iso_obtain_msgs(m_loss.data(), &code, &image, text.data(), severity.data()) > 0) {
            if (first.isEmpty())
                first = QString::fromUtf8(text.data());
        }
        if (first.isEmpty() && result < 0)
            first = QString::fromUtf8(iso_error_to_msg(result));
        return first.isEmpty() ? Result<>(Done{}) : Failure{first};
    }

private:
    std::array<char, 6> m_loss = std::to_array("SORRY");
};

using Metadata = std::shared_ptr<const PackedBlocks>;

Result<Metadata> readMetadata(burn_source *source, qint64 length)
{
    auto metadata = std::make_shared<PackedBlocks>();
    QByteArray piece(512 * PackedBlocks::blockSize, Qt::Uninitialized);
    for (qint64 done = 0; done < length;) {
        const auto wanted = static_cast<int>(std::min(piece.size(), length - done));
        if (source->read_xt(source, reinterpret_cast<unsigned char *>(piece.data()), wanted)
            != wanted)
            return Failure{QStringLiteral("The image's folders could not be made")};
        metadata->append(QByteArrayView(piece).first(wanted));
        done += wanted;
    }
    return Metadata(std::move(metadata));
}

Result<IsoPlan> planOf(Library &library, IsoImage *image, IsoKind kind)
{
    const Options options(IsoOptions::make(kind));
    if (!options)
        return Failure{QString::fromUtf8(iso_error_to_msg(ISO_OUT_OF_MEM))};
    burn_source *started = nullptr;
    const int result = iso_image_create_burn_source(image, options.get(), &started);
    const Source source(started);
    if (const Result<> made = library.check(result); !made)
        return made.failure();
    uint32_t dataStart = 0;
    iso_write_opts_get_data_start(options.get(), &dataStart, 0);
    Result<Metadata> metadata =
        readMetadata(source.get(), qint64(dataStart) * PackedBlocks::blockSize);
    if (const Result<> quiet = library.check(0); !quiet)
        return quiet.failure();
    if (!metadata)
        return metadata.failure();
    return IsoPlan{
        std::move(metadata.value()), source->get_size(source.get()) / PackedBlocks::blockSize, {}};
}

}

Result<IsoPlan> IsoPlan::fromFolder(const QByteArray &folder, const QString &volumeName,
                                    IsoKind kind, const std::stop_token &stop)
{
    std::unique_lock lock(libraryMutex, std::defer_lock);
    while (!lock.try_lock_for(std::chrono::milliseconds(50))) {
        if (stop.stop_requested())
            return fileFailure(folder, ECANCELED);
    }
    Library library;
    // libisofs cuts the name to the lengths of ISO 9660's fields without regard to accents, so it
    // is composed here; and not at all to that of HFS+, where it is decomposed.
    const QString composed = volumeName.normalized(QString::NormalizationForm_C);
    const QByteArray name = HfsPlusNames::shortened(composed).toUtf8();
    IsoImage *created = nullptr;
    const int result = iso_image_new(name.constData(), &created);
    if (const Result<> made = library.check(result); !made)
        return fileFailure(folder, made.error());
    const Image image(created);
    FolderScan scan(kind, stop);
    if (const Result<> scanned = scan.run(folder, iso_image_get_root(image.get())); !scanned)
        return scanned.failure();
    Result<IsoPlan> plan = planOf(library, image.get(), kind);
    if (!plan)
        return fileFailure(folder, plan.error());
    plan.value().files = scan.files();
    return plan;
}
