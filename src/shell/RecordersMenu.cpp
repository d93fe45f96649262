#include "RecordersMenu.h"

#include "Alerts.h"
#include "Localized.h"
#include "MediaTypes.h"

#include <QMenu>

namespace {

void insertMedium(const DRDevice &device, const QString &type, const RecorderCommands &commands)
{
    if (const Result<> inserted = device.insertBlankMedium(type); inserted)
        commands.mediumInserted();
    else
        MiscTool::showAlert(localized("ViewController", "The medium cannot be inserted."),
                            inserted.error());
}

void addRecorder(QMenu *menu, const DRDevice &device, const RecorderCommands &commands)
{
    const bool free = !device.mediaIsBusy() && !device.mediaIsReserved();
    QObject::connect(menu->addAction(localized("ViewController", "&Information…")),
                     &QAction::triggered, menu,
                     [commands, device] { commands.information(device); });
    QAction *eject = menu->addAction(localized("ViewController", "&Eject"));
    eject->setEnabled(free && device.mediaIsPresent());
    QObject::connect(eject, &QAction::triggered, menu,
                     [commands, device] { commands.eject(device); });
    const QStringList types = device.insertableMedia();
    if (types.isEmpty())
        return;
    QMenu *insert = menu->addMenu(localized("ViewController", "Insert &Blank Medium"));
    insert->setEnabled(free);
    for (const QString &type : types)
        QObject::connect(insert->addAction(QString(MediaTypes::find(type)->name)),
                         &QAction::triggered, menu,
                         [commands, device, type] { insertMedium(device, type, commands); });
}

}

void fillRecordersMenu(QMenu *menu, const QList<DRDevice> &devices,
                       const RecorderCommands &commands)
{
    menu->clear();
    for (QMenu *old : menu->findChildren<QMenu *>(Qt::FindDirectChildrenOnly))
        old->deleteLater();
    for (const DRDevice &device : devices)
        addRecorder(menu->addMenu(device.displayName()), device, commands);
    if (devices.isEmpty())
        menu->addAction(localized("Localizable", "NoDevice"))->setEnabled(false);
}
