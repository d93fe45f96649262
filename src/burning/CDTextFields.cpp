#include "CDTextFields.h"

#include "CDTextPacks.h"
#include "Fields.h"
#include "Localized.h"

#include <QLineEdit>

namespace {

const QColor markedColor(255, 214, 204);

QString missingIn(const CDTextField &field, std::optional<DRCDTextBlock::Encoding> encoding)
{
    if (field.isBytes)
        return {};
    if (field.isAscii)
        encoding = DRCDTextBlock::Encoding::Ascii;
    return encoding ? CDTextPacks::unencodable(field.edit->text(), *encoding) : QString();
}

}

CDTextFields::CDTextFields(std::vector<CDTextField> fields)
    : m_fields(std::move(fields))
{
    for (CDTextField &field : m_fields)
        field.toolTip = field.edit->toolTip();
}

void CDTextFields::setEnabled(bool enabled) const
{
    for (const CDTextField &field : m_fields)
        field.edit->setEnabled(enabled);
}

void CDTextFields::load(const QVariantMap &texts) const
{
    for (const CDTextField &field : m_fields) {
        const QVariant value = texts.value(field.key);
        field.edit->setText(field.isBytes ? QString::fromUtf8(value.toByteArray())
                                          : value.toString());
    }
}

QVariantMap CDTextFields::texts() const
{
    QVariantMap texts;
    for (const CDTextField &field : m_fields) {
        const QString text = field.edit->text();
        if (!text.isEmpty())
            texts.insert(field.key, field.isBytes ? QVariant(text.toUtf8()) : QVariant(text));
    }
    return texts;
}

void CDTextFields::mark(std::optional<DRCDTextBlock::Encoding> encoding) const
{
    for (const CDTextField &field : m_fields) {
        const QString missing = missingIn(field, encoding);
        field.edit->setToolTip(
            missing.isEmpty()
                ? field.toolTip
                : localized("CDText", "The disc will have “?” in the place of: %1").arg(missing));
        Fields::setBackground(field.edit, !field.edit->isEnabled() ? QColor(Qt::lightGray)
                                          : missing.isEmpty()      ? QColor(Qt::white)
                                                                   : markedColor);
    }
}
