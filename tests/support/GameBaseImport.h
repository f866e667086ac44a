#pragma once
// An importer over a new catalogue (ImportFixture) beside an open GameBase-shaped database
// (GameBaseFixture), and ZIP files of game disks written byte by byte, for the matching of
// archives with games.

#include "support/GameBaseFixture.h"
#include "support/ImportFixture.h"

#include <QByteArray>
#include <QString>
#include <QVector>

namespace vd::test {

// One member of a game's ZIP: a D64 with these entry names (lIndex 1, 2, ...), or, for a name
// not ending in ".D64", a text of a few bytes.
struct GameMember
{
    QString name;
    QList<QByteArray> entries;
};

class GameBaseImport
{
public:
    // The GameBase is opened as the configured one (OpenGameBase) and ConnectFilesToGB is on.
    GameBaseImport();
    ~GameBaseImport();
    GameBaseImport(const GameBaseImport&) = delete;
    GameBaseImport& operator=(const GameBaseImport&) = delete;

    ImportFixture f;
    GameBaseFixture gb;

    // Writes files/<name> as a ZIP of the members; returns its path.
    QString zip(const QString& name, const QVector<GameMember>& members);
    // Runs a statement on the open GameBase.
    void changeGameBase(const QString& jetSql);
    // The "Gamebase: " lines of the importer, each with its type.
    QStringList gameBaseLines() const;
};

} // namespace vd::test
