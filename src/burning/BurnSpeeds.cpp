#include "BurnSpeeds.h"

#include "DRDevice.h"
#include "DRKeys.h"
#include "FormatTools.h"
#include "Localized.h"

#include <QComboBox>
#include <QLabel>

namespace {

QString automatic()
{
    return localized("Localizable", "AUTO");
}

void addOrMove(QComboBox *popUp, const QString &title)
{
    const int known = popUp->findText(title, Qt::MatchFixedString | Qt::MatchCaseSensitive);
    if (known >= 0)
        popUp->removeItem(known);
    popUp->addItem(title);
}

}

void BurnSpeeds::refresh(QComboBox *speedPopUp, QLabel *speedLabel, const DRDevice &device)
{
    addOrMove(speedPopUp, automatic());
    speedLabel->clear();
    const QVariantMap medium = device.status().value(DRDeviceMediaInfoKey).toMap();
    const QVariantList speeds = medium.value(DRDeviceBurnSpeedsKey).toList();
    for (const QVariant &speed : speeds)
        addOrMove(speedPopUp, MiscTool::shortestDecimal(speed.toDouble()));
    speedPopUp->setCurrentText(automatic());
}

void BurnSpeeds::showUnit(const QComboBox *speedPopUp, QLabel *speedLabel)
{
    speedLabel->setText(speedPopUp->currentText() == automatic() ? QString()
                                                                 : localized("Localizable", "K/S"));
}

float BurnSpeeds::chosen(const QComboBox *speedPopUp)
{
    const QString title = speedPopUp->currentText();
    return title == automatic() ? 0.0F : title.toFloat();
}
