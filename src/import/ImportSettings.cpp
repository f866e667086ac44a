#include "import/ImportSettings.h"

#include "app/Settings.h"
#include "gamebase/GameBase.h"

namespace vd::import {

ImportOptions importOptionsInForce()
{
    ImportOptions o;
    o.ImportFiles = app::gImportFiles;
    o.CreateMd5Hash = app::gCreateMd5Hash;
    o.CheckC64Files = app::gCheckC64Files;
    o.RefreshC64Files = app::gRefreshC64Files;
    o.SerachArchivFiles = app::gSerachArchivFiles;
    o.ConnectFilesToGB = app::gConnectFilesToGB;
    o.SkipZipSize = app::gSkipZipSize;
    o.ArchivOnlyGame = gamebase::gArchivOnlyGame;
    return o;
}

} // namespace vd::import
