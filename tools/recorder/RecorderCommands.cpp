#include "RecorderCommands.h"

#include "DRKeys.h"
#include "MediaTypes.h"

namespace {

using Lines = QList<std::pair<QString, QString>>;

constexpr qint64 blockSize = 2048;

QString table(const Lines &lines)
{
    qsizetype width = 0;
    for (const auto &[name, value] : lines)
        width = std::max(width, name.size() + 2);
    QString text;
    for (const auto &[name, value] : lines)
        text += QString(name + QLatin1Char(':')).leftJustified(width) + value + QLatin1Char('\n');
    return text;
}

QString space(qint64 blocks)
{
    return QStringLiteral("%1 blocks, %2 bytes").arg(blocks).arg(blocks * blockSize);
}

QString stateText(const VirtualMedium &medium)
{
    if (!MediaTypes::find(medium.type))
        return QStringLiteral("unreadable");
    switch (medium.state) {
    case VirtualMedium::State::Blank:
        return QStringLiteral("blank");
    case VirtualMedium::State::Incomplete:
        return QStringLiteral("unfinished");
    case VirtualMedium::State::Complete:
        break;
    }
    return medium.appendable ? QStringLiteral("written, appendable") : QStringLiteral("written");
}

QString keptText(const QString &place)
{
    return place.isEmpty() ? QString()
                           : QStringLiteral("The written disc is kept in %1\n").arg(place);
}

}

QString RecorderCommands::list(const VirtualRecorder &recorder)
{
    return QStringLiteral("%1\t%2\n").arg(recorder.displayName(), recorder.folder());
}

QString RecorderCommands::status(const VirtualRecorder &recorder)
{
    const QVariantMap status = recorder.status();
    Lines lines{{QStringLiteral("Recorder"), recorder.displayName()},
                {QStringLiteral("Folder"), recorder.folder()},
                {QStringLiteral("Busy"), status.value(DRDeviceIsBusyKey).toBool()
                                             ? QStringLiteral("yes")
                                             : QStringLiteral("no")}};
    const std::optional<VirtualMedium> medium = recorder.medium();
    if (!medium) {
        lines.append({QStringLiteral("Medium"), QStringLiteral("none")});
        return table(lines);
    }
    const MediaType *type = MediaTypes::find(medium->type);
    const qint64 free =
        status.value(DRDeviceMediaInfoKey).toMap().value(DRDeviceMediaBlocksFreeKey).toLongLong();
    lines.append(
        {{QStringLiteral("Medium"), type ? QString(type->name) : QStringLiteral("unknown")},
         {QStringLiteral("State"), stateText(*medium)},
         {QStringLiteral("Capacity"), space(medium->capacity)},
         {QStringLiteral("Free"), space(free)},
         {QStringLiteral("Used"), space(medium->usedBlocks())},
         {QStringLiteral("Files"), recorder.mediumFolder()}});
    return table(lines);
}

QString RecorderCommands::insertableTypes()
{
    QStringList names;
    for (const MediaType &type : MediaTypes::all())
        names.append(type.commandName());
    return names.join(QLatin1Char(' '));
}

Result<QString> RecorderCommands::insert(VirtualRecorder &recorder, const MediaType &type)
{
    const Result<QString> place = recorder.insertBlank(type);
    if (!place)
        return place;
    return QStringLiteral("%1Inserted a blank %2.\n").arg(keptText(place.value()), type.name);
}

Result<QString> RecorderCommands::eject(VirtualRecorder &recorder)
{
    const Result<QString> place = recorder.takeOut();
    if (!place)
        return place;
    return QStringLiteral("Ejected.\n%1").arg(keptText(place.value()));
}
