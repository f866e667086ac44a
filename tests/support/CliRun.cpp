#include "support/CliRun.h"

#include <QCoreApplication>
#include <QProcess>

namespace vd::test {

QString cliProgram()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/../src/vellumdock-cli");
}

CliRun runCli(const QString& home, const QStringList& args)
{
    QProcess p;
    p.start(cliProgram(), QStringList{QStringLiteral("--home"), home} + args);
    CliRun r;
    if (!p.waitForFinished(60000))
        return r;
    r.code = p.exitCode();
    r.out =
        QString::fromUtf8(p.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    r.err =
        QString::fromUtf8(p.readAllStandardError()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return r;
}

} // namespace vd::test
