#include "setup/Options.h"

#include "app/Settings.h"
#include "app/Translate.h"
#include "gamebase/GameBase.h"
#include "gamebase/GameBaseSettings.h"
#include "launch/ProfilSettings.h"
#include "platform/DialogService.h"
#include "platform/Files.h"

namespace vd::setup {

namespace {

const QString kNotepad = QStringLiteral("Notepad");

QString gameBaseText(const QString& path)
{
    return path == gamebase::kGameBaseHint ? QString() : path;
}

// Steps 2 and 3 of a record collection: the deleted records go, the copy replaces the global.
template <typename Collection> void replaceGlobal(Collection& copy, Collection& global)
{
    for (qsizetype i = copy.count() - 1; i >= 0; --i)
        if (copy.at(i)->Name.isEmpty())
            copy.removeAt(i);
    global = copy.clone();
}

// Steps 4 to 6.
bool applyDbTab(const OptionsState& s, OptionsField& focus)
{
    app::gCreateMd5Hash = s.md5;
    app::gRefreshC64Files = s.refreshFiles;
    // Turning the search in archives on would test that the unpacking program is there.
    // Archives are read in process here, so that test always passes.
    app::gSerachArchivFiles = s.archiv;
    app::gCheckC64Files = s.c64FilesDB;
    app::gConnectFilesToGB = s.gbFiles;
    app::gSkipZipSize = s.size == u"0" ? QString() : s.size;

    if (s.editor != s.editorLoaded) {
        if (s.editor.isEmpty() ||
            s.editor.compare(QStringLiteral("NOTEPAD"), Qt::CaseInsensitive) == 0) {
            launch::gTextProgram = kNotepad;
        } else if (platform::FileExistsMsg(s.editor)) {
            launch::gTextProgram = s.editor;
        } else {
            focus = OptionsField::Editor;
            return false;
        }
    }

    QStringList types;
    for (const QString& type : s.importTypes)
        types << type.toUpper();
    app::gImportFiles = types.isEmpty() ? QStringLiteral(".D64") : types.join(u';');
    return true;
}

// A changed folder must exist; the message is titled by the caption of the folder's label.
// An emptied folder is taken as it is: the user no longer wants one.
bool folderAccepted(const QString& folder, const QString& loaded, const QString& label)
{
    if (folder == loaded || folder.isEmpty() || platform::FolderExists(folder))
        return true;
    platform::dialogs().msgBox(app::Translate(QStringLiteral("Pfad nicht gefunden: ")) + folder,
                               platform::vbExclamation, label);
    return false;
}

// Step 7.
bool applyGbTab(OptionsState& s, OptionsField& focus, const std::function<void()>& closeGameBase,
                platform::Progress& progress)
{
    if (s.gameBaseDB != s.gameBaseDBLoaded) {
        if (!s.gameBaseDB.isEmpty() && !gamebase::CheckGameBaseFile(s.gameBaseDB, progress)) {
            focus = OptionsField::GameBaseDB;
            return false;
        }
        if (gamebase::gGB) {
            if (closeGameBase)
                closeGameBase();
            else
                gamebase::CloseGameBase();
            s.gameBaseClosed = true;
        }
        // No file keeps the hint, as a new settings file holds it.
        gamebase::gGameBaseDB = s.gameBaseDB.isEmpty() ? gamebase::kGameBaseHint : s.gameBaseDB;
        s.gameBaseDBLoaded = s.gameBaseDB; // a second "OK" doesn't close and test it again
    }
    if (!folderAccepted(s.screenshots, s.screenshotsLoaded, s.lblShots)) {
        focus = OptionsField::Screenshots;
        return false;
    }
    if (s.screenshots != s.screenshotsLoaded) {
        gamebase::gScreenshots = s.screenshots;
        s.screenshotsChanged = true;
    }
    if (!folderAccepted(s.download, s.downloadLoaded, s.lblDownload)) {
        focus = OptionsField::Download;
        return false;
    }
    gamebase::gDownloadPath = s.download;
    gamebase::gArchivFile = s.archivFile;
    gamebase::gAskForPath = s.askDown;
    gamebase::gArchivOnlyGame = s.archivOnlyGame;
    gamebase::gAdultContent = s.adultContent;
    return true;
}

} // namespace

OptionsState LoadOptionsState()
{
    OptionsState s;
    s.config = launch::ProfilConfig::fromGlobals();
    s.md5 = app::gCreateMd5Hash;
    s.refreshFiles = app::gRefreshC64Files;
    s.archiv = app::gSerachArchivFiles;
    s.c64FilesDB = app::gCheckC64Files;
    s.gbFiles = app::gConnectFilesToGB;
    s.size = app::gSkipZipSize.isEmpty() ? QStringLiteral("0") : app::gSkipZipSize;
    s.editor = s.editorLoaded = launch::gTextProgram;
    for (const QString& caption : ImportTypeCaptions(app::gImportFiles))
        if (ImportTypeChecked(app::gImportFiles, caption))
            s.importTypes << caption;
    s.gameBaseDB = s.gameBaseDBLoaded = gameBaseText(gamebase::gGameBaseDB);
    s.screenshots = s.screenshotsLoaded = gamebase::gScreenshots;
    s.download = s.downloadLoaded = gamebase::gDownloadPath;
    s.lblShots = app::Translate(QStringLiteral("Screenshots:"));
    s.lblDownload = app::Translate(QStringLiteral("Games bzw. Download-Pfad:"));
    s.askDown = gamebase::gAskForPath;
    s.archivFile = gamebase::gArchivFile;
    s.archivOnlyGame = gamebase::gArchivOnlyGame;
    s.adultContent = gamebase::gAdultContent;
    s.fontName = app::gFontName;
    s.fontSize = app::gFontSize;
    s.foreColor = app::gPreviewForeColor;
    s.backColor = app::gPreviewBackColor;
    s.selectColor = app::gPreviewSelectColor;
    return s;
}

OptionsResult ApplyOptions(OptionsState& s, const std::function<void()>& closeGameBase,
                           platform::Progress& progress)
{
    OptionsResult result;
    if (s.emulatorsChanged || s.profilsChanged ||
        launch::gDefaultProfil != s.config.defaultProfil ||
        launch::gStartProfils != s.config.startProfils)
        s.startMenusChanged = true;
    launch::gDefaultProfil = s.config.defaultProfil;
    if (s.emulatorsChanged)
        replaceGlobal(s.config.emulators, launch::gEmulators);
    if (s.profilsChanged)
        replaceGlobal(s.config.profils, launch::gProfils);
    launch::gStartProfils = s.config.startProfils;

    if (s.dbShown && !applyDbTab(s, result.focus))
        return result;
    if (s.gbShown && !applyGbTab(s, result.focus, closeGameBase, progress))
        return result;
    if (s.previewShown) {
        if (app::gFontName != s.fontName || app::gFontSize != s.fontSize ||
            app::gPreviewForeColor != s.foreColor || app::gPreviewBackColor != s.backColor ||
            app::gPreviewSelectColor != s.selectColor)
            s.previewChanged = true;
        app::gFontName = s.fontName;
        app::gFontSize = s.fontSize;
        app::gPreviewForeColor = s.foreColor;
        app::gPreviewBackColor = s.backColor;
        app::gPreviewSelectColor = s.selectColor;
    }
    result.close = true;
    return result;
}

QStringList ImportTypeCaptions(const QString& importFiles)
{
    QStringList captions;
    const QString all = app::defaultImportFiles() + u';' + importFiles;
    for (const QString& part : all.split(u';', Qt::SkipEmptyParts)) {
        const QString type = part.trimmed().toUpper();
        if (!type.isEmpty() && !captions.contains(type))
            captions << type;
    }
    return captions;
}

bool ImportTypeChecked(const QString& importFiles, const QString& caption)
{
    for (const QString& part : importFiles.split(u';', Qt::SkipEmptyParts))
        if (part.trimmed().compare(caption, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

QStringList FontsBelowSymbol(const QStringList& families)
{
    QStringList fonts;
    for (const QString& family : families)
        if (family.compare(QStringLiteral("Symbol"), Qt::CaseInsensitive) < 0)
            fonts << family;
    return fonts;
}

} // namespace vd::setup
