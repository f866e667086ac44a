#pragma once
// The command-line front end: a table of commands over the same core as the windows.

#include <QString>
#include <QStringList>

class QTextStream;

namespace vd::cli {

// Exit codes.
constexpr int kExitOk = 0;
constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;

struct Output
{
    QTextStream& out;
    QTextStream& err;
};

struct Command
{
    const char* name;
    const char* arguments; // for the usage text: "CATALOGUE STATEMENT"
    const char* summary;
    int minArguments;
    int maxArguments; // -1: no limit
    int (*run)(const QStringList& arguments, Output& io);
};

// Runs the command line `arguments` (without the program name). The program folder is set up
// after the arguments were checked; `executableFolder` is its default.
int runCli(const QStringList& arguments, const QString& executableFolder, Output& io);

QString usageText();

} // namespace vd::cli
