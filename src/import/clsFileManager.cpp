#include "import/clsFileManager.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "catalogue/Database.h"
#include "catalogue/QueryDef.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "formats/CbmText.h"
#include "import/FileHash.h"
#include "platform/Files.h"

#include <QDateTime>

namespace vd::import {

namespace {

constexpr int kProgramLength = 100; // C64Files.tProgram

// The append-only writing of C64Files rows, prepared once per batch.
const QString kInsertEntry = QStringLiteral(
    "PARAMETERS pID Long, pFile Long, pProgram Text (100), pRealProgram Text (100), "
    "pIndex Long, pSize Long, pCreated DateTime, pExtension Text (10); "
    "INSERT INTO C64Files (ID, Category_File, tProgram, tRealProgram, lIndex, lSize, "
    "tsCreated, tExtension) VALUES (pID, pFile, pProgram, pRealProgram, pIndex, pSize, "
    "pCreated, pExtension)");

// The text after the last dot, upper-cased; the whole name when it has no dot.
QString extensionOf(const QString& sName)
{
    return formats::upperLatin1(sName.mid(sName.lastIndexOf(QLatin1Char('.')) + 1));
}

// The numeric value of a text as GetDbValue gives it; 0 for "" and for what is no number.
qint64 numericValue(const QString& text)
{
    bool ok = false;
    const qint64 whole = text.toLongLong(&ok);
    return ok ? whole : qint64(text.toDouble());
}

QVariant textOrNull(const QString& text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

} // namespace

QString CleanEntryName(const QString& name)
{
    if (!name.isEmpty() && name[0].unicode() < 32)
        return {};
    return name.left(kProgramLength);
}

clsFileManager::clsFileManager(QObject* parent) : QObject(parent) {}

clsFileManager::~clsFileManager() = default;

db::Database& clsFileManager::database() const
{
    if (!app::gDB)
        throw db::DbError(db::err::FileNotFound, QStringLiteral("No catalogue is open."));
    return *app::gDB;
}

void clsFileManager::endBatch()
{
    if (m_batchDepth > 0 && --m_batchDepth == 0) {
        m_categoryWriter.reset();
        m_entryInsert.reset();
        m_writerConnection = nullptr;
    }
}

void clsFileManager::checkWriters()
{
    // Writers belong to the catalogue they were made on.
    const void* connection = database().connection().get();
    if (connection != m_writerConnection) {
        m_categoryWriter.reset();
        m_entryInsert.reset();
        m_writerConnection = connection;
    }
}

db::Recordset& clsFileManager::newCategoryRow()
{
    checkWriters();
    if (!m_categoryWriter)
        m_categoryWriter = database().openRecordset(
            QStringLiteral("Select * From Category where 1=0"), db::RecordsetType::Dynaset);
    m_categoryWriter->addNew();
    return *m_categoryWriter;
}

qint64 clsFileManager::LoadFile(const QString& sName, const QString& sPathIn, int lFlags,
                                const QString& sUnpack, bool bExtracted, qint64 lID)
{
    const BatchScope batch(*this);
    // The rows of one file share their time of creation (the clock is read once per file).
    m_now = QDateTime::currentDateTime();
    QString sPath = sPathIn;
    if (sUnpack.isEmpty()) {
        sArchivePath.clear();
        sUnpackPath.clear();
    } else if (!bExtracted) {
        sArchivePath = sPath;
        sUnpackPath = sUnpack;
        sPath = ExtractFileFromArchiv(sName, sUnpack, sPath);
        if (sPath.isEmpty())
            return 0;
    }
    const QString ext = extensionOf(sName);
    qint64 gbId = 0;
    bool gbKnown = false;
    if (lID == 0) {
        if ((lFlags & kFlagImportList) && !options.ImportFiles.contains(ext))
            return 0;
        gbKnown = isDuplicate(sPath, lID, gbId);
    }
    if (lID != 0) {
        if (!(lFlags & kFlagRefresh)) {
            emit ShowMessage(app::Translate(QStringLiteral("Datei ist schon vorhanden:")) +
                                 QLatin1Char(' ') + sName,
                             kMessageResult);
            return -lID;
        }
        if (!catalogue::kArchiveExtensions.contains(ext)) {
            prepareRefresh(sName, lID, gbId, gbKnown);
        } else {
            if (!(lFlags & kFlagRefreshArchives))
                return -lID;
            refreshArchive(sPath, sUnpack);
        }
    }
    const qint64 result = dispatch(ext, sName, sPath, lFlags, lID, sUnpack, bExtracted);
    return reconcile(result, lFlags, lID);
}

bool clsFileManager::isDuplicate(const QString& sPath, qint64& lID, qint64& gbId)
{
    const QString key = sArchivePath.isEmpty() ? sPath : sArchivePath;
    QString sql = QStringLiteral("Select Top 1 ID,GB_ID From Category where tPath='") +
                  catalogue::SqlQuote(key) + QLatin1Char('\'');
    if (!sUnpackPath.isEmpty())
        sql += QStringLiteral(" and tUnpackPath='") + catalogue::SqlQuote(sUnpackPath) +
               QLatin1Char('\'');
    const auto rs = database().openRecordset(sql, db::RecordsetType::Snapshot);
    const bool found = !rs->eof();
    if (found) {
        lID = rs->value(0).toLongLong();
        gbId = numericValue(catalogue::ValueText(rs->value(1)));
    }
    rs->close();
    return found;
}

void clsFileManager::prepareRefresh(const QString& sName, qint64 lID, qint64 gbId, bool gbKnown)
{
    colExisting.clear();
    const auto rs = database().openRecordset(
        QStringLiteral("Select id,tRealProgram,lSize,lIndex From C64Files where Category_File=") +
            QString::number(lID),
        db::RecordsetType::Snapshot);
    for (; !rs->eof(); rs->moveNext()) {
        const QString id = catalogue::ValueText(rs->value(0));
        colExisting.push_back(
            {id.toLongLong(), catalogue::ValueText(rs->value(1)) + QLatin1Char('@') +
                                  catalogue::ValueText(rs->value(2)) + QLatin1Char('@') +
                                  catalogue::ValueText(rs->value(3)) + QLatin1Char('@') + id});
    }
    rs->close();
    if (!gbKnown)
        gbId = numericValue(catalogue::GetDbValue(QStringLiteral("Top 1 GB_ID"),
                                                  QStringLiteral("Category"),
                                                  QStringLiteral("ID=") + QString::number(lID)));
    if (gbId != 0 && options.ArchivOnlyGame && !bSearch) {
        const qint64 index = numericValue(catalogue::GetDbValue(
            QStringLiteral("Top 1 lIndex"),
            QStringLiteral("C64Files as C Left Join Category on C.Category_File=Category.ID"),
            QStringLiteral("C.GB_ID=") + QString::number(gbId) +
                QStringLiteral(" and iFileType<>10")));
        InitSearch(true, options.ArchivOnlyGame, sName, int(index));
    }
}

void clsFileManager::refreshArchive(const QString& sPath, const QString& sUnpack)
{
    // The archive is unpacked anew: its extraction folder of this run goes.
    const QString key =
        (sUnpack.isEmpty() ? sPath : sArchivePath + QLatin1Char('\\') + sUnpack).toUpper();
    const auto it = colTempPaths.constFind(key);
    if (it == colTempPaths.constEnd())
        return;
    platform::DeleteFiles(it.value());
    colTempPaths.erase(it);
}

qint64 clsFileManager::dispatch(const QString& ext, const QString& sName, const QString& sPath,
                                int& lFlags, qint64& lID, const QString& sUnpack, bool bExtracted)
{
    using Reader = qint64 (clsFileManager::*)(const QString&, const QString&, int&, qint64&);
    struct Route
    {
        const char* extension;
        Reader read;
    };
    static const Route kRoutes[] = {
        {"D64", &clsFileManager::ReadD64Directory}, {"G64", &clsFileManager::ReadD64Directory},
        {"D71", &clsFileManager::ReadD64Directory}, {"D81", &clsFileManager::ReadD81Directory},
        {"CRT", &clsFileManager::ReadCrtFile},      {"P00", &clsFileManager::ReadP00File},
        {"PDF", &clsFileManager::ReadPdfFile},      {"PRG", &clsFileManager::ReadPrgFile},
        {"T64", &clsFileManager::ReadT64Directory}, {"TAP", &clsFileManager::ReadTapFile},
        {"C64", &clsFileManager::ReadC64Snapshot},  {"VSF", &clsFileManager::ReadVsfFile},
        {"VFL", &clsFileManager::ReadVflFile},      {"BMP", &clsFileManager::ReadPictureFile},
        {"GIF", &clsFileManager::ReadPictureFile},  {"JPG", &clsFileManager::ReadPictureFile},
        {"PNG", &clsFileManager::ReadPictureFile},  {"TIFF", &clsFileManager::ReadPictureFile},
    };
    for (const Route& route : kRoutes)
        if (ext == QLatin1String(route.extension))
            return (this->*route.read)(sName, sPath, lFlags, lID);
    if (ext == QLatin1String("TXT") || ext == QLatin1String("NFO") || ext == QLatin1String("DIZ"))
        return textRule(sName, sPath, lFlags, lID);
    if (ext == QLatin1String("ZIP") || ext == QLatin1String("RAR") || ext == QLatin1String("7Z") ||
        ext == QLatin1String("CAB"))
        return bScanArchives ? archiveRule(sName, sPath, lFlags, sUnpack, bExtracted) : 0;
    return 0;
}

qint64 clsFileManager::textRule(const QString& sName, const QString& sPath, int& lFlags,
                                qint64& lID)
{
    // A search must not keep a text from being catalogued beside the game.
    const bool searching = bSearch;
    bSearch = false;
    qint64 result = 0;
    try {
        result = ReadTextFile(sName, sPath, lFlags, lID);
    } catch (...) {
        bSearch = searching;
        throw;
    }
    bSearch = searching;
    lFoundTextID = 0;
    if (searching) {
        if (result > 0)
            lFoundTextID = lLastC64FileID;
        else if (lID > 0)
            lFoundTextID = numericValue(
                catalogue::GetDbValue(QStringLiteral("Top 1 ID"), QStringLiteral("C64Files"),
                                      QStringLiteral("Category_File=") + QString::number(lID)));
    }
    return result;
}

qint64 clsFileManager::reconcile(qint64 result, int lFlags, qint64 lID)
{
    // What is left in colExisting are rows the file no longer has. The collection is not
    // emptied here, so a later call may run the same deletes once more without harm.
    if (!colExisting.isEmpty()) {
        for (const ExistingItem& item : colExisting)
            database().execute(QStringLiteral("Delete from C64Files where ID=") +
                               QString::number(item.id));
        if (result == 0)
            result = lID;
    } else if ((lFlags & kFlagRefresh) && result == 0 && lID != 0) {
        result = -lID;
    }
    return result;
}

clsFileManager::NewEntry* clsFileManager::AddDirEntry(const QString& sProgram, qint64 lSize,
                                                      const QString& sDiskName,
                                                      const QString& sName, const QString& sPath,
                                                      int iFileType, int lIndex,
                                                      qint64& lCategoryID, int& lFlags)
{
    if (lCategoryID == 0) {
        addCategoryRow(sDiskName, sName, sPath, iFileType, lCategoryID);
        lFlags = kFlagNamedFile;
    }
    const QString program = CleanEntryName(sProgram);
    if ((lFlags & kFlagRefresh) && matchExisting(program, lSize, sName, lIndex))
        return nullptr;
    if (!AcceptEntry(sName, lIndex, lLastC64FileID + 1))
        return nullptr;
    m_newEntry = {++lLastC64FileID, lCategoryID, program, lIndex, lSize};
    return &m_newEntry;
}

void clsFileManager::addCategoryRow(const QString& sDiskName, const QString& sName,
                                    const QString& sPath, int iFileType, qint64& lCategoryID)
{
    const QString tPath = sArchivePath.isEmpty() ? sPath : sArchivePath;
    db::Recordset* rs = &newCategoryRow();
    lCategoryID = ++lLastCategoryID;
    rs->setValue(QStringLiteral("id"), lCategoryID);
    rs->setValue(QStringLiteral("iType"), catalogue::kTypeFile);
    rs->setValue(QStringLiteral("tCategory"), sName);
    rs->setValue(QStringLiteral("tFile"), sName);
    rs->setValue(QStringLiteral("tImage"), textOrNull(sDiskName));
    rs->setValue(QStringLiteral("tPath"), tPath);
    rs->setValue(QStringLiteral("iFileType"), iFileType);
    rs->setValue(QStringLiteral("tsCreated"), m_now);
    if (!sUnpackPath.isEmpty())
        rs->setValue(QStringLiteral("tUnpackPath"), sUnpackPath);
    if (options.CreateMd5Hash)
        rs->setValue(QStringLiteral("tHash"),
                     textOrNull(GetFileHash(*this, sName, tPath, sUnpackPath)));
    rs->update();
    emit ShowMessage(sName, iFileType);
}

bool clsFileManager::matchExisting(const QString& sProgram, qint64 lSize, const QString& sName,
                                   int lIndex)
{
    // A loose match on purpose: the key may stand anywhere in the item's text.
    const QString key = sProgram.isEmpty() ? QLatin1Char('@') + QString::number(lIndex)
                                           : sProgram + QLatin1Char('@') + QString::number(lSize);
    for (qsizetype i = 0; i < colExisting.size(); ++i) {
        if (!colExisting[i].text.contains(key))
            continue;
        if (AcceptEntry(sName, lIndex, colExisting[i].id))
            colExisting.removeAt(i);
        return true;
    }
    return false;
}

bool clsFileManager::AcceptEntry(const QString& sName, int lIndex, qint64 lID)
{
    if (!bSearch)
        return true;
    bool accept = sSearchName.isEmpty() || sSearchName == sName;
    if (accept) {
        if (bSearchIndex)
            accept = iSearchIndex == lIndex;
        if (iSearchIndex == lIndex)
            lFoundC64FileID = lID;
    }
    return accept;
}

void clsFileManager::finishEntry(NewEntry& entry, const QString& extension)
{
    checkWriters();
    if (!m_entryInsert)
        m_entryInsert = database().createQueryDef(kInsertEntry);
    db::QueryDef& q = *m_entryInsert;
    q.setParameter(0, entry.id);
    q.setParameter(1, entry.categoryFile);
    q.setParameter(2, entry.program.isEmpty() ? QStringLiteral("(NO NAME)") : entry.program);
    q.setParameter(3, textOrNull(entry.program));
    q.setParameter(4, entry.index);
    q.setParameter(5, entry.size);
    q.setParameter(6, m_now);
    q.setParameter(7, textOrNull(extension));
    q.execute();
}

void clsFileManager::InitCount()
{
    lLastC64FileID =
        numericValue(catalogue::GetDbValue(QStringLiteral("Max(ID)"), QStringLiteral("C64Files")));
    lLastCategoryID =
        numericValue(catalogue::GetDbValue(QStringLiteral("Max(ID)"), QStringLiteral("Category")));
    lStartC64FileID = lLastC64FileID;
    lStartCategoryID = lLastCategoryID;
    // Rows a refresh left to delete belong to the counters of before: with the maxima read
    // anew, their ids could be given out again, so they are forgotten here.
    colExisting.clear();
    CountFiles();
}

void clsFileManager::CountFiles()
{
    lC64FileCount = numericValue(
        catalogue::GetDbValue(QStringLiteral("Count (ID)"), QStringLiteral("C64Files")));
    lCategoryCount = numericValue(catalogue::GetDbValue(
        QStringLiteral("Count (ID)"), QStringLiteral("Category"), QStringLiteral("iType=1")));
}

void clsFileManager::InitSearch(bool search, bool searchIndex, const QString& name, int index)
{
    bSearch = search;
    bSearchIndex = searchIndex;
    sSearchName = name;
    iSearchIndex = index;
    lFoundC64FileID = 0;
    lFoundTextID = 0;
    bScanArchives = true;
}

bool clsFileManager::CheckFileMagic(const QString& sPath, const QString& sHeader,
                                    const QString& sExpected)
{
    if (sExpected == formats::upperLatin1(sHeader))
        return true;
    RaiseMessage(QStringLiteral("Fehlerhaftes C64-File: "), {}, messageName(sPath));
    return false;
}

void clsFileManager::RaiseMessage(const QString& sText, const QString& sParam, const QString& sName)
{
    emit ShowMessage(app::Translate(sText, sParam) + sName, kMessageResult);
}

QString clsFileManager::messageName(const QString& sPath) const
{
    return sArchivePath.isEmpty() ? sPath : sArchivePath + QLatin1Char('\\') + sUnpackPath;
}

bool IsCatalogueFault(const db::DbError& e)
{
    return e.number() == db::err::Engine || (app::gDB && app::gDB->isReadOnly());
}

void clsFileManager::reportFileError(const QString& sName)
{
    RaiseMessage(QStringLiteral("Fehler in der Datei: '@1'"), sName, {});
}

} // namespace vd::import
