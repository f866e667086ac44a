#include "browser/Preview.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "catalogue/CatalogueSchema.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"
#include "catalogue/RowOps.h"
#include "formats/Listing.h"
#include "import/clsFileManager.h"
#include "platform/Files.h"

#include <QFile>
#include <QFileInfo>

namespace vd::browser {

using catalogue::ValueText;

namespace {

constexpr qint64 kReadChunk = 64 * 1024;

QString missing(const QString& path)
{
    return app::Translate(QStringLiteral("Datei nicht gefunden: ")) + path;
}

void readDirectory(PreviewContent& c)
{
    const auto rs = app::gDB->openRecordset(
        QStringLiteral("Select F.ID,F.tProgram,F.tExtension,F.lSize,C.tCategory,C.tImage From "
                       "C64Files as F Left Join Category as C on F.Category_File=C.ID where "
                       "F.Category_File=") +
            QString::number(c.container) + QStringLiteral(" order by lIndex"),
        db::RecordsetType::Snapshot);
    c.kind = PreviewKind::Directory;
    if (rs->eof())
        return;
    c.label = ValueText(rs->value(4));
    const bool disk = formats::isDiskKind(c.fileType);
    if (disk)
        c.rows.append(
            {0, QStringLiteral("0"), formats::diskHeaderName(ValueText(rs->value(5))), QString()});
    for (; !rs->eof(); rs->moveNext()) {
        const qint64 size = rs->value(3).toLongLong();
        PreviewRow row;
        row.key = rs->value(0).toLongLong();
        row.file = QLatin1Char('"') + ValueText(rs->value(1)) + QLatin1Char('"');
        row.extension = ValueText(rs->value(2));
        row.size = disk ? QString::number(size) : formats::FormatSize(size, c.fileType);
        c.rows.append(row);
    }
}

// Steps 7 and 8: a text or a picture, from disk or from its archive.
void readFile(import::clsFileManager& fm, PreviewContent& c, const db::Recordset& cat)
{
    const QString path = ValueText(cat.value(QStringLiteral("tPath")));
    const QString name = ValueText(cat.value(QStringLiteral("tFile")));
    QString file = path;
    QString error;
    if (!cat.value(QStringLiteral("tUnpackPath")).isNull()) {
        if (platform::FileExists(path)) {
            file = fm.ExtractFileFromArchiv(
                name, ValueText(cat.value(QStringLiteral("tUnpackPath"))), path);
            if (file.isEmpty())
                return; // the extraction has reported why
        } else {
            error = path;
        }
    }
    if (error.isEmpty() && !platform::FileExists(file))
        error = file;
    if (!error.isEmpty()) {
        c.kind = PreviewKind::Missing;
        c.label = missing(error);
        return;
    }
    c.label = name.isEmpty() ? QFileInfo(file).fileName() : name;
    c.file = file;
    if (c.fileType == catalogue::kFilePicture) {
        c.kind = PreviewKind::Picture;
    } else {
        c.kind = PreviewKind::Text;
        c.lines = readPreviewLines(file);
    }
}

} // namespace

qint64 previewContainer(qint64 id)
{
    if (id < 0)
        return -id;
    if (id == 0)
        return 0;
    return catalogue::GetDbValue(QStringLiteral("Category_File"), QStringLiteral("C64Files"),
                                 QStringLiteral("ID=") + QString::number(id))
        .toLongLong();
}

PreviewContent readPreview(import::clsFileManager& fm, qint64 container)
{
    PreviewContent c;
    c.container = container;
    if (!app::gDB || container <= 0)
        return c;
    const auto cat = app::gDB->openRecordset(QStringLiteral("Select * From Category where ID=") +
                                                 QString::number(container),
                                             db::RecordsetType::Snapshot);
    if (cat->eof())
        return c;
    c.fileType = cat->value(QStringLiteral("iFileType")).toInt();
    if (c.fileType == catalogue::kFileVfl) {
        c.kind = PreviewKind::FlipList;
        c.flipListId =
            platform::FileExists(ValueText(cat->value(QStringLiteral("tPath")))) ? container : 0;
    } else if (c.fileType != catalogue::kFileText && c.fileType != catalogue::kFilePicture) {
        readDirectory(c);
    } else {
        readFile(fm, c, *cat);
    }
    return c;
}

QStringList readPreviewLines(const QString& path)
{
    QStringList lines;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return lines;
    QByteArray current;
    bool afterCr = false;
    while (lines.size() < kMaxPreviewLines) {
        const QByteArray chunk = file.read(kReadChunk);
        if (chunk.isEmpty())
            break;
        for (const char b : chunk) {
            if (afterCr && b == '\n') {
                afterCr = false;
                continue;
            }
            afterCr = b == '\r';
            if (b == '\r' || b == '\n') {
                lines.append(QString::fromLatin1(current));
                current.clear();
                if (lines.size() == kMaxPreviewLines)
                    break;
            } else if (current.size() < kMaxPreviewLineBytes) {
                current.append(b);
            }
        }
    }
    if (lines.size() < kMaxPreviewLines && !current.isEmpty())
        lines.append(QString::fromLatin1(current));
    if (lines.size() == kMaxPreviewLines)
        lines.append(kMoreLines);
    return lines;
}

} // namespace vd::browser
