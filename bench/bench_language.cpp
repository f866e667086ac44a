// What a caption costs through Translate with a language file loaded: every caption of a window
// asks for its text once per load and once per change of language. Measured beside a plain
// QHash lookup of the same texts (the least any translation can cost), in the same run, rounds
// alternating; and the load of the file itself.
//
//   vellumdock-bench-language [--texts N] [--rounds R]

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>

namespace {

QTextStream out(stdout);

// Captions as the program writes them: hot keys, colons, umlauts; every fifth is unknown.
QStringList captions(int count)
{
    QStringList texts;
    for (int i = 0; i < count; ++i) {
        QString t = QStringLiteral("Größe der Datei Nummer %1").arg(i);
        if (i % 3 == 0)
            t.prepend(QLatin1Char('&'));
        if (i % 4 == 0)
            t += QStringLiteral(": ");
        texts << t;
    }
    return texts;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addOption({QStringLiteral("texts"), QStringLiteral("Captions."), QStringLiteral("N"),
                      QStringLiteral("2000")});
    parser.addOption({QStringLiteral("rounds"), QStringLiteral("Rounds."), QStringLiteral("R"),
                      QStringLiteral("200")});
    parser.process(app);
    const int count = std::max(10, parser.value(QStringLiteral("texts")).toInt());
    const int rounds = std::max(2, parser.value(QStringLiteral("rounds")).toInt());

    QTemporaryDir home;
    vd::app::setProgramFolder(home.path());
    QByteArray file;
    QHash<QString, QString> plain;
    const QStringList texts = captions(count);
    for (int i = 0; i < count; ++i) {
        if (i % 5 == 4)
            continue;
        const QString key = QStringLiteral("Größe der Datei Nummer %1").arg(i);
        const QString translation = QStringLiteral("Size of file number %1").arg(i);
        file += (key + QStringLiteral("@@") + translation + QStringLiteral("\r\n")).toUtf8();
        plain.insert(texts[i], translation);
    }
    QDir().mkpath(vd::app::gLangPath);
    QFile f(vd::app::gLangPath + QStringLiteral("Bench.lng"));
    if (!f.open(QIODevice::WriteOnly) || f.write(file) != file.size())
        return 1;
    f.close();
    vd::app::gLanguageFile = QStringLiteral("Bench.lng");

    QElapsedTimer timer;
    timer.start();
    const int loads = 20;
    for (int i = 0; i < loads; ++i)
        vd::app::LoadLanguage();
    const double loadMs = double(timer.nsecsElapsed()) / 1e6 / loads;

    qint64 translateNs = 0;
    qint64 plainNs = 0;
    qsizetype sink = 0;
    for (int r = 0; r < rounds; ++r) {
        timer.restart();
        for (const QString& t : texts)
            sink += vd::app::Translate(t).size();
        translateNs += timer.nsecsElapsed();
        timer.restart();
        for (const QString& t : texts)
            sink += plain.value(t, t).size();
        plainNs += timer.nsecsElapsed();
    }
    const double calls = double(count) * rounds;
    out << "language file of " << (count - count / 5) << " lines: load " << loadMs << " ms\n";
    out << "Translate: " << translateNs / calls
        << " ns per caption; plain QHash lookup: " << plainNs / calls << " ns ("
        << double(translateNs) / double(std::max<qint64>(1, plainNs)) << " x)\n";
    out << "(checksum " << sink << ")\n";
    return 0;
}
