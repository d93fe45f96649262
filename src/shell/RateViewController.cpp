#include "RateViewController.h"

#include "ServiceAddress.h"
#include "ui_Rate.h"

#include <QDesktopServices>

RateViewController::RateViewController()
    : m_ui(std::make_unique<Ui::Rate>())
{
    m_ui->setupUi(this);
    connect(m_ui->rateButton, &QPushButton::clicked, this, &RateViewController::rateAction);
}

RateViewController::~RateViewController() = default;

RateViewController *RateViewController::getViewController()
{
    return new RateViewController;
}

void RateViewController::viewWillAppear()
{
    m_ui->rateButton->setEnabled(!MiscTool::getAppURL().isEmpty());
}

void RateViewController::rateAction()
{
    QDesktopServices::openUrl(QUrl(MiscTool::getAppURL()));
}
