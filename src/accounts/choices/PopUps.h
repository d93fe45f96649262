// Pop-ups filled from the choice lists: what is shown is localised, what is stored is the item of
// the list at the selected index. Main thread.
#pragma once

#include <QStringList>

class QComboBox;

namespace PopUps {

// One item per title, in place of those that were there; the first is selected.
void fill(QComboBox *popUp, const QStringList &titles);

// Of the place in the list; BundleUtil::notFound leaves nothing selected.
void select(QComboBox *popUp, qsizetype index);

}
