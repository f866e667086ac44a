#pragma once
// The importer. One instance serves the whole run: LoadFile takes one file, tells whether it is
// catalogued already, reads it with the reader of its extension, and reconciles the entries of
// a refreshed file with what the file holds now. AddDirEntry is the one place that writes the
// Category and C64Files rows of a file. All reader faults are reported through ShowMessage,
// never in a dialog.

#include "import/ArchiveReader.h"
#include "import/ImportOptions.h"

#include <memory>
#include <optional>
#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QString>
#include <QVector>
#include <stdexcept>

namespace vd::db {
class Database;
class DbError;
class QueryDef;
class Recordset;
} // namespace vd::db

namespace vd::formats {
class ByteSource;
struct DiskGeometry;
struct SingleFormat;
} // namespace vd::formats

namespace vd::import {

// ShowMessage types besides an iFileType.
constexpr int kMessageStatus = 0;
constexpr int kMessageResult = -1;

// A fault of the catalogue itself, not of the file being read: the engine failed (a full disk,
// an I/O error) or the catalogue opened for reading only. It ends a batch with its message
// instead of being reported file by file.
bool IsCatalogueFault(const db::DbError& e);

// A failure that a reader without its own handler passes on to whoever called LoadFile, such
// as a file that vanished before its length could be taken.
class LoadFailure : public std::runtime_error
{
public:
    explicit LoadFailure(const QString& message) : std::runtime_error(message.toStdString()) {}
};

// An entry's name as it is stored: empty when it begins with a control character, at most 100
// characters.
QString CleanEntryName(const QString& name);

class clsFileManager : public QObject
{
    Q_OBJECT

public:
    explicit clsFileManager(QObject* parent = nullptr);
    ~clsFileManager() override;

    // Counters and search results.
    qint64 lLastCategoryID = 0;  // highest Category.ID in use; new rows count it up
    qint64 lStartCategoryID = 0; // lLastCategoryID at InitCount
    qint64 lStartC64FileID = 0;  // lLastC64FileID at InitCount
    qint64 lC64FileCount = 0;    // C64Files rows at the last CountFiles
    qint64 lCategoryCount = 0;   // Category rows of iType 1 at the last CountFiles
    qint64 lFoundC64FileID = 0;  // the row whose lIndex the search sought
    qint64 lFoundTextID = 0;     // a text file's row met during a search
    bool bSearch = false;        // search mode is on
    qint64 lLastC64FileID = 0;   // highest C64Files.ID in use; new rows count it up

    // The settings that steer the import.
    ImportOptions options;

    // Imports one file. sName: the name with its extension; sPath: the file on disk;
    // sUnpack: the member path inside an archive, or ""; bExtracted: sPath is the extracted
    // copy of that member; lID: the file's Category id when the caller knows it. Result: the
    // Category id when rows came or went, minus the id when the file is catalogued and
    // unchanged, 0 when nothing was catalogued. Database failures pass to the caller.
    qint64 LoadFile(const QString& sName, const QString& sPath, int lFlags, const QString& sUnpack,
                    bool bExtracted, qint64 lID);

    // Reads the highest ids and the counts; must run before the first import of a batch.
    void InitCount();
    void CountFiles();
    // Starts (or with bSearch false ends) a search for one entry of a named file, and re-arms
    // archives.
    void InitSearch(bool search, bool searchIndex, const QString& name, int index);

    // Links what the search found to a GameBase game: GB_ID on the entry lFoundC64FileID, on
    // the text entry lFoundTextID and on their files, the game's name as their tProgram, the
    // game's genre as their user category. A failing step ends it silently.
    void SetGBInfos(qint64 lGameID, const QString& sGameName, qint64 lGenreID);

    // True when sExpected equals sHeader upper-cased; otherwise "Fehlerhaftes C64-File: " and
    // the file's name text go to the result list.
    bool CheckFileMagic(const QString& sPath, const QString& sHeader, const QString& sExpected);
    // Translate(sText, sParam) & sName, as a result-list line.
    void RaiseMessage(const QString& sText, const QString& sParam, const QString& sName);

    // A batch keeps what appends rows open from its first row to its end instead of opening
    // it anew for each row; scopes nest. Outside a batch each LoadFile is one.
    class BatchScope
    {
    public:
        explicit BatchScope(clsFileManager& fm) : m_fm(fm) { ++m_fm.m_batchDepth; }
        ~BatchScope() { m_fm.endBatch(); }
        BatchScope(const BatchScope&) = delete;
        BatchScope& operator=(const BatchScope&) = delete;

    private:
        clsFileManager& m_fm;
    };

    // Archives. Extraction folders are made in Temp (Temp/A<n>) or, for an archive inside an
    // archive, beside it (<folder>/A<n>), and are remembered for the run under the key of
    // their archive: its path upper-cased, "\\" and the member path for an inner archive.

    // The extraction folder of an archive, unpacked whole when it is new in this run; "" when
    // the user declined its size, or it could not be unpacked. sUnpack: the member path of an
    // archive inside the archive being read, else "".
    QString CreateTempPathIfFileArchiv(const QString& sName, const QString& sUnpack,
                                       const QString& sPath);
    // The path on disk of a catalogued member: sPath is the outermost archive, sUnpack the
    // member path (tUnpackPath). Each archive on the way is opened once per run; a member of
    // an archive that was not unpacked whole is extracted alone. "" when it cannot be had.
    QString ExtractFileFromArchiv(const QString& sName, const QString& sUnpack,
                                  const QString& sPath);
    // Forgets the extraction folders (after Temp was emptied); touches no file.
    void DeleteTempCol();
    // The extraction folders made or used in this run.
    QStringList extractionFolders() const { return colTempPaths.values(); }
    // How often an archive (or a member of one) was unpacked in this run.
    int unpackCount() const { return m_unpackCount; }
    // Limits each archive is held to.
    ArchiveLimits archiveLimits;

    // The outermost archive being read and the member inside it, else "".
    QString archivePath() const { return sArchivePath; }
    QString unpackPath() const { return sUnpackPath; }

signals:
    // lType 0: a passing status text; -1: a line of the result list; any other value is the
    // iFileType of a file just added, whose name is sText.
    void ShowMessage(const QString& sText, int lType);

private:
    // A new C64Files row as AddDirEntry hands it to the reader, which adds tExtension and
    // writes it (finishEntry).
    struct NewEntry
    {
        qint64 id = 0;
        qint64 categoryFile = 0;
        QString program; // "" for a row without a name
        int index = 0;
        qint64 size = 0;
    };

    // One item of colExisting: "tRealProgram@lSize@lIndex@id", keyed by the id.
    struct ExistingItem
    {
        qint64 id;
        QString text;
    };

    db::Database& database() const;
    void endBatch();
    QString messageName(const QString& sPath) const;
    void reportFileError(const QString& sName);

    bool isDuplicate(const QString& sPath, qint64& lID, qint64& gbId);
    void prepareRefresh(const QString& sName, qint64 lID, qint64 gbId, bool gbKnown);
    void refreshArchive(const QString& sPath, const QString& sUnpack);
    qint64 dispatch(const QString& ext, const QString& sName, const QString& sPath, int& lFlags,
                    qint64& lID, const QString& sUnpack, bool bExtracted);
    qint64 textRule(const QString& sName, const QString& sPath, int& lFlags, qint64& lID);
    qint64 archiveRule(const QString& sName, const QString& sPath, int lFlags,
                       const QString& sUnpack, bool bExtracted);

    // The GameBase matching of archives (FileManagerGameBase.cpp): the first game whose
    // Filename ends in the archive's name, when ConnectFilesToGB is on, no search runs and a
    // GameBase is open.
    struct GameMatch
    {
        qint64 id = 0;
        QString name;
        QString fileToRun;
        int fileNameIndex = 0;
        qint64 genre = 0;
    };
    std::optional<GameMatch> findGame(const QString& sName);
    void writeGameInfos(qint64 lGameID, const QString& sGameName, qint64 lGenreID);
    bool linkEntry(qint64 id, qint64 lGameID, const QString& sGameName, bool hasUser,
                   qint64 userCategory);
    void linkTextEntry(qint64 id, qint64 lGameID, const QString& sGameName, bool hasUser,
                       qint64 userCategory);
    qint64 reconcile(qint64 result, int lFlags, qint64 lID);

    // Archive handling (FileManagerArchives.cpp).
    bool UnpackArchive(const QString& sArchive, const QString& sMember,
                       const QString& sTargetFolder, const QString& sShownName);
    qint64 ScanArchiveFolder(const QString& sFolder, const QString& sRelPath, int lFlags);
    qint64 scanArchiveMember(const QString& sName, const QString& sPath, int lFlags,
                             const QString& sRelPath);
    bool acceptArchiveSize(const QString& sPath);
    QString newTempFolder(const QString& parent);
    bool isTempFolder(const QString& path) const;
    bool depthAllowed(int depth, const QString& sShownName);

    NewEntry* AddDirEntry(const QString& sProgram, qint64 lSize, const QString& sDiskName,
                          const QString& sName, const QString& sPath, int iFileType, int lIndex,
                          qint64& lCategoryID, int& lFlags);
    void addCategoryRow(const QString& sDiskName, const QString& sName, const QString& sPath,
                        int iFileType, qint64& lCategoryID);
    bool matchExisting(const QString& sProgram, qint64 lSize, const QString& sName, int lIndex);
    bool AcceptEntry(const QString& sName, int lIndex, qint64 lID);
    // Sets tExtension (Null when empty) and writes the row.
    void finishEntry(NewEntry& entry, const QString& extension);
    // The appending recordset of Category, in its state of adding a new row.
    db::Recordset& newCategoryRow();
    void checkWriters();

    // The readers.
    qint64 ReadD64Directory(const QString& sName, const QString& sPath, int& lFlags, qint64& lID);
    qint64 ReadD81Directory(const QString& sName, const QString& sPath, int& lFlags, qint64& lID);
    qint64 readDirectory(const formats::DiskGeometry& geometry, int iFileType, const QString& sName,
                         const QString& sPath, const QString& sReadPath, int& lFlags, qint64& lID);
    QString ConvertG64(const QString& sName, const QString& sPath, const QString& sInArchive);
    qint64 ReadT64Directory(const QString& sName, const QString& sPath, int& lFlags, qint64& lID);
    qint64 readTape(const formats::ByteSource& file, const QString& sName, const QString& sPath,
                    int& lFlags, qint64& lID);
    qint64 ReadPrgFile(const QString& sName, const QString& sPath, int& lFlags, qint64& lID);
    qint64 ReadP00File(const QString& sName, const QString& sPath, int& lFlags, qint64& lID);
    qint64 ReadTapFile(const QString& sName, const QString& sPath, int& lFlags, qint64& lID);
    qint64 ReadVsfFile(const QString& sName, const QString& sPath, int& lFlags, qint64& lID);
    qint64 ReadC64Snapshot(const QString& sName, const QString& sPath, int& lFlags, qint64& lID);
    qint64 ReadCrtFile(const QString& sName, const QString& sPath, int& lFlags, qint64& lID);
    qint64 ReadTextFile(const QString& sName, const QString& sPath, int& lFlags, qint64& lID);
    qint64 ReadPdfFile(const QString& sName, const QString& sPath, int& lFlags, qint64& lID);
    qint64 ReadPictureFile(const QString& sName, const QString& sPath, int& lFlags, qint64& lID);
    qint64 ReadVflFile(const QString& sName, const QString& sPath, int& lFlags, qint64& lID);
    // The readers with a header test catch their own faults; the others pass them on.
    qint64 readCheckedSingle(const formats::SingleFormat& format, const QString& sName,
                             const QString& sPath, int& lFlags, qint64& lID);
    qint64 readPlainSingle(const formats::SingleFormat& format, const QString& sName,
                           const QString& sPath, int& lFlags, qint64& lID);
    qint64 writeSingle(const formats::SingleFormat& format, const QString& sName,
                       const QString& sPath, const formats::ByteSource& file, int& lFlags,
                       qint64& lID);

    // Search state (InitSearch).
    bool bSearchIndex = false;
    int iSearchIndex = 0;
    QString sSearchName;
    // Archive state: the extraction folders of this run and their running number.
    QHash<QString, QString> colTempPaths;
    int iTempCount = 0;
    // During a refresh: the rows of the file not met again yet.
    QVector<ExistingItem> colExisting;
    bool bScanArchives = true;
    int m_unpackCount = 0;
    QString sArchivePath;
    QString sUnpackPath;

    // What appends rows: for Category a recordset on a statement without rows (so no
    // statement stays open), for C64Files, twenty times as many, a prepared insert. Both are
    // kept for the batch.
    std::unique_ptr<db::Recordset> m_categoryWriter;
    std::unique_ptr<db::QueryDef> m_entryInsert;
    NewEntry m_newEntry;
    const void* m_writerConnection = nullptr;
    QDateTime m_now; // tsCreated of the rows of the file being read
    int m_batchDepth = 0;
};

} // namespace vd::import
