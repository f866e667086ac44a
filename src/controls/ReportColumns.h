#pragma once
// The columns of a list as the list widget shows them, and the column layout string that is
// stored in the settings: "Name!Hidden=h;Width=w;Fixed=f;Order=o" joined by "$".

#include <QList>
#include <QString>
#include <QVector>

namespace vd::controls {

enum class ColumnAlign
{
    Left,
    Right,
    Center
};

struct ReportColumn
{
    QString key;     // the field's name
    QString caption; // header text
    int width = 64;
    int minWidth = 26;
    ColumnAlign alignment = ColumnAlign::Left;
    ColumnAlign headerAlignment = ColumnAlign::Left;
    QString format;         // "RPL", "#,0", "Yes/No", ... or empty
    int hidden = 0;         // 0 shown, 1 hidden by the user, 2 hidden for good
    int fixed = 0;          // 2 frozen at the left
    int order = 0;          // display position from 0
    bool noHide = false;    // the column that cannot be hidden
    bool invisible = false; // in the range of InvisibleCols: stays hidden whatever a layout says
    bool fetchMode = false; // cells come through the owner
    QString imageField;     // field holding the icon numbers of this column
    int sortPicture = 0;    // -2 ascending, -1 descending, 0 none
};

class ReportColumns
{
public:
    void clear() { m_cols.clear(); }
    int count() const { return int(m_cols.size()); }
    ReportColumn& operator[](int i) { return m_cols[i]; }
    const ReportColumn& operator[](int i) const { return m_cols[i]; }
    // The column of that key (any case), -1 when there is none.
    int indexOf(const QString& key) const;
    ReportColumn& add(const QString& key, int width);

    // The layout of the present columns, in column order.
    QString layout() const;
    // Applies a layout string. Entries for unknown columns are left out; columns without an
    // entry keep what they have and go to the end; orders are made 0 to count - 1 again.
    void applyLayout(const QString& layout);
    // The old form: "n;order...;width..." (or with ","). Applies only when n equals the count of
    // visible columns; returns whether it did.
    bool applyOldLayout(const QString& layout, int invisibleCols, int invisibleColMode);

    // Column indexes in display order.
    QList<int> displayOrder() const;

private:
    // Orders by the given position (ties by column), columns without one after them.
    void renumber(const QVector<int>& given);
    QVector<ReportColumn> m_cols;
};

} // namespace vd::controls
