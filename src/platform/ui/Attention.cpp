#include "Attention.h"

#include <QApplication>
#include <QScreen>
#include <QTimer>
#include <QWidget>

void MiscTool::playSystemSound()
{
    QApplication::beep();
}

void MiscTool::flashScreen()
{
    constexpr int duration = 100; // ms
    for (const QScreen *screen : QGuiApplication::screens()) {
        auto *overlay = new QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint
                                                 | Qt::WindowTransparentForInput);
        overlay->setAttribute(Qt::WA_ShowWithoutActivating);
        overlay->setStyleSheet(QStringLiteral("background: white"));
        overlay->setGeometry(screen->geometry());
        overlay->show();
        QTimer::singleShot(duration, overlay, &QObject::deleteLater);
    }
}
