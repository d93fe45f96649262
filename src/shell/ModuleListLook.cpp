#include "ModuleListLook.h"

#include <QPalette>
#include <QWidget>

QIcon ModuleListLook::icon(const QString &imageName)
{
    const QString path = QStringLiteral(":/icons/%1.svg").arg(imageName);
    QIcon icon(path);
    icon.addFile(path, {}, QIcon::Selected);
    return icon;
}

void ModuleListLook::paleHighlight(QWidget *list)
{
    constexpr double share = 0.28;
    QPalette palette = list->palette();
    const auto mix = [](float a, float b) {
        return a * static_cast<float>(share) + b * static_cast<float>(1 - share);
    };
    const QColor strong = palette.color(QPalette::Highlight);
    const QColor base = palette.color(QPalette::Base);
    palette.setColor(QPalette::Highlight, QColor::fromRgbF(mix(strong.redF(), base.redF()),
                                                           mix(strong.greenF(), base.greenF()),
                                                           mix(strong.blueF(), base.blueF())));
    palette.setColor(QPalette::HighlightedText, palette.color(QPalette::Text));
    list->setPalette(palette);
}
