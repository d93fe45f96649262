// The page of the questions, over the real service.
#include "AlertRecorder.h"
#include "Companies.h"
#include "DateTools.h"
#include "FeedbackViewController.h"
#include "MainQueue.h"
#include "RecordTable.h"
#include "RecordingServer.h"
#include "ServiceFixture.h"
#include "Session.h"
#include "WindowTestMain.h"

#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

namespace {

const QString later = QStringLiteral("Please try again later.");
const QString deleteQuestion = QStringLiteral("Are you sure to delete?");
const QString irreversible = QStringLiteral("The operation is irreversible.");
const QString forbidden = QStringLiteral("Forbidden to delete.");
const QString referenced = QStringLiteral("There is critical data referenced.");

}

class FeedbackTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void whoSeesWhat_data();
    void whoSeesWhat();
    void whoMayDoWhat_data();
    void whoMayDoWhat();
    void askThenAnswer();
    void answerSurvivesAnEmptyOne();
    void deleting_data();
    void deleting();
    void answeredMeanwhile();
    void deadServiceLosesNothing();
    void askersAreLookedUpOnce();

private:
    void makeQuestion(const char *question, const QVariantMap &asker, const char *askTime,
                      const QVariantMap &answerer) const;
    FeedbackJson answerAsRoot(const char *question) const;
    void show(const char *user, bool answered);
    void open(int row) const;
    [[nodiscard]] QVariantMap userRow(const char *name) const
    {
        return BLSyncUserx()
            .select(QStringLiteral("Userx='%1'").arg(QLatin1StringView(name)))
            ->first();
    }
    [[nodiscard]] static FeedbackJson stored(const char *question)
    {
        const auto rows = BLSyncFeedback().select(QStringLiteral("Question='") + question + u'\'');
        return rows ? FeedbackJson::getJson(rows->first()) : FeedbackJson();
    }
    template <typename Control>
    [[nodiscard]] Control *control(const char *name) const
    {
        return m_page->findChild<Control *>(QLatin1StringView(name));
    }
    [[nodiscard]] auto *question() const { return control<QPlainTextEdit>("questionTextView"); }
    [[nodiscard]] auto *answer() const { return control<QPlainTextEdit>("answerTextView"); }
    [[nodiscard]] RecordTable *table() const { return control<RecordTable>("table"); }
    void click(const char *name) const
    {
        QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton);
    }
    // The texts of a column, from the top.
    [[nodiscard]] QStringList cells(const char *identifier) const
    {
        QStringList texts;
        for (int column = 0; column < table()->columnCount(); ++column)
            if (table()->horizontalHeaderItem(column)->data(Qt::UserRole) == identifier)
                for (int row = 0; row < table()->rowCount(); ++row)
                    texts.append(table()->item(row, column)->text());
        return texts;
    }

    std::unique_ptr<ServiceFixture> m_service;
    std::unique_ptr<FeedbackViewController> m_page;
    QVariantMap m_root;
    QVariantMap m_anna;
    QVariantMap m_bert;
};

void FeedbackTest::init()
{
    m_service = std::make_unique<ServiceFixture>();
    m_root = makeCompany(QStringLiteral("root"));
    m_anna = makeCompany(QStringLiteral("anna"));
    m_bert = makeCompany(QStringLiteral("bert"));
    makeCompany(QStringLiteral("carl"));
    makeQuestion("older", m_anna, "2016-3-5 9:5:3", {});
    makeQuestion("newer", m_anna, "2016-10-1 9:5:3", {});
    makeQuestion("bert's", m_bert, "2016-9-30 10:0:0", {});
    makeQuestion("answered", m_anna, "2015-1-1 1:1:1", m_root);
    makeQuestion("by bert", m_anna, "2015-1-2 1:1:1", m_bert);
}

void FeedbackTest::cleanup()
{
    m_page.reset();
    m_service.reset();
}

void FeedbackTest::makeQuestion(const char *question, const QVariantMap &asker, const char *askTime,
                                const QVariantMap &answerer) const
{
    FeedbackJson feedback;
    feedback.Question = QLatin1StringView(question);
    feedback.UserID = idOf(asker);
    feedback.AskTime = QLatin1StringView(askTime);
    feedback.AnsweredBy = answerer.isEmpty() ? QStringLiteral("0") : idOf(answerer);
    feedback.Answer = answerer.isEmpty() ? QString() : QStringLiteral("an answer");
    feedback.AnswerTime = QStringLiteral("2016-11-1 8:0:0");
    QVERIFY(BLSyncFeedback().insert(feedback));
}

FeedbackJson FeedbackTest::answerAsRoot(const char *question) const
{
    FeedbackJson feedback = stored(question);
    feedback.Answer = QStringLiteral("At last");
    feedback.AnsweredBy = idOf(m_root);
    feedback.AnswerTime = QStringLiteral("2017-1-1 1:1:1");
    return BLSyncFeedback().update(feedback) ? feedback : FeedbackJson();
}

void FeedbackTest::show(const char *user, bool answered)
{
    Session::setLoggedUserDict(userRow(user));
    m_page.reset(FeedbackViewController::getViewController());
    m_page->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
    click(answered ? "answeredSegment" : "unansweredSegment");
    bool isLoaded = false;
    MainQueue::async(m_page.get(), [&] { isLoaded = true; });
    QTRY_VERIFY(isLoaded);
}

void FeedbackTest::open(int row) const
{
    const QPoint cell = table()->visualItemRect(table()->item(row, 2)).center();
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, cell);
    QTest::mouseDClick(table()->viewport(), Qt::LeftButton, {}, cell);
    QTRY_VERIFY(control<QDialog>("panel")->isVisible());
}

void FeedbackTest::whoSeesWhat_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<bool>("answered");
    QTest::addColumn<QStringList>("questions");
    QTest::addColumn<QStringList>("companies");

    QTest::newRow("own ones, newest first")
        << "anna" << false << QStringList{"newer", "older"} << QStringList{"ANNA", "ANNA"};
    QTest::newRow("own answered ones")
        << "anna" << true << QStringList{"by bert", "answered"} << QStringList{"ANNA", "ANNA"};
    QTest::newRow("not what was answered for others")
        << "bert" << true << QStringList{} << QStringList{};
    QTest::newRow("nothing asked") << "carl" << false << QStringList{} << QStringList{};
    QTest::newRow("root sees all") << "root" << false << QStringList{"newer", "bert's", "older"}
                                   << QStringList{"ANNA", "BERT", "ANNA"};
    QTest::newRow("root sees all answered ones")
        << "root" << true << QStringList{"by bert", "answered"} << QStringList{"ANNA", "ANNA"};
}

void FeedbackTest::whoSeesWhat()
{
    QFETCH(const QString, user);
    QFETCH(const bool, answered);
    show(user.toLatin1().constData(), answered);
    QTEST(cells("Question"), "questions");
    QTEST(cells("SubmittedBy"), "companies");
    if (user == QLatin1StringView("anna"))
        QCOMPARE(cells("AskTime").last(),
                 answered ? QStringLiteral("2015-1-1 1:1:1") : QStringLiteral("2016-3-5 9:5:3"));
}

void FeedbackTest::whoMayDoWhat_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<bool>("answered");
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("mayChangeQuestion");
    QTest::addColumn<bool>("seesAnswer");
    QTest::addColumn<bool>("mayAnswer");
    QTest::addColumn<bool>("maySave");
    QTest::addColumn<QString>("answeredBy");
    QTest::addColumn<QString>("focus");

    const QString root = QStringLiteral("First root ROOT");
    const QString bert = QStringLiteral("First bert BERT");
    QTest::newRow("asker, unanswered")
        << "anna" << false << 0 << true << false << true << true << QString() << "questionTextView";
    QTest::newRow("root, another's")
        << "root" << false << 0 << false << true << true << true << QString() << "answerTextView";
    QTest::newRow("asker, answered")
        << "anna" << true << 1 << false << true << false << false << root << "cancelButton";
    QTest::newRow("its answerer") << "root" << true << 1 << false << true << true << true << root
                                  << "answerTextView";
    QTest::newRow("another's answer")
        << "root" << true << 0 << false << true << false << false << bert << "cancelButton";
}

void FeedbackTest::whoMayDoWhat()
{
    QFETCH(const QString, user);
    QFETCH(const bool, answered);
    QFETCH(const int, row);
    show(user.toLatin1().constData(), answered);
    open(row);
    QTEST(!question()->isReadOnly(), "mayChangeQuestion");
    QTEST(control<QGroupBox>("answerBox")->isVisible(), "seesAnswer");
    QTEST(!answer()->isReadOnly(), "mayAnswer");
    QTEST(control<QPushButton>("saveButton")->isEnabled(), "maySave");
    QTEST(control<QLabel>("answeredByLabel")->text(), "answeredBy");
    QFETCH(const QString, focus);
    QCOMPARE(control<QDialog>("panel")->focusWidget(), control<QWidget>(qPrintable(focus)));
    QCOMPARE(control<QLabel>("submittedByLabel")->text(), QStringLiteral("First anna ANNA"));
    QCOMPARE(control<QLabel>("askTimeLabel")->text(), cells("AskTime").at(row));
    QCOMPARE(answer()->toPlainText(), answered ? QStringLiteral("an answer") : QString());
    QCOMPARE(control<QLabel>("answerTimeLabel")->text(),
             answered ? QStringLiteral("2016-11-1 8:0:0") : QString());
    click("cancelButton");
    QTRY_VERIFY(!control<QDialog>("panel")->isVisible());
    // Nothing of it is left for a new question.
    click("addButton");
    QVERIFY(control<QDialog>("panel")->isVisible());
    QVERIFY(!question()->isReadOnly() && question()->toPlainText().isEmpty());
    QVERIFY(control<QDialog>("panel")->focusWidget() == question());
    QVERIFY(control<QPushButton>("saveButton")->isEnabled());
    QVERIFY(!control<QGroupBox>("answerBox")->isVisible());
}

void FeedbackTest::askThenAnswer()
{
    show("anna", false);
    click("addButton");
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("Question cannot be null."),
                  QStringLiteral("Please enter the Question."));
    click("saveButton");
    QTRY_VERIFY(alerts.isDone());
    const QString text = QStringLiteral("Où est O'Neil?\n\"%1\" \\");
    question()->setPlainText(text);
    click("saveButton");
    QTRY_VERIFY(!control<QDialog>("panel")->isVisible());
    QTRY_COMPARE(cells("Question").value(0), QString(text).replace(u'\n', u' '));
    const FeedbackJson asked = BLSyncFeedback().getJson(QStringLiteral("6")).value();
    QCOMPARE(asked.getPropertyValues(),
             (QStringList{"6", idOf(m_anna), text, asked.AskTime, "", "0", "1970-01-01 00:00:00"}));
    QVERIFY(asked.AskTime.startsWith(MiscTool::getToday()));

    show("root", false);
    open(0);
    QCOMPARE(question()->toPlainText(), text);
    answer()->setPlainText(QStringLiteral("Here."));
    click("saveButton");
    QTRY_VERIFY(!cells("Question").contains(QString(text).replace(u'\n', u' ')));
    const FeedbackJson answered = BLSyncFeedback().getJson(QStringLiteral("6")).value();
    QCOMPARE(answered.getPropertyValues(),
             (QStringList{"6", idOf(m_anna), text, asked.AskTime, "Here.", idOf(m_root),
                          answered.AnswerTime}));
    QVERIFY(answered.AnswerTime.startsWith(MiscTool::getToday()));
}

void FeedbackTest::answerSurvivesAnEmptyOne()
{
    show("root", true);
    open(1);
    answer()->clear();
    click("saveButton");
    QTRY_VERIFY(!control<QDialog>("panel")->isVisible());
    QCOMPARE(stored("answered").Answer, QString());
    QCOMPARE(stored("answered").AnsweredBy, idOf(m_root));
    QCOMPARE(stored("answered").AnswerTime, QStringLiteral("2016-11-1 8:0:0"));

    show("anna", false);
    open(1);
    question()->setPlainText(QStringLiteral("oldest"));
    click("saveButton");
    QTRY_COMPARE(cells("Question"), (QStringList{"newer", "oldest"}));
    QCOMPARE(stored("oldest").AnsweredBy, QStringLiteral("0"));
}

void FeedbackTest::deleting_data()
{
    QTest::addColumn<bool>("answered");
    QTest::addColumn<bool>("isDead");
    QTest::addColumn<QStringList>("alerts");
    QTest::addColumn<int>("left");

    QTest::newRow("answered") << true << false << QStringList{forbidden, referenced} << 5;
    QTest::newRow("confirmed") << false << false << QStringList{deleteQuestion, irreversible} << 4;
    QTest::newRow("service gone") << false << true
                                  << QStringList{deleteQuestion, irreversible, "Failed to delete.",
                                                 later}
                                  << 5;
}

void FeedbackTest::deleting()
{
    QFETCH(const bool, answered);
    QFETCH(const bool, isDead);
    QFETCH(const QStringList, alerts);
    QFETCH(const int, left);
    show("anna", answered);
    AlertRecorder recorder;
    click("deleteButton"); // nothing is selected
    table()->selectRow(0);
    if (!answered) { // asks, and takes no for an answer
        recorder.expect(deleteQuestion, irreversible, QMessageBox::Cancel);
        click("deleteButton");
        QTRY_VERIFY(recorder.isDone());
        QCOMPARE(recorder.seen().first().buttons,
                 (QList<QMessageBox::StandardButton>{QMessageBox::Ok, QMessageBox::Cancel}));
    }
    if (isDead)
        m_service->kill();
    for (int i = 0; i < alerts.size(); i += 2)
        recorder.expect(alerts.at(i), alerts.at(i + 1));
    click("deleteButton");
    QTRY_VERIFY(recorder.isDone());
    QTRY_VERIFY(!control<QWidget>("loadingView")->isVisible());
    if (isDead)
        m_service->start();
    QTRY_COMPARE(BLSyncFeedback().getCount(QStringLiteral("1=1")), left);
}

// The list and the sheet do not know of the answer yet, which is not lost.
void FeedbackTest::answeredMeanwhile()
{
    show("anna", false);
    table()->selectRow(0);
    const FeedbackJson newer = answerAsRoot("newer");
    AlertRecorder alerts;
    alerts.expect(deleteQuestion, irreversible);
    alerts.expect(forbidden, referenced);
    click("deleteButton");
    QTRY_COMPARE(cells("Question"), QStringList{"older"});
    QCOMPARE(stored("newer").getPropertyValues(), newer.getPropertyValues());
    open(0);
    FeedbackJson older = answerAsRoot("older");
    older.Question = QStringLiteral("oldest");
    question()->setPlainText(older.Question);
    click("saveButton");
    QTRY_COMPARE(cells("Question"), QStringList());
    QCOMPARE(stored("oldest").getPropertyValues(), older.getPropertyValues());
}

void FeedbackTest::deadServiceLosesNothing()
{
    show("anna", false);
    click("addButton");
    question()->setPlainText(QStringLiteral("A long text"));
    m_service->kill();
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("Failed to save."), later);
    click("saveButton");
    QTRY_VERIFY(alerts.isDone());
    QVERIFY(control<QDialog>("panel")->isVisible() && !question()->isReadOnly());
    m_service->start();
    click("saveButton");
    QTRY_VERIFY(!control<QDialog>("panel")->isVisible());
    QCOMPARE(stored("A long text").UserID, idOf(m_anna));
}

// One request for the questions and two for each asker, however many rows and repaints there are.
void FeedbackTest::askersAreLookedUpOnce()
{
    Session::setLoggedUserDict(m_root);
    RecordingServer server;
    QByteArrayList rows;
    for (int i = 0; i < 1000; ++i)
        rows.append("{\"UserID\":\"" + QByteArray::number(i % 10) + "\",\"CompanyID\":\"1\"}");
    server.setReply("{\"Result\":[" + rows.join(',') + "]}");
    m_page.reset(FeedbackViewController::getViewController());
    m_page->show();
    QTRY_COMPARE(table()->rowCount(), 1000);
    table()->scrollToBottom();
    m_page->grab();
    QCOMPARE(server.requests().size(), 21);
    click("refreshButton");
    QTRY_COMPARE(server.requests().size(), 42);
}

MAPLORN_WINDOW_TEST_MAIN(FeedbackTest)
#include "FeedbackTest.moc"
