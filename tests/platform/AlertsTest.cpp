// What an alert shows when its text comes from somebody else: as it stands, and never so much that
// its button cannot be reached.
#include "Alerts.h"
#include "WindowTestMain.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTimer>

class AlertsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsOfOthers_data();
    void textsOfOthers();
};

void AlertsTest::textsOfOthers_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("short") << QStringLiteral("Please try again.");
    QTest::newRow("looks like HTML") << QStringLiteral("<b>bold</b> <a href='http://x'>x</a>");
    QTest::newRow("300 lines") << QStringLiteral("A line of some length.\n").repeated(300);
    QTest::newRow("one line of 64 Ki") << QStringLiteral("word ").repeated(13107);
    QTest::newRow("one word") << QString(5000, u'x');
}

void AlertsTest::textsOfOthers()
{
    QFETCH(const QString, text);
    bool seen = false;
    QTimer::singleShot(100, this, [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(box);
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        QVERIFY(box->height() < screen.height() && box->width() < screen.width());
        QVERIFY(box->rect().contains(
            box->button(QMessageBox::Ok)
                ->geometry()
                .translated(box->button(QMessageBox::Ok)->parentWidget()->pos())));
        auto *label = box->findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel"));
        QCOMPARE(label->textFormat(), Qt::PlainText);
        QCOMPARE(label->text(), text);
        seen = true;
        box->accept();
    });
    MiscTool::showAlert(QStringLiteral("News"), text);
    QVERIFY(seen);
}

MAPLORN_WINDOW_TEST_MAIN(AlertsTest)
#include "AlertsTest.moc"
