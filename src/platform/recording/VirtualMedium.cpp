#include "VirtualMedium.h"

#include "DRKeys.h"
#include "MediaTypes.h"
#include "MediumDescription.h"
#include "PropertyList.h"

#include <QDir>
#include <QUuid>

#include <array>
#include <numeric>

namespace {

constexpr std::array stateNames{QLatin1StringView("blank"), QLatin1StringView("incomplete"),
                                QLatin1StringView("complete")};

const QString identifierKey = QStringLiteral("Identifier");
const QString typeKey = QStringLiteral("Type");
const QString stateKey = QStringLiteral("State");
const QString appendableKey = QStringLiteral("Appendable");
const QString audioKey = QStringLiteral("Audio");
const QString capacityKey = QStringLiteral("Capacity");
const QString tracksKey = QStringLiteral("Tracks");

QString listPath(const QString &folder)
{
    return folder + QStringLiteral("/medium.plist");
}

}

VirtualMedium VirtualMedium::blank(const MediaType &type)
{
    VirtualMedium medium;
    medium.identifier = QUuid::createUuid().toString(QUuid::WithoutBraces);
    medium.type = type.type;
    medium.state = State::Blank;
    medium.capacity = type.capacity;
    return medium;
}

void VirtualMedium::clear()
{
    state = State::Blank;
    appendable = false;
    audio = false;
    tracks.clear();
}

std::optional<VirtualMedium> VirtualMedium::load(const QString &folder)
{
    if (!QDir(folder).exists())
        return std::nullopt;
    const QVariantMap list = PropertyList::readMap(listPath(folder));
    VirtualMedium medium;
    medium.identifier = list.value(identifierKey).toString();
    medium.type = list.value(typeKey, QString(DRDeviceMediaTypeUnknown)).toString();
    const QString name = list.value(stateKey).toString();
    const auto found = std::ranges::find(stateNames, name);
    if (found != stateNames.end())
        medium.state = static_cast<State>(found - stateNames.begin());
    medium.appendable = list.value(appendableKey).toBool();
    medium.audio = list.value(audioKey).toBool();
    medium.capacity = list.value(capacityKey).toLongLong();
    for (const QVariant &length : list.value(tracksKey).toList())
        medium.tracks.append(length.toLongLong());
    return medium;
}

Result<> VirtualMedium::store(const QString &folder) const
{
    QVariantList lengths;
    for (const qint64 length : tracks)
        lengths.append(length);
    return PropertyList::write(
        listPath(folder),
        QVariantMap{{identifierKey, identifier},
                    {typeKey, type},
                    {stateKey, QString(stateNames.at(static_cast<size_t>(state)))},
                    {appendableKey, appendable},
                    {audioKey, audio},
                    {capacityKey, capacity},
                    {tracksKey, lengths}});
}

bool VirtualMedium::isErasable() const
{
    const MediaType *known = MediaTypes::find(type);
    return known && known->erasable;
}

qint64 VirtualMedium::usedBlocks() const
{
    return std::accumulate(tracks.cbegin(), tracks.cend(), qint64(0));
}

QVariantMap VirtualMedium::status(bool reserved) const
{
    using Track = MediumDescription::Track;
    const MediaType *known = MediaTypes::find(type);
    MediumDescription medium;
    medium.type = type;
    medium.mediaClass = known ? known->mediaClass : DRDeviceMediaClassUnknown;
    medium.bsdName = QStringLiteral("virtual");
    medium.blank = isBlank();
    medium.appendable = isBlank() || (state == State::Complete && appendable);
    medium.erasable = isErasable();
    medium.usedBlocks = usedBlocks();
    medium.freeBlocks = medium.appendable ? capacity - medium.usedBlocks : 0;
    medium.overwritableBlocks = known && known->overwritable ? capacity : 0;
    if (known)
        medium.speeds = known->speeds();

    // A blank medium is one empty track of its whole capacity.
    const Track::State written =
        state == State::Complete ? Track::State::Complete : Track::State::Incomplete;
    qint64 start = 0;
    for (const qint64 length : isBlank() ? QList<qint64>{capacity} : tracks) {
        medium.tracks.append({1, start, length, audio, isBlank() ? Track::State::Empty : written});
        start += length;
    }
    return medium.status(reserved);
}
