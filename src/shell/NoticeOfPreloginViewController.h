// The sheet with the service's notice, before anybody signs in. Main thread.
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class NoticeOfPrelogin;
}

class NoticeOfPreloginViewController : public QDialog
{
    Q_OBJECT

public:
    ~NoticeOfPreloginViewController() override;

    [[nodiscard]] static NoticeOfPreloginViewController *getViewController(QWidget *parent);

private:
    explicit NoticeOfPreloginViewController(QWidget *parent);

    std::unique_ptr<Ui::NoticeOfPrelogin> m_ui;
};
