#include "ServerPanel.h"

#include "Checks.h"
#include "Localized.h"
#include "MainQueue.h"
#include "OnlyIntegerValueFormatter.h"
#include "Preferences.h"
#include "ServiceAddress.h"
#include "ui_ServerSettings.h"

namespace {

const QString hostKey = QStringLiteral("Host");
const QString portKey = QStringLiteral("Port");
const QString contextKey = QStringLiteral("Context");

}

ServerPanel::ServerPanel(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::ServerSettings>())
{
    m_ui->setupUi(this);
    m_ui->portField->setValidator(new OnlyIntegerValueFormatter(m_ui->portField));
    connect(m_ui->saveButton, &QPushButton::clicked, this, &ServerPanel::saveAction);
    connect(m_ui->resetButton, &QPushButton::clicked, this, &ServerPanel::resetAction);
    connect(m_ui->cancelButton, &QPushButton::clicked, this, &ServerPanel::cancelAction);
}

ServerPanel::~ServerPanel() = default;

void ServerPanel::present()
{
    fill();
    m_ui->hostField->setFocus();
    open();
}

void ServerPanel::fill()
{
    m_ui->hostField->setText(MiscTool::getHost());
    m_ui->portField->setText(MiscTool::getPort());
    m_ui->contextField->setText(MiscTool::getContext());
}

bool ServerPanel::verify2()
{
    return runChecks({
        {[this] { return m_ui->hostField->text().isEmpty(); },
         localized("Login", "Host cannot be null."), localized("Login", "Please enter the Host."),
         m_ui->hostField},
        {[this] { return m_ui->portField->text().isEmpty(); },
         localized("Login", "Port cannot be null."), localized("Login", "Please enter the Port."),
         m_ui->portField},
    });
}

void ServerPanel::setAllStatus2(bool enabled)
{
    for (QWidget *control :
         std::initializer_list<QWidget *>{m_ui->resetButton, m_ui->hostField, m_ui->portField,
                                          m_ui->contextField, m_ui->cancelButton, m_ui->saveButton})
        control->setEnabled(enabled);
}

void ServerPanel::saveAction()
{
    if (!verify2())
        return;
    setAllStatus2(false);
    MainQueue::async(this, [this] { save(); });
    accept();
}

void ServerPanel::save()
{
    Preferences::setValue(hostKey, m_ui->hostField->text());
    Preferences::setValue(portKey, m_ui->portField->text());
    Preferences::setValue(contextKey, m_ui->contextField->text());
    setAllStatus2(true);
}

void ServerPanel::resetAction()
{
    for (const QString &key : {hostKey, portKey, contextKey})
        Preferences::remove(key);
    fill();
}

void ServerPanel::cancelAction()
{
    reject();
}
