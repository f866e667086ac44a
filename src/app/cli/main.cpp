// The command-line front end. Every message the windows would show in a box goes to stderr.

#include "app/cli/Cli.h"
#include "platform/DialogService.h"
#include "platform/ScriptedDialogService.h"

#include <cstdio>
#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Vellumdock"));
    QTextStream out(stdout);
    QTextStream err(stderr);

    vd::platform::ConsoleDialogService console(&err);
    vd::platform::setDialogService(&console);
    vd::cli::Output io{out, err};
    const int result =
        vd::cli::runCli(app.arguments().mid(1), QCoreApplication::applicationDirPath(), io);
    out.flush();
    err.flush();
    vd::platform::setDialogService(nullptr);
    return result;
}
