// The sheet in which root shows and changes the profile of any company, and switches it on or off.
// Main thread; the service calls block it.
#pragma once

#include "Records.h"
#include "Waiting.h"

#include <QDialog>

#include <memory>

class QImage;

namespace Ui {
class CompanyPanel;
}

class CompanyPanel : public QDialog
{
    Q_OBJECT

public:
    // The picture may be null.
    CompanyPanel(QWidget *parent, const CompanyJson &company, const QImage &picture);
    ~CompanyPanel() override;

    // Closes without saving, but not while the service is at work.
    void reject() override;
    void done(int result) override;

Q_SIGNALS:
    // The sheet has closed; the company was sent to the service, whether or not all went well.
    void sent();

private:
    [[nodiscard]] bool verify2() const;
    [[nodiscard]] CompanyJson getProfileJson();
    void saveAction2();
    void cancelAction2() { reject(); }

    void save();
    [[nodiscard]] bool switchUsers() const;
    void setAllStatus2(bool enabled);

    std::unique_ptr<Ui::CompanyPanel> m_ui;
    CompanyJson m_profileJson;
    bool m_isSent = false;
    Waiting m_waiting;
};
