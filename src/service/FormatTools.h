// Numbers as texts for people. Any thread.
#pragma once

#include <QString>

namespace MiscTool {

// A byte count in decimal units: "999 Bytes", "1.0 KB", "1.5 MB", "2.50 GB".
[[nodiscard]] QString convertBytes(qint64 bytes);

// The shortest decimal text that reads back as the same number: "706", "1411.2".
[[nodiscard]] QString shortestDecimal(double number);

}
