#pragma once
// A synthetic C64 collection for the import benchmark, the same for the same seed: D64 images
// with 1 to 40 directory entries (about 20 on average, one in a hundred with a full directory
// of 144), and T64 tapes, PRG files, TAP files and CRT cartridges beside them, spread over
// letter folders as collections usually are. Disk images are written sparse: only the
// directory track holds bytes, which is all an import reads.

#include <QString>

namespace vd::bench {

struct CollectionRecipe
{
    quint32 seed = 64;
    int d64 = 20000;
    int t64 = 500;
    int prg = 1500;
    int tap = 200;
    int crt = 200;
};

struct CollectionStats
{
    qint64 files = 0;
    qint64 d64Files = 0;
    qint64 entries = 0; // the rows the import should write into C64Files
};

// Writes the collection under `folder` (which is emptied first). False on a write failure.
bool generateCollection(const QString& folder, const CollectionRecipe& recipe, CollectionStats* stats,
                        QString* error);

// The recipe the collection in `folder` was written with, from its marker file; false when there
// is none.
bool readCollectionMarker(const QString& folder, CollectionRecipe* recipe, CollectionStats* stats);

} // namespace vd::bench
