#include "TextTools.h"

#include <QByteArray>
#include <QStringDecoder>

#include <algorithm>

namespace {

// RFC 3986, section 3.4, less the unreserved characters and "%".
constexpr char queryCharacters[] = "!$&'()*+,;=:@/?";

QString inList(const QString &text, bool toEnd)
{
    return toEnd ? text : text + u',';
}

bool isHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

bool isPercentEncoded(const QByteArray &text)
{
    for (qsizetype at = text.indexOf('%'); at >= 0; at = text.indexOf('%', at + 1)) {
        if (at + 2 >= text.size() || !isHexDigit(text.at(at + 1)) || !isHexDigit(text.at(at + 2)))
            return false;
    }
    return true;
}

}

QString MiscTool::UInteger2SQLString(quint64 number, bool toEnd)
{
    return inList(QString::number(number), toEnd);
}

QString MiscTool::NSString2SQLString(const QString &text, bool toEnd)
{
    return inList(u'\'' + text + u'\'', toEnd);
}

QString MiscTool::getStringFromArray(const QStringList &texts)
{
    return texts.join(u',');
}

QString MiscTool::getEscapedString(const QString &text)
{
    return QString(text)
        .replace(u'\'', QLatin1StringView("&#39;"))
        .replace(u'"', QLatin1StringView("&#34;"));
}

QString MiscTool::getDescapedString(const QString &text)
{
    return QString(text)
        .replace(QLatin1StringView("&#39;"), QLatin1StringView("'"))
        .replace(QLatin1StringView("&#34;"), QLatin1StringView("\""));
}

QString MiscTool::encode2UTF8(const QString &text)
{
    return QString::fromLatin1(getEscapedString(text).toUtf8().toPercentEncoding(queryCharacters));
}

QString MiscTool::decodeFromUTF8(const QString &text)
{
    const QByteArray encoded = getDescapedString(text).toUtf8();
    if (!isPercentEncoded(encoded))
        return {};
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless
                                                     | QStringDecoder::Flag::ConvertInitialBom);
    const QString decoded = decoder(QByteArray::fromPercentEncoding(encoded));
    if (decoder.hasError())
        return {};
    return decoded.isNull() ? QStringLiteral("") : decoded;
}

bool MiscTool::isDateTime(const QString &text)
{
    return text.contains(u'-') && text.contains(u':');
}

QString MiscTool::trim(const QString &text)
{
    const auto isKept = [](QChar c) { return c != u' ' && c != u'\t'; };
    const auto first = std::find_if(text.begin(), text.end(), isKept);
    const auto last = std::find_if(text.rbegin(), text.rend(), isKept).base();
    return first < last ? QString(first, last - first) : QStringLiteral("");
}

QString MiscTool::getNSString(const char *text)
{
    return text ? QString::fromUtf8(text) : QStringLiteral("");
}
