#include "HfsPlusNames.h"

#include <QSet>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace {

// Up to this, libisofs has room for telling names apart.
constexpr qsizetype roomy = HfsPlusNames::longest - 8;

// No character of UTF-8 takes more than one and a half as many units as bytes.
constexpr qsizetype neverLong = roomy * 2 / 3;

QString decomposed(const QString &name)
{
    return name.normalized(QString::NormalizationForm_D);
}

}

QString HfsPlusNames::shortened(QString name, qsizetype units)
{
    name.truncate(2 * units);
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, name);
    characters.toEnd();
    while (decomposed(name).size() > units)
        name.truncate(std::max<qsizetype>(characters.toPreviousBoundary(), 0));
    return name;
}

QHash<QByteArray, QByteArray> HfsPlusNames::replacements(const QList<QByteArray> &names)
{
    QSet<QString> taken;
    const auto take = [&taken](const QString &name) {
        const qsizetype before = taken.size();
        taken.insert(decomposed(name).toCaseFolded());
        return taken.size() > before;
    };
    QList<QByteArray> refused;
    for (const QByteArray &name : names) {
        if (name.size() <= neverLong)
            continue;
        const QString text = QString::fromUtf8(name);
        const qsizetype units = decomposed(text).size();
        if (units > roomy && (units > longest || !take(text)))
            refused.append(name);
    }
    QHash<QByteArray, QByteArray> found;
    for (const QByteArray &name : std::as_const(refused)) {
        const QString text = QString::fromUtf8(name);
        QString other = shortened(text);
        for (int i = -1; !take(other); ++i) {
            const QString end = i < 0 ? QStringLiteral("_") : QStringLiteral("_%1").arg(i);
            other = shortened(text, longest - end.size()) + end;
        }
        found.insert(name, other.toUtf8());
    }
    return found;
}
