#include "ImageViewController.h"

#include "Alerts.h"
#include "Checks.h"
#include "Form.h"
#include "Localized.h"
#include "Session.h"
#include "ui_Image.h"

#include <QDir>
#include <QFileDialog>

ImageViewController::ImageViewController(Kind kind)
    : m_ui(madeForm<Ui::Image>(this))
    , m_kind(std::move(kind))
{
    using Self = ImageViewController;
    m_ui->progressIndicator->hide();
    const auto onClick = [this](QAbstractButton *button, void (Self::*action)()) {
        connect(button, &QAbstractButton::clicked, this, action);
    };
    onClick(m_ui->srcSelectButton, &Self::srcSelectAction);
    onClick(m_ui->outputSelectButton, &Self::outputSelectAction);
    onClick(m_ui->clearButton, &Self::clearAction);
    onClick(m_ui->generateButton, &Self::generateAction);
}

ImageViewController::~ImageViewController() = default;

void ImageViewController::srcSelectAction()
{
    const QString present = m_ui->srcFolderField->text();
    auto *chooser = new QFileDialog(window(), localized("Image", "Select"),
                                    present.isEmpty() ? QDir::homePath() : present);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::Directory);
    chooser->setOption(QFileDialog::ShowDirsOnly);
    connect(chooser, &QFileDialog::fileSelected, this, [this](const QString &folder) {
        m_ui->srcFolderField->setText(folder);
        m_ui->srcFolderField->setToolTip(folder);
        m_ui->volumnNameField->setText(QDir(folder).dirName());
    });
    chooser->open();
}

void ImageViewController::outputSelectAction()
{
    const QString present = m_ui->outputField->text();
    auto *chooser = new QFileDialog(
        window(), localized("Image", "Select"),
        present.isEmpty() ? QDir::homePath() : QFileInfo(present).absolutePath(),
        localized("Image", "Disc images") + QStringLiteral(" (*.%1)").arg(m_kind.fileType));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setAcceptMode(QFileDialog::AcceptSave);
    chooser->setOption(QFileDialog::ReadOnly); // makes no folders
    // The chooser adds its suffix to names without any dot only, and what it would ask about is
    // not yet the whole name; the tool replaces what is there.
    chooser->setOption(QFileDialog::DontConfirmOverwrite);
    connect(chooser, &QFileDialog::fileSelected, this, [this](QString file) {
        const QString suffix = u'.' + m_kind.fileType;
        if (!file.endsWith(suffix, Qt::CaseInsensitive))
            file += suffix;
        m_ui->outputField->setText(file);
        m_ui->outputField->setToolTip(file);
    });
    chooser->open();
}

void ImageViewController::clearAction()
{
    for (QLineEdit *field : {m_ui->srcFolderField, m_ui->volumnNameField, m_ui->outputField})
        field->clear();
    m_ui->srcFolderField->setToolTip({});
    m_ui->outputField->setToolTip({});
}

bool ImageViewController::verify() const
{
    return runChecks({
        {[&] { return m_ui->srcFolderField->text().isEmpty(); },
         localized("Image", "Source folder cannot be null."),
         {}},
        {[&] { return m_ui->volumnNameField->text().isEmpty(); },
         localized("Image", "Volume name cannot be null."),
         {}},
        {[&] { return m_ui->outputField->text().isEmpty(); },
         localized("Image", "Output file cannot be null."),
         {}},
    });
}

void ImageViewController::generateAction()
{
    if (!verify())
        return;
    setAllStatus(false);
    m_tool.run(QStringList{QStringLiteral("makehybrid")} + m_kind.fileSystems
                   + QStringList{QStringLiteral("-o"), m_ui->outputField->text(),
                                 QStringLiteral("-default-volume-name"),
                                 m_ui->volumnNameField->text(), QStringLiteral("-ov"),
                                 QStringLiteral("-quiet"), m_ui->srcFolderField->text()},
               [this](std::optional<int> exitStatus) { generated(exitStatus); });
}

void ImageViewController::generated(std::optional<int> exitStatus)
{
    setAllStatus(true);
    if (m_tool.wasAborted())
        return; // by leaving the program, whose last window an alert would be
    MiscTool::showAlert(exitStatus == 0 ? localized("Image", "Image is generated successfully.")
                                        : localized("Image", "Fail to generate Image."),
                        {});
}

void ImageViewController::setAllStatus(bool enabled)
{
    m_isGenerating = !enabled;
    for (QWidget *control :
         {m_ui->srcSelectButton, m_ui->outputSelectButton, m_ui->clearButton, m_ui->generateButton})
        control->setEnabled(enabled);
    m_ui->volumnNameField->setReadOnly(!enabled);
    m_ui->progressIndicator->setHidden(enabled);
    Session::setWorking(!enabled);
}
