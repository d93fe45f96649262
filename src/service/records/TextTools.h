// Pieces of SQL text, and the encoding of values on their way to and from the service. Any thread.
#pragma once

#include <QString>
#include <QStringList>

namespace MiscTool {

// The number, and a comma behind it unless it is the last of its list.
[[nodiscard]] QString UInteger2SQLString(quint64 number, bool toEnd);
// The text in single quotes, as it stands (a quote in it is not doubled), and a comma likewise.
[[nodiscard]] QString NSString2SQLString(const QString &text, bool toEnd);
// The texts joined by commas.
[[nodiscard]] QString getStringFromArray(const QStringList &texts);

// ' as &#39; and " as &#34;, and back.
[[nodiscard]] QString getEscapedString(const QString &text);
[[nodiscard]] QString getDescapedString(const QString &text);

// Escaped, then percent-encoded as UTF-8 but for the characters that RFC 3986 allows in a query.
[[nodiscard]] QString encode2UTF8(const QString &text);
// Descaped, then percent-decoded; null where a sequence is no %hh or the bytes are no UTF-8.
[[nodiscard]] QString decodeFromUTF8(const QString &text);

// Whether the text holds both "-" and ":": such a value travels as it stands.
[[nodiscard]] bool isDateTime(const QString &text);

// Without leading and trailing blanks and tabs; line breaks stay.
[[nodiscard]] QString trim(const QString &text);
// The text of a zero-terminated UTF-8 array; "" for a null pointer.
[[nodiscard]] QString getNSString(const char *text);

}
