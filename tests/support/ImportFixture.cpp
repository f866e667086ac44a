#include "support/ImportFixture.h"

#include "app/Globals.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"

#include <QDir>
#include <QFileInfo>
#include <stdexcept>

namespace vd::test {

ImportFixture::ImportFixture()
{
    if (!m_dir.isValid())
        throw std::runtime_error("no temporary folder for the import fixture");
    platform::setDialogService(&dialogs);
    app::setProgramFolder(m_dir.filePath(QStringLiteral("home")));
    QDir().mkpath(app::gTempPath);
    QDir().mkpath(m_dir.filePath(QStringLiteral("files")));
    m_catalogue = m_dir.filePath(QStringLiteral("Import.vdb"));
    catalogue::createCatalogueFile(m_catalogue);
    QString path = m_catalogue;
    if (!catalogue::OpenCatalogueFile(path))
        throw std::runtime_error("the fixture's catalogue did not open");
    fm.InitCount();
    QObject::connect(&fm, &import::clsFileManager::ShowMessage, &fm,
                     [this](const QString& text, int type) {
                         messages.append({text, type});
                     });
}

ImportFixture::~ImportFixture()
{
    catalogue::CloseCatalogue();
    platform::setDialogService(nullptr);
}

QString ImportFixture::file(const QString& name) const
{
    return m_dir.filePath(QStringLiteral("files/") + name);
}

QString ImportFixture::tempFolder() const
{
    return app::gTempPath;
}

qint64 ImportFixture::load(const QString& path, int flags, qint64 id)
{
    return fm.LoadFile(QFileInfo(path).fileName(), path, flags, {}, false, id);
}

QStringList ImportFixture::resultLines() const
{
    QStringList lines;
    for (const auto& [text, type] : messages)
        if (type == import::kMessageResult)
            lines << text;
    return lines;
}

QStringList ImportFixture::rows(const QString& sql) const
{
    QStringList result;
    const auto rs = app::gDB->openRecordset(sql, db::RecordsetType::Snapshot);
    for (; !rs->eof(); rs->moveNext()) {
        QStringList cells;
        for (int i = 0; i < rs->fieldCount(); ++i) {
            const QVariant v = rs->value(i);
            cells << (v.isNull() ? QStringLiteral("-") : v.toString());
        }
        result << cells.join(QLatin1Char('|'));
    }
    rs->close();
    return result;
}

QString ImportFixture::value(const QString& sql) const
{
    const QStringList r = rows(sql);
    return r.isEmpty() ? QString() : r.first();
}

qint64 ImportFixture::count(const QString& table, const QString& where) const
{
    QString sql = QStringLiteral("Select Count(*) From ") + table;
    if (!where.isEmpty())
        sql += QStringLiteral(" where ") + where;
    return value(sql).toLongLong();
}

} // namespace vd::test
