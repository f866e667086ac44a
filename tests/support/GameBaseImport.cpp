#include "support/GameBaseImport.h"

#include "catalogue/Database.h"
#include "gamebase/GameBase.h"
#include "support/ArchiveWriter.h"
#include "support/C64ImageWriter.h"

#include <QDir>
#include <QFileInfo>
#include <stdexcept>

namespace vd::test {

GameBaseImport::GameBaseImport()
{
    gb.close();
    gamebase::CloseGameBase();
    gamebase::gGameBaseDB = gb.path();
    if (!gamebase::OpenGameBase(false))
        throw std::runtime_error("the GameBase fixture did not open");
    f.fm.options.ConnectFilesToGB = true;
    f.fm.options.SkipZipSize = QStringLiteral("0");
}

GameBaseImport::~GameBaseImport()
{
    gamebase::CloseGameBase();
    gamebase::gGameBaseDB = gamebase::kGameBaseHint;
}

QString GameBaseImport::zip(const QString& name, const QVector<GameMember>& members)
{
    QVector<RawZipMember> raw;
    for (const GameMember& m : members) {
        QByteArray bytes = "text of " + m.name.toLatin1();
        if (m.name.endsWith(QLatin1String(".D64"), Qt::CaseInsensitive)) {
            QVector<Slot> directory;
            for (const QByteArray& entry : m.entries)
                directory << Slot{0x82, entry, 10};
            bytes = DiskWriter::d64().name("GAMES").entries(directory).bytes();
        }
        raw << RawZipMember{m.name.toLatin1(), bytes, true};
    }
    const QString path = f.file(name);
    QDir().mkpath(QFileInfo(path).absolutePath());
    if (!writeFile(path, rawZip(raw)))
        throw std::runtime_error("the ZIP file was not written");
    return path;
}

void GameBaseImport::changeGameBase(const QString& jetSql)
{
    gamebase::gGB->execute(jetSql);
}

QStringList GameBaseImport::gameBaseLines() const
{
    QStringList lines;
    for (const auto& [text, type] : f.messages)
        if (text.startsWith(QLatin1String("Gamebase: ")))
            lines << text + QLatin1Char('|') + QString::number(type);
    return lines;
}

} // namespace vd::test
