// The query of DELETE, SELECT and GET_COUNT. Any thread.
#pragma once

#include "AbstractJson.h"

class WhereClauseJson : public JsonRecord<WhereClauseJson>
{
public:
    QString WhereClause; // an SQL condition, ORDER BY may follow
    QString Index;       // number of the first row
    QString Step;        // number of rows; empty for all

    static const std::array<JsonField<WhereClauseJson>, 3> fields;

    // The three members as they stand, neither escaped nor encoded. Changes the record: "%" in
    // the clause becomes "~", a null index "0" and a null step "".
    [[nodiscard]] QString toJsonStr() override;
};
