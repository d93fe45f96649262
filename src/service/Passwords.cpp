#include "Passwords.h"

#include <QRandomGenerator>

#include <algorithm>
#include <array>

namespace {

constexpr qsizetype countedLength = 6;
constexpr qsizetype codeLength = 6;
constexpr qsizetype passwordLength = 8;

QString firstOfShuffled(QStringList elements, qsizetype count)
{
    return MiscTool::shuffle(elements).sliced(0, count).join(QString());
}

}

uint MiscTool::passwordStrength(const QString &password)
{
    static const std::array classes{
        QStringLiteral("abcdefghijklmnopqrstuvwxyz"), QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ"),
        QStringLiteral("0123456789"), QStringLiteral(")(*&^%$#@!~[]{}-_=+<>?")};
    auto strength = std::min(password.size(), countedLength);
    for (const QString &characters : classes)
        strength += std::ranges::any_of(password, [&](QChar c) { return characters.contains(c); });
    return static_cast<uint>(strength);
}

QStringList &MiscTool::shuffle(QStringList &list)
{
    for (qsizetype i = 0; i < list.size(); ++i)
        list.swapItemsAt(i, i + QRandomGenerator::system()->bounded(int(list.size() - i)));
    return list;
}

QString MiscTool::getSimplePassword()
{
    return firstOfShuffled(QStringLiteral("0 1 2 3 4 5 6 7 8 9").split(u' '), codeLength);
}

QString MiscTool::getVerifyCode()
{
    return getSimplePassword();
}

QString MiscTool::getAdvancedRandomPassword()
{
    QStringList elements{QStringLiteral("0")};
    for (const char16_t first : {u'z', u'Z'})
        for (int i = 0; i < 26; ++i)
            elements.append(QChar(first - i));
    elements.replaceInStrings(QStringLiteral("n"), QStringLiteral(" n"));
    for (const QChar digit : QStringView(u"123456789"))
        elements.append(digit);
    return firstOfShuffled(elements, passwordLength);
}
