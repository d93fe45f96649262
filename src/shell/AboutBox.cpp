#include "AboutBox.h"

#include "Localized.h"

#include <QMessageBox>

void showAboutBox(QWidget *window)
{
    auto *box = new QMessageBox(window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setIconPixmap(window->windowIcon().pixmap(64));
    box->setWindowTitle(localized("ViewController", "About Maplorn Disc"));
    box->setText(QStringLiteral("Maplorn Disc ") + QStringLiteral(MAPLORN_VERSION));
    box->setInformativeText(
        localized("ViewController", "Burns and erases discs and makes disc images.\n"
                                    "Free software under the GNU General Public License, version 3 "
                                    "or later."));
    box->open();
}
