#include "RecordNamePanel.h"

#include "Localized.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr QSize fieldSize(292, 24);

}

RecordNamePanel::RecordNamePanel(const QString &proposal, const QString &hint, QWidget *parent)
    : QDialog(parent)
    , m_nameField(new QLineEdit(proposal, this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(localized("BurnAudio", "Save to repository"));
    m_nameField->setObjectName(QStringLiteral("recordNameField"));
    m_nameField->setFixedSize(fieldSize);
    m_nameField->selectAll();
    auto *title = new QLabel(localized("BurnAudio", "Save to repository"), this);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    auto *prompt = new QLabel(localized("BurnAudio", "Input the record name"), this);
    prompt->setBuddy(m_nameField);
    auto *hintLabel = new QLabel(hint, this);
    hintLabel->setObjectName(QStringLiteral("hintLabel"));
    hintLabel->setWordWrap(true);
    hintLabel->setVisible(!hint.isEmpty());
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(localized("BurnAudio", "OK"));
    buttons->button(QDialogButtonBox::Cancel)->setText(localized("BurnAudio", "Cancel"));
    auto *layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    for (QWidget *widget :
         std::initializer_list<QWidget *>{title, prompt, m_nameField, hintLabel, buttons})
        layout->addWidget(widget);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        const QString name = m_nameField->text();
        accept();
        Q_EMIT chosen(name);
    });
}
