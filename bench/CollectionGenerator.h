#pragma once
// A synthetic C64 collection for the import benchmarks, the same for the same seed: D64 images
// with 1 to 40 directory entries (about 20 on average, one in a hundred with a full directory
// of 144), and T64 tapes, PRG files, TAP files and CRT cartridges beside them, spread over
// letter folders as collections usually are. The collection at scale adds D71 and D81 images,
// G64 images and a share of the files packed into ZIPs, some of them a ZIP inside a ZIP.
// Disk images lying loose are written sparse: only the directory track holds bytes, which is
// all an import reads.

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
    int d71 = 0;
    int d81 = 0;
    int g64 = 0;
    int maxD64Entries = 40; // directory entries of a D64 besides the full ones: 1 to this
    int zipPercent = 0;     // of all files, packed into a ZIP of their own
    int nestedPercent = 0;  // of those ZIPs, packed once more into an outer ZIP
};

// The collection at scale: about `files` files with ten entries each on average, seven in ten
// of them D64, one in ten inside a ZIP and one ZIP in ten of those inside another.
CollectionRecipe scaleRecipe(int files, quint32 seed = 64);

struct CollectionStats
{
    qint64 files = 0;    // files with entries, loose or inside a ZIP: the Category rows
    qint64 d64Files = 0; // D64 images, with entries or not
    qint64 entries = 0;  // the rows the import should write into C64Files
    qint64 zips = 0;     // ZIP files lying in the folder
    qint64 nestedZips = 0;
};

// Writes the collection under `folder` (which is emptied first). False on a write failure.
bool generateCollection(const QString& folder, const CollectionRecipe& recipe,
                        CollectionStats* stats, QString* error);

// The recipe the collection in `folder` was written with, from its marker file; false when there
// is none.
bool readCollectionMarker(const QString& folder, CollectionRecipe* recipe, CollectionStats* stats);

// Whether two recipes write the same collection.
bool sameRecipe(const CollectionRecipe& a, const CollectionRecipe& b);

} // namespace vd::bench
