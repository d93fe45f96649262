// The per-user preference store. Every write is on the disk when the call returns, in a file that
// only its owner can read, since it holds the session. Main thread.
#pragma once

#include <QVariant>

namespace Preferences {

// Null where the key is missing. After a restart values may come back as texts: convert them.
[[nodiscard]] QVariant value(const QString &key);

void setValue(const QString &key, const QVariant &value);
void remove(const QString &key);

}
