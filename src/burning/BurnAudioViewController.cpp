#include "BurnAudioViewController.h"

#include "Alerts.h"
#include "AudioChecks.h"
#include "AudioDurations.h"
#include "Background.h"
#include "BurnSpeeds.h"
#include "CDTextPanel.h"
#include "DRCDTextKeys.h"
#include "DRKeys.h"
#include "Form.h"
#include "Localized.h"
#include "MediaTools.h"
#include "Session.h"
#include "ui_BurnAudio.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QPointer>
#include <QtConcurrentMap>

#include <algorithm>

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
    connect(m_ui->devicesPopUp, &QComboBox::activated, this, [this] {
        showMedium();
        if (!m_tracks.isEmpty())
            updateCapacity();
    });
    m_ui->table->setTakesFiles([this](const QStringList &paths) {
        return m_ui->addButton->isEnabled() && !AudioTracks::accepted(paths).isEmpty();
    });
    connect(m_ui->table, &TrackTable::filesDropped, this, [this](const QStringList &paths) {
        if (AudioChecks::beforeAdding(getSelectedDevice()))
            addFiles(paths);
    });
    connect(m_ui->table, &TrackTable::openRequested, this, [this] { setCDText(Sender::Table); });
    connect(m_ui->table, &TrackTable::removeRequested, this, [this] {
        if (m_ui->removeButton->isEnabled())
            removeAction();
    });
    connect(m_cdtextPanel, &CDTextPanel::textEnabledChanged, this, &Self::showTextEnabled);
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

void BurnAudioViewController::addAction()
{
    if (!AudioChecks::beforeAdding(getSelectedDevice()))
        return;
    const QString last = m_tracks.isEmpty() ? QDir::homePath()
                                            : QFileInfo(m_tracks.data().last().Path).absolutePath();
    auto *chooser = new QFileDialog(window(), localized("BurnAudio", "Add"), last);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::ExistingFiles);
    const QString patterns =
        QStringLiteral("*.") + AudioTracks::extensions().join(QStringLiteral(" *."));
    chooser->setNameFilter(localized("BurnAudio", "Audio files") + u" (" + patterns + u' '
                           + patterns.toUpper() + u')');
    // What follows the choosing follows a cancel too.
    connect(chooser, &QFileDialog::filesSelected, this, &BurnAudioViewController::addFiles);
    connect(chooser, &QDialog::rejected, this, [this] { appendTracks({}); });
    chooser->open();
}

// The files are measured side by side while the page waits; what is added then knows their
// durations already.
void BurnAudioViewController::addFiles(const QStringList &chosen)
{
    const QStringList paths = AudioTracks::accepted(chosen); // a name typed in passes any filter
    const QPointer<QWidget> focus = QApplication::focusWidget();
    m_isMeasuring = true;
    setEnabled(false);
    showWaiting();
    inBackground(
        this,
        [paths](const std::stop_token &stop) {
            QtConcurrent::blockingMap(paths, [stop](const QString &path) {
                if (!stop.stop_requested())
                    (void)AudioDurations::seconds(path);
            });
            return paths;
        },
        [this, focus](const QStringList &measured) {
            m_isMeasuring = false;
            setEnabled(true);
            showWaiting();
            if (focus)
                focus->setFocus();
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
    enableKeeping(true);
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
    m_ui->table->selectRow(std::min(row, m_tracks.rowCount() - 1));
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
    if (!AudioChecks::beforeWritingText(getSelectedDevice(), !m_tracks.isEmpty()))
        return;
    QStringList names;
    for (const AudioTrackEntry &entry : m_tracks.data())
        names.append(entry.Track);
    if (sender == Sender::Table)
        m_cdtextPanel->edit(names, CDTextPanel::Tab::Track, m_ui->table->currentIndex().row());
    else
        m_cdtextPanel->edit(names, CDTextPanel::Tab::Disc, 0);
}

void BurnAudioViewController::burnAction()
{
    if (AudioChecks::verify(getSelectedDevice(), !m_tracks.isEmpty(),
                            m_ui->capacityIndicator->value()))
        Alerts::confirmOnWindow(this, localized("BurnAudio", "Are you sure to burn?"),
                                localized("BurnAudio", "Burn the data on the disc"),
                                [this, device = getSelectedDevice()] { runBurn(device); });
}

void BurnAudioViewController::runBurn(const DRDevice &device)
{
    setAllStatus(false);
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
             m_ui->importButton})
        control->setEnabled(enabled);
    const bool hasFocus = isAncestorOf(QApplication::focusWidget());
    m_ui->stopButton->setVisible(!enabled);
    m_ui->burnButton->setEnabled(enabled);
    if (hasFocus) // which a control that is disabled would drop
        (enabled ? m_ui->burnButton : m_ui->stopButton)->setFocus();
    enableKeeping(enabled);
    Session::setWorking(!enabled);
}

void BurnAudioViewController::stopAction()
{
    Alerts::confirmOnWindow(
        this, localized("BurnAudio", "Are you sure to abort the burning?"),
        localized("BurnAudio", "The abort will leave the data incomplete on the disc"), [this] {
            m_burn.burn().abort();
            setAllStatus(true);
        });
}

void BurnAudioViewController::clearAction()
{
    Alerts::confirmOnWindow(this, localized("BurnAudio", "Are you sure to clear?"),
                            localized("BurnAudio", "Clear the burning information"),
                            [this] { runClear(); });
}

void BurnAudioViewController::runClear()
{
    m_ui->tracksDurationLabel->clear();
    m_ui->discDurationLabel->clear();
    m_ui->capacityIndicator->setValue(0);
    m_tracks.clear();
    m_progress.reset(localized("BurnAudio", "Done"));
    m_cdtextPanel->clear();
    enableKeeping(false);
}

// Clearing and saving; a save that runs is waited for before the next one.
void BurnAudioViewController::enableKeeping(bool enabled)
{
    m_ui->clearButton->setEnabled(enabled);
    m_ui->exportButton->setEnabled(enabled && !m_records.isSaving());
}

void BurnAudioViewController::showWaiting()
{
    m_ui->loadingView->setVisible(m_isMeasuring || m_records.isSaving());
}

// Adding tracks switches CD-Text off, which must not surprise who has written all titles.
void BurnAudioViewController::showTextEnabled(bool enabled)
{
    m_ui->cdtextButton->setText(enabled ? localized("BurnAudio", "✓ CD-Text…")
                                        : localized("BurnAudio", "CD-Text…"));
    m_ui->cdtextButton->setAccessibleDescription(
        enabled ? localized("BurnAudio", "CD-Text will be written")
                : localized("BurnAudio", "CD-Text will not be written"));
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
    m_ui->exportButton->setText(isSaving ? localized("BurnAudio", "Saving…")
                                         : localized("BurnAudio", "Save"));
    enableKeeping(m_ui->clearButton->isEnabled());
    showWaiting();
}

// A record is looked at; its tracks and texts are not read back.
void BurnAudioViewController::importAction()
{
    auto *chooser =
        new QFileDialog(window(), localized("BurnAudio", "Repository"), AudioRepository::folder());
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::Directory);
    chooser->setOption(QFileDialog::ShowDirsOnly);
    connect(chooser, &QFileDialog::fileSelected, this, [this](const QString &folder) {
        for (const QString &name :
             QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
            qInfo().noquote() << name;
        refreshAction();
        updateCapacity();
        enableKeeping(true);
    });
    chooser->open();
}
