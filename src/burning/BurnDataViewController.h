// The page that burns a folder or an image file on a blank medium, and keeps copies of sources in
// the repository. Main thread; measuring, copying and burning run off it.
#pragma once

#include "BurnProgress.h"
#include "DataRepository.h"
#include "DevicePopUp.h"
#include "Page.h"
#include "PageBurn.h"

#include <memory>
#include <optional>

namespace Ui {
class BurnData;
}

class BurnDataViewController : public Page
{
    Q_OBJECT

public:
    [[nodiscard]] static BurnDataViewController *getViewController();
    ~BurnDataViewController() override;

    [[nodiscard]] bool hasRunningJob() const override { return m_burn.isRunning() || m_saving; }

protected:
    void viewDidLoad() override;
    void viewWillAppear() override;

private:
    BurnDataViewController();

    void connectControls();
    void showMedium();
    void setAllStatus(bool enabled);

    void refreshAction();
    void sourceTypeAction();
    void selectAction();
    void setSource(const QString &path);
    void measureSource();
    void showSourceSize(qint64 size);
    void forgetMeasurement();
    void updateBurnButton();
    void burnSpeedAction();

    [[nodiscard]] bool verify() const;
    void burnAction();
    void runBurn(const DRDevice &device); // the one that was chosen when it was confirmed
    void burnEnded(bool isDone, const QString &errorText);
    void stopAction();
    void clearAction();
    void runClear();

    void saveAction();
    void saved(const std::optional<Result<>> &result); // null: stopped by the program's end
    void openAction();
    void repositoryDeleteAction(DataRepository::Kind kind);
    void repositorySelectAction(DataRepository::Kind kind, const QString &path);

    [[nodiscard]] DRDevice selectedDevice() const { return m_devices.selectedDevice(); }
    [[nodiscard]] bool isFolderChosen() const;
    [[nodiscard]] bool isImageChosen() const;
    [[nodiscard]] QVariantMap medium() const;

    std::unique_ptr<Ui::BurnData> m_ui;
    DevicePopUp m_devices;
    BurnProgress m_progress;
    PageBurn m_burn;
    bool m_saving = false;
    QVariantMap m_shownMedium; // as showMedium() found it
    bool m_enabled = true;     // as setAllStatus() was told
    bool m_measured = true;    // false while the source is being measured
    int m_measurement = 0;     // number of the last one
    std::stop_source m_measuring{std::nostopstate};
};
