#include "controls/ReportFind.h"

#include "catalogue/DaoTypes.h"
#include "catalogue/Recordset.h"
#include "controls/ReportEngine.h"
#include "controls/SqlTree.h"

#include <algorithm>

namespace vd::controls {

namespace {

int columnOf(const db::Recordset& rs, const QVariant& column)
{
    if (column.typeId() == QMetaType::QString)
        return rs.fieldIndex(column.toString());
    const int c = column.toInt();
    return c >= 0 && c < rs.fieldCount() ? c : -1;
}

} // namespace

QString FindCriteria(const db::FieldInfo& field, const QString& value)
{
    const QString name = QLatin1Char('[') + field.name + QLatin1Char(']');
    if (db::type::isNumeric(field.type)) {
        QString v = value.trimmed();
        v.replace(QLatin1Char(','), QLatin1Char('.'));
        return IsNumericText(v) ? name + QLatin1Char('=') + v : QString();
    }
    if (field.type == db::type::Date || field.type == 22) {
        const QString literal = MakeKeyLiteral(db::type::Date, value);
        return literal.isEmpty() ? QString() : name + QLatin1Char('=') + literal;
    }
    if (field.type == db::type::Text || field.type == db::type::Memo) {
        QString v = value;
        v.replace(QLatin1Char('\''), QStringLiteral("''"));
        return name + QStringLiteral(" like '") + v +
               (value.contains(QLatin1Char('*')) ? QStringLiteral("'") : QStringLiteral("*'"));
    }
    return {};
}

qint64 FindInDirection(ReportEngine& engine, const QVariant& column, const QString& value,
                       qint64 from, bool up)
{
    db::Recordset* rs = engine.RecordSet();
    const qint64 count = engine.ItemCount();
    if (!rs || count == 0)
        return -1;
    const int c = columnOf(*rs, column);
    if (c < 0)
        return -1;
    const QString criteria = FindCriteria(rs->field(c), value);
    if (criteria.isEmpty())
        return -1;
    bool found = false;
    if (from < 0) {
        found = up ? rs->findLast(criteria) : rs->findFirst(criteria);
    } else {
        if ((!up && from >= count - 1) || (up && from == 0))
            return -1;
        rs->setAbsolutePosition(std::min(from, count - 1));
        found = up ? rs->findPrevious(criteria) : rs->findNext(criteria);
    }
    return found ? rs->absolutePosition() : -1;
}

bool IsTextColumn(ReportEngine& engine, int column)
{
    db::Recordset* rs = engine.RecordSet();
    if (!rs || column < 0 || column >= rs->fieldCount())
        return false;
    const int type = rs->field(column).type;
    return type == db::type::Text || type == db::type::Memo;
}

} // namespace vd::controls
