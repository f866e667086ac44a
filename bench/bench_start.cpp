// A start with a temporary disk copy: StartFile on entries of D64 images of a catalogue (an
// entry past the first, a profile with "UseTempFile"), the emulator a script that exits at once,
// timed from the call to its return (the copy made and patched, the emulator started, both
// rows counted). Beside it, in the same run and alternating start by start, the plainest way to
// the same: the image copied, its first directory sector read and written back, the same
// script started detached.
//
//   vellumdock-bench-start --catalogue FILE [--starts K] [--dir DIR]

#include "app/Globals.h"
#include "app/Settings.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "import/clsFileManager.h"
#include "launch/Profiles.h"
#include "launch/ProfilSettings.h"
#include "launch/StartFile.h"
#include "platform/ScriptedDialogService.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <sqlite3.h>

using namespace vd;

namespace {

QTextStream out(stdout);

struct Target
{
    qint32 entry = 0;
    qint64 file = 0;
    QString path;
};

// Entries past the first of loose D64 images, one per image, chosen at random.
QVector<Target> targets(const QString& catalogue, int count)
{
    QVector<Target> all;
    sqlite3* db = nullptr;
    sqlite3_stmt* st = nullptr;
    if (sqlite3_open_v2(catalogue.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) ==
            SQLITE_OK &&
        sqlite3_prepare_v2(db,
                           "SELECT min(E.ID),F.ID,F.tPath FROM C64Files AS E JOIN Category AS F "
                           "ON E.Category_File=F.ID WHERE F.iFileType=1 AND F.tUnpackPath IS NULL "
                           "AND E.lIndex>1 GROUP BY F.ID",
                           -1, &st, nullptr) == SQLITE_OK)
        while (sqlite3_step(st) == SQLITE_ROW)
            all.append(
                {qint32(sqlite3_column_int(st, 0)), sqlite3_column_int64(st, 1),
                 QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 2)))});
    sqlite3_finalize(st);
    sqlite3_close(db);
    QRandomGenerator rng(5);
    std::shuffle(all.begin(), all.end(), rng);
    all.resize(std::min<qsizetype>(all.size(), count));
    return all;
}

// The baseline: copy, one sector read and written back, the emulator started detached.
bool plainStart(const Target& t, const QString& temp, const QString& emulator)
{
    const QString copy = temp + QStringLiteral("/plain-%1.d64").arg(t.file);
    QFile::remove(copy);
    if (!QFile::copy(t.path, copy))
        return false;
    QFile f(copy);
    if (!f.open(QIODevice::ReadWrite) || !f.seek(0x16600))
        return false;
    QByteArray sector = f.read(256);
    if (!f.seek(0x16600) || f.write(sector) != 256)
        return false;
    f.close();
    return QProcess::startDetached(emulator, {QStringLiteral("-autostart"), copy});
}

double percentile(QVector<double> v, double p)
{
    if (v.isEmpty())
        return 0;
    std::sort(v.begin(), v.end());
    return v[std::min<qsizetype>(v.size() - 1, qsizetype(p * double(v.size() - 1) + 0.5))];
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({"catalogue", "The catalogue (an imported one; a copy is written).", "FILE"});
    parser.addOption({"starts", "Starts of each kind (default 50).", "K", "50"});
    parser.addOption({"dir", "Keep the copy of the catalogue in DIR.", "DIR"});
    parser.process(app);
    const QString source = parser.value("catalogue");
    if (source.isEmpty() || !QFile::exists(source)) {
        out << "give --catalogue FILE, e.g. a catalogue kept by vellumdock-bench-import --keep"
            << Qt::endl;
        return 2;
    }
    QTemporaryDir home;
    const QString dir = parser.isSet("dir") ? parser.value("dir") : home.path();
    QDir().mkpath(dir);
    const QString path = dir + QStringLiteral("/started-") + QFileInfo(source).fileName();
    QFile::remove(path);
    if (!QFile::copy(source, path)) {
        out << "cannot copy " << source << Qt::endl;
        return 1;
    }

    app::setProgramFolder(home.path() + QStringLiteral("/home"));
    QDir().mkpath(app::gTempPath);
    app::reloadIni();
    launch::LoadProfils();
    platform::ScriptedDialogService dialogs;
    platform::setDialogService(&dialogs);

    // The emulator: a script that exits at once.
    const QString emulator = home.path() + QStringLiteral("/fake-emu");
    {
        QFile f(emulator);
        if (!f.open(QIODevice::WriteOnly))
            return 1;
        f.write("#!/bin/sh\nexit 0\n");
        f.close();
        f.setPermissions(f.permissions() | QFile::ExeOwner);
    }
    for (const launch::EmulatorPtr& e : launch::gEmulators)
        e->Path = emulator;
    QString profil;
    for (const launch::ProfilPtr& p : launch::gProfils)
        if (p->Options.toUpper().contains(QStringLiteral("USETEMPFILE=@=1")) &&
            p->Options.contains(QStringLiteral("-autostart"))) {
            profil = p->Key;
            break;
        }
    if (profil.isEmpty()) {
        out << "no profile with UseTempFile among the defaults" << Qt::endl;
        return 1;
    }

    const int count = std::max(1, parser.value("starts").toInt());
    const QVector<Target> list = targets(path, count);
    if (list.isEmpty()) {
        out << "no entry past the first of a loose D64 in " << source << Qt::endl;
        return 1;
    }
    auto database = db::Database::open(path);
    import::clsFileManager fm;
    QVector<double> ours, plain;
    int failed = 0, withoutCopy = 0;
    for (const Target& t : list) {
        QString key = profil;
        QElapsedTimer clock;
        clock.start();
        const QString status = launch::StartFile(fm, *database, t.entry, key);
        ours << double(clock.nsecsElapsed()) / 1e6;
        if (status.isEmpty())
            ++failed;
        else if (!status.startsWith(QLatin1Char(' ')))
            ++withoutCopy;
        clock.restart();
        if (!plainStart(t, app::gTempPath, emulator))
            ++failed;
        plain << double(clock.nsecsElapsed()) / 1e6;
    }
    if (!dialogs.messages().isEmpty())
        out << "messages: " << dialogs.messages().join(QStringLiteral(" | ")) << Qt::endl;
    const double m = percentile(ours, 0.5), p = percentile(plain, 0.5);
    out << QStringLiteral("%1 starts with a temporary disk copy: median %2 ms (max %3); by hand "
                          "%4 ms (max %5); ratio %6; %7 failed, %8 without a copy")
               .arg(ours.size())
               .arg(m, 0, 'f', 2)
               .arg(percentile(ours, 1), 0, 'f', 2)
               .arg(p, 0, 'f', 2)
               .arg(percentile(plain, 1), 0, 'f', 2)
               .arg(m / p, 0, 'f', 2)
               .arg(failed)
               .arg(withoutCopy)
        << Qt::endl;
    out << "TABLE|start with a temporary disk copy (" << ours.size() << " starts)|"
        << QStringLiteral("%1 ms (max %2)").arg(m, 0, 'f', 2).arg(percentile(ours, 1), 0, 'f', 2)
        << '|' << QStringLiteral("%1 ms").arg(p, 0, 'f', 2) << "|50 ms|"
        << (m < 50 && failed == 0 && withoutCopy == 0 ? "met" : "NOT met") << Qt::endl;
    database.reset();
    platform::setDialogService(nullptr);
    QFile::remove(path);
    return failed == 0 ? 0 : 1;
}
