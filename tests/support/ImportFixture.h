#pragma once
// An importer over a new, empty catalogue in a temporary folder: the catalogue is gDB, the
// folder is the program folder (with its Temp), the dialog service is scripted, and every
// ShowMessage is recorded.

#include "import/clsFileManager.h"
#include "platform/ScriptedDialogService.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace vd::test {

class ImportFixture
{
public:
    ImportFixture();
    ~ImportFixture();
    ImportFixture(const ImportFixture&) = delete;
    ImportFixture& operator=(const ImportFixture&) = delete;

    import::clsFileManager fm;
    platform::ScriptedDialogService dialogs;
    QList<QPair<QString, int>> messages; // every ShowMessage, in order

    // A path inside the fixture's folder for test files ("files/<name>").
    QString file(const QString& name) const;
    QString catalogue() const { return m_catalogue; }
    QString tempFolder() const;

    // LoadFile for a file named directly (flags 2), or with the flags given.
    qint64 load(const QString& path, int flags = import::kFlagNamedFile, qint64 id = 0);

    // The result-list lines (type -1) recorded so far.
    QStringList resultLines() const;
    // Rows of a statement on gDB, each row its values joined by "|" (Null as "-").
    QStringList rows(const QString& sql) const;
    // One value of gDB as text.
    QString value(const QString& sql) const;
    qint64 count(const QString& table, const QString& where = {}) const;

private:
    QTemporaryDir m_dir;
    QString m_catalogue;
};

} // namespace vd::test
