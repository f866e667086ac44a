#pragma once
// Outer joins that a WHERE clause turns into inner ones. SQLite keeps the table order of a
// LEFT JOIN and, in version 3.40, does not see through a LIKE (a function to it), so a search
// on the joined table would walk every row of the first table; written as an inner join the
// engine may start from the table the search narrows.

#include "catalogue/JetSqlParse.h"

#include <functional>
#include <vector>

namespace vd::db {

// The qualifier of the table a column reference reads ("" when unknown or ambiguous).
using QualifierOf = std::function<QString(const QStringList& parts)>;

// True when `term` cannot be true for a row in which every column of the table `qualifier` is
// Null: a comparison, LIKE, BETWEEN, IN or IS NOT NULL on one of its columns directly, an AND
// with such a part, or an OR whose parts all are such.
bool rejectsNullRow(const JetNode& term, const QString& qualifier, const QualifierOf& qualifierOf);

// The LEFT joins on the left spine of `core`'s FROM clause (the way Jet nests its joins) whose
// right side is a table that the WHERE clause rejects when null-extended: by SQL's own rules
// they give the same rows as inner joins.
std::vector<const FromItem*> joinsMadeInner(const SelectCore& core, const QualifierOf& qualifierOf);

} // namespace vd::db
