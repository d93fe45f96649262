#include "DiscTour.h"

#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QTabWidget>

DiscTour::DiscTour(ViewController &window, const QString &shots, const QString &folder)
    : TourSteps(window, shots)
    , m_folder(folder)
{
}

void DiscTour::run()
{
    showRecorder();
    erase();
    makeImage(QStringLiteral("DMG"), QStringLiteral("dmg"));
    makeImage(QStringLiteral("ISO"), QStringLiteral("iso"));
}

void DiscTour::showRecorder() const
{
    say(QStringLiteral("Looking at the recorder"));
    auto *menu = m_window.findChild<QMenu *>(QStringLiteral("recordersMenu"));
    Q_EMIT menu->aboutToShow();
    for (QAction *action : menu->findChildren<QAction *>())
        if (action->text().remove(u'&') == QStringLiteral("Information…"))
            action->trigger();
    auto *tabs = find<QTabWidget>("tabView");
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        shoot(QStringLiteral("device-%1").arg(tabs->tabText(tab).toLower()));
    }
    require(tabs->count() == 3, QStringLiteral("no status of a disc"));
}

void DiscTour::erase() const
{
    openModule(QStringLiteral("Erase"));
    auto *type = find<QComboBox>("eraseTypePopUp");
    type->setCurrentIndex(type->findText(QStringLiteral("Complete")));
    say(QStringLiteral("Erasing the disc"));
    waitForAlert(QStringLiteral("The erase operation is completed."), [this] {
        click(find<QPushButton>("eraseButton"));
        waitFor([this] { return question() != nullptr; },
                QStringLiteral("no question before the erase"));
        shoot(QStringLiteral("erase-question"));
        answer(QMessageBox::Ok);
    });
    require(DRDevice::devices().value(0).mediaIsBlank(), QStringLiteral("the disc is not blank"));
    shoot(QStringLiteral("erase-done"));
}

void DiscTour::makeImage(const QString &module, const QString &extension) const
{
    openModule(module);
    say(QStringLiteral("Making a %1 of %2").arg(module, m_folder));
    const QString shot = extension + QStringLiteral("-chooser");
    click(find<QPushButton>("srcSelectButton"));
    choose(m_folder, shot);
    const QString output =
        QStringLiteral("%1/%2.%3").arg(m_shots, QFileInfo(m_folder).fileName(), extension);
    click(find<QPushButton>("outputSelectButton"));
    choose(output, shot);
    shoot(extension + QStringLiteral("-chosen"));
    clickForAlert("generateButton", QStringLiteral("Image is generated successfully."));
    require(QFileInfo(output).size() > 0, QStringLiteral("%1 is missing").arg(output));
    say(QStringLiteral("  %1: %2 bytes").arg(output).arg(QFileInfo(output).size()));
}
