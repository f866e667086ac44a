#include "browser/FilterForm.h"

#include "browser/Filters.h"
#include "catalogue/CatalogueSchema.h"

#include <QSet>

namespace vd::browser {

namespace {

// The field of each input, by the index of its compare button.
const char* const kCompareField[kCompareCount] = {"tImage", "tExtension", "tPath",
                                                  "lSize",  "tFile",      "Category_User"};

// The file type of each start extension and of PDF; the number is also the node's tag.
struct TypedExtension
{
    const char* extension;
    int type;
};
constexpr TypedExtension kTypedExtensions[] = {
    {"D64", catalogue::kFileD64}, {"D71", catalogue::kFileD71}, {"T64", catalogue::kFileT64},
    {"PRG", catalogue::kFilePrg}, {"P00", catalogue::kFileP00}, {"TAP", catalogue::kFileTap},
    {"VSF", catalogue::kFileVsf}, {"C64", catalogue::kFileC64}, {"CRT", catalogue::kFileCrt},
    {"G64", catalogue::kFileG64}, {"D81", catalogue::kFileD81}, {"VFL", catalogue::kFileVfl},
    {"PDF", catalogue::kFilePdf}};

int typeOfExtension(const QString& bare)
{
    for (const TypedExtension& t : kTypedExtensions)
        if (bare == QLatin1String(t.extension))
            return t.type;
    return 0;
}

// ".ZIP;.RAR" -> ZIP, RAR as nodes with `tag`.
QVector<FileTypeNode> namedNodes(const QString& list, const QString& tag)
{
    QVector<FileTypeNode> nodes;
    for (const QString& ext : list.split(QLatin1Char(';'), Qt::SkipEmptyParts))
        nodes.push_back(FileTypeNode{ext.mid(1), tag});
    return nodes;
}

bool isNamedTag(const QString& tag)
{
    return tag == QLatin1String("ZIP") || tag == QLatin1String("GFX") ||
           tag == QLatin1String("TXT");
}

// The compare word an input shows for a stored definition.
QString shownCompare(int index, const QString& stored)
{
    const QStringList list = CompareList(index);
    return list.contains(stored) ? stored : list.value(0);
}

} // namespace

QStringList CompareList(int index)
{
    switch (index) {
    case kCompareFile:
    case kCompareImage:
    case kComparePath:
        return {QStringLiteral("( )"), QStringLiteral("="), QStringLiteral(">"),
                QStringLiteral("<"), QStringLiteral("<>")};
    case kCompareExtension:
        return {QStringLiteral("="), QStringLiteral("<>")};
    case kCompareCategory:
        return {QStringLiteral("="), QStringLiteral(">"), QStringLiteral("<"), QStringLiteral("<>"),
                QStringLiteral("( )")};
    case kCompareSize:
        return {QStringLiteral("="), QStringLiteral("<"), QStringLiteral(">"),
                QStringLiteral("<>")};
    default:
        return {};
    }
}

QString NextCompare(int index, const QString& caption)
{
    const QStringList list = CompareList(index);
    if (list.isEmpty())
        return kCompareNone;
    const qsizetype at = list.indexOf(caption);
    if (at < 0)
        return list.first();
    return at + 1 < list.size() ? list[at + 1] : kCompareNone;
}

QStringList CompareCaptions()
{
    return {kCompareNone,         QStringLiteral(">"), QStringLiteral("<"),
            QStringLiteral("<>"), QStringLiteral("="), QStringLiteral("( )")};
}

QString CompareTip(const QString& caption)
{
    static const QStringList tips{
        QStringLiteral("keine Bedingung"),         QStringLiteral("beginnt mit / größer als"),
        QStringLiteral("endet mit / kleiner als"), QStringLiteral("ist nicht gleich"),
        QStringLiteral("ist genau gleich"),        QStringLiteral("enthält")};
    const qsizetype at = CompareCaptions().indexOf(caption);
    return at < 0 ? QString() : tips[at];
}

QVector<FileTypeGroup> FileTypeGroups()
{
    FileTypeGroup typed;
    const QString typedList =
        catalogue::kStartExtensions + QLatin1Char(';') + catalogue::kPdfExtensions;
    for (const QString& ext : typedList.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString bare = ext.mid(1);
        typed.nodes.push_back(FileTypeNode{bare, QString::number(typeOfExtension(bare))});
    }
    return {typed,
            {QStringLiteral("Archive"), QStringLiteral("ZIP"),
             namedNodes(catalogue::kArchiveExtensions, QStringLiteral("ZIP"))},
            {QStringLiteral("Bilder"), QStringLiteral("GFX"),
             namedNodes(catalogue::kPictureExtensions, QStringLiteral("GFX"))},
            {QStringLiteral("Texte"), QStringLiteral("TXT"),
             namedNodes(catalogue::kTextExtensions, QStringLiteral("TXT"))}};
}

void StoreFilterForm(const FilterFormState& form, clsFilter& filter)
{
    filter.Defs.clear();
    const QString none;
    if (form.compressed)
        AddCondition(filter, QStringLiteral("tUnpackPath"), QStringLiteral("<>"), none, none);
    const auto input = [&](int index, const QString& value) {
        AddCondition(filter, QLatin1String(kCompareField[index]), form.compare[index], value, none);
    };
    input(kCompareFile, form.file);
    input(kCompareImage, form.image);
    input(kCompareExtension, form.extension);
    // A chosen category is its key for "=" and "<>"; begins, ends and contains look at the
    // name, and so does a name that was typed rather than chosen.
    const QString& categoryCompare = form.compare[kCompareCategory];
    const bool byKey =
        categoryCompare == QLatin1String("=") || categoryCompare == QLatin1String("<>");
    if (!form.categoryText.isEmpty() && (form.categoryID.isEmpty() || !byKey))
        AddCondition(filter, QStringLiteral("C.tCategory"), categoryCompare, form.categoryText,
                     none);
    else
        input(kCompareCategory, form.categoryID);
    input(kComparePath, form.path);
    input(kCompareSize, form.size);
    QString join;
    for (const FileTypeNode& node : form.checked) {
        if (isNamedTag(node.tag))
            filter.Add(QStringLiteral("Type"), QStringLiteral("="), node.text, join);
        else
            filter.Add(QStringLiteral("iFileType"), QStringLiteral("="), node.tag, join);
        join = QStringLiteral("Or");
    }
}

FilterFormState ReadFilterForm(const clsFilter& filter)
{
    FilterFormState form;
    QSet<QString> typeTags; // file type numbers
    QSet<QString> names;    // extensions looked for by name
    for (const clsFilterDef& def : filter.Defs) {
        const QString field = def.Field.toUpper();
        const auto input = [&](int index, QString& value) {
            form.compare[index] = shownCompare(index, def.Compare);
            value = def.Value;
        };
        if (field == QLatin1String("TUNPACKPATH")) {
            form.compressed = true;
        } else if (field == QLatin1String("TFILE")) {
            input(kCompareFile, form.file);
        } else if (field == QLatin1String("TIMAGE")) {
            input(kCompareImage, form.image);
        } else if (field == QLatin1String("TEXTENSION")) {
            input(kCompareExtension, form.extension);
        } else if (field == QLatin1String("CATEGORY_USER")) {
            input(kCompareCategory, form.categoryID);
            form.categoryText.clear();
        } else if (field == QLatin1String("C.TCATEGORY")) {
            input(kCompareCategory, form.categoryText);
            form.categoryID.clear();
        } else if (field == QLatin1String("TPATH")) {
            input(kComparePath, form.path);
        } else if (field == QLatin1String("LSIZE")) {
            input(kCompareSize, form.size);
        } else if (field == QLatin1String("IFILETYPE")) {
            typeTags.insert(def.Value.trimmed());
        } else if (field == QLatin1String("TYPE")) {
            names.insert(def.Value.trimmed().toUpper());
        }
    }
    for (const FileTypeGroup& group : FileTypeGroups()) {
        for (const FileTypeNode& node : group.nodes) {
            if (isNamedTag(node.tag) ? names.contains(node.text) : typeTags.contains(node.tag))
                form.checked.push_back(node);
        }
    }
    return form;
}

} // namespace vd::browser
