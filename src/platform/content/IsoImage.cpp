#include "IsoImage.h"

#include "HfsPlusTail.h"
#include "IsoDirectory.h"
#include "IsoPlan.h"
#include "SourceFile.h"

#include <QFile>

#include <algorithm>

namespace {

Failure inconsistent()
{
    return Failure{QStringLiteral("The image's folders do not tell where all its files are")};
}

// The metadata, and the sections of the files behind them. The folder's path is one to which a
// file's path can be added.
Result<QList<Extent>> makeExtents(const IsoPlan &plan, const QByteArray &folder)
{
    Result<QList<IsoSection>> sections = IsoDirectory::sections(*plan.metadata);
    if (!sections)
        return sections.failure();
    std::sort(sections.value().begin(), sections.value().end(),
              [](const IsoSection &a, const IsoSection &b) { return a.start < b.start; });
    QList<Extent> extents;
    extents.reserve(sections.value().size() + 1);
    qint64 end = plan.metadata->size();
    extents.append({0, end, {}, {}, 0, 0, 0, plan.metadata});
    qint64 missing = 0; // bytes
    for (const ScannedFile &file : plan.files)
        missing += file.size;
    for (const IsoSection &section : std::as_const(sections.value())) {
        const auto file = plan.files.constFind(section.path);
        missing -= section.length;
        if (section.start == extents.constLast().start)
            continue; // another name of the same file
        if (file == plan.files.constEnd() || section.start < end)
            return inconsistent();
        extents.append({section.start,
                        section.length,
                        {},
                        folder + section.path,
                        section.fileOffset,
                        file->size,
                        file->modified});
        end = section.start + section.length;
    }
    if (missing != 0)
        return inconsistent();
    return extents;
}

}

Result<TrackContent> IsoImage::fromFolder(const QString &folder, const QString &volumeName,
                                          const std::stop_token &stop)
{
    return fromPath(QFile::encodeName(folder), volumeName, IsoKind::Iso, stop);
}

Result<TrackContent> IsoImage::fromPath(const QByteArray &folder, const QString &volumeName,
                                        IsoKind kind, const std::stop_token &stop)
{
    const Result<QByteArray> path = realPath(folder);
    if (!path)
        return path.failure();
    const Result<IsoPlan> plan = IsoPlan::fromFolder(path.value(), volumeName, kind, stop);
    if (!plan)
        return plan.failure();
    Result<QList<Extent>> extents =
        makeExtents(plan.value(), path.value() == "/" ? QByteArray() : path.value());
    if (extents && kind == IsoKind::Hybrid) {
        const Result<QList<Extent>> tail = HfsPlusTail::extents(*plan.value().metadata);
        if (!tail)
            return fileFailure(path.value(), tail.error());
        extents.value().append(tail.value());
    }
    if (!extents)
        return fileFailure(path.value(), extents.error());
    return TrackContent(std::move(extents.value()), plan.value().blockCount);
}
