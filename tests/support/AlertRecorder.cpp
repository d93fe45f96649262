#include "AlertRecorder.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <algorithm>

AlertRecorder::AlertRecorder()
{
    qApp->installEventFilter(this);
}

AlertRecorder::~AlertRecorder()
{
    for (const Expected &missing : std::as_const(m_expected))
        QTest::qFail(qPrintable(QStringLiteral("missing alert: ") + missing.message), __FILE__,
                     __LINE__);
}

void AlertRecorder::expect(const QString &message, const QString &informativeText,
                           QMessageBox::StandardButton press)
{
    m_expected.append({message, informativeText, press});
}

bool AlertRecorder::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Show) {
        if (auto *box = qobject_cast<QMessageBox *>(object)) {
            ++m_open;
            QTimer::singleShot(0, box, [this, box] { answer(box); });
        }
    }
    return QObject::eventFilter(object, event);
}

void AlertRecorder::answer(QMessageBox *box)
{
    QList<QAbstractButton *> buttons = box->buttons();
    std::ranges::sort(buttons, {}, [](const QAbstractButton *button) { return button->x(); });
    Alert alert{box->text(), box->informativeText(), {}};
    for (QAbstractButton *button : std::as_const(buttons))
        alert.buttons.append(box->standardButton(button));
    m_seen.append(alert);
    --m_open;

    const bool expected = !m_expected.isEmpty() && m_expected.first().message == alert.message
                          && m_expected.first().informativeText == alert.informativeText;
    if (!expected) {
        QTest::qFail(qPrintable(QStringLiteral("unexpected alert: %1 / %2")
                                    .arg(alert.message, alert.informativeText)),
                     __FILE__, __LINE__);
        box->reject();
        return;
    }
    QAbstractButton *button = box->button(m_expected.takeFirst().press);
    if (button)
        button->click();
    else
        box->reject();
}
