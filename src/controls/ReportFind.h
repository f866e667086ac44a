#pragma once
// The search of the find dialog: the same criterion as the list's Find, but in either
// direction and without wrapping at the end of the list, so that the dialog can ask before it
// starts over.

#include <QString>
#include <QVariant>

namespace vd::db {
struct FieldInfo;
}

namespace vd::controls {

class ReportEngine;

// The criterion on one field: numbers "=", dates "=" with a date literal, text " like " with
// "*" closing it unless the value has one. "" for a field that cannot be searched.
QString FindCriteria(const db::FieldInfo& field, const QString& value);

// Searches the rows after `from` (or before it, going up) to the end (or the top) of the
// list. `from` -1 starts at the first row (going up, at the last). The row found, or -1;
// nothing is selected. Errors of the data layer pass to the caller.
qint64 FindInDirection(ReportEngine& engine, const QVariant& column, const QString& value,
                       qint64 from, bool up);

// Whether the search on this column compares text (and so takes wildcards).
bool IsTextColumn(ReportEngine& engine, int column);

} // namespace vd::controls
