// Watches every message box of the application: records it, presses the scripted button, and
// fails the test on one that was not expected or did not come. Main thread.
#pragma once

#include <QList>
#include <QMessageBox>

class AlertRecorder : public QObject
{
    Q_OBJECT

public:
    struct Alert
    {
        QString message;
        QString informativeText;
        QList<QMessageBox::StandardButton> buttons; // in the order shown
    };

    AlertRecorder();
    // Fails the test when an expected alert did not come.
    ~AlertRecorder() override;

    // The next alert has these texts; that button is pressed.
    void expect(const QString &message, const QString &informativeText,
                QMessageBox::StandardButton press = QMessageBox::Ok);

    [[nodiscard]] const QList<Alert> &seen() const { return m_seen; }

    // Every expected alert has come and gone.
    [[nodiscard]] bool isDone() const { return m_expected.isEmpty() && m_open == 0; }

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    struct Expected
    {
        QString message;
        QString informativeText;
        QMessageBox::StandardButton press;
    };

    void answer(QMessageBox *box);

    QList<Expected> m_expected;
    QList<Alert> m_seen;
    int m_open = 0;
};
