#include "PopUps.h"

#include "Localized.h"

#include <QComboBox>

void PopUps::fill(QComboBox *popUp, const QStringList &titles)
{
    popUp->clear();
    for (const QString &title : titles)
        popUp->addItem(localized(title));
}

void PopUps::select(QComboBox *popUp, qsizetype index)
{
    popUp->setCurrentIndex(static_cast<int>(index));
}
