#pragma once
// The settings that steer an import, as the importer holds them. The front ends fill them from
// the settings file; the defaults are those of a new settings file.

#include "catalogue/CatalogueSchema.h"

#include <QString>

namespace vd::import {

struct ImportOptions
{
    // The extensions a folder scan takes, upper case with their point, ";" between.
    QString ImportFiles = catalogue::kStartExtensions + QLatin1Char(';') +
                          catalogue::kArchiveExtensions + QLatin1Char(';') +
                          catalogue::kPictureExtensions + QLatin1Char(';') +
                          catalogue::kTextExtensions + QLatin1Char(';') + catalogue::kPdfExtensions;
    bool CreateMd5Hash = false;                // new file rows get tHash
    bool CheckC64Files = false;                // the catalogue check reads known files again
    bool RefreshC64Files = false;              // an import reads known files again (flag 4)
    bool SerachArchivFiles = false;            // ... and known archives too (flag 8)
    bool ConnectFilesToGB = false;             // archives are looked up in the GameBase
    QString SkipZipSize = QStringLiteral("5"); // archives above this many MiB are asked about
    bool ArchivOnlyGame = true; // of a GameBase archive only the game's own file is taken
};

// The LoadFile flags.
constexpr int kFlagImportList = 1; // only extensions of ImportFiles
constexpr int kFlagNamedFile = 2;  // one file named directly
constexpr int kFlagRefresh = 4;    // a known file is read again
constexpr int kFlagRefreshArchives = 8;

} // namespace vd::import
