#include "Alerts.h"

#include "Localized.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QProxyStyle>
#include <QPushButton>
#include <QScrollArea>

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

// A text that would push the buttons off the screen is scrolled.
void limitHeight(QMessageBox &box, QLabel &label)
{
    constexpr int maxLines = 16;
    constexpr int width = 34; // ems
    const QFontMetrics metrics(label.font());
    const int columns = metrics.horizontalAdvance(u'M') * width;
    const QRect needed =
        metrics.boundingRect(QRect(0, 0, columns, QWIDGETSIZE_MAX), Qt::TextWordWrap, label.text());
    auto *grid = qobject_cast<QGridLayout *>(box.layout());
    if (needed.height() <= maxLines * metrics.lineSpacing() || !grid)
        return;
    auto *scroll = new QScrollArea(&box);
    delete grid->replaceWidget(&label, scroll);
    label.setMargin(metrics.averageCharWidth());
    label.setAlignment(Qt::AlignLeft | Qt::AlignTop);
    scroll->setWidget(&label);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setMinimumSize(columns, maxLines * metrics.lineSpacing());
}

void fill(QMessageBox &box, const QString &message, const QString &informativeText,
          QMessageBox::StandardButtons buttons, const char *table = "Localizable")
{
    box.setWindowTitle(QGuiApplication::applicationDisplayName());
    box.setTextFormat(Qt::PlainText);
    box.setText(message);
    box.setInformativeText(informativeText);
    box.setStandardButtons(buttons);
    box.setDefaultButton(QMessageBox::Ok);
    // Short texts would make a box too narrow for its second line.
    box.setStyleSheet(QStringLiteral("#qt_msgbox_informativelabel { min-width: 20em }"));
    // The box's own text format does not reach this label, and what it shows may come from others.
    if (auto *label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel"))) {
        label->setTextFormat(Qt::PlainText);
        limitHeight(box, *label);
    }
    if (QAbstractButton *ok = box.button(QMessageBox::Ok))
        ok->setText(localized(table, "OK"));
    if (QAbstractButton *cancel = box.button(QMessageBox::Cancel))
        cancel->setText(localized(table, "Cancel"));
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
                             const QString &informativeText, const std::function<void()> &onOk,
                             const char *table)
{
    auto *box = new QMessageBox(widget->window());
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setIcon(QMessageBox::Question);
    fill(*box, message, informativeText, okAndCancel, table);
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
