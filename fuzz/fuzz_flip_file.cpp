// The flip-list reader on any file: every path it returns is trimmed and not empty, and a list
// written from those paths reads back the same.

#include "launch/FlipFile.h"

#include <cstdint>
#include <QFile>
#include <QTemporaryDir>

using namespace vd::launch;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("in.vfl"));
    {
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return 0;
        f.write(reinterpret_cast<const char*>(data), qint64(size));
    }
    const QStringList paths = ReadFlipFile(path);
    for (const QString& p : paths)
        if (p.isEmpty() || p != p.trimmed() || p.contains(QLatin1Char('\n')))
            __builtin_trap();
    const QString out = dir.filePath(QStringLiteral("out.vfl"));
    if (CreateFlipFile(out, paths) && ReadFlipFile(out) != paths)
        __builtin_trap();
    return 0;
}
