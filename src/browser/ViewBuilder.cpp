#include "browser/ViewBuilder.h"

#include "app/Translate.h"
#include "browser/Filters.h"
#include "catalogue/CatalogueSchema.h"
#include "catalogue/RowOps.h"

#include <algorithm>
#include <climits>
#include <numeric>
#include <QLocale>

namespace vd::browser {

using catalogue::AddWhere;
using catalogue::LikeClause;
using catalogue::SqlQuote;

namespace {

const QString kSeparator = QStringLiteral("@@@");

QString translatedOr(const QString& german)
{
    const QString text = app::Translate(german);
    return text.isEmpty() ? german : text;
}

bool inExtensionList(const QString& list, const QString& bareExtension)
{
    return list.split(QLatin1Char(';')).contains(QLatin1Char('.') + bareExtension.toUpper());
}

bool listHasItem(const QString& joined, const QString& item)
{
    for (const QString& piece : joined.split(kSeparator))
        if (piece.compare(item, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

struct WhereParts
{
    QString entry;             // sEntryWhere
    QString file;              // sFileWhere
    bool categoryJoin = false; // the filter looks at C.tCategory
};

// Step 14: the definitions of the expanded filter as terms, with brackets around each run of
// "Or" joins.
void applyFilter(const clsFilter& stored, WhereParts& where)
{
    clsFilter filter = ExpandFilter(stored);
    const int count = int(filter.Defs.size());
    bool bOpen = false;
    bool bFileOpen = false;
    for (int i = 1; i <= count; ++i) {
        clsFilterDef& def = filter.Defs[i - 1];
        if (bOpen && def.Join.isEmpty() && i < count) {
            where.entry += QLatin1Char(')');
            if (bFileOpen)
                where.file += QLatin1Char(')');
            bOpen = false;
            bFileOpen = false;
        }
        if (i < count && filter.Defs[i].Join == QLatin1String("Or") && !bOpen) {
            bOpen = true;
            where.entry = AddWhere(where.entry, QStringLiteral("("));
            const QString next = filter.Defs[i].Field.toUpper();
            if (next == QLatin1String("IFILETYPE") || next == QLatin1String("TPATH") ||
                next == QLatin1String("TUNPACKPATH") || next == QLatin1String("TYPE")) {
                bFileOpen = true;
                where.file = AddWhere(where.file, QStringLiteral("("));
            }
        }
        const QString field = def.Field.toUpper();
        QString term;
        bool forFiles = true;
        if (field == QLatin1String("IFILETYPE") || field == QLatin1String("TIMAGE") ||
            field == QLatin1String("TFILE") || field == QLatin1String("TPATH") ||
            field == QLatin1String("TUNPACKPATH")) {
            term = QStringLiteral("F.") + CompareText(def);
        } else if (field == QLatin1String("TYPE")) {
            const bool inName = inExtensionList(catalogue::kTextExtensions, def.Value) ||
                                inExtensionList(catalogue::kPictureExtensions, def.Value);
            term = (inName ? QStringLiteral("F.tFile") : QStringLiteral("F.tPath")) +
                   QStringLiteral(" Like '*.") + def.Value + QLatin1Char('\'');
        } else {
            term = CompareText(def);
            forFiles = false;
            if (field == QLatin1String("C.TCATEGORY"))
                where.categoryJoin = true;
        }
        where.entry = AddWhere(where.entry, term, def.Join);
        if (forFiles)
            where.file = AddWhere(where.file, term, def.Join);
    }
    if (bOpen) {
        where.entry += QLatin1Char(')');
        if (bFileOpen)
            where.file += QLatin1Char(')');
    }
}

QString mainFilesSource(const ViewSql& out)
{
    return QStringLiteral("SELECT ") + (out.distinct ? QStringLiteral("Distinct") : QString()) +
           QStringLiteral(" F.ID,F.iFileType AS iTyp,IIF(isNull(tUnpackpath),0,24) as IsArchiv,") +
           ColumnAlias(QStringLiteral("ucase(Right(tCategory,3))"), QStringLiteral("Filetyp"),
                       true) +
           QLatin1Char(',') +
           ColumnAlias(QStringLiteral("tCategory"), QStringLiteral("Disc_File"), false) +
           QLatin1Char(',') +
           ColumnAlias(QStringLiteral("tPath"), QStringLiteral("Dateipfad"), true) +
           QLatin1Char(',') +
           ColumnAlias(QStringLiteral("tUnpackpath"), QStringLiteral("Archivpfad"), true) +
           QLatin1Char(',') +
           ColumnAlias(QStringLiteral("tHash"), QStringLiteral("MD5-Checksumme"), true) +
           QLatin1Char(',') +
           ColumnAlias(QStringLiteral("F.tsCreated"), QStringLiteral("Erstellt"), true) +
           QStringLiteral(" From Category as F") +
           AddWhere(out.sFileWhere, QStringLiteral("iType=1"));
}

QString listColumns(const ViewSql& out, const ViewCaptions& captions)
{
    QString s = QStringLiteral(",F.iFileType as Icon,") +
                ColumnAlias(QStringLiteral("tProgram"), captions.file, false) + QLatin1Char(',') +
                ColumnAlias(QStringLiteral("tExtension"), QStringLiteral("Filetyp"), true) +
                QLatin1Char(',') + ColumnAlias(QStringLiteral("lSize"), captions.size, false) +
                QStringLiteral(",F.") +
                ColumnAlias(QStringLiteral("tImage"), QStringLiteral("Disk/Tape-Name"), true) +
                QStringLiteral(",F.") +
                ColumnAlias(QStringLiteral("tCategory"), QStringLiteral("Disc_File"), false) +
                QStringLiteral(",F.") +
                ColumnAlias(QStringLiteral("tPath"), QStringLiteral("Dateipfad"), true);
    if (out.view == kViewLastStarted)
        s += QLatin1Char(',') + ColumnAlias(QStringLiteral("C64Files.tsLastStarted"),
                                            QStringLiteral("Zuletzt gestartet"), true);
    if (out.view == kViewTop100)
        s += QLatin1Char(',') +
             ColumnAlias(QStringLiteral("C64Files.lStartCount"), QStringLiteral("Zähler"), true);
    if (out.withCategory)
        s += QStringLiteral(",C.") +
             ColumnAlias(QStringLiteral("tCategory"), captions.category, false);
    return s;
}

void buildLevels(ViewSql& out, const ViewInput& in, const QString& parentField,
                 const QString& order, bool categoryJoin)
{
    const QString columns = listColumns(out, in.captions);
    QString from =
        QStringLiteral(" From (C64Files Left Join Category as F on C64Files.Category_File=F.ID)");
    if (out.withCategory || categoryJoin)
        from += QStringLiteral(" Left Join Category as C on C64Files.Category_User=C.ID");
    const int local = out.localView;
    const QString& entryWhere = out.sEntryWhere;

    if (local == kViewLastStarted || local == kViewTop100) {
        out.sortMode = 1;
        out.listLevels << QStringLiteral("Select ") +
                              (local == kViewTop100 ? QStringLiteral("TOP 100") : QString()) +
                              QStringLiteral(" C64Files.ID,-1") + columns + from + entryWhere +
                              order
                       << QStringLiteral("Select C64Files.ID,") + parentField +
                              QStringLiteral(" AS ParentKey ") + columns + from + entryWhere +
                              order;
    } else {
        out.sortMode = 0;
        out.listLevels << QStringLiteral("Select  C64Files.ID,-1") + columns + from + entryWhere
                       << QStringLiteral("Select  C64Files.ID,") + parentField +
                              QStringLiteral(" AS ParentKey ") + columns +
                              (local == kViewFiles ? QStringLiteral(",lIndex") : QString()) + from +
                              entryWhere;
    }

    // The root comes from Config, which is never empty, so an empty catalogue shows it too.
    out.treeLevels << QStringLiteral("SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,") +
                          QString::number(local + 15) + QStringLiteral(" AS Icon,'") +
                          SqlQuote(out.viewName) + QStringLiteral("' From Config");
    if (local == kViewLastStarted || local == kViewTop100) {
        const bool last = local == kViewLastStarted;
        const QString pattern =
            in.shortDatePattern.isEmpty() ? ShortDatePattern() : in.shortDatePattern;
        out.treeLevels << QStringLiteral(
                              "SELECT F.ID AS ItemKey,-1 AS ParentKey,F.iFileType AS Icon,'(' & ") +
                              (last ? QStringLiteral("Format(F.tsLastStarted,'") + pattern +
                                          QStringLiteral("')")
                                    : QStringLiteral("F.lStartCount")) +
                              QStringLiteral("& ') - ' & tCategory From Category as F") +
                              AddWhere(out.sFileWhere, QStringLiteral("iType=1")) +
                              QStringLiteral(" order by ") +
                              (last ? QStringLiteral("F.tsLastStarted desc")
                                    : QStringLiteral("F.lStartCount desc,tCategory"));
        return;
    }
    // In view 3 the tree lists every category: search and filter narrow only the list.
    out.treeLevels << QStringLiteral("SELECT F.ID AS ItemKey,-1 AS ParentKey,") +
                          (local == kViewFiles ? QStringLiteral("F.iFileType")
                                               : QString::number(local + 15)) +
                          QStringLiteral(" AS Icon,tCategory From Category as F") +
                          (local == kViewFiles
                               ? AddWhere(out.sFileWhere, QStringLiteral("iType=1"))
                               : QStringLiteral(" where iType=") + QString::number(local)) +
                          QStringLiteral(" order by tCategory");
    if (in.treeSubItems)
        out.treeLevels << QStringLiteral("SELECT C64Files.ID AS ItemKey,") + parentField +
                              QStringLiteral(" AS ParentKey,F.iFileType as Icon, tProgram & "
                                             "'.' & tExtension AS File ") +
                              from + entryWhere +
                              (local == kViewFiles ? QStringLiteral(" order by lIndex")
                                                   : QStringLiteral(" order by 4"));
}

} // namespace

ViewCaptions ViewCaptions::current()
{
    ViewCaptions c;
    c.category = translatedOr(QStringLiteral("Kategorie"));
    c.file = translatedOr(QStringLiteral("File"));
    c.disk = translatedOr(QStringLiteral("Disk, Tape,..."));
    c.disks = translatedOr(QStringLiteral("Disks, Tapes,..."));
    c.size = translatedOr(QStringLiteral("Größe"));
    return c;
}

QString ViewName(int view)
{
    switch (view) {
    case kViewMainFiles:
        return app::Translate(QStringLiteral("Disks, Tapes,..."));
    case kViewFiles:
        return app::Translate(QStringLiteral("Dateien"));
    case kViewCategories:
        return app::Translate(QStringLiteral("Kategorien"));
    case kViewNewFiles:
        return app::Translate(QStringLiteral("Neue Dateien"));
    case kViewLastStarted:
        return app::Translate(QStringLiteral("Zuletzt gestartet"));
    case kViewTop100:
        return app::Translate(QStringLiteral("Top 100"));
    default:
        return {};
    }
}

QString ViewImageKey(int view)
{
    static const char* const keys[] = {"FILES",    "MAINFILES", "CATEGORIES",
                                       "NEWFILES", "LAST",      "TOP"};
    return view >= 1 && view <= 6 ? QString::fromLatin1(keys[view - 1]) : QString();
}

int ViewRow(int view)
{
    if (view == kViewMainFiles)
        return 0;
    if (view == kViewFiles)
        return 1;
    return view - 1;
}

int ViewOfRow(int row)
{
    if (row == 0)
        return kViewMainFiles;
    if (row == 1)
        return kViewFiles;
    return row + 1;
}

int LayoutIndex(int view)
{
    switch (view) {
    case kViewLastStarted:
        return 1;
    case kViewTop100:
        return 2;
    case kViewMainFiles:
        return 3;
    default:
        return 0;
    }
}

QString ColumnAlias(const QString& field, const QString& caption, bool translate)
{
    QString text = caption;
    if (translate) {
        // The engine takes no brackets or points in an alias.
        text = app::Translate(caption);
        text.replace(QLatin1Char('['), QLatin1Char('-'));
        text.replace(QLatin1Char(']'), QLatin1Char('-'));
        text.replace(QLatin1Char('.'), QLatin1Char(' '));
    }
    if (text.compare(field, Qt::CaseInsensitive) == 0)
        return text.left(1).toUpper() + text.mid(1).toLower();
    return field + QStringLiteral(" as [") + text + QLatin1Char(']');
}

QString ShortDatePattern()
{
    // Qt's pattern letters for day, month and year read the same in the Jet Format function;
    // quoted literal text becomes Format's double-quoted form, so that no "'" reaches the SQL.
    const QString qt = QLocale::system().dateFormat(QLocale::ShortFormat);
    QString out;
    bool quoted = false;
    for (const QChar c : qt) {
        if (c == QLatin1Char('\'')) {
            quoted = !quoted;
            out += QLatin1Char('"');
        } else if (quoted || c == QLatin1Char('d') || c == QLatin1Char('M') ||
                   c == QLatin1Char('y') || !c.isLetter()) {
            out += c;
        }
    }
    if (quoted)
        out += QLatin1Char('"');
    return out.isEmpty() ? QStringLiteral("dd.MM.yyyy") : out;
}

bool HasSearch(const ViewInput& input)
{
    for (const QString& text : input.search)
        if (!text.isEmpty())
            return true;
    return input.newFiles;
}

ViewSql BuildViewSql(const ViewInput& in)
{
    ViewSql out;
    out.view = in.view >= 1 && in.view <= 6 ? in.view : kViewFiles;
    out.localView = out.view == kViewNewFiles ? kViewFiles : out.view;
    out.viewName = ViewName(out.view);
    out.layoutIndex = LayoutIndex(out.view);
    out.mainListColumns = in.mainListColumns;
    out.withCategory = in.withCategory;

    // Step 3: the user category comes with MainListColumns, or the caller adds it there.
    if (out.view != kViewMainFiles) {
        if (listHasItem(out.mainListColumns, QStringLiteral("tCategory")))
            out.withCategory = true;
        else if (out.withCategory)
            out.mainListColumns += (out.mainListColumns.isEmpty() ? QString() : kSeparator) +
                                   QStringLiteral("tCategory");
    }

    // Step 8.
    WhereParts where;
    QString parentField = QStringLiteral("Category_File");
    QString order;
    switch (out.view) {
    case kViewCategories:
        parentField = QStringLiteral("Category_User");
        break;
    case kViewNewFiles:
        where.file = QStringLiteral(" where F.ID>") + QString::number(in.startCategoryID);
        where.entry = QStringLiteral(" where C64Files.ID>") + QString::number(in.startC64FileID);
        break;
    case kViewLastStarted:
        where.file = QStringLiteral(" where not isnull(F.tsLastStarted)");
        where.entry = QStringLiteral(" where not isnull(C64Files.tsLastStarted) ");
        order = QStringLiteral(" order by C64Files.tsLastStarted desc");
        break;
    case kViewTop100:
        where.file = QStringLiteral(" where not isnull(F.lStartCount)");
        where.entry = QStringLiteral(" where not isnull(C64Files.lStartCount) ");
        order = QStringLiteral(" order by C64Files.lStartCount desc,C64Files.tsLastStarted desc");
        break;
    default:
        break;
    }

    // Steps 10 to 13: each search text has its quotes doubled, so typing one can't break SQL.
    if (!in.search[0].isEmpty()) {
        const QString term = LikeClause(QStringLiteral("tProgram like"), SqlQuote(in.search[0]));
        where.entry = AddWhere(where.entry, term);
        if (out.view == kViewMainFiles) {
            where.file = QStringLiteral(" Inner Join C64Files On F.ID=C64Files.Category_File") +
                         AddWhere(where.file, term);
            out.distinct = true;
        }
    }
    const QString fileTerms[] = {QStringLiteral("F.tFile like"), QStringLiteral("F.tPath like")};
    for (int box = 1; box <= 2; ++box) {
        if (in.search[box].isEmpty())
            continue;
        const QString term = LikeClause(fileTerms[box - 1], SqlQuote(in.search[box]));
        where.entry = AddWhere(where.entry, term);
        where.file = AddWhere(where.file, term);
    }
    if (in.newFiles && out.view != kViewNewFiles) {
        where.file =
            AddWhere(where.file, QStringLiteral("F.ID>") + QString::number(in.startCategoryID));
        where.entry = AddWhere(where.entry,
                               QStringLiteral("C64Files.ID>") + QString::number(in.startC64FileID));
    }

    // Step 14.
    if (in.filter)
        applyFilter(*in.filter, where);
    out.sEntryWhere = where.entry;
    out.sFileWhere = where.file;

    if (out.view == kViewMainFiles) {
        out.recordSource = mainFilesSource(out);
        return out;
    }
    buildLevels(out, in, parentField, order, where.categoryJoin);
    return out;
}

QString ViewLayout(const QStringList& layouts, int view)
{
    const int index = LayoutIndex(view);
    const QString layout = layouts.value(index);
    if (layout.isEmpty() && view != kViewMainFiles)
        return layouts.value(0);
    return layout;
}

void SetColumnsLayout(QVector<ListColumnState>& columns, int view, const ViewCaptions& captions)
{
    const QString last = app::Translate(QStringLiteral("Zuletzt gestartet"));
    const QString counter = app::Translate(QStringLiteral("Zähler"));
    for (ListColumnState& c : columns) {
        if (c.key == captions.file && c.hidden == 1)
            c.hidden = 0;
        if (c.key == QLatin1String("Disc_File"))
            c.caption = captions.disk;
        if ((view == kViewLastStarted && c.key == last) ||
            (view == kViewTop100 && c.key == counter)) {
            c.sortDirection = 1;
            c.sortable = false;
        }
    }
}

QString MainListColumnsOf(const QVector<ListColumnState>& columns, const ViewCaptions& captions)
{
    const QList<QPair<QString, QString>> fieldOf = {
        {app::Translate(QStringLiteral("Filetyp")), QStringLiteral("tExtension")},
        {QStringLiteral("Disc_File"), QStringLiteral("F.tCategory")},
        {captions.disk, QStringLiteral("F.tCategory")},
        {captions.size, QStringLiteral("lSize")},
        {app::Translate(QStringLiteral("Disk/Tape-Name")), QStringLiteral("tImage")},
        {app::Translate(QStringLiteral("Dateipfad")), QStringLiteral("tPath")},
        {captions.category, QStringLiteral("tCategory")},
    };
    QVector<const ListColumnState*> shown;
    for (const ListColumnState& c : columns)
        if (c.hidden == 0)
            shown << &c;
    std::stable_sort(
        shown.begin(), shown.end(),
        [](const ListColumnState* a, const ListColumnState* b) { return a->order < b->order; });
    QStringList fields;
    for (const ListColumnState* c : shown) {
        for (const auto& [caption, field] : fieldOf) {
            if (c->caption == caption) {
                fields << field;
                break;
            }
        }
    }
    return fields.join(kSeparator);
}

QVector<QPair<QString, int>> FetchColumnWidths(const QVector<ListColumnState>& columns)
{
    QVector<QPair<QString, int>> widths;
    for (const ListColumnState& c : columns)
        widths.push_back({c.key, c.width});
    return widths;
}

void RestoreColumnWidths(QVector<ListColumnState>& columns,
                         const QVector<QPair<QString, int>>& widths, bool categoryHidden,
                         const ViewCaptions& captions)
{
    for (ListColumnState& c : columns) {
        if (categoryHidden && c.key == captions.category)
            continue;
        for (const auto& [key, width] : widths) {
            if (key.compare(c.key, Qt::CaseInsensitive) == 0) {
                c.width = width;
                break;
            }
        }
    }
}

QString LevelLayout(const QString& layout, int level)
{
    return layout.split(QLatin1Char('@')).value(level - 1);
}

QVector<ListColumnState> ColumnsFromLayout(const QStringList& fields, const QString& layout)
{
    QVector<ListColumnState> columns;
    for (const QString& field : fields) {
        ListColumnState c;
        c.key = field;
        c.caption = field;
        c.order = -1;
        columns << c;
    }
    for (const QString& entry : layout.split(QLatin1Char('$'), Qt::SkipEmptyParts)) {
        const qsizetype bang = entry.indexOf(QLatin1Char('!'));
        if (bang <= 0)
            continue;
        const QString name = entry.left(bang).trimmed();
        for (ListColumnState& c : columns) {
            if (c.key.compare(name, Qt::CaseInsensitive) != 0)
                continue;
            for (const QString& prop : entry.mid(bang + 1).split(QLatin1Char(';'))) {
                const QStringList kv = prop.split(QLatin1Char('='));
                bool ok = false;
                const int value = kv.value(1).trimmed().toInt(&ok);
                if (kv.size() != 2 || !ok)
                    continue;
                const QString key = kv[0].trimmed();
                if (key.compare(QLatin1String("Hidden"), Qt::CaseInsensitive) == 0 && value >= 0 &&
                    value <= 2)
                    c.hidden = value;
                else if (key.compare(QLatin1String("Width"), Qt::CaseInsensitive) == 0 &&
                         value >= 0)
                    c.width = value;
                else if (key.compare(QLatin1String("Order"), Qt::CaseInsensitive) == 0 &&
                         value >= 0)
                    c.order = value;
            }
            break;
        }
    }
    // Columns without a place follow the placed ones, in field order; then 0 to count - 1.
    QVector<int> index(columns.size());
    std::iota(index.begin(), index.end(), 0);
    std::stable_sort(index.begin(), index.end(), [&](int a, int b) {
        const int oa = columns[a].order < 0 ? INT_MAX : columns[a].order;
        const int ob = columns[b].order < 0 ? INT_MAX : columns[b].order;
        return oa < ob;
    });
    for (int pos = 0; pos < index.size(); ++pos)
        columns[index[pos]].order = pos;
    return columns;
}

} // namespace vd::browser
