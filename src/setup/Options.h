#pragma once
// What the options dialog edits, as a plain record of its fields, and what its "OK" does with
// them: the steps that move the values into the globals, in their fixed order, stopping at the
// first value that does not pass its check. The window only fills the record and shows it.

#include "launch/ProfilRules.h"
#include "platform/Progress.h"

#include <functional>
#include <QString>
#include <QStringList>

namespace vd::setup {

// The field that a refused "OK" puts the focus on.
enum class OptionsField
{
    None,
    Archiv,
    Editor,
    GameBaseDB,
    Screenshots,
    Download,
};

struct OptionsState
{
    // The copies of the emulators and profiles, the default key and the twelve assignments,
    // and whether the tree changed the records.
    launch::ProfilConfig config;
    bool emulatorsChanged = false;
    bool profilsChanged = false;

    // Tabs shown at least once: only those hand their values over.
    bool dbShown = false;
    bool gbShown = false;
    bool previewShown = false;

    // Tab DB.
    bool md5 = false;
    bool refreshFiles = false;
    bool archiv = false;
    bool c64FilesDB = false;
    bool gbFiles = false;
    QString size;            // txtSize
    QString editor;          // txtEditor
    QString editorLoaded;    // what it held at the load
    QStringList importTypes; // the captions of the checked chkFiles

    // Tab GB. A GameBase file of the hint text counts as empty.
    QString gameBaseDB;
    QString gameBaseDBLoaded;
    QString screenshots;
    QString screenshotsLoaded;
    QString download;
    QString downloadLoaded;
    QString lblShots; // the labels' captions title the messages of a missing folder
    QString lblDownload;
    bool askDown = false;
    bool archivFile = false;
    bool archivOnlyGame = false;
    bool adultContent = false;

    // Tab Preview.
    QString fontName;
    int fontSize = 8;
    qint64 foreColor = 0;
    qint64 backColor = 0;
    qint64 selectColor = 0;

    // What the steps did, kept across repeated presses of "OK": the profiles or their
    // assignments changed (the start menus are built anew), the preview's look changed, the
    // GameBase was closed, the screenshot folder changed.
    bool startMenusChanged = false;
    bool previewChanged = false;
    bool gameBaseClosed = false;
    bool screenshotsChanged = false;
};

struct OptionsResult
{
    bool close = false; // every step passed: the dialog unloads
    OptionsField focus = OptionsField::None;
};

// The form's fields as the globals set them at the load; the copies are made here.
OptionsState LoadOptionsState();

// cmdOk, steps 1 to 8. Steps 1 to 3 (default profile, emulators and profiles, assignments)
// always take effect; a later refusal keeps the dialog open without taking them back.
// `closeGameBase` closes the open GameBase when the database path changed (the window lets
// the GameBase window let go of it first). The check of a new GameBase file may first read
// it into its cache; `progress` sees that.
OptionsResult ApplyOptions(OptionsState& state, const std::function<void()>& closeGameBase,
                           platform::Progress& progress = platform::noProgress());

// The captions of the check boxes chkFiles: every extension an import can take, then those of
// `importFiles` beyond them, each once, in upper case.
QStringList ImportTypeCaptions(const QString& importFiles);
// Whether `caption` stands in the ";"-separated `importFiles` (case ignored).
bool ImportTypeChecked(const QString& importFiles, const QString& caption);

// The font names offered in lstFont: those of `families`, in their order, that compare as text
// (case ignored) below "Symbol".
QStringList FontsBelowSymbol(const QStringList& families);

} // namespace vd::setup
