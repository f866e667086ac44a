// The GameBase part of clsFileManager: an archive being read is looked up among the games of
// the open GameBase by its file name, the search picks the game's own entry, and that entry
// (with the text entry of the archive) is linked to the game.

#include "app/Globals.h"
#include "app/Settings.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "gamebase/GameBase.h"
#include "import/clsFileManager.h"

#include <stdexcept>

namespace vd::import {

namespace {

// What makes the classic run-time stop (Len of Null, Left with a negative length) ends
// SetGBInfos through its trap, like a failing statement does.
class GameInfoFault : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The game's name, "-" and an entry's own name keep within this many characters before the
// "-".
constexpr qsizetype kNameRoom = 99;

qint64 numberOf(const QVariant& value)
{
    return value.isNull() ? 0 : qint64(app::Val(value.toString()));
}

// A GB_ID that is Null counts as differing from every game.
bool differs(const QVariant& gbId, qint64 gameId)
{
    return gbId.isNull() || numberOf(gbId) != gameId;
}

// The first 99 minus Len(own) characters of the game's name, "-", own: so several entries of
// one game stay apart and the text keeps within 100 characters.
QString joinedName(const QString& gameName, const QVariant& own)
{
    if (own.isNull())
        throw GameInfoFault("Invalid use of Null");
    const QString text = own.toString();
    const qsizetype room = kNameRoom - text.size();
    if (room < 0)
        throw GameInfoFault("Invalid procedure call or argument");
    return gameName.left(room) + QLatin1Char('-') + text;
}

std::unique_ptr<db::Recordset> entryRow(qint64 id)
{
    return app::gDB->openRecordset(QStringLiteral("Select * From C64Files where ID=") +
                                       QString::number(id),
                                   db::RecordsetType::Dynaset);
}

} // namespace

std::optional<clsFileManager::GameMatch> clsFileManager::findGame(const QString& sName)
{
    if (!options.ConnectFilesToGB || bSearch || !gamebase::gGB)
        return std::nullopt;
    // Only the end of Filename is compared, without a separator in front. The quotes are
    // doubled before the length is taken, so a name with a quote compares one character too
    // many and never matches: settled behaviour.
    const QString name = catalogue::SqlQuote(sName);
    const auto rs = gamebase::gGB->openRecordset(
        QStringLiteral("Select GA_ID,Name,FileToRun,FileNameIndex,Ge_ID From Games where "
                       "right(FileName,") +
            QString::number(name.size()) + QStringLiteral(") ='") + name + QLatin1Char('\''),
        db::RecordsetType::Snapshot);
    if (rs->eof())
        return std::nullopt;
    GameMatch game;
    game.id = numberOf(rs->value(0));
    game.name = catalogue::ValueText(rs->value(1));
    game.fileToRun = catalogue::ValueText(rs->value(2));
    game.fileNameIndex = int(numberOf(rs->value(3)));
    game.genre = numberOf(rs->value(4));
    rs->close();
    return game;
}

void clsFileManager::SetGBInfos(qint64 lGameID, const QString& sGameName, qint64 lGenreID)
{
    // Nothing of this is shown: a failing step ends here and the import goes on.
    try {
        writeGameInfos(lGameID, sGameName, lGenreID);
    } catch (const std::exception&) {
    }
}

void clsFileManager::writeGameInfos(qint64 lGameID, const QString& sGameName, qint64 lGenreID)
{
    if (!app::gDB || !gamebase::gGB)
        return;
    // The game's genre becomes the user category of that name, made when it is missing.
    bool hasUser = false;
    qint64 userCategory = 0;
    const auto genre = gamebase::gGB->openRecordset(
        QStringLiteral("Select Genre from Genres where GE_ID=") + QString::number(lGenreID),
        db::RecordsetType::Snapshot);
    if (!genre->eof()) {
        userCategory = catalogue::FindOrAddCategory(catalogue::ValueText(genre->value(0)), false,
                                                    lLastCategoryID);
        hasUser = true;
    }
    genre->close();
    if (linkEntry(lFoundC64FileID, lGameID, sGameName, hasUser, userCategory))
        linkTextEntry(lFoundTextID, lGameID, sGameName, hasUser, userCategory);
}

bool clsFileManager::linkEntry(qint64 id, qint64 lGameID, const QString& sGameName, bool hasUser,
                               qint64 userCategory)
{
    const auto rs = entryRow(id);
    if (rs->eof())
        return false;
    rs->edit();
    if (differs(rs->value(QStringLiteral("GB_ID")), lGameID)) {
        rs->setValue(QStringLiteral("GB_ID"), lGameID);
        const auto file = app::gDB->openRecordset(
            QStringLiteral("Select GB_ID,iFileType,tCategory From Category where ID=") +
                QString::number(numberOf(rs->value(QStringLiteral("Category_File")))),
            db::RecordsetType::Dynaset);
        const int fileType = int(numberOf(file->value(QStringLiteral("iFileType"))));
        file->edit();
        file->setValue(QStringLiteral("GB_ID"), lGameID);
        file->update();
        emit ShowMessage(QStringLiteral("Gamebase: ") + sGameName, fileType);
    }
    // The row shows the game's name from now on; tRealProgram keeps the C64 name.
    rs->setValue(QStringLiteral("tProgram"), sGameName);
    if (hasUser)
        rs->setValue(QStringLiteral("Category_User"), userCategory);
    rs->update();
    return true;
}

void clsFileManager::linkTextEntry(qint64 id, qint64 lGameID, const QString& sGameName,
                                   bool hasUser, qint64 userCategory)
{
    const auto rs = entryRow(id);
    if (rs->eof())
        return;
    rs->edit();
    rs->setValue(QStringLiteral("tProgram"),
                 joinedName(sGameName, rs->value(QStringLiteral("tRealProgram"))));
    if (differs(rs->value(QStringLiteral("GB_ID")), lGameID)) {
        rs->setValue(QStringLiteral("GB_ID"), lGameID);
        const auto file = app::gDB->openRecordset(
            QStringLiteral("Select GB_ID,iFileType,tCategory,tFile From Category where ID=") +
                QString::number(numberOf(rs->value(QStringLiteral("Category_File")))),
            db::RecordsetType::Dynaset);
        const int fileType = int(numberOf(file->value(QStringLiteral("iFileType"))));
        file->edit();
        file->setValue(QStringLiteral("GB_ID"), lGameID);
        file->setValue(QStringLiteral("tCategory"),
                       joinedName(sGameName, file->value(QStringLiteral("tFile"))));
        file->update();
        emit ShowMessage(QStringLiteral("Gamebase: ") + sGameName, fileType);
    }
    if (hasUser)
        rs->setValue(QStringLiteral("Category_User"), userCategory);
    rs->update();
}

} // namespace vd::import
