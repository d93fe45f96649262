#include "CompanyPanel.h"

#include "Alerts.h"
#include "BLSync.h"
#include "Form.h"
#include "Localized.h"
#include "Session.h"
#include "ui_CompanyPanel.h"

namespace {

constexpr QSize pictureSize(160, 96);

// Sharp on any screen, and never larger than it came.
QPixmap picturePixmap(const QImage &picture, qreal ratio)
{
    const QSize room = pictureSize * ratio;
    QPixmap pixmap =
        QPixmap::fromImage(picture.width() > room.width() || picture.height() > room.height()
                               ? picture.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                               : picture);
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

}

CompanyPanel::CompanyPanel(QWidget *parent, const CompanyJson &company, const QImage &picture)
    : QDialog(parent)
    , m_ui(madeForm<Ui::CompanyPanel>(this))
    , m_profileJson(company)
    , m_waiting(this, m_ui->loadingView3)
{
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    m_ui->form2->addToNames(QStringLiteral("2"));
    m_ui->form2->fill(company);
    m_ui->pictureView2->setPixmap(picturePixmap(picture, devicePixelRatioF()));
    m_ui->pictureView2->setVisible(!picture.isNull());
    m_ui->enabledCB2->setChecked(company.IsEnabled.toInt() == 1);
    setAllStatus2(true);
    connect(m_ui->saveButton2, &QPushButton::clicked, this, &CompanyPanel::saveAction2);
    connect(m_ui->cancelButton2, &QPushButton::clicked, this, &CompanyPanel::cancelAction2);
}

CompanyPanel::~CompanyPanel() = default;

void CompanyPanel::reject()
{
    if (!m_waiting.isOn())
        QDialog::reject();
}

void CompanyPanel::done(int result)
{
    QDialog::done(result);
    if (m_isSent)
        Q_EMIT sent();
}

// Root cannot switch off its own company.
void CompanyPanel::setAllStatus2(bool enabled)
{
    const std::optional<UserxJson> user = Session::getLoggedUserxJson();
    m_ui->enabledCB2->setEnabled(enabled && (!user || user->CompanyID != m_profileJson.ID));
    m_ui->form2->setEnabled(enabled);
    m_ui->saveButton2->setEnabled(enabled);
    m_ui->cancelButton2->setEnabled(enabled);
}

bool CompanyPanel::verify2() const
{
    return runChecks(m_ui->form2->checks());
}

CompanyJson CompanyPanel::getProfileJson()
{
    m_ui->form2->store(m_profileJson);
    m_profileJson.IsEnabled =
        m_ui->enabledCB2->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
    return m_profileJson;
}

void CompanyPanel::saveAction2()
{
    if (verify2())
        m_waiting.run([this](bool enabled) { setAllStatus2(enabled); }, [this] { save(); });
}

void CompanyPanel::save()
{
    const BLSyncCompany blSync;
    // What the form does not show may have changed since it was opened.
    m_profileJson = blSync.getJson(m_profileJson.ID).value_or(m_profileJson);
    CompanyJson company = getProfileJson();
    m_isSent = true;
    if (blSync.update(company) && switchUsers())
        accept();
    else
        MiscTool::showAlert(localized("Company", "Failed to save."),
                            localized("Company", "Please try again later."));
}

// A company that is switched off takes its users with it.
bool CompanyPanel::switchUsers() const
{
    const BLSyncUserx blSync;
    const auto rows = blSync.selectAny(QStringLiteral("CompanyID=") + m_profileJson.ID);
    bool areSwitched = rows.has_value();
    for (const QVariantMap &row : rows.value_or(QList<QVariantMap>())) {
        UserxJson user = UserxJson::getJson(row);
        user.IsEnabled = m_profileJson.IsEnabled;
        areSwitched = blSync.update(user) && areSwitched;
    }
    return areSwitched;
}
