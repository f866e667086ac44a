#include "app/cli/Cli.h"

#include "app/cli/BatchCommands.h"
#include "app/cli/CatalogueCommands.h"
#include "app/cli/GameBaseCommands.h"
#include "app/cli/ImportCommands.h"
#include "app/cli/LaunchCommands.h"
#include "app/cli/ListCommands.h"
#include "catalogue/DbError.h"
#include "gamebase/GameBase.h"
#include "platform/ProgramFolder.h"

#include <exception>
#include <QTextStream>

namespace vd::cli {

namespace {

constexpr Command kCommands[] = {
    {"new", "CATALOGUE",
     "Creates a new, empty catalogue and prints its path (\".vdb\" is appended unless the "
     "name ends in it).",
     1, 1, newCommand},
    {"sql", "CATALOGUE STATEMENT",
     "Runs one SQL statement on the catalogue. A query prints a line of field names and one "
     "tab-separated line per row; any other statement prints the number of rows affected.",
     2, 2, sqlCommand},
    {"import", "CATALOGUE PATH [--refresh] [--md5]",
     "Catalogues a folder (with its subfolders) or one file: prints each new file and message, "
     "then the numbers of files and entries added. --refresh reads known files again, --md5 "
     "stores MD5 sums; the importer settings of the program folder apply otherwise.",
     2, 4, importCommand},
    {"extract", "CATALOGUE ID",
     "Prints the path on disk of the file behind a C64Files id, or behind a Category id given "
     "with a minus sign; a file inside an archive is extracted into the Temp folder first, as "
     "starting it would.",
     2, 2, extractCommand},
    {"dir", "FILE",
     "Prints the directory of a disk image, tape or C64 file as the preview shows it: the disk "
     "name, then size, name and type of each entry.",
     1, 1, dirCommand},
    {"settings", "init | get SECTION KEY | set SECTION KEY VALUE",
     "init writes the settings file as the program writes it at its end (on a first run with "
     "the default emulators, profiles and extension assignments); get prints one key; set "
     "changes one key, read back and written as the program does.",
     1, 4, settingsCommand},
    {"start", "CATALOGUE ID [--profile KEY] [--dry-run]",
     "Starts a C64Files entry, or a Category file given with a minus sign, in the emulator of "
     "its profile and prints the status text. --dry-run prints the program, the working folder "
     "and each argument on a line of its own instead of starting, and counts nothing.",
     2, 5, startCommand},
    {"gamebase", "check FILE | cache FILE [--rebuild] | connect CATALOGUE [--gamebase FILE]",
     "check tests a GameBase file as the program does and prints its version and number of "
     "games; cache builds the SQLite cache of an Access GameBase in the Cache folder (when it "
     "is missing or out of date, always with --rebuild) and prints its path and each table's "
     "rows; connect reads every catalogued ZIP file without a game again and links it to the "
     "game whose Filename ends in its name (the GameBase of the settings, or FILE), printing "
     "each link and the result lines.",
     2, 4, gamebaseCommand},
    {"check", "CATALOGUE [--delete-missing | --new-path DIR [--old-path PATH]]",
     "Looks for every catalogued file on disk and prints those not found, then the result "
     "lines. --delete-missing removes the files not found from the catalogue; --new-path "
     "looks for them in DIR and its subfolders, by name or, with --old-path, at their path "
     "with PATH replaced by DIR, and stores the new paths.",
     1, 5, checkCatalogueCommand},
    {"compact", "CATALOGUE",
     "Compacts the catalogue; the previous file stays beside it with the extension \".OLD\".", 1, 1,
     compactCommand},
    {"md5", "CATALOGUE ID...",
     "Creates the missing MD5 sums of the catalogued files with these ids (Category) and "
     "prints each new sum, then the number of files.",
     2, -1, md5Command},
    {"export-dirs", "CATALOGUE ID... [--to DIR]",
     "Saves the directory of each D64, D71, G64 and D81 file with these ids (Category) as "
     "\"<name>.txt\" (size, name and type of each entry, tab-separated) beside the file or in "
     "DIR, and prints each file written, then the number of files.",
     2, -1, exportDirsCommand},
    {"list",
     "CATALOGUE [--view N] [--name T] [--file T] [--path T] [--new] [--filter NAME] [--node ID]",
     "Prints the rows the main window's list shows: view N (1 files, 2 disks and tapes, 3 "
     "categories, 4 new files, 5 last started, 6 top 100), narrowed by the search boxes "
     "(entry name, file name, path), the new-files box and a filter by name, for the tree "
     "node ID (a file or category; none for the root). Visible columns in display order, "
     "tab-separated, after a header line.",
     1, 15, listCommand},
};

const Command* findCommand(const QString& name)
{
    for (const Command& command : kCommands)
        if (name == QLatin1String(command.name))
            return &command;
    return nullptr;
}

bool acceptsCount(const Command& command, qsizetype count)
{
    return count >= command.minArguments &&
           (command.maxArguments < 0 || count <= command.maxArguments);
}

int usageError(Output& io, const QString& problem)
{
    io.err << problem << "\n\n" << usageText();
    io.err.flush();
    return kExitUsage;
}

int runCommand(const Command& command, const QStringList& arguments, Output& io)
{
    try {
        return command.run(arguments, io);
    } catch (const db::DbError& e) {
        io.err << e.description() << '\n';
        if (!e.statement().isEmpty())
            io.err << e.statement() << '\n';
    } catch (const std::exception& e) {
        io.err << QString::fromLocal8Bit(e.what()) << '\n';
    }
    return kExitFailure;
}

// "  first        second" with the second column starting at `width`, wrapped at 79.
QString twoColumns(const QString& first, const QString& second, int width)
{
    QString text = QStringLiteral("  ") + first.leftJustified(width - 2) + QLatin1Char(' ');
    qsizetype column = text.size();
    if (column > width + 1) {
        text += QLatin1Char('\n') + QString(width + 1, QLatin1Char(' '));
        column = width + 1;
    }
    const QStringList words = second.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (qsizetype i = 0; i < words.size(); ++i) {
        if (i > 0 && column + 1 + words[i].size() > 79) {
            text += QLatin1Char('\n') + QString(width + 1, QLatin1Char(' '));
            column = width + 1;
        } else if (i > 0) {
            text += QLatin1Char(' ');
            ++column;
        }
        text += words[i];
        column += words[i].size();
    }
    return text + QLatin1Char('\n');
}

} // namespace

QString usageText()
{
    constexpr int kWidth = 28;
    QString text = QStringLiteral("Usage: vellumdock-cli [--home DIR] COMMAND [ARGUMENTS]\n\n"
                                  "Commands:\n");
    for (const Command& command : kCommands)
        text += twoColumns(QStringLiteral("%1 %2").arg(QLatin1String(command.name),
                                                       QLatin1String(command.arguments)),
                           QLatin1String(command.summary), kWidth);
    text += QStringLiteral("\nOptions:\n");
    text +=
        twoColumns(QStringLiteral("--home DIR"),
                   QStringLiteral("Use DIR as the program folder (created when missing)."), kWidth);
    text += twoColumns(QStringLiteral("--help"), QStringLiteral("Show this text."), kWidth);
    text += QStringLiteral("\nMessages go to stderr, one line each.\n"
                           "Exit status: 0 success, 1 failure, 2 wrong usage.\n");
    return text;
}

int runCli(const QStringList& arguments, const QString& executableFolder, Output& io)
{
    const platform::HomeOption home = platform::takeHomeOption(arguments);
    const QStringList& args = home.arguments;
    if (!args.isEmpty() && (args[0] == QLatin1String("--help") || args[0] == QLatin1String("-h"))) {
        io.out << usageText();
        return kExitOk;
    }
    if (home.missingValue)
        return usageError(io, QStringLiteral("--home needs a folder."));
    if (args.isEmpty())
        return usageError(io, QStringLiteral("No command given."));
    const Command* command = findCommand(args[0]);
    gamebase::connectCatalogues(); // "[;database=PATH]" in catalogue statements
    if (!command)
        return usageError(io, QStringLiteral("Unknown command: %1").arg(args[0]));
    const QStringList commandArguments = args.mid(1);
    if (!acceptsCount(*command, commandArguments.size()))
        return usageError(
            io,
            QStringLiteral("Wrong number of arguments for %1.").arg(QLatin1String(command->name)));

    QString error;
    if (!platform::initProgramFolder(home.home, executableFolder, &error)) {
        io.err << error << '\n';
        return kExitFailure;
    }
    return runCommand(*command, commandArguments, io);
}

} // namespace vd::cli
