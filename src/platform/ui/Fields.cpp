#include "Fields.h"

#include <QWidget>

void Fields::setBackground(QWidget *field, const QColor &background)
{
    constexpr float light = 0.4F;
    QPalette palette = field->palette();
    palette.setColor(QPalette::Base, background);
    palette.setColor(QPalette::Text, background.lightnessF() > light ? Qt::black : Qt::white);
    field->setPalette(palette);
}

void Fields::keepPlaceWhenHidden(QWidget *widget)
{
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
}
