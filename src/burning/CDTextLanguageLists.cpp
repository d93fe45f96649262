#include "CDTextLanguageLists.h"

#include "CDTextChoices.h"
#include "Localized.h"

#include <QComboBox>

QString CDTextLanguageLists::defaultLanguage()
{
    return localized("CDText", "Default");
}

QStringList CDTextLanguageLists::titles(const QComboBox *popUp)
{
    QStringList titles;
    for (int item = 0; item < popUp->count(); ++item)
        titles.append(popUp->itemText(item));
    return titles;
}

void CDTextLanguageLists::rebuild(QComboBox *selectedLanguagePopUp, QStringList titles,
                                  int defaultTag)
{
    titles.removeAll(defaultLanguage());
    titles.sort();
    selectedLanguagePopUp->clear();
    selectedLanguagePopUp->addItem(defaultLanguage(), defaultTag);
    for (const QString &title : std::as_const(titles))
        selectedLanguagePopUp->addItem(title, CDTextChoices::noEncoding);
}

void CDTextLanguageLists::putBack(QComboBox *availableLanguagePopUp, const QString &name)
{
    const QString chosen = availableLanguagePopUp->currentText();
    QStringList names = titles(availableLanguagePopUp) << name;
    names.removeDuplicates();
    names.sort();
    availableLanguagePopUp->clear();
    availableLanguagePopUp->addItems(names);
    availableLanguagePopUp->setCurrentText(chosen);
}
