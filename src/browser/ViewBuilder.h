#pragma once
// The view builder: the current view, the search boxes, the new-files box and the selected
// filter become Jet SQL for the tree's levels and the list's levels (or, in view 2, the one
// statement of the flat list of files). Window-free, so that the main window and the command
// line build exactly the same statements.

#include <QString>
#include <QStringList>
#include <QVector>

namespace vd::browser {

struct clsFilter;

// The views by iViewMode.
enum ViewMode : int
{
    kViewFiles = 1,
    kViewMainFiles = 2,
    kViewCategories = 3,
    kViewNewFiles = 4,
    kViewLastStarted = 5,
    kViewTop100 = 6,
};

// The translated global words of the lists, each falling back to German when a language file
// leaves it empty: gCaptionCategory, gCaptionFile, gCaptionDisk, gCaptionDisks, sCaptionSize.
struct ViewCaptions
{
    QString category;
    QString file;
    QString disk;
    QString disks;
    QString size;

    static ViewCaptions current();
};

// The caption of a view (its row in lvViews), translated. "" outside 1 to 6.
QString ViewName(int view);
// The image key of a view's row: MAINFILES, FILES, ...
QString ViewImageKey(int view);
// The row of lvViews (and index of mnuView) that stands for a view, and back.
int ViewRow(int view);
int ViewOfRow(int row);
// Which of the four list layouts a view uses: view 5 gives 1, 6 gives 2, 2 gives 3, others 0.
int LayoutIndex(int view);

// Every column of the lists: "field as [caption]", or the caption alone (first letter upper
// case) when it names the field anyway.
QString ColumnAlias(const QString& field, const QString& caption, bool translate);

// The system's short date pattern in the form the Jet Format function reads ("dd.MM.yyyy").
QString ShortDatePattern();

// What the builder reads.
struct ViewInput
{
    int view = kViewFiles;
    QString search[3];                 // entry name, file name, path
    bool newFiles = false;             // chkNewFiles
    const clsFilter* filter = nullptr; // the selected filter as stored; null for none
    bool withCategory = false;         // show the user category (also set by MainListColumns)
    bool treeSubItems = false;         // mnuTreeOhnePlusMinus: the tree's third level
    qint64 startCategoryID = 0;        // lStartCategoryID: rows above are new
    qint64 startC64FileID = 0;         // lStartC64FileID
    QString mainListColumns;           // sMainListColumns
    ViewCaptions captions;
    QString shortDatePattern; // for view 5; empty means ShortDatePattern()
};

// What the builder gives the controls.
struct ViewSql
{
    int view = kViewFiles;
    int localView = kViewFiles; // view 4 is built as view 1
    QString viewName;
    int layoutIndex = 0;
    QString sFileWhere;
    QString sEntryWhere;
    bool distinct = false;     // view 2 with box 0: a file with several matches once
    bool withCategory = false; // the list shows the user category
    QString mainListColumns;   // sMainListColumns after step 3
    // Views other than 2.
    QStringList treeLevels; // root, files or categories, and the entries with treeSubItems
    QStringList listLevels; // level 1: every entry; level 2: the children of a tree node
    int sortMode = 0;       // 0 views 1, 3, 4; 1 views 5, 6
    // View 2.
    QString recordSource;
};

// Does the search or the new-files box narrow the view (HasSearch)?
bool HasSearch(const ViewInput& input);

// BuildView's SQL, steps 3 and 8 to 21 of the designed order, and the filter's terms.
ViewSql BuildViewSql(const ViewInput& input);

// The layouts of the four lists as the program keeps them; an empty layout of a view other
// than 2 takes layout 0.
QString ViewLayout(const QStringList& layouts, int view);

// A column of a list as far as the builder's layout rules touch it.
struct ListColumnState
{
    QString key;     // the field name the statement gives it
    QString caption; // header text
    int hidden = 0;  // 0 shown, 1 hidden by the user, 2 hidden for good
    int width = 64;
    int order = 0;
    int sortDirection = 0; // 0 none, 1 fixed direction
    bool sortable = true;
};

// SetColumnsLayout: the file column can't be hidden by the user, "Disc_File" is captioned
// gCaptionDisk, and the start columns of views 5 and 6 sort one way only.
void SetColumnsLayout(QVector<ListColumnState>& columns, int view, const ViewCaptions& captions);

// SaveColumnLayout's second half: sMainListColumns from the visible columns of lstMain, in
// display order.
QString MainListColumnsOf(const QVector<ListColumnState>& columns, const ViewCaptions& captions);

// The widths of the columns by key, fetched before a rebuild (step 3) ...
QVector<QPair<QString, int>> FetchColumnWidths(const QVector<ListColumnState>& columns);
// ... and applied again after it (step 20). Without the user category on show, its column
// keeps the width the layout gave it.
void RestoreColumnWidths(QVector<ListColumnState>& columns,
                         const QVector<QPair<QString, int>>& widths, bool categoryHidden,
                         const ViewCaptions& captions);

// Columns of a statement's fields after a level layout ("Name!Hidden=h;Width=w;...$..."):
// fields the layout names take its values, others keep theirs and follow in field order.
QVector<ListColumnState> ColumnsFromLayout(const QStringList& fields, const QString& layout);
// The piece of an "@"-joined layout for a level (1-based), "" when missing.
QString LevelLayout(const QString& layout, int level);

} // namespace vd::browser
