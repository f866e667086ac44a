#include "import/FileHash.h"

#include "formats/FileBytes.h"
#include "import/clsFileManager.h"
#include "platform/Files.h"

#include <QCryptographicHash>

namespace vd::import {

QString GetFileHash(clsFileManager& fileManager, const QString& sName, const QString& sPath,
                    const QString& sUnpack)
{
    if (!platform::FileExistsMsg(sPath))
        return {};
    QString file = sPath;
    if (!sUnpack.isEmpty()) {
        file = fileManager.ExtractFileFromArchiv(sName, sUnpack, sPath);
        if (file.isEmpty())
            return {};
    }
    return fileMd5(file);
}

QString fileMd5(const QString& path)
{
    constexpr qint64 kChunk = 1 << 16;
    formats::FileBytes file;
    if (!file.open(path))
        return {};
    QCryptographicHash hash(QCryptographicHash::Md5);
    QByteArray buffer(kChunk, Qt::Uninitialized);
    try {
        for (qint64 at = 0;;) {
            const qint64 n = file.readAt(at, buffer.data(), kChunk);
            if (n <= 0)
                break;
            hash.addData(QByteArrayView(buffer.constData(), n));
            at += n;
        }
    } catch (const formats::ReadError&) {
        return {};
    }
    return QString::fromLatin1(hash.result().toHex());
}

} // namespace vd::import
