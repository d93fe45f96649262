#include "WhereClause.h"

#include "TextTools.h"

#include <optional>

namespace {

constexpr int deepest = 100; // parentheses

struct Token
{
    enum class Kind { Word, Number, Text, Sign, End, Bad };
    Kind kind = Kind::End;
    QString text;
    qsizetype position = 0;
};

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_';
}

class Scanner
{
public:
    explicit Scanner(const QString &clause)
        : m_clause(clause)
    {
    }

    Token next()
    {
        while (m_at < m_clause.size() && m_clause.at(m_at).isSpace())
            ++m_at;
        const qsizetype begin = m_at;
        if (begin == m_clause.size())
            return {Token::Kind::End, {}, begin};
        const QChar first = m_clause.at(begin);
        if (first == u'\'')
            return text(begin);
        if (isLetter(first)) {
            skip([](QChar c) { return isLetter(c) || isDigit(c); });
            return {Token::Kind::Word, m_clause.mid(begin, m_at - begin), begin};
        }
        if (isDigit(first) || first == u'-')
            return number(begin);
        m_at += isPair() ? 2 : 1;
        return {Token::Kind::Sign, m_clause.mid(begin, m_at - begin), begin};
    }

private:
    template <typename Predicate>
    void skip(Predicate isPart)
    {
        while (m_at < m_clause.size() && isPart(m_clause.at(m_at)))
            ++m_at;
    }

    Token text(qsizetype begin)
    {
        const qsizetype end = m_clause.indexOf(u'\'', begin + 1);
        if (end < 0)
            return {Token::Kind::Bad, {}, begin};
        m_at = end + 1;
        return {Token::Kind::Text,
                MiscTool::getDescapedString(m_clause.mid(begin + 1, end - begin - 1)), begin};
    }

    Token number(qsizetype begin)
    {
        ++m_at;
        skip([](QChar c) { return isDigit(c) || c == u'.'; });
        const QString digits = m_clause.mid(begin, m_at - begin);
        bool isNumber = false;
        (void)digits.toDouble(&isNumber);
        return {isNumber ? Token::Kind::Number : Token::Kind::Bad, digits, begin};
    }

    [[nodiscard]] bool isPair() const
    {
        const QStringView pair = QStringView(m_clause).mid(m_at, 2);
        return pair == u"!=" || pair == u">=" || pair == u"<=";
    }

    QString m_clause;
    qsizetype m_at = 0;
};

class Parser
{
public:
    Parser(const QString &clause, const Table &table)
        : m_scanner(clause)
        , m_table(table)
        , m_token(m_scanner.next())
    {
    }

    Result<Condition> parse()
    {
        const bool understood = anyOf(0) && order() && m_token.kind == Token::Kind::End;
        if (!understood)
            return Failure{QStringLiteral("not understood at position %1").arg(m_token.position)};
        return m_condition;
    }

private:
    void advance() { m_token = m_scanner.next(); }

    bool takeWord(QLatin1StringView word)
    {
        const bool isIt = m_token.kind == Token::Kind::Word
                          && m_token.text.compare(word, Qt::CaseInsensitive) == 0;
        if (isIt)
            advance();
        return isIt;
    }

    bool takeSign(QLatin1StringView sign)
    {
        const bool isIt = m_token.kind == Token::Kind::Sign && m_token.text == sign;
        if (isIt)
            advance();
        return isIt;
    }

    bool anyOf(int depth)
    {
        if (!allOf(depth))
            return false;
        while (takeWord(QLatin1StringView("OR"))) {
            m_condition.sql += QStringLiteral(" OR ");
            if (!allOf(depth))
                return false;
        }
        return true;
    }

    bool allOf(int depth)
    {
        if (!one(depth))
            return false;
        while (takeWord(QLatin1StringView("AND"))) {
            m_condition.sql += QStringLiteral(" AND ");
            if (!one(depth))
                return false;
        }
        return true;
    }

    bool one(int depth)
    {
        if (takeSign(QLatin1StringView("("))) {
            m_condition.sql += u'(';
            if (depth == deepest || !anyOf(depth + 1) || !takeSign(QLatin1StringView(")")))
                return false;
            m_condition.sql += u')';
            return true;
        }
        return m_token.kind == Token::Kind::Number ? constant() : comparison();
    }

    bool constant()
    {
        const QString left = m_token.text;
        advance();
        if (!takeSign(QLatin1StringView("=")) || m_token.kind != Token::Kind::Number)
            return false;
        m_condition.sql += left.toDouble() == m_token.text.toDouble() ? QStringLiteral("1=1")
                                                                      : QStringLiteral("1=0");
        advance();
        return true;
    }

    std::optional<QString> column()
    {
        if (m_token.kind != Token::Kind::Word)
            return std::nullopt;
        const QString name = m_table.column(m_token.text);
        if (name.isNull())
            return std::nullopt;
        advance();
        return name;
    }

    bool comparison()
    {
        const std::optional<QString> name = column();
        if (!name)
            return false;
        if (takeWord(QLatin1StringView("LIKE"))) {
            if (m_token.kind != Token::Kind::Text)
                return false;
            add(*name + QStringLiteral(" LIKE ?"), m_token.text.replace(u'~', u'%'));
            return true;
        }
        static const QStringList operators{QStringLiteral("="),  QStringLiteral("!="),
                                           QStringLiteral(">"),  QStringLiteral("<"),
                                           QStringLiteral(">="), QStringLiteral("<=")};
        if (m_token.kind != Token::Kind::Sign || !operators.contains(m_token.text))
            return false;
        const QString sign = m_token.text;
        advance();
        if (m_token.kind == Token::Kind::Text)
            compareText(*name, sign);
        else if (m_token.kind == Token::Kind::Number)
            compareNumber(*name, sign);
        else
            return false;
        return true;
    }

    void compareText(const QString &name, const QString &sign)
    {
        const bool isTime = Table::isTime(name);
        QString compared = isTime ? Table::paddedColumn(name) : name;
        if (m_token.text.contains(u'~'))
            compared = QStringLiteral("REPLACE(%1,'%','~')").arg(compared);
        add(compared + sign + u'?', isTime ? Table::padded(m_token.text) : m_token.text);
    }

    void compareNumber(const QString &name, const QString &sign)
    {
        if (sign == u'=' || sign == QLatin1StringView("!="))
            add(name + sign + u'?', m_token.text);
        else
            add(QStringLiteral("CAST(%1 AS NUMERIC)%2?").arg(name, sign), m_token.text.toDouble());
    }

    // A condition on the literal that stands at the scanner's place.
    void add(const QString &sql, const QVariant &value)
    {
        m_condition.sql += sql;
        m_condition.values.append(value);
        advance();
    }

    bool order()
    {
        m_condition.order = QStringLiteral(" ORDER BY ID");
        if (!takeWord(QLatin1StringView("ORDER")))
            return true;
        if (!takeWord(QLatin1StringView("BY")))
            return false;
        const std::optional<QString> name = column();
        if (!name)
            return false;
        const bool isDescending = takeWord(QLatin1StringView("DESC"));
        if (!isDescending)
            takeWord(QLatin1StringView("ASC"));
        const QString direction = isDescending ? QStringLiteral(" DESC") : QString();
        m_condition.order = QStringLiteral(" ORDER BY ")
                            + (Table::isTime(*name) ? Table::paddedColumn(*name) : *name)
                            + direction + QStringLiteral(", ID") + direction;
        return true;
    }

    Scanner m_scanner;
    const Table &m_table;
    Token m_token;
    Condition m_condition;
};

}

Result<Condition> parseWhereClause(const QString &clause, const Table &table)
{
    return Parser(clause, table).parse();
}
