#pragma once
// Evaluates a Jet expression over one row's values: the criteria of Find.

#include "catalogue/JetSqlParse.h"

#include <QVariant>
#include <functional>
#include <optional>

namespace vd::db {

// Resolves a field reference to the row's stored value; throws DbError for an unknown name.
using FieldLookup = std::function<QVariant(const QStringList& parts)>;

QVariant evalJet(const JetNode& node, const FieldLookup& field);
// True when the value is a non-zero number or a true boolean; Null is not true.
bool jetTruth(const QVariant& v);
// Compares as the engine compares: numbers by value, texts without regard to case.
// nullopt when either side is Null.
std::optional<int> jetCompare(const QVariant& a, const QVariant& b);

} // namespace vd::db
