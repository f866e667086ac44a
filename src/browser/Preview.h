#pragma once
// What the preview shows for a selected catalogue row: a container's directory in the manner of
// the C64's own listing, a text file's lines, a picture's file, the flip-list window, or why the
// file can't be shown. The windows only draw what this reads.

#include <QString>
#include <QStringList>
#include <QVector>

namespace vd::import {
class clsFileManager;
}

namespace vd::browser {

// A text preview stops after this many lines and shows kMoreLines below them.
constexpr int kMaxPreviewLines = 1000;
inline const QString kMoreLines = QStringLiteral("...");
// A single line longer than this is cut; the rest of it is skipped.
constexpr qint64 kMaxPreviewLineBytes = 64 * 1024;

enum class PreviewKind
{
    None,      // nothing to show; the pane is left empty (an extraction that reported itself)
    Directory, // rows with Size, File, Extension
    Text,      // lines
    Picture,   // the file in `file`
    FlipList,  // the flip-list window shows `flipListId` (0: a new list)
    Missing,   // "Datei nicht gefunden: " and the path, in `label`
};

struct PreviewRow
{
    qint64 key = 0; // the entry's C64Files.ID; 0 for the disk's header row
    QString size;
    QString file;
    QString extension;
};

struct PreviewContent
{
    PreviewKind kind = PreviewKind::None;
    qint64 container = 0; // the Category row on show
    int fileType = 0;
    QString label;            // lblPreview
    QVector<PreviewRow> rows; // Directory
    QStringList lines;        // Text
    QString file;             // Picture, Text: the file read
    qint64 flipListId = 0;    // FlipList
};

// Step 2: the container of a selection (the INFO tag's value): an entry's Category_File, or
// the file's own id for a negative value. 0 when there is none.
qint64 previewContainer(qint64 id);

// Steps 4 to 9 for `container` on gDB. Archive members are extracted through `fm`.
PreviewContent readPreview(import::clsFileManager& fm, qint64 container);

// Step 8 for a text: at most kMaxPreviewLines lines as ISO-8859-1, and kMoreLines when that
// limit was reached. Line ends may be CR LF, LF or CR.
QStringList readPreviewLines(const QString& path);

} // namespace vd::browser
