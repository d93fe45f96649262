// The sheet that tells where the service is: host, port and context path. What it saves stands in
// the preferences and comes before the configuration. Main thread.
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class ServerSettings;
}

class ServerPanel : public QDialog
{
    Q_OBJECT

public:
    explicit ServerPanel(QWidget *parent);
    ~ServerPanel() override;

    // Opens the sheet with the settings of now.
    void present();

private:
    void fill();
    [[nodiscard]] bool verify2();
    void setAllStatus2(bool enabled);
    void saveAction();
    void save();
    void resetAction();
    void cancelAction();

    std::unique_ptr<Ui::ServerSettings> m_ui;
};
