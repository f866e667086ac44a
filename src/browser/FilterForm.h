#pragma once
// What the filter editor holds, apart from its widgets: the compare buttons' lists, the nodes
// of its file-type tree, and the two ways between a form's inputs and a filter's definitions.
// The editor window only moves these values in and out of its controls.

#include <QString>
#include <QStringList>
#include <QVector>

namespace vd::browser {

struct clsFilter;

// The compare buttons (cmdCompare) by index, each beside its input.
enum CompareIndex : int
{
    kCompareImage = 0,     // cboImage, tImage
    kCompareExtension = 1, // cboExtension, tExtension
    kComparePath = 2,      // txtPath, tPath
    kCompareSize = 3,      // txtSize, lSize
    kCompareFile = 4,      // cboFile, tFile
    kCompareCategory = 5,  // cboCategory, Category_User
};
constexpr int kCompareCount = 6;

// "No condition": the caption a button has before the user chooses.
inline const QString kCompareNone = QStringLiteral("X");

// The captions a button walks at each click, in order, without "X".
QStringList CompareList(int index);
// The caption after `caption`: the next of the list, "X" after the last, the first after "X"
// (and after a caption the list does not hold).
QString NextCompare(int index, const QString& caption);
// The German tool tip of a caption; "" for an unknown one.
QString CompareTip(const QString& caption);
// Every caption with its meaning, in the order the legend lists them.
QStringList CompareCaptions();

// One check box of treeFiles. `tag` is the file type number, or ZIP, GFX, TXT for the
// extensions that are looked for by name.
struct FileTypeNode
{
    QString text;
    QString tag;
    bool operator==(const FileTypeNode&) const = default;
};

// A branch of treeFiles. An empty caption puts the nodes right under the root.
struct FileTypeGroup
{
    QString caption; // German, goes through Translate
    QString tag;
    QVector<FileTypeNode> nodes;
};

// The branches under the root "Dateiendung": the start extensions and PDF by their file type,
// then the archives, pictures and texts by their extension.
QVector<FileTypeGroup> FileTypeGroups();

// The inputs of the editor.
struct FilterFormState
{
    bool compressed = false; // chkCompressed
    QString compare[kCompareCount]{kCompareNone, kCompareNone, kCompareNone,
                                   kCompareNone, kCompareNone, kCompareNone};
    QString file;      // cboFile's text
    QString image;     // cboImage's text
    QString extension; // cboExtension
    // cboCategory: the ID of a category chosen from the list (empty otherwise) and the text
    // shown. "=" and "<>" store the ID, the other compare words and a typed name the text.
    QString categoryID;
    QString categoryText;
    QString path; // txtPath
    QString size; // txtSize
    // The checked nodes of treeFiles, in the tree's order.
    QVector<FileTypeNode> checked;
};

// Replaces the definitions of `filter` by the form's, in the order chkCompressed, tFile,
// tImage, tExtension, Category_User, tPath, lSize and the checked nodes; inputs whose button
// says "X", or that have no value where one is needed, add nothing.
void StoreFilterForm(const FilterFormState& form, clsFilter& filter);

// The inputs that show `filter`: each definition goes to its input by its upper-case field
// name, iFileType and Type check their nodes. A compare word that the input's button does not
// know shows as the button's first.
FilterFormState ReadFilterForm(const clsFilter& filter);

} // namespace vd::browser
