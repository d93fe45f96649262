// The operations on a table, from a request's body to the answer's. Any thread; each uses the
// database connection of its own.
#pragma once

#include "Table.h"

#include <QByteArray>

namespace TableService {

// ASCII, without a line break: "true" or "false", a number for GET_COUNT, {"Result":[…]} for a
// SELECT that met rows. "false" for anything that is not understood or fails.
[[nodiscard]] QByteArray answer(const Table &table, const QByteArray &operation,
                                const QByteArray &body);

}
