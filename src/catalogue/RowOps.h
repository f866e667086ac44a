#pragma once
// The small routines between the program and the catalogue's SQL: WHERE text, one value,
// user categories, deleting rows. Behaviour, oddities included, is relied on by their callers.

#include <QDateTime>
#include <QString>
#include <QVariant>

namespace vd::db {
class Database;
}

namespace vd::catalogue {

// Extends a WHERE clause. An empty `joiner` becomes "And" (the caller's text changes too);
// an empty term gives "" whatever `where` held.
QString AddWhere(const QString& where, const QString& term, QString& joiner);
QString AddWhere(const QString& where, const QString& term);

// A Like operand: "" for an empty value; prefix'value' when it holds "*"; else prefix'*value*'.
QString LikeClause(const QString& prefix, const QString& value);

// "Select <field> As FldValue From <source> <where>" on gDB: the first value as text
// (Null gives ""), or an empty text when no row came or anything failed.
QString GetDbValue(const QString& field, const QString& source, QString& where);
QString GetDbValue(const QString& field, const QString& source, const QString& where = {});

// Is there a user category of that name? `idClause` is "" or " AND ID<>" & own id.
bool CategoryExists(const QString& name, const QString& idClause, bool warn);

// The ID of the user category of that name, added when missing (always with addAlways).
// A new row takes lastCategoryID + 1 and moves the counter on.
qint64 FindOrAddCategory(const QString& name, bool addAlways, qint64& lastCategoryID);

void DeleteEntry(qint64 id);
void DeleteCategoryRow(qint64 id, int iType);

// Reversible hex scrambling of a text with a key.
QString XorHexText(const QString& text, const QString& key, bool encode);

// Doubles every "'" of a value for a Jet string literal.
QString SqlQuote(const QString& value);

// A Jet date literal in US order with a 12-hour clock: "#03/14/2024 09:05:00 pm#".
QString FormatDateLiteral(const QDateTime& date);

// A value as text the way the program joins values to "": Null gives "".
QString ValueText(const QVariant& value);

} // namespace vd::catalogue
