// A language file of any bytes: loading never fails badly, and texts go forwards and back
// without growing out of bounds. A translation that the file holds comes back to a key.

#include "app/Translate.h"
#include "platform/ScriptedDialogService.h"

#include <cstdint>

using namespace vd;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static platform::ScriptedDialogService quiet;
    quiet.setRecording(false);
    platform::setDialogService(&quiet);

    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const QString text = app::DecodeLanguageFile(bytes);
    if (text.size() > bytes.size()) // never more characters than bytes
        __builtin_trap();
    if (!app::LoadLanguageData(bytes, QStringLiteral("Fuzz.lng")))
        return 0;
    app::EnterForm(QStringLiteral("frmFuzz"));
    for (const char* german :
         {"&Abbrechen", "Dateien: ", "Dateien:", "Datei @1 fehlt", "", ":", "&", "@@"}) {
        const QString source = QString::fromUtf8(german);
        const QString there = app::Translate(source, QStringLiteral("x.d64"));
        (void)app::TranslateText(there, true);
        (void)app::TranslateText(source, false);
    }
    // Each line's translation leads back to a key of the file.
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < lines.size() && i < 64; ++i) {
        const QStringList parts = lines[i].split(QStringLiteral("@@"));
        if (parts.size() != 2 || parts[0].isEmpty())
            continue;
        (void)app::Translate(parts[0]);
        (void)app::TranslateText(parts[1], true);
    }
    app::LeaveForm();
    return 0;
}
