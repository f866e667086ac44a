// The one-entry readers from any bytes, under any file name: the first byte gives the length
// of the name taken from the next bytes; the rest is the file.

#include "formats/SingleFile.h"

#include <cstdint>

using namespace vd::formats;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const size_t nameLength = std::min<size_t>(data[0] % 24, size - 1);
    const QString name =
        QString::fromLatin1(reinterpret_cast<const char*>(data) + 1, qsizetype(nameLength));
    const QByteArrayView bytes(reinterpret_cast<const char*>(data) + 1 + nameLength,
                               qsizetype(size - 1 - nameLength));
    const MemoryBytes file(bytes);
    for (SingleKind kind : {SingleKind::Prg, SingleKind::P00, SingleKind::Tap, SingleKind::Vsf,
                            SingleKind::C64, SingleKind::Crt, SingleKind::Text, SingleKind::Pdf,
                            SingleKind::Picture, SingleKind::Vfl}) {
        const SingleFormat& format = singleFormat(kind);
        if (readMagic(format, file).size() > format.magicLength)
            __builtin_trap();
        const SingleEntry e = readSingleEntry(format, name, file);
        if (e.program.size() > name.size() + 17 || e.extension.size() > 3)
            __builtin_trap();
    }
    return 0;
}
