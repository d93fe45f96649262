#include "BurnDataViewController.h"

#include "Alerts.h"
#include "Background.h"
#include "BurnSpeeds.h"
#include "Checks.h"
#include "DRKeys.h"
#include "Fields.h"
#include "FileTools.h"
#include "Form.h"
#include "FormatTools.h"
#include "Localized.h"
#include "MediaTools.h"
#include "RepositoryPanel.h"
#include "Session.h"
#include "ui_BurnData.h"

#include <QDir>
#include <QFileDialog>

BurnDataViewController::~BurnDataViewController() = default;

BurnDataViewController *BurnDataViewController::getViewController()
{
    return new BurnDataViewController;
}

BurnDataViewController::BurnDataViewController()
    : m_ui(madeForm<Ui::BurnData>(this))
    , m_devices(m_ui->devicesPopUp)
    , m_progress(m_ui->progressBox, m_ui->progressIndicator, m_ui->progressLabel)
{
    connectControls();
}

void BurnDataViewController::connectControls()
{
    using Self = BurnDataViewController;
    const auto onClick = [this](QAbstractButton *button, void (Self::*action)()) {
        connect(button, &QAbstractButton::clicked, this, action);
    };
    onClick(m_ui->mediaTypeButton, &Self::refreshAction);
    onClick(m_ui->sourceButton, &Self::selectAction);
    onClick(m_ui->burnButton, &Self::burnAction);
    onClick(m_ui->stopButton, &Self::stopAction);
    onClick(m_ui->clearButton, &Self::clearAction);
    onClick(m_ui->openButton, &Self::openAction);
    onClick(m_ui->saveButton, &Self::saveAction);
    connect(m_ui->sourceTypePopUp, &QComboBox::activated, this, &Self::sourceTypeAction);
    connect(m_ui->speedPopUp, &QComboBox::activated, this, &Self::burnSpeedAction);
    connect(m_ui->devicesPopUp, &QComboBox::activated, this, &Self::showMedium);
    connect(&m_burn, &PageBurn::progressed, this,
            [this](const QVariantMap &status) { m_progress.show(status); });
    connect(&m_burn, &PageBurn::ended, this, &Self::burnEnded);
}

void BurnDataViewController::viewDidLoad()
{
    Fields::setBackground(m_ui->sourceField, Qt::white);
    refreshAction();
    m_devices.observe();
}

// Another medium may have been put in while the page was away.
void BurnDataViewController::viewWillAppear()
{
    if (!m_burn.isRunning() && medium() != m_shownMedium)
        showMedium();
}

QVariantMap BurnDataViewController::medium() const
{
    return selectedDevice().status().value(DRDeviceMediaInfoKey).toMap();
}

void BurnDataViewController::refreshAction()
{
    m_devices.loadDevices();
    showMedium();
}

void BurnDataViewController::showMedium()
{
    const DRDevice device = selectedDevice();
    m_shownMedium = medium();
    m_ui->mediaTypeButton->setIcon(MiscTool::getMediaImage(device));
    m_ui->mediaTypeButton->setAccessibleDescription(MiscTool::mediaImageName(device.mediaType()));
    BurnSpeeds::refresh(m_ui->speedPopUp, m_ui->speedLabel, device);
    m_ui->discSizeLabel->setText(MiscTool::convertBytes(MiscTool::getDiscSize(device)));
    m_ui->appendableCheckBox->setVisible(device.mediaIsAppendable());
}

bool BurnDataViewController::isFolderChosen() const
{
    return m_ui->sourceTypePopUp->currentText() == localized("BurnData", "Folder");
}

bool BurnDataViewController::isImageChosen() const
{
    return m_ui->sourceTypePopUp->currentText() == localized("BurnData", "Image");
}

void BurnDataViewController::sourceTypeAction()
{
    if (!m_measured)
        m_ui->fileSizeLabel->clear();
    forgetMeasurement();
    if (isFolderChosen())
        m_ui->sourceTipLabel->setText(localized("BurnData", "Please selec a folder to burn"));
    else if (isImageChosen())
        m_ui->sourceTipLabel->setText(
            localized("BurnData", "Please selec a image file(.iso or .dmg) to burn"));
    m_ui->sourceField->clear();
}

void BurnDataViewController::selectAction()
{
    const DRDevice device = selectedDevice();
    const bool passed = runChecks({
        {[&] { return !device.isValid(); }, localized("Localizable", "NoDevice"),
         localized("BurnData", "Please connect a burning device.")},
        {[&] { return !device.mediaIsPresent(); },
         localized("BurnData", "The media is not present."),
         localized("BurnData", "Please wait or re-insert the media")},
        {[&] { return !device.mediaIsBlank(); }, localized("BurnData", "The media is not blank."),
         localized("BurnData", "Please insert blank media.")},
    });
    if (!passed)
        return;
    const QString present = m_ui->sourceField->text();
    auto *chooser =
        new QFileDialog(window(), localized("BurnData", "Select"),
                        present.isEmpty() ? QDir::homePath() : QFileInfo(present).absolutePath());
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    if (isFolderChosen()) {
        chooser->setFileMode(QFileDialog::Directory);
        chooser->setOption(QFileDialog::ShowDirsOnly);
    } else {
        chooser->setFileMode(QFileDialog::ExistingFile);
        chooser->setNameFilter(localized("BurnData", "Disc images")
                               + QStringLiteral(" (*.dmg *.iso)"));
    }
    connect(chooser, &QFileDialog::fileSelected, this, &BurnDataViewController::setSource);
    chooser->open();
}

void BurnDataViewController::setSource(const QString &path)
{
    m_ui->sourceField->setText(path);
    m_ui->sourceField->setToolTip(path);
    measureSource();
}

// A burn must not pass the capacity check with the level of an earlier source, so it waits; another
// source may be chosen meanwhile.
void BurnDataViewController::measureSource()
{
    m_measuring.request_stop();
    m_measured = false;
    updateBurnButton();
    m_ui->clearButton->setEnabled(true);
    m_ui->fileSizeLabel->setText(localized("BurnData", "Measuring…"));
    const auto work = [path = m_ui->sourceField->text(), folder = isFolderChosen(),
                       image = isImageChosen()](const std::stop_token &stop) {
        const qint64 size = folder  ? MiscTool::getFolderSize(path, stop)
                            : image ? MiscTool::getFileSize(path)
                                    : 0;
        return stop.stop_requested() ? std::nullopt : std::optional(size);
    };
    m_measuring =
        inBackground(this, work, [this, number = ++m_measurement](std::optional<qint64> size) {
            if (size && number == m_measurement)
                showSourceSize(*size);
        });
}

void BurnDataViewController::showSourceSize(qint64 size)
{
    m_measured = true;
    updateBurnButton();
    m_ui->fileSizeLabel->setText(MiscTool::convertBytes(size));
    const auto discSize = static_cast<quint64>(MiscTool::getDiscSize(selectedDevice()));
    m_ui->levelIndicator->setValue(discSize > 0 ? static_cast<quint64>(size) * 100 / discSize : 0);
}

// The source that is being measured, if any, is not waited for any more.
void BurnDataViewController::forgetMeasurement()
{
    m_measuring.request_stop();
    ++m_measurement;
    m_measured = true;
    updateBurnButton();
}

void BurnDataViewController::updateBurnButton()
{
    m_ui->burnButton->setEnabled(m_enabled && m_measured);
}

void BurnDataViewController::burnSpeedAction()
{
    BurnSpeeds::showUnit(m_ui->speedPopUp, m_ui->speedLabel);
}

bool BurnDataViewController::verify() const
{
    const DRDevice device = selectedDevice();
    return runChecks({
        {[&] { return !device.isValid(); }, localized("Localizable", "NoDevice"),
         localized("BurnData", "Please connect a burning device.")},
        {[&] { return !device.writesCD() && !device.writesDVD(); },
         localized("BurnData", "The device has no capability of write."),
         localized("BurnData", "Please change a device that have capability of write.")},
        {[&] { return !device.mediaIsPresent(); },
         localized("BurnData", "The media is not present."),
         localized("BurnData", "Please insert blank media.")},
        {[&] { return !device.mediaIsBlank(); }, localized("BurnData", "The media is not blank."),
         localized("BurnData", "Please insert blank media.")},
        {[&] { return m_ui->sourceField->text().isEmpty(); },
         localized("BurnData", "Source cannot be null"),
         localized("BurnData", "Please select file or folder"), m_ui->sourceField},
        {[&] { return m_ui->levelIndicator->value() > m_ui->levelIndicator->maximum(); },
         localized("BurnData", "Source size is more than disc capacity"),
         localized("BurnData",
                   "Please select the smaller source or change disc with more capacity")},
    });
}

void BurnDataViewController::burnAction()
{
    if (verify())
        Alerts::confirmOnWindow(this, localized("BurnData", "Are you sure to burn?"),
                                localized("BurnData", "Burn the data on the disc"),
                                [this, device = selectedDevice()] { runBurn(device); });
}

void BurnDataViewController::runBurn(const DRDevice &device)
{
    setAllStatus(false);
    DRBurn &burn = m_burn.make(device);
    if (const float speed = BurnSpeeds::chosen(m_ui->speedPopUp); speed > 0)
        burn.setRequestedBurnSpeed(speed);
    burn.setAppendable(m_ui->appendableCheckBox->isChecked());
    burn.setVerifyDisc(m_ui->verifyCheckBox->isChecked());
    device.acquireExclusiveAccess();
    device.acquireMediaReservation();
    m_burn.watch();
    const QString path = m_ui->sourceField->text();
    if (isFolderChosen())
        burn.writeLayout(DRTrack::trackForRootFolder(DRFolder::folderWithPath(path)));
    else if (isImageChosen())
        burn.writeLayout(DRBurn::layoutForImageFile(path));
}

void BurnDataViewController::burnEnded(bool isDone, const QString &errorText)
{
    if (!isDone)
        m_progress.showFailed(errorText);
    setAllStatus(true);
}

void BurnDataViewController::setAllStatus(bool enabled)
{
    for (QWidget *control : std::initializer_list<QWidget *>{
             m_ui->devicesPopUp, m_ui->mediaTypeButton, m_ui->sourceTypePopUp, m_ui->sourceField,
             m_ui->sourceButton, m_ui->speedPopUp, m_ui->verifyCheckBox, m_ui->appendableCheckBox,
             m_ui->clearButton})
        control->setEnabled(enabled);
    m_enabled = enabled;
    updateBurnButton();
    Fields::setBackground(m_ui->sourceField,
                          enabled ? QColor(Qt::white)
                                  : palette().color(QPalette::Disabled, QPalette::Text));
    for (QWidget *control :
         std::initializer_list<QWidget *>{m_ui->stopButton, m_ui->openButton, m_ui->saveButton})
        control->setEnabled(!enabled);
    Session::setWorking(!enabled);
}

void BurnDataViewController::stopAction()
{
    Alerts::confirmOnWindow(
        this, localized("BurnData", "Are you sure to abort the burning?"),
        localized("BurnData", "The abort will leave the data incomplete on the disc"), [this] {
            m_burn.burn().abort();
            setAllStatus(true);
        });
}

void BurnDataViewController::clearAction()
{
    Alerts::confirmOnWindow(this, localized("BurnData", "Are you sure to clear?"),
                            localized("BurnData", "Clear the burning information"),
                            [this] { runClear(); });
}

void BurnDataViewController::runClear()
{
    forgetMeasurement();
    m_ui->sourceField->clear();
    m_ui->sourceField->setToolTip({});
    m_ui->fileSizeLabel->clear();
    m_ui->levelIndicator->setValue(0);
    m_progress.reset(localized("BurnData", "Done"));
    m_ui->clearButton->setEnabled(false);
}

void BurnDataViewController::saveAction()
{
    if (m_saving)
        return;
    const QString source = m_ui->sourceField->text();
    if (source.isEmpty()) {
        MiscTool::showAlert(localized("BurnData", "Source cannot be null."),
                            localized("BurnData", "Please select source first."));
        return;
    }
    if (!isFolderChosen() && !isImageChosen()) {
        saved(Done{});
        return;
    }
    const auto kind = isFolderChosen() ? DataRepository::Kind::Folder : DataRepository::Kind::Image;
    m_saving = true;
    m_ui->saveButton->setText(localized("BurnData", "Saving…"));
    runJobInBackground(
        this,
        [kind, source](const std::stop_token &stop) -> std::optional<Result<>> {
            const Result<> result = DataRepository::save(kind, source, stop);
            return stop.stop_requested() ? std::nullopt : std::optional(result);
        },
        [this](const std::optional<Result<>> &result) { saved(result); });
}

void BurnDataViewController::saved(const std::optional<Result<>> &result)
{
    m_saving = false;
    m_ui->saveButton->setText(localized("BurnData", "Save"));
    if (!result)
        return;
    if (!*result)
        qWarning("The source was not saved: %s", qPrintable(result->error()));
    MiscTool::showAlert(localized("BurnData", "Saved to repository."),
                        localized("BurnData", "Saved to repository successfully."));
}

void BurnDataViewController::openAction()
{
    auto *panel = new RepositoryPanel(window());
    panel->setAttribute(Qt::WA_DeleteOnClose);
    connect(panel, &RepositoryPanel::deleting, this,
            &BurnDataViewController::repositoryDeleteAction);
    connect(panel, &RepositoryPanel::selected, this,
            &BurnDataViewController::repositorySelectAction);
    panel->changeAction();
    panel->open();
}

void BurnDataViewController::repositoryDeleteAction(DataRepository::Kind kind)
{
    m_ui->sourceTypePopUp->setCurrentIndex(kind == DataRepository::Kind::Image ? 1 : 0);
}

void BurnDataViewController::repositorySelectAction(DataRepository::Kind kind, const QString &path)
{
    m_ui->sourceTypePopUp->setCurrentIndex(kind == DataRepository::Kind::Image ? 1 : 0);
    m_ui->sourceField->setText(path);
    m_ui->sourceField->setToolTip(path);
}
