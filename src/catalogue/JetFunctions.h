#pragma once
// The Jet functions that the engine lacks (ucase, left, right, mid, val, Format, ...) and the
// LIKE of Jet, registered on each connection.

#include <QString>
#include <QVariant>

struct sqlite3;

namespace vd::db {

void registerJetFunctions(sqlite3* db);

// Val: the number at the start of a text, blanks passed over; 0 when there is none.
QVariant vbVal(const QString& text);
// Format with a date pattern ("dd.mm.yyyy hh:nn") or a number pattern ("#,0.00").
QString vbFormat(const QVariant& value, const QString& fmt);

} // namespace vd::db
