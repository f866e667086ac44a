#pragma once
// Unpacking of ZIP, RAR (v4 and v5), 7Z and CAB archives in process. The format is recognised
// by the archive's content, so a ZIP named ".7z" unpacks as well. Nothing is ever written
// outside the target folder: member paths with "..", absolute paths and links are skipped, and
// each archive stops at limits on its members and its unpacked bytes.

#include <QString>
#include <QStringList>

namespace vd::import {

struct ArchiveLimits
{
    int maxDepth = 16;          // archives inside archives, the outermost is 1
    qint64 maxMembers = 100000; // entries of one archive
    qint64 maxBytes = qint64(4) * 1024 * 1024 * 1024; // unpacked from one archive
};

struct UnpackResult
{
    bool ok = false;
    QString error;       // why the archive could not be unpacked, "" when ok
    QStringList skipped; // members left out for safety, each with its reason
    qint64 members = 0;  // members written
    qint64 bytes = 0;    // bytes written
};

// Unpacks the whole archive (member "") or one member into targetFolder, which must exist.
// A member is named by its path inside the archive with "/" or "\" between folders and is
// matched without regard to case. A missing member is an error.
UnpackResult unpackArchive(const QString& archive, const QString& member,
                           const QString& targetFolder, const ArchiveLimits& limits = {});

// A member's path made safe: the folders and name below the target folder joined by "/", or
// "" when the path is absolute, climbs out with "..", or names nothing.
QString safeMemberPath(const QString& name);

// True for a name whose extension is ZIP, RAR, 7Z or CAB (case ignored).
bool isArchiveName(const QString& name);

// The path of `relative` ("/" between parts) below `folder`, found without regard to case
// when no part matches exactly; "" when nothing matches.
QString findOnDisk(const QString& folder, const QString& relative);

} // namespace vd::import
