#include "MessagesTour.h"

#include "RecordTable.h"

#include <QLineEdit>
#include <QPlainTextEdit>

namespace {

const QString questionText = QStringLiteral("How do I write a disc that others can add to?");
const QString answerText = QStringLiteral("Tick “Appendable” on the Data page before you burn.");
const QString noticeTitle = QStringLiteral("A new version");
const QString noticeBody = QStringLiteral("It burns audio discs with titles in eight languages.\n"
                                          "Please tell us how you like it.");
const QString continent = QStringLiteral("Europe");

}

void MessagesTour::runSessions(const QString &shots, const QString &user, const QString &password)
{
    runSession<MessagesTour>(shots, [&](MessagesTour &tour) {
        tour.signIn(user, password);
        tour.ask();
        tour.signOut();
    });
    runSession<MessagesTour>(shots, [](MessagesTour &tour) {
        const qsizetype alerts = alertsSoFar().size();
        tour.signIn(QStringLiteral("root"), QStringLiteral("kvex"));
        require(alertsSoFar().size() == alerts, QStringLiteral("root gets a notification"));
        tour.answerAndPublish();
        tour.signOut();
    });
    runSession<MessagesTour>(shots, [&](MessagesTour &tour) {
        atNextAlert([&tour] { tour.shoot(QStringLiteral("notification-pop-up")); });
        tour.signIn(user, password);
        require(alertsSoFar().last() == noticeTitle, QStringLiteral("no notification pops up"));
        tour.seeThem();
        tour.signOut();
    });
}

void MessagesTour::signIn(const QString &user, const QString &password) const
{
    pressSignIn(user, password);
    waitFor([this] { return !isShown("loginButton"); }, QStringLiteral("the sheet stays"));
}

void MessagesTour::ask()
{
    say(QStringLiteral("Asking a question"));
    openModule(QStringLiteral("Support"));
    click(find<QPushButton>("addButton"));
    find<QPlainTextEdit>("questionTextView")->setPlainText(questionText);
    shoot(QStringLiteral("support-ask"));
    save();
    waitForRows("table", 1);
    shoot(QStringLiteral("support-asked"));
}

void MessagesTour::answerAndPublish()
{
    answerQuestion();
    publish();
}

void MessagesTour::answerQuestion() const
{
    say(QStringLiteral("Answering it"));
    openModule(QStringLiteral("Support"));
    waitForRows("table", 1);
    shootNarrow(QStringLiteral("support-narrow"));
    openRow("table");
    require(find<QPlainTextEdit>("questionTextView")->toPlainText() == questionText,
            QStringLiteral("another question"));
    find<QPlainTextEdit>("answerTextView")->setPlainText(answerText);
    shoot(QStringLiteral("support-answer"));
    shootNarrow(QStringLiteral("support-answer-narrow"));
    save();
    waitForRows("table", 0);
}

void MessagesTour::publish() const
{
    say(QStringLiteral("Publishing a notification to %1").arg(continent));
    openModule(QStringLiteral("Notification"));
    click(find<QPushButton>("addButton"));
    find<QLineEdit>("titleField")->setText(noticeTitle);
    find<QPlainTextEdit>("bodyField")->setPlainText(noticeBody);
    pick("businessContinentPopup", continent);
    shoot(QStringLiteral("notification-insert"));
    shootNarrow(QStringLiteral("notification-insert-narrow"));
    save();
    waitForRows("tableView", 1);
    shoot(QStringLiteral("notification-published"));
    shootNarrow(QStringLiteral("notification-narrow"));
}

void MessagesTour::seeThem()
{
    openModule(QStringLiteral("Notification"));
    waitForRows("tableView", 1);
    openRow("tableView");
    shoot(QStringLiteral("notification-read"));
    click(find<QPushButton>("cancelButton"));

    say(QStringLiteral("Reading the answer"));
    openModule(QStringLiteral("Support"));
    click(find<QPushButton>("answeredSegment"));
    waitForRows("table", 1);
    openRow("table");
    require(find<QPlainTextEdit>("answerTextView")->toPlainText() == answerText,
            QStringLiteral("another answer"));
    shoot(QStringLiteral("support-answered"));
    click(find<QPushButton>("cancelButton"));
}

void MessagesTour::waitForRows(const char *table, int rows) const
{
    waitFor([&] { return find<RecordTable>(table)->rowCount() == rows; },
            QStringLiteral("the list does not show %1 rows").arg(rows));
}

void MessagesTour::openRow(const char *table) const
{
    auto *list = find<RecordTable>(table);
    const QPoint cell = list->visualItemRect(list->item(0, 0)).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, cell);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, cell);
    waitFor([this] { return isShown("panel"); }, QStringLiteral("the row does not open"));
}

void MessagesTour::save() const
{
    click(find<QPushButton>("saveButton"));
    waitFor([this] { return !isShown("panel"); }, QStringLiteral("the sheet stays"));
}
