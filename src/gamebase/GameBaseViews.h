#pragma once
// The statements of the GameBase window: its four views, the search box, the selected filter
// and the extra columns become one Jet statement for lstGB (on the GameBase) or lstMyFiles
// (on the catalogue, reaching the GameBase through "[;database=...]"). Also the field table
// with its captions, the decoding of the coded fields and the screenshot names. Window-free,
// so that the window, the benchmark and the tests build exactly the same text.

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

namespace vd::browser {
struct clsFilter;
}

namespace vd::gamebase {

// The tabs of tabViews, by index.
enum GBView : int
{
    kGBViewGameBase = 1, // "Gamebase": every game, lstGB
    kGBViewArchiv = 2,   // "Vellumdock": catalogued entries with a GB_ID, lstMyFiles
    kGBViewLast = 3,     // "Zuletzt gestartet", from both sides
    kGBViewTop = 4,      // "Top 100", from both sides
};

// The icon of a row that only the GameBase side of a usage view gives.
inline constexpr int kGameBaseOnlyIcon = 28;

// One row of the field table: the field as the GameBase spells it, and its German caption.
struct GBField
{
    QString name;
    QString caption;
};

// The field table in its designed order (without the name column).
const QVector<GBField>& GBFields();
// The table as a single "field@caption" text joined by "@@@", FILE (the name column) first.
QString GBFieldTableText();
// The field of an upper-cased name ("YEAR"), or null.
const GBField* FindGBField(const QString& upperName);
// The translated caption of a field (any case); "" when not in the table.
QString GBFieldCaption(const QString& name);

// `name` & " as [" & caption & "]". With `translate` the caption goes through the language
// file and then "[" and "]" become "-" and "." a blank. An empty `name` gives the caption alone,
// first letter upper case, the rest lower case.
QString FieldSql(const QString& name, const QString& caption, bool translate);

// Is the column (upper-cased field name) one that the list shows decoded?
bool IsDecodedColumn(const QString& upperName);
// The text a decoded column shows for `value`; `lengthType` is the row's V_LengthType, read
// only for V_LENGTH. Other fields, and unknown codes of Control and V_PalNTSC, are shown as
// they are.
QString GetFormattedValue(const QString& field, const QVariant& value, const QVariant& lengthType);

// What BuildView reads.
struct GBViewInput
{
    int view = kGBViewGameBase;
    QString search;                             // the box's text as typed
    const browser::clsFilter* filter = nullptr; // null when tabFilter shows "Filter aus"
    bool adultContent = false;                  // AdultContent
    QString listColumns;                        // GBListColumns, "@@@" between field names
    QString gameBasePath;                       // the GameBase's name in "[;database=...]"
    QString nameCaption;                        // caption of the name column; "" for the default
};

struct GBViewSql
{
    QString statement;
    bool onGameBase = true;     // lstGB runs on the GameBase, lstMyFiles on the catalogue
    QStringList decodedColumns; // upper-cased fields the list shows through GetFormattedValue
    QString orderCaption;       // the usage views' sort column, "" otherwise
};

// The caption of the name column unless one is given: the list's word for a file.
QString GBNameCaption();

// BuildView's statement, steps 1 to 8.
GBViewSql BuildGBViewSql(const GBViewInput& input);

// The n-th screenshot (0, 1, 2) of a game whose ScrnshotFilename is `relative`: the folder with
// a separator, the relative name (its "\" made "/"); for n > 0 the name without its last four
// characters, "_" and n, and those four characters again. "" for an empty `relative`.
QString ScreenshotFile(const QString& folder, const QString& relative, int n);
// The screenshots that exist, in order, stopping at the first that is missing.
QStringList ExistingScreenshots(const QString& folder, const QString& relative);

} // namespace vd::gamebase
