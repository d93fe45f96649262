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
    const QString root = QStringLiteral("root");
    const QString rootPassword = QStringLiteral("kvex");
    run(shots, user, password, &MessagesTour::ask);
    run(shots, root, rootPassword, &MessagesTour::answerAndPublish);
    holdAlerts(true);
    run(shots, user, password, &MessagesTour::seeThem);
}

void MessagesTour::run(const QString &shots, const QString &user, const QString &password,
                       Steps steps)
{
    runSession<MessagesTour>(shots, [&](MessagesTour &tour) {
        tour.pressSignIn(user, password);
        (tour.*steps)();
        tour.signOut();
    });
}

void MessagesTour::ask()
{
    waitFor([this] { return !isShown("loginButton"); }, QStringLiteral("nobody is signed in"));
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
    waitFor([this] { return !isShown("loginButton"); }, QStringLiteral("nobody is signed in"));
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
    waitFor([] { return alert() != nullptr; }, QStringLiteral("no notification pops up"));
    require(alert()->text() == noticeTitle && alert()->informativeText() == noticeBody,
            QStringLiteral("another alert: %1").arg(alert()->text()));
    shoot(QStringLiteral("notification-pop-up"));
    holdAlerts(false);
    closeAlert();
    waitFor([this] { return !isShown("loginButton"); }, QStringLiteral("nobody is signed in"));
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
