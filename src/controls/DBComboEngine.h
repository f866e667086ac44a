#pragma once
// The data side of the database combo box: its stored properties, the columns of its SELECT,
// the statement rewritten with a search or filter condition (BuildSQL), and the look-ups of a
// value and of a typed text. The combo box widget and its drop-down are views over this.

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>
#include <QVector>

namespace vd::db {
class Database;
}

namespace vd::controls {

// One column of the statement.
struct clsDBField
{
    QString Tablename; // the table behind FROM
    QString Def;       // the expression, without its alias
    QString Name;      // the alias, else the expression's column name
    int FieldType = 0; // the DAO type, known once the statement was opened
    bool Visible = true;
    int ColWidth = 0;
};

// The columns of a SELECT: "SELECT" and a leading DISTINCTROW or DISTINCT removed, the list up
// to " FROM " split at commas outside parentheses, " AS " cut off as the alias; the table is
// the name behind "FROM ".
QVector<clsDBField> ParseDBFields(const QString& sql);

struct DBComboProperties
{
    int AutoSearch = 0;
    QString BibKey;
    int BorderStyle = 1;
    bool CaseSensitive = false;
    QString DisplayName;
    bool Enabled = true;
    bool Locked = false;
    QString RecordSource;
    QString RecordSourceKey;
    int Rows = 8;
    bool IgnoreWhere = true;
    int InvisibleColMode = 1;
    int InvisibleCols = 0;
    bool ShowButton = false;
    bool ShowChanges = false;
    bool ShowDropDown = true;
    QString TextField;
    bool UseDelFlag = false;
    QString ValueField;
    QString FilterField;
    QVariant FilterValue;
    bool NullAllowed = false;
    QString NullText;

    // The stored keys are the property names; a missing key gives the default.
    static DBComboProperties read(const QVariantMap& bag);
    QVariantMap write() const;
};

// One row of the statement, by field name.
struct DBComboRow
{
    QStringList names;
    QVariantList values;
    bool isEmpty() const { return names.isEmpty(); }
    // By name (any case) or by 0-based position; Null when absent.
    QVariant value(const QVariant& field) const;
};

class DBComboEngine
{
public:
    DBComboProperties& props() { return m_p; }
    const DBComboProperties& props() const { return m_p; }
    db::Database* DataBase() const { return m_db; }
    void setDataBase(db::Database* database);
    void setRecordSource(const QString& sql);

    // The columns of the record source, with their types (the statement is opened once).
    const QVector<clsDBField>& Fields();
    // The column of a field named by its alias, its expression or the expression's column.
    int fieldIndex(const QString& name);

    // The record source with its parts rebuilt: the statement's WHERE kept (or dropped with
    // `ignoreWhere`), the deleted-row condition with `useDelFlag`, the fixed filter, and with a
    // `sortField` its order and, for a `value`, the search condition on it; conditions go into
    // HAVING when the statement groups.
    QString BuildSQL(const QString& sortField, const QVariant& value, bool exact, bool caseFlag,
                     bool useDelFlag, bool ignoreWhere);

    // The row holding `value` in ValueField (through RecordSourceKey when set); empty when
    // there is none.
    DBComboRow lookupValue(const QVariant& value);
    // The first row, by TextField, whose text starts with `text`; empty when there is none.
    DBComboRow search(const QString& text);

private:
    QString build(const QString& statement, QVector<clsDBField>& fields, const QString& sortField,
                  const QVariant& value, bool exact, bool caseFlag, bool useDelFlag,
                  bool ignoreWhere);
    DBComboRow firstRow(const QString& sql);
    QVector<clsDBField> typedFields(const QString& statement);

    DBComboProperties m_p;
    db::Database* m_db = nullptr;
    QVector<clsDBField> m_fields;
    bool m_fieldsKnown = false;
    QVector<clsDBField> m_keyFields;
    QString m_keyFieldsFor;
};

} // namespace vd::controls
