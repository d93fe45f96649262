// The directory of the companies: its pages, its filter, and the panel.
#include "AlertRecorder.h"
#include "CompanyPage.h"
#include "FileStore.h"
#include "RecordingServer.h"
#include "WindowTestMain.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>

namespace {

const QString failed = QStringLiteral("Failed to save.");
const QString failedHelp = QStringLiteral("Please try again later.");

}

class CompanyDirectoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_page.makeNew(); }
    void cleanup() { m_page.close(); }

    void paging_data();
    void paging();
    void clausesAsSent();
    void panelSwitchesUsers();
    void usersThatAreNotSwitched_data();
    void usersThatAreNotSwitched();
    void panelOfOwnCompany();

private:
    CompanyPage m_page;
};

void CompanyDirectoryTest::paging_data()
{
    QTest::addColumn<int>("companies");
    QTest::addColumn<QList<int>>("pages");
    QTest::newRow("none") << 0 << QList{0};
    QTest::newRow("one less") << 15 << QList{15};
    QTest::newRow("a whole page") << 16 << QList{16};
    QTest::newRow("one more") << 17 << QList{16, 1};
    QTest::newRow("three") << 33 << QList{16, 16, 1};
}

// Several register in the same second; the order is that of the times and not of their texts.
void CompanyDirectoryTest::paging()
{
    QFETCH(const int, companies);
    QFETCH(const QList<int>, pages);
    QStringList newestFirst;
    for (int i = 0; i < companies; ++i) {
        CompanyJson company = CompanyPage::sample(
            QString::number(i), QStringLiteral("2026-9-%1 8:0:0").arg(9 + i / 10));
        company.IsEnabled = QString::number(i % 2);
        QVERIFY(BLSyncCompany().insert(company));
        newestFirst.prepend(company.Namex);
    }
    QVERIFY(m_page.openDirectory());
    QCOMPARE(m_page.control<QLabel>("pageLabel")->text(), QString::number(companies));
    QCOMPARE(m_page.control<QComboBox>("pagePopUp")->count(), pages.size());
    QStringList listed;
    for (int page = 0; page < pages.size(); ++page) {
        m_page.choose(QStringLiteral("pagePopUp"), page);
        QVERIFY(m_page.isReady("pagePopUp"));
        QCOMPARE(m_page.control<QComboBox>("pagePopUp")->currentText(), QString::number(page + 1));
        QCOMPARE(m_page.column(1).size(), pages.at(page));
        listed += m_page.column(1);
    }
    QCOMPARE(listed, newestFirst);
    if (companies == 0)
        return;
    QCOMPARE(m_page.column(0).last() + m_page.column(2).last() + m_page.column(3).last()
                 + m_page.column(4).last(),
             QStringLiteral("✘Anna O'Neil2026-9-9 8:0:0China"));
}

void CompanyDirectoryTest::clausesAsSent()
{
    RecordingServer server;
    server.setReply("33");
    QVERIFY(m_page.openDirectory());
    auto bodies = [&, sent = server.requests().size() - 2]() mutable -> QByteArray {
        QByteArray all;
        for (; sent < server.requests().size(); ++sent) {
            const QByteArray request = server.requests().at(sent);
            all += request.mid(request.indexOf("operation=") + 10).split(' ').first()
                   + request.mid(request.indexOf("\r\n\r\n") + 4);
        }
        return all;
    };
    const auto count = [](const QByteArray &filter) -> QByteArray {
        return "GET_COUNT{\"WhereClause\":\"Email!='root'" + filter
               + " ORDER BY RegisterTime DESC\",\"Index\":\"0\",\"Step\":\"\"}";
    };
    const auto select = [](const QByteArray &filter, const QByteArray &index) -> QByteArray {
        return "SELECT{\"WhereClause\":\"Email!='root'" + filter
               + " ORDER BY RegisterTime DESC\",\"Index\":\"" + index + "\",\"Step\":\"16\"}";
    };
    QCOMPARE(bodies(), count("") + select("", "1"));
    for (const auto &[page, index] : {std::pair(1, "16"), std::pair(2, "32"), std::pair(0, "1")}) {
        m_page.choose(QStringLiteral("pagePopUp"), page);
        QVERIFY(m_page.isReady("pagePopUp"));
        QCOMPARE(bodies(), select("", index));
    }
    const auto filter = [&](const char *popUp, const char *title) {
        m_page.choose(popUp, title);
        return m_page.isReady("pagePopUp") ? bodies() : QByteArray();
    };
    const QByteArray africa = " AND BusinessContinent='Africa'";
    const QByteArray coast = africa + " AND Country='Ivory Coast'";
    QCOMPARE(filter("businessContinentPopUp", "Africa"), count(africa) + select(africa, "1"));
    QCOMPARE(filter("countrySelectPopUp", "Ivory Coast"), count(coast) + select(coast, "1"));
    // Another continent takes the country back.
    const QByteArray europe = " AND BusinessContinent='Europe'";
    QCOMPARE(filter("businessContinentPopUp", "Europe"), count(europe) + select(europe, "1"));
    QCOMPARE(filter("businessContinentPopUp", "Please choose"), count("") + select("", "1"));
}

void CompanyDirectoryTest::panelSwitchesUsers()
{
    for (const char *name : {"one", "two"}) {
        CompanyJson company = CompanyPage::sample(QLatin1StringView(name));
        QVERIFY(BLSyncCompany().insert(company));
    }
    const QString one = CompanyPage::stored("one").ID;
    for (const auto &[name, company] : {std::pair("anna", one), std::pair("o'neil", one),
                                        std::pair("other", CompanyPage::stored("two").ID)}) {
        UserxJson user = CompanyPage::userOf(name, company);
        QVERIFY(BLSyncUserx().insert(user));
    }
    const QString picture = m_page.service().folder() + QStringLiteral("/logo.png");
    QImage image(400, 100, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(picture) && MiscTool::uploadFile({}, one, {}, {}, picture));

    QVERIFY(m_page.openDirectory());
    for (const bool isOn : {false, true}) {
        QVERIFY(m_page.openPanel(1));
        QCOMPARE(m_page.control<QLineEdit>("nameField2")->text(), QStringLiteral("one"));
        QCOMPARE(m_page.control<QLabel>("pictureView2")->pixmap(Qt::ReturnByValue).size(),
                 QSize(160, 40));
        auto *enabled = m_page.control<QCheckBox>("enabledCB2");
        QVERIFY(enabled->isEnabled());
        QCOMPARE(enabled->isChecked(), !isOn);
        enabled->click();
        m_page.control<QLineEdit>("websiteField2")->setText(QStringLiteral("example.com"));
        m_page.click("saveButton2");
        QTRY_VERIFY(!m_page.panel());
        QVERIFY(m_page.isReady("pagePopUp"));
        QCOMPARE(m_page.column(0), (QStringList{"✔︎", isOn ? "✔︎" : "✘"}));
        const QString clause = QStringLiteral("IsEnabled=1 AND CompanyID=") + one;
        QCOMPARE(BLSyncUserx().getCount(clause), isOn ? 2 : 0);
        QCOMPARE(BLSyncUserx().getCount(QStringLiteral("IsEnabled=1 AND Userx='other'")), 1);
    }
    QCOMPARE(CompanyPage::stored("one").Website, QStringLiteral("example.com"));

    // What cannot be stored stays in the panel.
    QVERIFY(m_page.openPanel(1));
    QVERIFY(BLSyncCompany().deleteByID(one));
    AlertRecorder recorder;
    recorder.expect(failed, failedHelp);
    m_page.click("saveButton2");
    QTRY_VERIFY(recorder.isDone());
    QVERIFY(m_page.isReady("cancelButton2"));
    m_page.click("cancelButton2");
    QTRY_VERIFY(!m_page.panel());
}

void CompanyDirectoryTest::usersThatAreNotSwitched_data()
{
    QTest::addColumn<QList<QByteArray>>("replies");
    QTest::newRow("a user is not stored")
        << QList<QByteArray>{R"({"Result":[{"ID":"7"}]})", "false"};
    QTest::newRow("nobody tells who they are") << QList<QByteArray>{""};
}

// The company is stored then: the directory shows so when the panel has gone.
void CompanyDirectoryTest::usersThatAreNotSwitched()
{
    QFETCH(const QList<QByteArray>, replies);
    RecordingServer server;
    const QByteArray company =
        R"({"Result":[)" + CompanyPage::sample(QStringLiteral("one")).toJsonStr().toUtf8() + "]}";
    server.setReply(company);
    QVERIFY(m_page.openDirectory());
    QVERIFY(m_page.openPanel(0));
    server.setNextReplies(QList<QByteArray>{company, "true"} + replies);
    AlertRecorder recorder;
    recorder.expect(failed, failedHelp);
    m_page.click("saveButton2");
    QTRY_VERIFY(recorder.isDone());
    QVERIFY(m_page.isReady("cancelButton2"));
    const qsizetype requests = server.requests().size();
    m_page.click("cancelButton2");
    QTRY_VERIFY(!m_page.panel());
    QVERIFY(m_page.isReady("pagePopUp"));
    QVERIFY(server.requests().size() > requests);
}

void CompanyDirectoryTest::panelOfOwnCompany()
{
    CompanyJson company = CompanyPage::sample(QStringLiteral("one"));
    QVERIFY(BLSyncCompany().insert(company));
    CompanyPage::signIn("root", CompanyPage::stored("one").ID);
    QVERIFY(m_page.openDirectory());
    QVERIFY(m_page.openPanel(0));
    QVERIFY(!m_page.control<QCheckBox>("enabledCB2")->isEnabled());
    QVERIFY(!m_page.control<QLabel>("pictureView2")->isVisible());
    QTest::keyClick(m_page.control<QWidget>("nameField2"), Qt::Key_Escape);
    QTRY_VERIFY(!m_page.panel());
}

MAPLORN_WINDOW_TEST_MAIN(CompanyDirectoryTest)
#include "CompanyDirectoryTest.moc"
