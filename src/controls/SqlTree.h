#pragma once
// modSqlTree: the text toolkit of the data-bound controls. A tree level or a list is driven by
// one Jet SELECT; these routines take such a statement apart by keywords and paren depth and
// glue it together again with a parent-key condition, a filter parameter or a sort order.
// There is no parser here on purpose: the routines are textual, and so are their limits
// ("UNION" inside a name splits, a comma inside quotes counts, and so on).

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace vd::controls {

// The parts of a UNION, in order. The search has no word boundaries.
QStringList SplitUnionParts(const QString& sql);

// The expression of column 1 (the parent key), without its alias; "" for fewer than three
// columns.
QString GetParentKey(const QString& sql);

// Cuts the GROUP / HAVING / ORDER tail off `sql` and returns it ("" and `sql` untouched when
// there is none).
QString CutSQLSuffix(QString& sql);

// A level statement with the parent condition "<parent key>=xxx" and the parameter line
// "Parameters xxx Value;" in front.
QString MakeSQLItemString(const QString& sql);

// The distinct parent keys of a level statement, part by part; without GROUP, HAVING, ORDER.
QString MakeSQLParentString(const QString& sql);

// Column expressions without aliases, 1-based: slot 0 stays empty, and the last column keeps
// whatever follows it.
QStringList ParseFieldList(const QString& sql);

// Column expressions between SELECT and FROM without aliases, 0-based.
QStringList ParseSelectColumns(const QString& sql);

// One SELECT with the filter "<column> = XXX" and the order by column number; -1 is "none".
QString ApplyFilterAndSort(const QString& sql, int filterCol, int sortCol, bool ascending);

// The statement a list runs for its record source: each UNION part filtered and sorted, and
// "PARAMETERS XXX VALUE; " in front when a filter column is given.
QString MakeReportSQL(const QString& sql, int filterCol, int sortCol, bool ascending);

// A value as the literal of a key criterion, by its field's type code.
QString MakeKeyLiteral(int fieldType, const QVariant& value);

// The Jet date literal "#mm/dd/yyyy hh:nn:ss am#".
QString FormatDateLiteral(const QDateTime& date);

// One search condition of the database combo box; "" for a type that cannot be searched.
QString MakeFieldCondition(const QString& name, int fieldType, const QString& value, bool exact,
                           bool caseSensitive, bool bracket);

// The tree classes' error report: a critical box titled "Tree: <place>" with "<number>: <text>".
void ReportTreeError(const QString& place, int number, const QString& description);

// Text helpers the controls share.
int FindNoCase(const QString& text, const QString& what, int from = 0);
bool IsNumericText(const QString& text);
// The position of the first comma outside parentheses, from `from`; -1 when there is none.
int topLevelComma(const QString& text, int from = 0);

} // namespace vd::controls
