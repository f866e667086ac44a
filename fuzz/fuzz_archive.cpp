// The unpacking of archives from any bytes: whatever the archive says, nothing is written
// outside the target folder, and each run stays within small limits.

#include "import/ArchiveReader.h"

#include <cstdint>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static QTemporaryDir root;
    const QString archive = root.filePath(QStringLiteral("input.bin"));
    const QString target = root.filePath(QStringLiteral("out"));
    QFile file(archive);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return 0;
    file.write(reinterpret_cast<const char*>(data), qint64(size));
    file.close();
    QDir(target).removeRecursively();
    QDir().mkpath(target);
    vd::import::ArchiveLimits limits;
    limits.maxMembers = 1000;
    limits.maxBytes = 16 * 1024 * 1024;
    const vd::import::UnpackResult r = vd::import::unpackArchive(archive, {}, target, limits);
    if (r.bytes > limits.maxBytes + 64 * 1024 || r.members > limits.maxMembers)
        __builtin_trap();
    // Only the input and the target folder may exist in the root.
    const QStringList names = QDir(root.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    if (names != QStringList({QStringLiteral("input.bin"), QStringLiteral("out")}))
        __builtin_trap();
    QDirIterator it(target, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        if (it.nextFileInfo().isSymLink())
            __builtin_trap();
    return 0;
}
