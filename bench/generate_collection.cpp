// Writes the synthetic collection of the import benchmarks, reproducible from a seed.
//
//   vellumdock-bench-generate FOLDER [--d64 N] [--seed S]
//   vellumdock-bench-generate FOLDER --files N [--seed S]   (the collection at scale)

#include "CollectionGenerator.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addPositionalArgument("folder", "Where the collection is written (emptied first).");
    parser.addOption({"d64", "Number of D64 images (default 20000).", "N", "20000"});
    parser.addOption({"files",
                      "The collection at scale: about N files of all kinds, one in ten "
                      "inside a ZIP (replaces --d64).",
                      "N"});
    parser.addOption({"seed", "Seed (default 64).", "S", "64"});
    parser.process(app);
    QTextStream out(stdout);
    if (parser.positionalArguments().size() != 1) {
        out << parser.helpText();
        return 2;
    }
    vd::bench::CollectionRecipe recipe;
    if (parser.isSet("files")) {
        recipe =
            vd::bench::scaleRecipe(parser.value("files").toInt(), parser.value("seed").toUInt());
    } else {
        recipe.d64 = parser.value("d64").toInt();
        recipe.seed = parser.value("seed").toUInt();
        recipe.t64 = recipe.d64 / 40;
        recipe.prg = recipe.d64 * 3 / 40;
        recipe.tap = recipe.d64 / 100;
        recipe.crt = recipe.d64 / 100;
    }
    vd::bench::CollectionStats stats;
    QString error;
    QElapsedTimer clock;
    clock.start();
    if (!vd::bench::generateCollection(parser.positionalArguments()[0], recipe, &stats, &error)) {
        out << error << Qt::endl;
        return 1;
    }
    out << stats.files << " files with entries (" << stats.d64Files << " D64), " << stats.entries
        << " entries, " << stats.zips << " of them in ZIPs (" << stats.nestedZips
        << " inside another ZIP); written in " << clock.elapsed() / 1000.0 << " s" << Qt::endl;
    return 0;
}
