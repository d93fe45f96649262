#include "EraseViewController.h"

#include "Alerts.h"
#include "Checks.h"
#include "DRKeys.h"
#include "DRNotificationCenter.h"
#include "Form.h"
#include "Localized.h"
#include "Session.h"
#include "ui_Erase.h"

#include <array>

namespace {

constexpr double percent = 100.0;

}

EraseViewController::~EraseViewController() = default;

EraseViewController *EraseViewController::getViewController()
{
    return new EraseViewController;
}

EraseViewController::EraseViewController()
    : m_ui(madeForm<Ui::Erase>(this))
    , m_devices(m_ui->devicesPopUp)
{
    m_ui->eraseTypePopUp->addItem(localized("Erase", "Quick"), 0);
    m_ui->eraseTypePopUp->addItem(localized("Erase", "Complete"), 1);
    m_ui->progressBox->hide();
    m_ui->stateBox->hide();
    connect(m_ui->eraseButton, &QAbstractButton::clicked, this, &EraseViewController::eraseAction);
}

void EraseViewController::viewDidLoad()
{
    m_devices.loadDevices();
    m_devices.observe();
}

bool EraseViewController::verify() const
{
    const DRDevice device = getSelectedDevice();
    return runChecks({
        {[&] { return !device.isValid(); }, localized("NoDevice"),
         localized("Erase", "Please connect a burning device.")},
        {[&] { return !device.writesCD() && !device.writesDVD(); },
         localized("Erase", "The device has no capability of write."),
         localized("Erase", "Please change a device that have capability of write.")},
        {[&] { return !device.mediaIsPresent(); }, localized("Erase", "The media is not present."),
         localized("Erase", "Please wait or re-insert the media")},
        {[&] { return !device.mediaIsErasable(); },
         localized("Erase", "The media cannot be erased."),
         localized("Erase", "Please change a erasable media.")},
    });
}

void EraseViewController::eraseAction()
{
    if (verify())
        Alerts::confirmOnWindow(this, localized("Erase", "Are you sure to erase?"),
                                localized("Erase", "The operation is not irreversible"),
                                [this, device = getSelectedDevice()] { runErase(device); });
}

// Recorders may have come and gone since it was chosen, which chooses the first of the list.
void EraseViewController::runErase(const DRDevice &device)
{
    if (!device.isValid())
        return;
    setAllStatus(false);
    m_erase = DRErase::initWithDevice(device);
    m_erase.setEraseType(m_ui->eraseTypePopUp->currentData().toInt() == 0 ? DREraseTypeQuick
                                                                          : DREraseTypeComplete);
    DRNotificationCenter &center = DRNotificationCenter::currentRunLoop();
    center.removeObserver(this, DREraseStatusChangedNotification); // of the erase before
    center.addObserver(
        this, [this](const DRNotification &notification) { eraseNotification(notification); },
        DREraseStatusChangedNotification, QVariant::fromValue(m_erase));
    m_isRunning = true;
    m_erase.start();
}

void EraseViewController::eraseNotification(const DRNotification &notification)
{
    const QVariantMap &status = notification.userInfo;
    if (const QVariant done = status.value(DRStatusPercentCompleteKey); done.isValid())
        m_ui->progressIndicator->setValue(qRound(done.toDouble() * percent));
    const QVariantMap times = status.value(DRStatusProgressInfoKey).toMap();
    for (const auto &[key, label] :
         std::to_array({std::pair{DRStatusProgressElapsedTime, m_ui->elapsedTimeValue},
                        std::pair{DRStatusProgressEstimatedTime, m_ui->estimatedTimeValue},
                        std::pair{DRStatusProgressRemainingTime, m_ui->remainingTimeValue}}))
        if (const QVariant seconds = times.value(key); seconds.isValid())
            label->setText(QString::asprintf("%.0f", seconds.toDouble()));
    const QString state = status.value(DRStatusStateKey).toString();
    if (state.isEmpty())
        return;
    showState(state);
    if (state == DRStatusStateDone)
        eraseDone(notification.object.value<DRErase>().device());
}

// After a failure the controls stay as they are; the box tells why.
void EraseViewController::showState(const QString &state)
{
    m_ui->stateBox->setTitle(localized(m_drStatus.valueForKey(state)));
    m_isRunning = state != DRStatusStateDone && state != DRStatusStateFailed;
    if (state == DRStatusStateFailed)
        m_ui->progressBox->setToolTip(m_erase.errorText());
}

void EraseViewController::eraseDone(const DRDevice &device)
{
    setAllStatus(true);
    if (m_ui->ejectAfterErasedCheckBox->isChecked() && !device.ejectMedia())
        qWarning("the erased medium was not ejected");
    MiscTool::showAlert(localized("Erase", "The erase operation is completed."),
                        localized("Erase", "Please take out the media."));
}

void EraseViewController::setAllStatus(bool enabled)
{
    for (QWidget *control :
         std::initializer_list<QWidget *>{m_ui->devicesPopUp, m_ui->eraseTypePopUp,
                                          m_ui->ejectAfterErasedCheckBox, m_ui->eraseButton})
        control->setEnabled(enabled);
    m_ui->progressBox->setHidden(enabled);
    m_ui->stateBox->setHidden(enabled);
    if (enabled)
        m_ui->progressIndicator->setValue(0);
    else
        m_ui->progressBox->setToolTip({});
    Session::setWorking(!enabled);
}
