#include "ComingPage.h"

#include "Localized.h"

#include <QLabel>
#include <QVBoxLayout>

ComingPage::ComingPage(const QString &name)
{
    auto *line = new QLabel(
        localized("ViewController", "“%1” comes with a later version of Maplorn Disc.").arg(name));
    line->setAlignment(Qt::AlignCenter);
    line->setWordWrap(true);
    line->setForegroundRole(QPalette::PlaceholderText);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(line);
}
