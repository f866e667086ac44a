#pragma once
// The file view's tree levels as the view builder writes them, with the third level on: the
// root from Config, every file by name, every entry under its file.

#include <QString>

namespace vd::test {

inline const QString kRootLevel = QStringLiteral(
    "SELECT DISTINCT -1 AS ItemKey,-1 AS ParentKey,16 AS Icon,'Dateien' From Config");
inline const QString kFilesLevel = QStringLiteral(
    "SELECT F.ID AS ItemKey,-1 AS ParentKey,F.iFileType AS Icon,tCategory From Category as F where "
    "iType=1 order by tCategory");
inline const QString kEntriesLevel = QStringLiteral(
    "SELECT C64Files.ID AS ItemKey,Category_File AS ParentKey,F.iFileType as Icon, tProgram & '.' & "
    "tExtension AS File  From (C64Files Left Join Category as F on C64Files.Category_File=F.ID) "
    "order by lIndex");

} // namespace vd::test
