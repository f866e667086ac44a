#pragma once
// The built command-line program, run end to end by the CLI test suites.

#include <QString>
#include <QStringList>

namespace vd::test {

struct CliRun
{
    int code = -1; // -1 when the program did not end within a minute
    QStringList out;
    QStringList err;
};

// vellumdock-cli of the same build as the running test.
QString cliProgram();

// Runs it with "--home HOME" before ARGS; stdout and stderr split into non-empty lines.
CliRun runCli(const QString& home, const QStringList& args);

} // namespace vd::test
