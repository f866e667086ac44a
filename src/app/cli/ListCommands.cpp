#include "app/cli/ListCommands.h"

#include "app/cli/CatalogueCommands.h"
#include "app/Globals.h"
#include "app/Settings.h"
#include "browser/Filters.h"
#include "browser/ViewBuilder.h"
#include "browser/ViewRows.h"
#include "catalogue/Catalogue.h"
#include "catalogue/RowOps.h"

#include <QTextStream>

namespace vd::cli {

namespace {

struct CatalogueCloser
{
    ~CatalogueCloser() { catalogue::CloseCatalogue(); }
};

int usage(Output& io, const QString& problem)
{
    io.err << problem << "\n\n" << usageText();
    return kExitUsage;
}

qint64 maxId(const QString& table)
{
    return catalogue::GetDbValue(QStringLiteral("Max(ID)"), table).toLongLong();
}

struct ListOptions
{
    browser::ViewInput input;
    QString catalogue;
    QString filterName;
    qint64 node = 0;
};

// Fills `options` from the arguments; an empty text when they are fine, else the problem.
QString parseList(const QStringList& arguments, ListOptions& options)
{
    QStringList positional;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& a = arguments[i];
        const bool hasValue = i + 1 < arguments.size();
        bool ok = true;
        if (a == u"--new") {
            options.input.newFiles = true;
        } else if (a == u"--view" && hasValue) {
            options.input.view = arguments[++i].toInt(&ok);
            if (!ok || options.input.view < 1 || options.input.view > 6)
                return QStringLiteral("--view takes a view number from 1 to 6.");
        } else if (a == u"--name" && hasValue) {
            options.input.search[0] = arguments[++i];
        } else if (a == u"--file" && hasValue) {
            options.input.search[1] = arguments[++i];
        } else if (a == u"--path" && hasValue) {
            options.input.search[2] = arguments[++i];
        } else if (a == u"--filter" && hasValue) {
            options.filterName = arguments[++i];
        } else if (a == u"--node" && hasValue) {
            options.node = arguments[++i].toLongLong(&ok);
            if (!ok)
                return QStringLiteral("--node takes the id of a tree node.");
        } else if (a.startsWith(QLatin1String("--"))) {
            return QStringLiteral("Unknown or incomplete option for list: %1").arg(a);
        } else {
            positional << a;
        }
    }
    if (positional.size() != 1)
        return QStringLiteral("list needs exactly one catalogue.");
    options.catalogue = positional[0];
    return {};
}

} // namespace

int listCommand(const QStringList& arguments, Output& io)
{
    ListOptions options;
    const QString problem = parseList(arguments, options);
    if (!problem.isEmpty())
        return usage(io, problem);
    app::reloadIni();
    app::loadSettings();
    browser::LoadMainFilters();
    if (!options.filterName.isEmpty()) {
        options.input.filter = browser::gFilters.findByName(options.filterName);
        if (!options.input.filter) {
            io.err << QStringLiteral("No filter of that name: %1").arg(options.filterName) << '\n';
            return kExitFailure;
        }
    }
    if (!catalogue::OpenCatalogueFile(options.catalogue))
        return kExitFailure;
    CatalogueCloser closer;
    // Rows are new when added after the catalogue was opened: on the command line, none.
    options.input.startCategoryID = maxId(QStringLiteral("Category"));
    options.input.startC64FileID = maxId(QStringLiteral("C64Files"));
    options.input.treeSubItems = app::gTreeSubItems;
    options.input.mainListColumns = app::gMainListColumns;
    options.input.captions = browser::ViewCaptions::current();
    const browser::ViewSql sql = browser::BuildViewSql(options.input);
    const browser::ViewRows rows = browser::ReadViewRows(*app::gDB, sql, options.node,
                                                         app::gListLayouts, options.input.captions);
    io.out << rows.captions.join(QLatin1Char('\t')) << '\n';
    for (const auto& row : rows.rows) {
        QStringList cells;
        for (const QVariant& v : row)
            cells << cellText(v);
        io.out << cells.join(QLatin1Char('\t')) << '\n';
    }
    return kExitOk;
}

} // namespace vd::cli
