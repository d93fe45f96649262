// The page that burns an audio CD from audio files, with CD-Text, and keeps copies of tracks and
// texts as records in the repository. Main thread; measuring, copying and burning run off it.
#pragma once

#include "AudioTracks.h"
#include "BurnProgress.h"
#include "DevicePopUp.h"
#include "Page.h"
#include "PageBurn.h"
#include "RecordSaver.h"

#include <memory>

class CDTextPanel;

namespace Ui {
class BurnAudio;
}

class BurnAudioViewController : public Page
{
    Q_OBJECT

public:
    [[nodiscard]] static BurnAudioViewController *getViewController();
    ~BurnAudioViewController() override;

    [[nodiscard]] bool hasRunningJob() const override
    {
        return m_burn.isRunning() || m_isMeasuring || m_records.isSaving();
    }

protected:
    void viewDidLoad() override;
    void viewWillAppear() override;

private:
    BurnAudioViewController();

    void connectControls();
    void showMedium();
    void setAllStatus(bool enabled);
    void enableKeeping(bool enabled);
    void showWaiting();
    void showTextEnabled(bool enabled);

    void refreshAction();
    void addAction();
    void addFiles(const QStringList &chosen);
    void appendTracks(const QStringList &paths);
    void removeAction();
    void updateCapacity();
    void burnSpeedAction();

    enum class Sender { Button, Table };
    void setCDText(Sender sender);

    void burnAction();
    void runBurn(const DRDevice &device); // the one that was chosen when it was confirmed
    void burnStatus(const QVariantMap &status);
    void burnEnded(bool isDone, const QString &errorText);
    void stopAction();
    void clearAction();
    void runClear();

    void exportAction();
    void showSaving(bool isSaving);
    void importAction();

    [[nodiscard]] DRDevice getSelectedDevice() const { return m_devices.selectedDevice(); }
    [[nodiscard]] QVariantMap medium() const;

    std::unique_ptr<Ui::BurnAudio> m_ui;
    AudioTracks m_tracks;
    DevicePopUp m_devices;
    BurnProgress m_progress;
    PageBurn m_burn;
    RecordSaver m_records;
    CDTextPanel *m_cdtextPanel; // a child of the page
    QVariantMap m_shownMedium;  // as showMedium() found it
    bool m_isMeasuring = false;
};
