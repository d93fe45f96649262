#include "HomeViewController.h"

#include "ServicePages.h"
#include "ui_Home.h"

HomeViewController::HomeViewController()
    : m_ui(std::make_unique<Ui::Home>())
{
    m_ui->setupUi(this);
}

HomeViewController::~HomeViewController() = default;

HomeViewController *HomeViewController::getViewController()
{
    return new HomeViewController;
}

void HomeViewController::viewDidLoad()
{
    m_ui->webPane->open(ServicePages::url());
}
