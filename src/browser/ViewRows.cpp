#include "browser/ViewRows.h"

#include "catalogue/Database.h"
#include "catalogue/Recordset.h"

#include <algorithm>

namespace vd::browser {

namespace {

// Key, parent key and icon lead every level statement (in view 2: ID and the two image
// columns); they are never shown.
constexpr int kLeadingColumns = 3;

} // namespace

ViewRows ReadViewRows(db::Database& db, const ViewSql& sql, qint64 node, const QStringList& layouts,
                      const ViewCaptions& captions)
{
    const bool mainFiles = sql.view == kViewMainFiles;
    const bool atRoot = mainFiles || node == 0 || node == -1;
    const int level = atRoot ? 1 : 2;
    const QString statement = mainFiles ? sql.recordSource : sql.listLevels.value(level - 1);

    const auto rs = db.openRecordset(statement, db::RecordsetType::Snapshot);
    QStringList fields;
    for (const db::FieldInfo& f : rs->fields())
        fields << f.name;
    const int indexField = int(fields.indexOf(QStringLiteral("lIndex")));
    QVector<QVector<QVariant>> all;
    for (; !rs->eof(); rs->moveNext()) {
        if (!atRoot && rs->value(1).toLongLong() != node)
            continue;
        QVector<QVariant> row;
        for (int i = 0; i < fields.size(); ++i)
            row << rs->value(i);
        all << row;
    }
    rs->close();
    // A file's entries in directory order, as the list sorts them when a file node is chosen.
    if (!atRoot && sql.localView == kViewFiles && indexField >= 0)
        std::stable_sort(all.begin(), all.end(), [indexField](const auto& a, const auto& b) {
            return a[indexField].toLongLong() < b[indexField].toLongLong();
        });

    QVector<ListColumnState> columns = ColumnsFromLayout(
        fields, LevelLayout(ViewLayout(layouts, sql.view), mainFiles ? 1 : level));
    SetColumnsLayout(columns, sql.view, captions);
    QVector<int> shown;
    for (int i = kLeadingColumns; i < columns.size(); ++i)
        if (columns[i].hidden == 0)
            shown << i;
    std::stable_sort(shown.begin(), shown.end(),
                     [&](int a, int b) { return columns[a].order < columns[b].order; });

    ViewRows out;
    for (int i : shown)
        out.captions << columns[i].caption;
    for (const auto& row : all) {
        QVector<QVariant> cells;
        for (int i : shown)
            cells << row[i];
        out.rows << cells;
    }
    return out;
}

QVector<qint64> ReadTreeKeys(db::Database& db, const ViewSql& sql)
{
    QVector<qint64> keys;
    if (sql.treeLevels.size() < 2)
        return keys;
    const auto rs = db.openRecordset(sql.treeLevels[1], db::RecordsetType::Snapshot);
    for (; !rs->eof(); rs->moveNext())
        keys << rs->value(0).toLongLong();
    rs->close();
    return keys;
}

} // namespace vd::browser
