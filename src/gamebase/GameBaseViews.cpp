#include "gamebase/GameBaseViews.h"

#include "app/Translate.h"
#include "browser/Filters.h"
#include "browser/ViewBuilder.h"
#include "catalogue/RowOps.h"

#include <QFileInfo>

namespace vd::gamebase {

using catalogue::AddWhere;
using catalogue::LikeClause;

namespace {

const QString kYearFilterField = QStringLiteral("Y.YEAR");

// The lookup tables a column joins: the alias in front of the field and the join itself.
struct LookupJoin
{
    const char* column;
    const char* alias;
    const char* join;
};

const LookupJoin kLookups[] = {
    {"CRACKER", ",C.", "Crackers as C on G.Cr_ID=C.Cr_ID)"},
    {"GENRE", ",GR.", "Genres as GR on G.Ge_ID=GR.Ge_ID)"},
    {"LANGUAGE", ",L.", "Languages as L on G.La_ID=L.La_ID)"},
    {"MUSICIAN", ",M.", "Musicians as M on G.Mu_ID=M.Mu_ID)"},
    {"PUBLISHER", ",P.", "Publishers as P on G.Pu_ID=P.Pu_ID)"},
    {"PROGRAMMER", ",Pr.", "Programmers as Pr on G.Pr_ID=Pr.Pr_ID)"},
    {"YEAR", ",Y.", "Years as Y on G.Ye_ID=Y.Ye_ID)"},
};

const char* const kDecoded[] = {"CONTROL", "RATING", "V_LENGTH", "V_PALNTSC"};

QString filterTerm(const browser::clsFilterDef& def)
{
    const QString upper = def.Field.toUpper();
    if (upper == kYearFilterField)
        return browser::CompareText(def);
    // The GameBase keys (PU_ID, GE_ID, ...) and the plain fields alike are fields of Games.
    const QString term = browser::CompareText(def);
    return term.isEmpty() ? QString() : QStringLiteral("G.") + term;
}

// The filter's conditions, joined as the main window joins them: a run of "Or" conditions in
// brackets. The usage views narrow both halves of their union alike.
void applyFilter(const browser::clsFilter& filter, QString& where1, QString* where2)
{
    const auto& defs = filter.Defs;
    const int count = int(defs.size());
    bool open = false;
    for (int i = 1; i <= count; ++i) {
        const browser::clsFilterDef& def = defs[i - 1];
        if (open && def.Join.isEmpty() && i < count) {
            where1 += QLatin1Char(')');
            if (where2)
                *where2 += QLatin1Char(')');
            open = false;
        }
        if (i < count && defs[i].Join == QLatin1String("Or") && !open) {
            open = true;
            where1 = AddWhere(where1, QStringLiteral("("));
            if (where2)
                *where2 = AddWhere(*where2, QStringLiteral("("));
        }
        QString join = def.Join;
        const QString term = filterTerm(def);
        where1 = AddWhere(where1, term, join);
        if (where2)
            *where2 = AddWhere(*where2, term, join);
    }
    if (open) {
        where1 += QLatin1Char(')');
        if (where2)
            *where2 += QLatin1Char(')');
    }
}

bool filterUsesYear(const browser::clsFilter* filter)
{
    if (!filter)
        return false;
    for (const auto& def : filter->Defs)
        if (def.Field.toUpper() == kYearFilterField)
            return true;
    return false;
}

struct ColumnParts
{
    QString fields;
    QString joins;
    QString opens;
    QStringList decoded;
};

// Step 7: the extra columns, each lookup table joined at most once.
ColumnParts columnParts(const QString& listColumns, bool yearForFilter, const QString& prefix)
{
    ColumnParts parts;
    QStringList columns = listColumns.toUpper().split(QStringLiteral("@@@"), Qt::SkipEmptyParts);
    if (yearForFilter)
        columns.append(kYearFilterField); // the filter's Y.YEAR needs the table of years
    QStringList joined;
    for (QString column : columns) {
        column = column.trimmed();
        if (column == kYearFilterField)
            column = QStringLiteral("YEAR");
        const GBField* field = FindGBField(column);
        const LookupJoin* lookup = nullptr;
        for (const LookupJoin& l : kLookups)
            if (column == QLatin1String(l.column))
                lookup = &l;
        if (lookup) {
            if (joined.contains(column))
                continue;
            joined.append(column);
            parts.fields +=
                QLatin1String(lookup->alias) + FieldSql(field->name, field->caption, true);
            parts.joins += QStringLiteral(" Left Join ") + prefix + QLatin1String(lookup->join);
            parts.opens += QLatin1Char('(');
        } else if (field) {
            if (joined.contains(column))
                continue;
            joined.append(column);
            parts.fields += QStringLiteral(",G.") + FieldSql(field->name, field->caption, true);
        } else {
            continue;
        }
        if (IsDecodedColumn(column))
            parts.decoded.append(column);
    }
    return parts;
}

QString intText(const QVariant& value)
{
    return value.isNull() ? QString() : value.toString();
}

// The whole-number value of a cell, or -1 when it holds none.
int codeOf(const QVariant& value)
{
    bool ok = false;
    const double d = value.toString().trimmed().toDouble(&ok);
    return ok && d == int(d) ? int(d) : -1;
}

} // namespace

const QVector<GBField>& GBFields()
{
    static const QVector<GBField> fields = {
        {QStringLiteral("Comment"), QStringLiteral("Kommentar")},
        {QStringLiteral("Cracker"), QStringLiteral("Cracker")},
        {QStringLiteral("Genre"), QStringLiteral("Spielkategorie")},
        {QStringLiteral("Language"), QStringLiteral("Sprache")},
        {QStringLiteral("Musician"), QStringLiteral("Musiker")},
        {QStringLiteral("Publisher"), QStringLiteral("Herausgeber")},
        {QStringLiteral("Programmer"), QStringLiteral("Programmierer")},
        {QStringLiteral("V_Length"), QStringLiteral("Größe")},
        {QStringLiteral("Year"), QStringLiteral("Jahr")},
        {QStringLiteral("GA_ID"), QStringLiteral("Game-ID")},
        {QStringLiteral("Filename"), QStringLiteral("Dateiname")},
        {QStringLiteral("ScrnshotFilename"), QStringLiteral("Screenshot-Datei")},
        {QStringLiteral("SidFilename"), QStringLiteral("Sid-Datei")},
        {QStringLiteral("DateLastPlayed"), QStringLiteral("Letzter Start mit GB")},
        {QStringLiteral("TimesPlayed"), QStringLiteral("Anzahl Starts mit GB")},
        {QStringLiteral("FileToRun"), QStringLiteral("Startdatei")},
        {QStringLiteral("HighScore"), QStringLiteral("Eigener Highscore")},
        {QStringLiteral("Classic"), QStringLiteral("Classic")},
        {QStringLiteral("Extras"), QStringLiteral("Extras")},
        {QStringLiteral("Rating"), QStringLiteral("Bewertung")},
        {QStringLiteral("V_LoadingScreen"), QStringLiteral("Start-Bildschirm")},
        {QStringLiteral("V_HighScoreSaver"), QStringLiteral("Highscore-Saver")},
        {QStringLiteral("V_IncludedDocs"), QStringLiteral("Anleitung")},
        {QStringLiteral("V_PalNTSC"), QStringLiteral("Pal/NTSC")},
        {QStringLiteral("V_TrueDriveEmu"), QStringLiteral("Drive-Emulation")},
        {QStringLiteral("Version"), QStringLiteral("Version")},
        {QStringLiteral("V_Trainers"), QStringLiteral("Trainers")},
        {QStringLiteral("PlayersFrom"), QStringLiteral("Spieler min")},
        {QStringLiteral("PlayersTo"), QStringLiteral("Spieler max")},
        {QStringLiteral("PlayersSim"), QStringLiteral("Simultanspieler")},
        {QStringLiteral("V_Comment"), QStringLiteral("Versions-Anmerkung")},
        {QStringLiteral("Adult"), QStringLiteral("Erwachsene")},
        {QStringLiteral("MemoText"), QStringLiteral("Anmerkungen")},
        {QStringLiteral("Control"), QStringLiteral("Control")},
    };
    return fields;
}

QString GBFieldTableText()
{
    QStringList items{QStringLiteral("FILE@") + GBNameCaption()};
    for (const GBField& f : GBFields())
        items.append(f.name + QLatin1Char('@') + app::Translate(f.caption));
    return items.join(QStringLiteral("@@@"));
}

const GBField* FindGBField(const QString& upperName)
{
    for (const GBField& f : GBFields())
        if (f.name.compare(upperName, Qt::CaseInsensitive) == 0)
            return &f;
    return nullptr;
}

QString GBFieldCaption(const QString& name)
{
    const GBField* f = FindGBField(name);
    return f ? app::Translate(f->caption) : QString();
}

QString GBNameCaption()
{
    return browser::ViewCaptions::current().file;
}

QString FieldSql(const QString& name, const QString& caption, bool translate)
{
    QString alias = caption;
    if (translate) {
        alias = app::Translate(caption);
        alias.replace(QLatin1Char('['), QLatin1Char('-'));
        alias.replace(QLatin1Char(']'), QLatin1Char('-'));
        alias.replace(QLatin1Char('.'), QLatin1Char(' '));
    }
    if (name.isEmpty())
        return alias.left(1).toUpper() + alias.mid(1).toLower();
    return name + QStringLiteral(" as [") + alias + QLatin1Char(']');
}

bool IsDecodedColumn(const QString& upperName)
{
    for (const char* d : kDecoded)
        if (upperName == QLatin1String(d))
            return true;
    return false;
}

QString GetFormattedValue(const QString& field, const QVariant& value, const QVariant& lengthType)
{
    static const QStringList control = {
        QStringLiteral("JoyPort2"),    QStringLiteral("JoyPort1"),    QStringLiteral("Keyboard"),
        QStringLiteral("PaddlePort2"), QStringLiteral("PaddlePort1"), QStringLiteral("Mouse"),
        QStringLiteral("LightPen"),    QStringLiteral("KoalaPad"),    QStringLiteral("LightGun")};
    static const QStringList rating = {QStringLiteral("Terrible"), QStringLiteral("Poor"),
                                       QStringLiteral("Average"), QStringLiteral("Quite Good"),
                                       QStringLiteral("Very Good")};
    static const QStringList palNtsc = {QStringLiteral("PAL"), QStringLiteral("BOTH"),
                                        QStringLiteral("NTSC"), QStringLiteral("PAL[+NTSC?]")};
    static const QStringList lengthUnits = {QStringLiteral("Block(s)"), QStringLiteral("Disk(s)"),
                                            QStringLiteral("Cartridge(s)"),
                                            QStringLiteral("Tape(s)")};
    const QString upper = field.toUpper();
    const int code = codeOf(value);
    if (upper == u"CONTROL")
        return code >= 0 && code < control.size() ? control[code] : intText(value);
    if (upper == u"RATING")
        return code >= 1 && code <= rating.size() ? rating[code - 1] : QString();
    if (upper == u"V_PALNTSC")
        return code >= 0 && code < palNtsc.size() ? palNtsc[code] : intText(value);
    if (upper == u"V_LENGTH") {
        const int unit = codeOf(lengthType);
        if (value.isNull() || unit < 0 || unit >= lengthUnits.size())
            return intText(value);
        return intText(value) + QLatin1Char(' ') + lengthUnits[unit];
    }
    return intText(value);
}

GBViewSql BuildGBViewSql(const GBViewInput& in)
{
    GBViewSql out;
    const QString search = catalogue::SqlQuote(in.search);
    const QString prefix = QStringLiteral("[;database=") + in.gameBasePath + QStringLiteral("].");
    const QString nameCaption = in.nameCaption.isEmpty() ? GBNameCaption() : in.nameCaption;
    const bool usage = in.view == kGBViewLast || in.view == kGBViewTop;

    QString head, from, where1, where2, unionPart, order;
    if (in.view == kGBViewGameBase) {
        where1 = LikeClause(QStringLiteral(" where G.Name like"), search);
        head = QStringLiteral("Select G.GA_ID,iif(G.ScrnshotFilename='',0,1) as Icon,"
                              "G.ScrnshotFilename as Scr,G.V_LengthType,G.") +
               FieldSql(QStringLiteral("Name"), nameCaption, false);
        from = QStringLiteral("Games as G ");
    } else {
        out.onGameBase = false;
        head = QStringLiteral("Select A.ID as ID,A.GB_ID,AF.iFileType as Icon,G.V_LengthType,A.") +
               FieldSql(QStringLiteral("tProgram"), nameCaption, false);
        from =
            QStringLiteral("((C64Files as A Left Join Category as AF on A.Category_File=AF.ID)") +
            QStringLiteral(" Left Join ") + prefix +
            QStringLiteral("Games as G on A.GB_ID=G.GA_ID)");
        where1 = AddWhere(where1, LikeClause(QStringLiteral("A.tProgram like"), search));
        where1 = AddWhere(where1, QStringLiteral("not isnull(A.GB_ID)"));
        where2 = AddWhere(where2, LikeClause(QStringLiteral("G.Name like"), search));
        if (usage) {
            const bool last = in.view == kGBViewLast;
            const QString caption =
                last ? QStringLiteral("Zuletzt gestartet") : QStringLiteral("Zähler");
            head += QLatin1Char(',') + FieldSql(last ? QStringLiteral("A.tsLastStarted")
                                                     : QStringLiteral("A.lStartCount"),
                                                caption, true);
            unionPart =
                QStringLiteral(" Union SELECT 0 AS ID, G.GA_ID, 28 AS Icon, G.V_LengthType, G.Name "
                               "AS File") +
                (last ? QStringLiteral(",G.DateLastPlayed as DLP")
                      : QStringLiteral(",G.TimesPlayed as TP"));
            where1 = AddWhere(where1, last ? QStringLiteral("not isnull(A.tsLastStarted)")
                                           : QStringLiteral("not isnull(A.lStartCount) "));
            where2 = AddWhere(where2, last ? QStringLiteral("G.DateLastPlayed<>''")
                                           : QStringLiteral("G.TimesPlayed >0 "));
            out.orderCaption = app::Translate(caption);
            order = QStringLiteral(" order by [") + out.orderCaption + QStringLiteral("] desc");
        }
    }

    if (in.filter)
        applyFilter(*in.filter, where1, usage ? &where2 : nullptr);
    if (!in.adultContent) {
        where1 = AddWhere(where1, QStringLiteral("Adult=0"));
        if (usage)
            where2 = AddWhere(where2, QStringLiteral("Adult=0"));
    }

    const ColumnParts cols = columnParts(in.listColumns, filterUsesYear(in.filter), prefix);
    out.decodedColumns = cols.decoded;
    out.statement =
        head + cols.fields + QStringLiteral(" From ") + cols.opens + from + cols.joins + where1;
    if (!unionPart.isEmpty())
        out.statement += unionPart + cols.fields + QStringLiteral(" From ") + cols.opens + prefix +
                         QStringLiteral("Games as G ") + cols.joins + where2 + order;
    return out;
}

QString ScreenshotFile(const QString& folder, const QString& relative, int n)
{
    if (relative.isEmpty())
        return {};
    QString base = folder;
    if (!base.endsWith(QLatin1Char('/')) && !base.endsWith(QLatin1Char('\\')))
        base += QLatin1Char('/');
    base += relative;
    base.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (n == 0)
        return base;
    // The last four characters are taken as the extension with its dot.
    return base.left(base.size() - 4) + QLatin1Char('_') + QString::number(n) + base.right(4);
}

QStringList ExistingScreenshots(const QString& folder, const QString& relative)
{
    QStringList found;
    for (int n = 0; n < 3; ++n) {
        const QString file = ScreenshotFile(folder, relative, n);
        if (file.isEmpty() || !QFileInfo(file).isFile())
            break;
        found.append(file);
    }
    return found;
}

} // namespace vd::gamebase
