#include "BurnAudioViewController.h"

#include "Alerts.h"
#include "AudioDurations.h"
#include "Background.h"
#include "BurnSpeeds.h"
#include "CDTextPanel.h"
#include "Checks.h"
#include "DRCDTextKeys.h"
#include "DRKeys.h"
#include "Form.h"
#include "Localized.h"
#include "MediaTools.h"
#include "Session.h"
#include "ui_BurnAudio.h"

#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QtConcurrentMap>

namespace {

QString text(const char *key)
{
    return localized("BurnAudio", key);
}

}

BurnAudioViewController::~BurnAudioViewController() = default;

BurnAudioViewController *BurnAudioViewController::getViewController()
{
    return new BurnAudioViewController;
}

BurnAudioViewController::BurnAudioViewController()
    : m_ui(madeForm<Ui::BurnAudio>(this))
    , m_devices(m_ui->devicesPopUp)
    , m_progress(m_ui->progressBox, m_ui->progressIndicator, m_ui->progressLabel)
    , m_records(this)
    , m_cdtextPanel(new CDTextPanel(this))
{
    m_ui->table->setModel(&m_tracks);
    m_ui->stopButton->hide();
    m_ui->loadingView->hide();
    connectControls();
}

void BurnAudioViewController::connectControls()
{
    using Self = BurnAudioViewController;
    const auto onClick = [this](QAbstractButton *button, void (Self::*action)()) {
        connect(button, &QAbstractButton::clicked, this, action);
    };
    onClick(m_ui->mediaTypeButton, &Self::refreshAction);
    onClick(m_ui->addButton, &Self::addAction);
    onClick(m_ui->removeButton, &Self::removeAction);
    onClick(m_ui->burnButton, &Self::burnAction);
    onClick(m_ui->stopButton, &Self::stopAction);
    onClick(m_ui->clearButton, &Self::clearAction);
    onClick(m_ui->exportButton, &Self::exportAction);
    onClick(m_ui->importButton, &Self::importAction);
    connect(m_ui->cdtextButton, &QAbstractButton::clicked, this,
            [this] { setCDText(Sender::Button); });
    connect(m_ui->speedPopUp, &QComboBox::activated, this, &Self::burnSpeedAction);
    connect(m_ui->devicesPopUp, &QComboBox::activated, this, &Self::showMedium);
    connect(m_ui->table, &TrackTable::filesDropped, this, [this](const QStringList &paths) {
        const QStringList accepted = AudioTracks::accepted(paths);
        if (!accepted.isEmpty() && isEnabled() && m_ui->addButton->isEnabled() && verifyMedium())
            addFiles(accepted);
    });
    connect(&m_burn, &PageBurn::progressed, this, &Self::burnStatus);
    connect(&m_burn, &PageBurn::ended, this, &Self::burnEnded);
    connect(&m_records, &RecordSaver::isSavingChanged, this, &Self::showSaving);
}

void BurnAudioViewController::viewDidLoad()
{
    QHeaderView *header = m_ui->table->horizontalHeader();
    const int em = fontMetrics().horizontalAdvance(u'M');
    header->resizeSection(0, 3 * em);
    header->resizeSection(1, 16 * em);
    header->resizeSection(2, 6 * em);
    refreshAction();
    connect(m_ui->table, &QAbstractItemView::doubleClicked, this,
            [this] { setCDText(Sender::Table); });
    m_devices.observe();
}

// Another medium may have been put in while the page was away.
void BurnAudioViewController::viewWillAppear()
{
    if (!m_burn.isRunning() && medium() != m_shownMedium)
        showMedium();
}

QVariantMap BurnAudioViewController::medium() const
{
    return getSelectedDevice().status().value(DRDeviceMediaInfoKey).toMap();
}

bool BurnAudioViewController::isCD() const
{
    return medium().value(DRDeviceMediaClassKey) == QString(DRDeviceMediaClassCD);
}

void BurnAudioViewController::refreshAction()
{
    m_devices.loadDevices();
    showMedium();
    m_cdtextPanel->setTextEnabled(false);
    m_cdtextPanel->initAvailableLanguages();
}

void BurnAudioViewController::showMedium()
{
    const DRDevice device = getSelectedDevice();
    m_shownMedium = medium();
    m_ui->mediaTypeButton->setIcon(MiscTool::getMediaImage(device));
    m_ui->mediaTypeButton->setAccessibleDescription(MiscTool::mediaImageName(device.mediaType()));
    const std::optional<DRMSF> size = MiscTool::getDiscSizeInMSF(device);
    m_ui->discDurationLabel->setText(size && size->blocks() != 0 ? size->description() : QString());
    BurnSpeeds::refresh(m_ui->speedPopUp, m_ui->speedLabel, device);
}

bool BurnAudioViewController::verifyMedium() const
{
    const DRDevice device = getSelectedDevice();
    return runChecks({
        {[&] { return !device.isValid(); }, localized("NoDevice"),
         text("Please connect a burning device.")},
        {[&] { return !device.mediaIsPresent(); }, text("The media is not present."),
         text("Please wait or re-insert the media")},
        {[&] { return !isCD(); }, text("The media is not CD."),
         text("Burning music only supports CD.")},
        {[&] { return !device.mediaIsBlank(); }, text("The media is not blank."),
         text("Please insert blank media.")},
    });
}

void BurnAudioViewController::addAction()
{
    if (!verifyMedium())
        return;
    const QString last = m_tracks.isEmpty() ? QDir::homePath()
                                            : QFileInfo(m_tracks.data().last().Path).absolutePath();
    auto *chooser = new QFileDialog(window(), text("Add"), last);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::ExistingFiles);
    chooser->setNameFilter(text("Audio files") + QStringLiteral(" (*.")
                           + AudioTracks::extensions().join(QStringLiteral(" *.")) + u')');
    // A name typed in passes the filter; and what follows the choosing follows a cancel too.
    connect(chooser, &QFileDialog::filesSelected, this,
            [this](const QStringList &paths) { addFiles(AudioTracks::accepted(paths)); });
    connect(chooser, &QDialog::rejected, this, [this] { appendTracks({}); });
    chooser->open();
}

// The files are measured side by side while the page waits; what is added then knows their
// durations already.
void BurnAudioViewController::addFiles(const QStringList &paths)
{
    m_isMeasuring = true;
    setEnabled(false);
    m_ui->loadingView->show();
    inBackground(
        this,
        [paths](const std::stop_token &stop) {
            QtConcurrent::blockingMap(paths, [stop](const QString &path) {
                if (!stop.stop_requested())
                    (void)AudioDurations::seconds(path);
            });
            return paths;
        },
        [this](const QStringList &measured) {
            m_isMeasuring = false;
            setEnabled(true);
            m_ui->loadingView->hide();
            appendTracks(measured);
        });
}

void BurnAudioViewController::appendTracks(const QStringList &paths)
{
    for (const QString &path : paths) {
        if (m_tracks.isAdded(path))
            continue;
        m_tracks.append(path);
        m_cdtextPanel->appendTrack();
    }
    refreshAction();
    updateCapacity();
    m_ui->clearButton->setEnabled(true);
    m_ui->exportButton->setEnabled(true);
}

void BurnAudioViewController::removeAction()
{
    const QModelIndexList rows = m_ui->table->selectionModel()->selectedRows();
    if (rows.isEmpty())
        return;
    const int row = rows.first().row();
    m_tracks.removeAt(row);
    updateCapacity();
    m_cdtextPanel->removeTrack(row);
}

void BurnAudioViewController::updateCapacity()
{
    const quint32 total = m_tracks.totalBlocks();
    m_ui->tracksDurationLabel->setText(DRMSF(total).description());
    const std::optional<DRMSF> size = MiscTool::getDiscSizeInMSF(getSelectedDevice());
    const auto blocks = static_cast<quint32>(size ? size->blocks() : 0);
    m_ui->capacityIndicator->setValue(blocks > 0 ? total * 100 / blocks : 0);
}

void BurnAudioViewController::burnSpeedAction()
{
    BurnSpeeds::showUnit(m_ui->speedPopUp, m_ui->speedLabel);
}

void BurnAudioViewController::setCDText(Sender sender)
{
    const QVariantMap capabilities =
        getSelectedDevice().info().value(DRDeviceWriteCapabilitiesKey).toMap();
    const bool passed = runChecks({
        {[&] { return !capabilities.value(DRDeviceCanWriteCDTextKey).toBool(); },
         text("The burning device doesn't have the capability of writing CD-Text"),
         text("Please change the burning device that can write CD-Text")},
        {[&] { return m_tracks.isEmpty(); }, text("Please add tracks first"),
         text("Only after added tracks,you can set CD-Text")},
    });
    if (!passed)
        return;
    QStringList names;
    for (const AudioTrackEntry &entry : m_tracks.data())
        names.append(entry.Track);
    if (sender == Sender::Table)
        m_cdtextPanel->edit(names, CDTextPanel::Tab::Track, m_ui->table->currentIndex().row());
    else
        m_cdtextPanel->edit(names, CDTextPanel::Tab::Disc, 0);
}

bool BurnAudioViewController::verify() const
{
    const DRDevice device = getSelectedDevice();
    return runChecks({
        {[&] { return !device.isValid(); }, localized("NoDevice"),
         text("Please connect a burning device.")},
        {[&] { return !device.writesCD() && !device.writesDVD(); },
         text("The device has no capability of write."),
         text("Please change a device that have capability of write.")},
        {[&] { return !device.mediaIsPresent(); }, text("The media is not present."),
         text("Please insert blank media.")},
        {[&] { return !device.mediaIsBlank(); }, text("The media is not blank."),
         text("Please insert blank media.")},
        {[&] { return m_tracks.isEmpty(); }, text("Tracks cannot be null"),
         text("Please select one or more tracks")},
        {[&] { return m_ui->capacityIndicator->value() > 100; },
         text("Tracks duration is more than disc duration"), text("Please remove some tracks")},
    });
}

void BurnAudioViewController::burnAction()
{
    if (verify())
        Alerts::confirmOnWindow(this, text("Are you sure to burn?"),
                                text("Burn the data on the disc"), [this] { runBurn(); });
}

void BurnAudioViewController::runBurn()
{
    setAllStatus(false);
    const DRDevice device = getSelectedDevice();
    DRBurn &burn = m_burn.make(device);
    if (const float speed = BurnSpeeds::chosen(m_ui->speedPopUp); speed > 0)
        burn.setRequestedBurnSpeed(speed);
    burn.setAppendable(m_ui->appendableCheckBox->isChecked());
    burn.setVerifyDisc(m_ui->verifyCheckBox->isChecked());
    if (!device.acquireExclusiveAccess())
        return;
    device.acquireMediaReservation();
    m_burn.watch();
    QList<DRTrack> tracks;
    for (const AudioTrackEntry &entry : m_tracks.data())
        tracks.append(DRTrack::trackForAudioFile(entry.Path));
    if (m_cdtextPanel->isTextEnabled()) {
        QVariantMap properties = burn.properties();
        properties.insert(DRCDTextKey, m_cdtextPanel->getCDText());
        burn.setProperties(properties);
    }
    burn.writeLayout(tracks);
}

void BurnAudioViewController::burnStatus(const QVariantMap &status)
{
    m_progress.show(status);
    if (status.value(DRStatusStateKey) == QString(DRStatusStateFinishing))
        m_ui->progressIndicator->setValue(m_ui->progressIndicator->maximum());
}

void BurnAudioViewController::burnEnded(bool isDone, const QString &errorText)
{
    if (!isDone)
        m_progress.showFailed(errorText);
    setAllStatus(true);
}

void BurnAudioViewController::setAllStatus(bool enabled)
{
    for (QWidget *control : std::initializer_list<QWidget *>{
             m_ui->devicesPopUp, m_ui->mediaTypeButton, m_ui->addButton, m_ui->removeButton,
             m_ui->cdtextButton, m_ui->speedPopUp, m_ui->verifyCheckBox, m_ui->appendableCheckBox,
             m_ui->clearButton, m_ui->exportButton, m_ui->importButton, m_ui->burnButton})
        control->setEnabled(enabled);
    m_ui->stopButton->setVisible(!enabled);
    Session::setWorking(!enabled);
}

void BurnAudioViewController::stopAction()
{
    Alerts::confirmOnWindow(this, text("Are you sure to abort the burning?"),
                            text("The abort will leave the data incomplete on the disc"), [this] {
                                m_burn.burn().abort();
                                setAllStatus(true);
                            });
}

void BurnAudioViewController::clearAction()
{
    Alerts::confirmOnWindow(this, text("Are you sure to clear?"),
                            text("Clear the burning information"), [this] { runClear(); });
}

void BurnAudioViewController::runClear()
{
    m_ui->tracksDurationLabel->clear();
    m_ui->discDurationLabel->clear();
    m_ui->capacityIndicator->setValue(0);
    m_tracks.clear();
    m_progress.reset(text("Done"));
    m_cdtextPanel->clear();
    m_ui->clearButton->setEnabled(false);
    m_ui->exportButton->setEnabled(false);
}

void BurnAudioViewController::exportAction()
{
    m_records.save([this] {
        AudioRepository::Record record;
        for (const AudioTrackEntry &entry : m_tracks.data()) {
            record.names.append(entry.Track);
            record.paths.append(entry.Path);
        }
        if (m_cdtextPanel->store().isWorthKeeping())
            record.cdText = m_cdtextPanel->store().toMap();
        return record;
    });
}

void BurnAudioViewController::showSaving(bool isSaving)
{
    m_ui->exportButton->setText(isSaving ? text("Saving…") : text("Save"));
    m_ui->exportButton->setEnabled(!isSaving && m_ui->clearButton->isEnabled());
    m_ui->loadingView->setVisible(isSaving);
}

// A record is looked at; its tracks and texts are not read back.
void BurnAudioViewController::importAction()
{
    auto *chooser = new QFileDialog(window(), text("Repository"), AudioRepository::folder());
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::Directory);
    chooser->setOption(QFileDialog::ShowDirsOnly);
    connect(chooser, &QFileDialog::fileSelected, this, [this](const QString &folder) {
        for (const QString &name :
             QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
            qInfo().noquote() << name;
        refreshAction();
        updateCapacity();
        m_ui->clearButton->setEnabled(true);
        m_ui->exportButton->setEnabled(true);
    });
    chooser->open();
}
