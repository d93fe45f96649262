#include "CompanyTour.h"

#include "BLSync.h"
#include "FileStore.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QTabWidget>
#include <QTableWidget>

namespace {

constexpr int others = 20;

// Companies that have registered on other machines; the last of them has a picture.
void registerOthers(const QString &shots)
{
    say(QStringLiteral("Registering %1 other companies").arg(others));
    const BLSyncCompany companies;
    CompanyJson company;
    for (int i = 1; i <= others; ++i) {
        company.Email = QStringLiteral("office%1@others.example").arg(i);
        company.Namex = QStringLiteral("Others No. %1").arg(i);
        company.FirstName = QStringLiteral("Jean");
        company.LastName = QStringLiteral("Example");
        company.BusinessContinent =
            i % 2 == 0 ? QStringLiteral("Africa") : QStringLiteral("Asia Pacific");
        company.Country = i % 2 == 0 ? QStringLiteral("Ivory Coast") : QStringLiteral("Japan");
        company.RegisterTime = QStringLiteral("2099-3-%1 9:5:3").arg(i);
        company.IsEnabled = QStringLiteral("1");
        require(companies.insert(company), QStringLiteral("no other company"));
    }
    const auto rows = companies.select(QStringLiteral("Email='%1'").arg(company.Email));
    require(rows.has_value(), QStringLiteral("the other company is not there"));
    QImage picture(640, 320, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setBrush(Qt::darkCyan);
    painter.drawEllipse(picture.rect().adjusted(180, 20, -180, -20));
    painter.end();
    const QString path = shots + QStringLiteral("/tour-home/logo.png");
    require(picture.save(path)
                && MiscTool::uploadFile({}, CompanyJson::getJson(rows->first()).ID, {}, {}, path),
            QStringLiteral("the picture was not stored"));
}

}

void CompanyTour::runSessions(const QString &shots, const QString &user, const QString &password)
{
    runSession<CompanyTour>(shots, [&](const CompanyTour &tour) {
        tour.pressSignIn(user, password);
        tour.openProfile();
        tour.changeProfile();
        tour.signOut();
    });
    registerOthers(shots);
    runSession<CompanyTour>(shots, [](const CompanyTour &tour) {
        tour.pressSignIn(QStringLiteral("root"), QStringLiteral("kvex"));
        tour.openProfile();
        tour.lookThroughDirectory();
        tour.changeCompany();
        tour.signOut();
    });
}

void CompanyTour::openProfile() const
{
    waitFor([this] { return !isShown("loginButton"); }, QStringLiteral("nobody is signed in"));
    openModule(QStringLiteral("Profile"));
    waitFor([this] { return !find<QLineEdit>("emailField")->text().isEmpty(); },
            QStringLiteral("no profile"));
}

void CompanyTour::changeProfile() const
{
    say(QStringLiteral("Changing the profile"));
    require(find<QTabWidget>("tabView")->count() == 1, QStringLiteral("the directory is shown"));
    shoot(QStringLiteral("profile"));
    find<QComboBox>("industryPopUp")->setCurrentIndex(2);
    find<QComboBox>("titlePopUp")->setCurrentIndex(2);
    for (const auto &[field, text] :
         {std::pair("jobTitleField", "Director"), std::pair("telField", "30 7654321"),
          std::pair("skypeField", "company.example")})
        find<QLineEdit>(field)->setText(QLatin1StringView(text));
    pick("businessContinent0PopUp", QStringLiteral("Asia Pacific"));
    pick("countryPopUp", QStringLiteral("China"));
    find<QLineEdit>("wechatField")->setFocus();
    shoot(QStringLiteral("profile-china"));
    pick("businessContinent0PopUp", QStringLiteral("Europe"));
    pick("countryPopUp", QStringLiteral("Germany"));
    shootNarrow(QStringLiteral("profile-narrow"));
    clickForAlert("saveButton", QStringLiteral("Saved Successfully."));
    waitFor([this] { return find<QPushButton>("saveButton")->isEnabled(); },
            QStringLiteral("the page stays disabled"));
}

void CompanyTour::lookThroughDirectory() const
{
    say(QStringLiteral("Looking through the directory"));
    find<QTabWidget>("tabView")->setCurrentIndex(1);
    const auto waitForRows = [this](int rows) {
        waitFor(
            [&] {
                return find<QTableWidget>("table")->rowCount() == rows
                       && find<QComboBox>("pagePopUp")->isEnabled();
            },
            QStringLiteral("the page has not %1 rows").arg(rows));
    };
    waitForRows(16);
    shoot(QStringLiteral("directory"));
    shootNarrow(QStringLiteral("directory-narrow"));
    pick("pagePopUp", QStringLiteral("2"));
    waitForRows(others + 1 - 16);
    shoot(QStringLiteral("directory-2"));
    pick("businessContinentPopUp", QStringLiteral("Africa"));
    waitForRows(others / 2);
    pick("countrySelectPopUp", QStringLiteral("Ivory Coast"));
    waitForRows(others / 2);
    shoot(QStringLiteral("directory-africa"));
}

void CompanyTour::changeCompany() const
{
    say(QStringLiteral("Switching a company off"));
    find<QTableWidget>("table")->selectRow(0);
    click(find<QPushButton>("profileButton"));
    waitFor([this] { return isShown("nameField2"); }, QStringLiteral("no panel"));
    shootSheet(QStringLiteral("company-panel"));
    for (const char *popUp : {"industryPopUp2", "titlePopUp2"})
        find<QComboBox>(popUp)->setCurrentIndex(1);
    for (const char *field : {"jobTitleField2", "mobileField2"})
        find<QLineEdit>(field)->setText(QStringLiteral("1"));
    find<QCheckBox>("enabledCB2")->click();
    click(find<QPushButton>("saveButton2"));
    waitFor([this] { return !isShown("nameField2") && find<QComboBox>("pagePopUp")->isEnabled(); },
            QStringLiteral("the panel stays"));
    require(find<QTableWidget>("table")->item(0, 0)->text() == QStringLiteral("✘"),
            QStringLiteral("the company is still on"));
    shoot(QStringLiteral("directory-off"));
}
