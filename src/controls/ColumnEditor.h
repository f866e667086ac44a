#pragma once
// The rules of the column editor "Spalten konfigurieren", without its window: one row per
// column that may be shown, the editor's own mark (1 shown, 0 taken out), which rows may be
// hidden, the defaults, and writing the marks back. It works on the live columns of a list,
// or for the view "GB" on the GameBase column list of the settings.

#include "controls/ReportColumns.h"

#include <functional>
#include <QPair>
#include <QString>
#include <QVector>

namespace vd::controls {

// Where the GameBase window keeps its optional columns: the field table (upper-cased field
// names with their captions, the name column "FILE" first) and the setting that lists the
// shown fields joined by "@@@".
struct GBColumnSource
{
    QVector<QPair<QString, QString>> fields;
    std::function<QString()> read;
    std::function<void(const QString&)> write;
    std::function<void()> changed; // after a write: the GameBase window builds its view again

    bool isValid() const { return read && write && !fields.isEmpty(); }
};

class ColumnEditor
{
public:
    struct Row
    {
        QString Name;   // the caption
        int Hidden = 1; // the editor's mark: 1 shown, 0 taken out
        QString Key;
        int column = -1; // the list's column; -1 in GB mode
        bool mayHide = true;
    };

    static inline const QString kGBView = QStringLiteral("GB");
    static inline const QString kGBNameKey = QStringLiteral("FILE");
    static inline const QString kGBDefaultColumns = QStringLiteral("COMMENT@@@YEAR");

    // The live columns: one row per column not hidden for good, in display order. A column
    // that may not be hidden can be when its key is `nameCaption`, the settings' name column.
    void loadColumns(const ReportColumns& cols, const QString& nameCaption);
    // The GameBase columns: every field of the table, marked when the setting lists it; the
    // name column is always shown.
    void loadGB(const GBColumnSource& source);

    bool gbMode() const { return m_gb; }
    int count() const { return int(m_rows.size()); }
    const Row& row(int i) const { return m_rows[i]; }
    void setMark(int i, int mark) { m_rows[i].Hidden = mark ? 1 : 0; }
    bool mayHide(int i) const { return m_rows[i].mayHide; }

    // Whether a mark differs from the state the list or the setting has now.
    bool differs() const;

    // Writes the marks back: hidden state 0 or 1 for the live columns, or the keys of the
    // shown rows joined by "@@@" into the setting (the name column is always in the list's
    // statement and is not written). The written state becomes the present one.
    void apply(ReportColumns& cols);
    void applyGB(const GBColumnSource& source);
    QString gbColumnList() const;

    // The defaults, written at once: every live column shown unless hidden for good, or the
    // setting "COMMENT@@@YEAR"; the rows are filled again.
    void restoreDefaults(ReportColumns& cols, const QString& nameCaption);
    void restoreGBDefaults(const GBColumnSource& source);

private:
    void takePresent();

    QVector<Row> m_rows;
    QVector<int> m_present;
    bool m_gb = false;
};

} // namespace vd::controls
