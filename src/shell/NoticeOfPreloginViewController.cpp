#include "NoticeOfPreloginViewController.h"

#include "ServicePages.h"
#include "ui_NoticeOfPrelogin.h"

NoticeOfPreloginViewController::NoticeOfPreloginViewController(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::NoticeOfPrelogin>())
{
    m_ui->setupUi(this);
    connect(m_ui->closeButton, &QPushButton::clicked, this, &QDialog::accept);
    m_ui->webPane->open(ServicePages::url(QStringLiteral("NoticeOfPrelogin")));
}

NoticeOfPreloginViewController::~NoticeOfPreloginViewController() = default;

NoticeOfPreloginViewController *NoticeOfPreloginViewController::getViewController(QWidget *parent)
{
    return new NoticeOfPreloginViewController(parent);
}
