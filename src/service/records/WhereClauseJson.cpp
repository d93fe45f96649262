#include "WhereClauseJson.h"

constexpr std::array<JsonField<WhereClauseJson>, 3> WhereClauseJson::fields = {{
    {"WhereClause", &WhereClauseJson::WhereClause},
    {"Index", &WhereClauseJson::Index},
    {"Step", &WhereClauseJson::Step},
}};

QString WhereClauseJson::toJsonStr()
{
    WhereClause.replace(u'%', u'~');
    if (Index.isNull())
        Index = QStringLiteral("0");
    if (Step.isNull())
        Step = QStringLiteral("");
    return QStringLiteral("{\"WhereClause\":\"") + WhereClause + QStringLiteral("\",\"Index\":\"")
           + Index + QStringLiteral("\",\"Step\":\"") + Step + QStringLiteral("\"}");
}
