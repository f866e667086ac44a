// Mode 2, the check of the catalogue: every file row is looked for on disk, the missing ones
// are listed with their hidden columns, the others may be read again. Afterwards the missing
// rows can be deleted (cmdDelete) or looked for in another folder (cmdNewPath).

#include "import/BatchProcess.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "catalogue/CatalogueSchema.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "import/BatchTransaction.h"
#include "import/clsFileManager.h"
#include "platform/Files.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace vd::import {

using app::Translate;
using catalogue::ValueText;

namespace {

// Folders deeper than this are not walked when missing files are looked for.
constexpr int kMaxFolderDepth = 64;

// The name after the last separator; catalogues written on Windows hold "\" in their paths.
QString fileNameOf(const QString& path)
{
    const qsizetype cut =
        std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\')));
    return path.mid(cut + 1);
}

QString withoutTrailingSeparator(QString path)
{
    while (path.size() > 1 && (path.endsWith(QLatin1Char('/')) || path.endsWith(QLatin1Char('\\'))))
        path.chop(1);
    return path;
}

QString missingText(qint64 missing)
{
    return Translate(QStringLiteral("Nicht gefundene Dateien: ")) + QString::number(missing);
}

} // namespace

void BatchProcess::CheckCatalogue()
{
    m_checked = true;
    lMissing = 0;
    const auto rs = app::gDB->openRecordset(
        QStringLiteral("Select * from Category where iType=1 order by tPath"),
        db::RecordsetType::Snapshot);
    qint64 total = 0;
    if (!rs->eof()) {
        rs->moveLast();
        total = rs->recordCount();
        rs->moveFirst();
    }
    m_report.setRange(total);
    // A re-read writes through the importer; its writes are grouped like an import's.
    const clsFileManager::BatchScope scope(m_fm);
    BatchTransaction transaction;
    QString lastPath;
    for (qint64 done = 0; !rs->eof(); rs->moveNext(), ++done) {
        tableStep(done, total);
        if (stopRequested())
            break;
        const qint64 id = rs->value(QStringLiteral("ID")).toLongLong();
        const QString path = ValueText(rs->value(QStringLiteral("tPath")));
        const QString unpack = ValueText(rs->value(QStringLiteral("tUnpackPath")));
        if (!platform::FileExists(path)) {
            ++lMissing;
            ResultRow row;
            row.Name = unpack.isEmpty() ? path : path + QLatin1Char('\\') + unpack;
            row.Filetyp = kTypeMissing;
            row.Key = id;
            row.File = fileNameOf(path);
            row.Path = path;
            row.OrgType = rs->value(QStringLiteral("iFileType")).toInt();
            m_rows.append(row);
            m_report.rowAdded(m_rows.size() - 1, row);
        } else if (m_fm.options.CheckC64Files) {
            const QString name = ValueText(rs->value(unpack.isEmpty() ? QStringLiteral("tCategory")
                                                                      : QStringLiteral("tFile")));
            rereadFile(id, name, path, unpack, lastPath);
        }
        lastPath = path;
        transaction.commitIfDue();
    }
    m_report.setValue(total);
    sResultText = Translate(QStringLiteral("Datenbank wurde überprüft:")) + QLatin1Char('\n') +
                  missingText(lMissing);
}

void BatchProcess::rereadFile(qint64 id, const QString& name, const QString& path,
                              const QString& unpack, QString& lastPath)
{
    qint64 result = 0;
    QString reason;
    try {
        if (unpack.isEmpty()) {
            result = m_fm.LoadFile(name, path, kFlagRefresh, {}, false, id);
        } else if (m_fm.options.SerachArchivFiles) {
            if (path != lastPath)
                m_fm.InitSearch(false, false, {}, 0); // archives are opened again
            result =
                m_fm.LoadFile(name, path, kFlagRefresh + kFlagRefreshArchives, unpack, false, id);
        }
    } catch (const db::DbError& e) {
        if (e.number() == db::err::Engine)
            throw;
        reason = e.description();
    } catch (const LoadFailure& e) {
        reason = QString::fromLocal8Bit(e.what());
    }
    if (!reason.isEmpty())
        m_fm.RaiseMessage(QStringLiteral("Fehler in der Datei: '@1'"), name,
                          QStringLiteral(" (") + reason + QLatin1Char(')'));
    if (result > 0)
        m_changed = true;
}

QString BatchProcess::DeleteMissing()
{
    cancelled = false;
    qint64 marked = 0;
    for (const ResultRow& row : std::as_const(m_rows))
        marked += row.Filetyp == kTypeMissing ? 1 : 0;
    m_report.setRange(marked);
    qint64 deleted = 0;
    try {
        BatchTransaction transaction;
        for (qsizetype i = 0; i < m_rows.size(); ++i) {
            if (m_rows[i].Filetyp != kTypeMissing)
                continue;
            if (deleted % 5 == 0) {
                m_report.setValue(deleted);
                m_report.yield();
            }
            if (stopRequested())
                break;
            catalogue::DeleteCategoryRow(m_rows[i].Key, catalogue::kTypeFile);
            m_rows[i].Filetyp = kTypeDeleted;
            changeRow(i);
            ++deleted;
            transaction.commitIfDue();
        }
        transaction.finish();
    } catch (const db::DbError& e) {
        reportFailure(QStringLiteral("Delete-Error: ") + e.description());
    }
    m_report.setValue(marked);
    lMissing -= deleted;
    m_fm.CountFiles();
    if (deleted > 0)
        iMode = kModeChanged;
    return missingText(lMissing) + QLatin1Char('\n') +
           Translate(QStringLiteral("Gelöschte Dateien: ")) + QString::number(deleted);
}

QString BatchProcess::FindMissingFiles(const QString& folder, const QString& oldPath)
{
    cancelled = false;
    qint64 found = 0;
    try {
        QSet<QString> walked;
        BatchTransaction transaction;
        // The walk of the folder tree, each folder once even when links lead back.
        std::function<void(const QString&, int)> walk = [&](const QString& dir, int depth) {
            const QString real = QFileInfo(dir).canonicalFilePath();
            if (real.isEmpty() || walked.contains(real) || depth > kMaxFolderDepth)
                return;
            walked.insert(real);
            m_report.setStatus(dir);
            m_report.yield();
            if (stopRequested())
                return;
            MatchFolder(dir, oldPath, found);
            transaction.commitIfDue();
            const QStringList subfolders = QDir(dir).entryList(
                QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name | QDir::IgnoreCase);
            for (const QString& name : subfolders) {
                if (stopRequested())
                    return;
                if (!name.startsWith(QLatin1Char('.')))
                    walk(QDir(dir).filePath(name), depth + 1);
            }
        };
        walk(withoutTrailingSeparator(folder), 0);
        transaction.finish();
    } catch (const db::DbError& e) {
        reportFailure(e.description());
    }
    lMissing -= found;
    if (found > 0)
        iMode = kModeChanged;
    return missingText(lMissing) + QLatin1Char('\n') +
           Translate(QStringLiteral("Wiedergefundene Dateien: ")) + QString::number(found);
}

void BatchProcess::MatchFolder(const QString& folder, const QString& oldPath, qint64& found)
{
    const QString base = withoutTrailingSeparator(folder);
    const QString old = withoutTrailingSeparator(oldPath);
    for (qsizetype i = 0; i < m_rows.size(); ++i) {
        ResultRow& row = m_rows[i];
        if (row.Filetyp != kTypeMissing)
            continue;
        QString candidate;
        if (!old.isEmpty() && row.Path.contains(old)) {
            candidate = row.Path;
            candidate.replace(old, base);
            // A path written on Windows continues with "\" behind the part replaced.
            if (old.contains(QLatin1Char('\\')))
                candidate.replace(QLatin1Char('\\'), QLatin1Char('/'));
            candidate = QDir::cleanPath(candidate);
        } else {
            candidate = base + QLatin1Char('/') + row.File;
        }
        if (row.File.isEmpty() || !platform::FileExists(candidate))
            continue;
        app::gDB->execute(QStringLiteral("Update Category Set tPath='") +
                          catalogue::SqlQuote(candidate) + QStringLiteral("' where ID=") +
                          QString::number(row.Key));
        row.Filetyp = row.OrgType;
        row.Name = Translate(QStringLiteral("Datei gefunden: ")) + row.Name;
        changeRow(i);
        ++found;
    }
}

QStringList BatchProcess::MissingFolders() const
{
    QStringList folders;
    for (const ResultRow& row : m_rows) {
        if (row.Filetyp != kTypeMissing)
            continue;
        const QString folder = row.Path.left(row.Path.size() - row.File.size());
        if (!folder.isEmpty() && !folders.contains(folder))
            folders << folder;
    }
    return folders;
}

} // namespace vd::import
