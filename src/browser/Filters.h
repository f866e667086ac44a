#pragma once
// Catalogue filters: named sets of conditions that become WHERE text. The same classes and text
// rules serve the GameBase filters; only the section of the settings file differs.
//
// Stored as FilterName<n> / FilterDef<n>; a definition is Field!@!Compare!@!Value!@!Join and
// the definitions of a filter are joined by "@@@".

#include <memory>
#include <QString>
#include <QVector>
#include <vector>

namespace vd::app {
class IniText;
}

namespace vd::browser {

// One condition. Join tells how it joins the condition before it: "Or", "" or "And".
struct clsFilterDef
{
    QString Field;
    QString Compare;
    QString Value;
    QString Join;
};

struct clsFilter
{
    QString Name;
    qint32 Key = 0;
    QVector<clsFilterDef> Defs;

    clsFilterDef& Add(const QString& field, const QString& compare, const QString& value,
                      const QString& join);
};

// colFilters: the filters in their order, found by key.
class FilterCollection
{
public:
    int count() const { return int(m_items.size()); }
    clsFilter& at(int i) { return *m_items[size_t(i)]; }
    const clsFilter& at(int i) const { return *m_items[size_t(i)]; }
    clsFilter* find(qint32 key);
    const clsFilter* find(qint32 key) const;
    // The filter of that name (as shown), or null.
    const clsFilter* findByName(const QString& name) const;
    void remove(qint32 key);
    void clear() { m_items.clear(); }
    // One above the highest key (1 for none).
    qint32 nextKey() const;
    clsFilter& append(std::unique_ptr<clsFilter> filter);

private:
    std::vector<std::unique_ptr<clsFilter>> m_items;
};

// The filters of the main window (colFilters of frmMain).
extern FilterCollection gFilters;

// The separators of the stored text.
inline const QString kFilterDefSeparator = QStringLiteral("@@@");
inline const QString kFilterPartSeparator = QStringLiteral("!@!");

clsFilter& AddFilter(FilterCollection& collection, const QString& name, qint32 key);

// Adds one condition unless it is empty (see the compare words of the editor: "X" is none).
// A value beginning with "@" with an altField set, or ">"/"<" with altField "Y.YEAR", adds
// altField and altValue instead.
bool AddCondition(clsFilter& filter, const QString& field, const QString& compare,
                  const QString& value, const QString& join, const QString& altField = {},
                  const QString& altValue = {});

// A copy for querying: a condition on tPath also looks at tUnpackPath, so that a path finds the
// files inside archives as well.
clsFilter ExpandFilter(const clsFilter& filter);

// The WHERE term of one condition, "" for a number field without a value (which makes the
// caller's AddWhere drop its clause). "=" quotes the value without doubling its "'".
QString CompareText(const clsFilterDef& definition);

// The stored forms.
QString joinFilterDefs(const clsFilter& filter);
// Definitions that do not split into exactly four parts are skipped.
QVector<clsFilterDef> splitFilterDefs(const QString& text);

// Reads FilterName1, FilterDef1, ... of `section` until the first empty name; names go
// through Translate, keys are given anew from 1.
FilterCollection readFilters(const QString& section);
// The filters of a file that holds none, and "Bilder" after them when `iniVersion` is below
// "3.4" (compared as text, so a new file gets it too).
void addDefaultFilters(FilterCollection& collection, const QString& iniVersion);
// FilterName<n> and FilterDef<n> for each filter, in collection order.
void writeFilters(app::IniText& ini, const FilterCollection& collection);

// Reads gFilters from section MAIN (with the defaults and the "Bilder" migration) and installs
// the writer that puts them back at the end of MAIN when the settings file is written.
void LoadMainFilters();

// The image key of a filter's row in lvFilter: the file type number for iFileType, "ZIP",
// "TXT", "GFX" or the extension for Type; "FILTER" for several different types or none.
QString FilterIconKey(const clsFilter& filter);

} // namespace vd::browser
