#include "Fields.h"

#include <QLineEdit>

void Fields::setBackground(QWidget *field, const QColor &background)
{
    constexpr float light = 0.4F;
    QPalette palette = field->palette();
    palette.setColor(QPalette::Base, background);
    palette.setColor(QPalette::Text, background.lightnessF() > light ? Qt::black : Qt::white);
    field->setPalette(palette);
}

void Fields::setReadOnly(QLineEdit *field, bool readOnly)
{
    field->setReadOnly(readOnly);
    field->setPalette({});
    if (readOnly)
        setBackground(field, field->palette().color(QPalette::Window));
}

void Fields::keepPlaceWhenHidden(QWidget *widget)
{
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
}
