#pragma once
// Archives for tests: ZIP and 7Z written by 7z, CAB by gcab, and ZIP files written byte by byte
// for what no honest tool writes (members named "../x" or "/x", links, bombs).

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

namespace vd::test {

// Packs `members` (paths relative to `folder`, folders with their content) into `archive`
// with 7z ("zip" or "7z" as type) or gcab ("cab"). False when the tool is missing or fails.
bool packArchive(const QString& type, const QString& archive, const QString& folder,
                 const QStringList& members, const QStringList& extraOptions = {});
// The tool that packArchive needs for `type`.
QString archiveTool(const QString& type);

struct RawZipMember
{
    QByteArray name;
    QByteArray data;      // the content, or the target of a link
    bool deflate = false; // compressed with deflate, else stored
    quint32 unixMode = 0; // e.g. 0120777 for a link; 0 for none
};

// A ZIP of exactly these members, names and modes taken as they are.
QByteArray rawZip(const QVector<RawZipMember>& members);

} // namespace vd::test
