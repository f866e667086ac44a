#pragma once
// Turning a profile's option string into the raw parameter string for one start: the two
// whole-item keywords, the placeholders, and the C64 file name in the form emulators match.

#include <QString>

namespace vd::launch {

// The marker that stands for the file path until the temporary copy is known.
inline const QString kFilePathMarker = QStringLiteral("@FILEPATH@");

// What one start knows about the thing it starts.
struct StartItem
{
    bool isEntry = false; // a program inside a container, not a whole file
    int lIndex = 0;       // 1-based place in the container
    QString realProgram;  // tRealProgram
    int iFileType = 0;
    bool useTemp = false; // a temporary disk copy is wanted; the items may change it
    // A list that is not catalogued: only FILEPATH and INPUT are known, and "UseTempFile" and
    // "-fastload" go to the emulator as text.
    bool flipList = false;
};

// The C64 file name as a wildcard: cut behind the first "_" (else the first "$"), that
// character turned into "*", all lower-cased: MY_GAME -> my*, LIST$ -> list*, A$B_C -> a$b*.
QString C64WildcardName(const QString& name);

// Expands the placeholders of one item's text in place. False after a message for an
// incomplete ("<$" without "$>") or unknown placeholder.
bool ExpandPlaceholders(QString& text, StartItem& item);

// The raw parameter string of `options` for `item`: a blank before every item that is on,
// also before an item that became empty. False when an expansion failed.
bool BuildCommandLine(const QString& options, StartItem& item, QString& commandLine);

} // namespace vd::launch
