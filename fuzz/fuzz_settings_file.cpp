// The settings-file reader on any bytes: parsing never fails, a key read back is found again,
// and a value is never longer than the file.

#include "app/IniFile.h"

#include <cstdint>

using namespace vd::app;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const IniDocument doc = IniDocument::parse(bytes);
    const QString text = IniDocument::decode(bytes);
    for (const char* section : {"MAIN", "GAMEBASE", "EMULATORS", "main", ""}) {
        for (const IniEntry& e : doc.entries(QString::fromLatin1(section))) {
            if (!doc.hasKey(QString::fromLatin1(section), e.key))
                __builtin_trap();
            if (e.value.size() > text.size())
                __builtin_trap();
        }
        (void)doc.value(QString::fromLatin1(section), QStringLiteral("Database"));
    }
    return 0;
}
