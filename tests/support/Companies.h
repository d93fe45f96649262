// Rows that tests of the service's pages begin with. Main thread; calls the service.
#pragma once

#include <QVariantMap>

// A company of that name and region, and its administrator, whose sign-in name is the company's
// address; the user's row.
QVariantMap makeCompany(const QString &name, const QString &continent = {},
                        const QString &country = {});

[[nodiscard]] QString idOf(const QVariantMap &row);
