#include "Alerts.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QMessageBox>
#include <QPointer>
#include <QProxyStyle>

namespace {

class ButtonOrderStyle : public QProxyStyle
{
public:
    using QProxyStyle::QProxyStyle;

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override
    {
        if (hint == SH_DialogButtonLayout)
            return QDialogButtonBox::WinLayout;
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
};

void fill(QMessageBox &box, const QString &message, const QString &informativeText,
          QMessageBox::StandardButtons buttons)
{
    box.setWindowTitle(QGuiApplication::applicationDisplayName());
    box.setTextFormat(Qt::PlainText);
    box.setText(message);
    box.setInformativeText(informativeText);
    box.setStandardButtons(buttons);
    box.setDefaultButton(QMessageBox::Ok);
    // Short texts would make a box too narrow for its second line.
    box.setStyleSheet(QStringLiteral("#qt_msgbox_informativelabel { min-width: 20em }"));
}

constexpr auto okAndCancel = QMessageBox::Ok | QMessageBox::Cancel;

}

void MiscTool::showAlert(const QString &message, const QString &informativeText)
{
    QMessageBox box(QApplication::activeWindow());
    box.setIcon(QMessageBox::Information);
    fill(box, message, informativeText, QMessageBox::Ok);
    box.exec();
}

void Alerts::confirmOnWindow(QWidget *widget, const QString &message,
                             const QString &informativeText, const std::function<void()> &onOk)
{
    auto *box = new QMessageBox(widget->window());
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setIcon(QMessageBox::Question);
    fill(*box, message, informativeText, okAndCancel);
    QObject::connect(box, &QDialog::finished, widget, [box, onOk] {
        if (box->standardButton(box->clickedButton()) == QMessageBox::Ok)
            onOk();
    });
    box->open();
}

bool Alerts::confirm(QWidget *widget, const QString &message, const QString &informativeText)
{
    QMessageBox box(widget->window());
    box.setIcon(QMessageBox::Question);
    fill(box, message, informativeText, okAndCancel);
    return box.exec() == QMessageBox::Ok;
}

void Alerts::fixButtonOrder()
{
    QApplication::setStyle(new ButtonOrderStyle);
}
