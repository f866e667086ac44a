#include "browser/Filters.h"

#include "app/Settings.h"
#include "app/SettingsWriter.h"
#include "app/Translate.h"
#include "catalogue/CatalogueSchema.h"
#include "catalogue/RowOps.h"

#include <algorithm>
#include <QSet>
#include <QStringList>

namespace vd::browser {

FilterCollection gFilters;

namespace {

// Reading stops at the first empty name anyway; this only bounds a damaged file.
constexpr int kMaxFilters = 10000;

bool isOneOf(const QString& upperField, std::initializer_list<const char*> names)
{
    for (const char* name : names)
        if (upperField == QLatin1String(name))
            return true;
    return false;
}

bool inExtensionList(const QString& list, const QString& bareExtension)
{
    const QString wanted = QLatin1Char('.') + bareExtension.toUpper();
    return list.split(QLatin1Char(';')).contains(wanted);
}

// The icon of one condition, "" when the condition names no type.
QString iconOfDef(const clsFilterDef& def)
{
    const QString field = def.Field.toUpper();
    if (field == QLatin1String("IFILETYPE"))
        return def.Value;
    if (field != QLatin1String("TYPE"))
        return {};
    const QString ext = def.Value.toUpper();
    if (ext == QLatin1String("7Z") || ext == QLatin1String("RAR") || ext == QLatin1String("CAB"))
        return QStringLiteral("ZIP");
    if (ext == QLatin1String("DIZ") || ext == QLatin1String("NFO"))
        return QStringLiteral("TXT");
    if (inExtensionList(catalogue::kPictureExtensions, ext))
        return QStringLiteral("GFX");
    return ext;
}

} // namespace

clsFilterDef& clsFilter::Add(const QString& field, const QString& compare, const QString& value,
                             const QString& join)
{
    Defs.push_back(clsFilterDef{field, compare, value, join});
    return Defs.back();
}

clsFilter* FilterCollection::find(qint32 key)
{
    for (auto& f : m_items)
        if (f->Key == key)
            return f.get();
    return nullptr;
}

const clsFilter* FilterCollection::find(qint32 key) const
{
    return const_cast<FilterCollection*>(this)->find(key);
}

const clsFilter* FilterCollection::findByName(const QString& name) const
{
    for (const auto& f : m_items)
        if (f->Name == name)
            return f.get();
    return nullptr;
}

void FilterCollection::remove(qint32 key)
{
    std::erase_if(m_items, [key](const std::unique_ptr<clsFilter>& f) { return f->Key == key; });
}

qint32 FilterCollection::nextKey() const
{
    qint32 highest = 0;
    for (const auto& f : m_items)
        highest = std::max(highest, f->Key);
    return highest + 1;
}

clsFilter& FilterCollection::append(std::unique_ptr<clsFilter> filter)
{
    m_items.push_back(std::move(filter));
    return *m_items.back();
}

clsFilter& AddFilter(FilterCollection& collection, const QString& name, qint32 key)
{
    auto filter = std::make_unique<clsFilter>();
    filter->Name = name;
    filter->Key = key;
    return collection.append(std::move(filter));
}

bool AddCondition(clsFilter& filter, const QString& field, const QString& compare,
                  const QString& value, const QString& join, const QString& altField,
                  const QString& altValue)
{
    if (compare == QLatin1String("X"))
        return false;
    if (compare != QLatin1String("<>") && compare != QLatin1String("=") && value.isEmpty())
        return false;
    const bool alternative = (value.startsWith(QLatin1Char('@')) && !altField.isEmpty()) ||
                             ((compare == QLatin1String(">") || compare == QLatin1String("<")) &&
                              altField == QLatin1String("Y.YEAR"));
    if (alternative)
        filter.Add(altField, compare, altValue, join);
    else
        filter.Add(field, compare, value, join);
    return true;
}

clsFilter ExpandFilter(const clsFilter& filter)
{
    clsFilter copy;
    copy.Name = filter.Name;
    copy.Key = filter.Key;
    for (const clsFilterDef& def : filter.Defs) {
        if (def.Field.compare(QLatin1String("tPath"), Qt::CaseInsensitive) == 0) {
            copy.Add(def.Field, def.Compare, def.Value, QString());
            copy.Add(QStringLiteral("tUnpackPath"), def.Compare, def.Value, QStringLiteral("Or"));
        } else {
            copy.Defs.push_back(def);
        }
    }
    return copy;
}

QString CompareText(const clsFilterDef& definition)
{
    const QString field = definition.Field.toUpper();
    QString op = definition.Compare;
    QString v = definition.Value;
    if (field == QLatin1String("CATEGORY_USER")) {
        if (v.isEmpty()) {
            v = QStringLiteral("0");
            if (op == QLatin1String("( )"))
                op = QStringLiteral("=");
        }
    } else if (isOneOf(field, {"PU_ID", "CR_ID", "GE_ID", "LA_ID", "MU_ID", "PR_ID", "YE_ID"})) {
        if (v.isEmpty())
            v = QStringLiteral("Null");
    } else if (isOneOf(field, {"IFILETYPE", "LSIZE", "V_LENGTH", "Y.YEAR"})) {
        if (v.isEmpty())
            return {};
    } else if (v.isEmpty()) {
        v = field == QLatin1String("COMMENT") ? QStringLiteral("''") : QStringLiteral("NULL");
        if (op != QLatin1String("<>") && op != QLatin1String("="))
            op = QStringLiteral("=");
    } else {
        const QString quoted = catalogue::SqlQuote(v);
        if (op == QLatin1String("( )")) {
            op = QStringLiteral("Like");
            v = catalogue::LikeClause(QString(), quoted);
        } else if (op == QLatin1String(">")) {
            op = QStringLiteral("Like");
            v = catalogue::LikeClause(QString(), quoted + QLatin1Char('*'));
        } else if (op == QLatin1String("<")) {
            op = QStringLiteral("Like");
            v = catalogue::LikeClause(QString(), QLatin1Char('*') + quoted);
        } else if (op == QLatin1String("<>")) {
            op = QStringLiteral("Not Like");
            v = catalogue::LikeClause(QString(), quoted);
        } else {
            // The one place where a quote is not doubled: kept as the program always had it.
            op = QStringLiteral("=");
            v = QLatin1Char('\'') + v + QLatin1Char('\'');
        }
    }
    return definition.Field + QLatin1Char(' ') + op + v;
}

QString joinFilterDefs(const clsFilter& filter)
{
    QStringList defs;
    for (const clsFilterDef& d : filter.Defs)
        defs << QStringList{d.Field, d.Compare, d.Value, d.Join}.join(kFilterPartSeparator);
    return defs.join(kFilterDefSeparator);
}

QVector<clsFilterDef> splitFilterDefs(const QString& text)
{
    QVector<clsFilterDef> defs;
    if (text.isEmpty())
        return defs;
    for (const QString& piece : text.split(kFilterDefSeparator)) {
        const QStringList parts = piece.split(kFilterPartSeparator);
        if (parts.size() != 4)
            continue;
        defs.push_back(clsFilterDef{parts[0], parts[1], parts[2], parts[3]});
    }
    return defs;
}

FilterCollection readFilters(const QString& section)
{
    FilterCollection collection;
    for (int n = 1; n <= kMaxFilters; ++n) {
        const QString name =
            app::ReadIni(section, QStringLiteral("FilterName") + QString::number(n), QString());
        if (name.isEmpty())
            break;
        clsFilter& filter = AddFilter(collection, app::Translate(name), collection.count() + 1);
        filter.Defs = splitFilterDefs(
            app::ReadIni(section, QStringLiteral("FilterDef") + QString::number(n), QString()));
    }
    return collection;
}

void addDefaultFilters(FilterCollection& collection, const QString& iniVersion)
{
    // Made in German, as they are stored; the translation comes with the next reading.
    if (collection.count() == 0) {
        const auto typeFilter = [&](const char* name, qint32 key,
                                    std::initializer_list<int> types) {
            clsFilter& f = AddFilter(collection, QString::fromUtf8(name), key);
            QString join;
            for (int type : types) {
                f.Add(QStringLiteral("iFileType"), QStringLiteral("="), QString::number(type),
                      join);
                join = QStringLiteral("Or");
            }
        };
        typeFilter("Disketten", 1, {1});
        typeFilter("Kassetten", 2, {6});
        typeFilter("PDF", 3, {11});
        typeFilter("PRG + P00", 4, {4, 5});
    }
    if (iniVersion < QLatin1String("3.4")) {
        clsFilter& f = AddFilter(collection, QStringLiteral("Bilder"), collection.nextKey());
        for (const char* ext : {"BMP", "GIF", "JPG", "PNG"})
            f.Add(QStringLiteral("Type"), QStringLiteral("="), QString::fromLatin1(ext),
                  QStringLiteral("Or"));
        // No join on the last one: it reads as "And", so PNG and TIFF exclude each other. Kept.
        f.Add(QStringLiteral("Type"), QStringLiteral("="), QStringLiteral("TIFF"), QString());
    }
}

void writeFilters(app::IniText& ini, const FilterCollection& collection)
{
    for (int i = 0; i < collection.count(); ++i) {
        const QString n = QString::number(i + 1);
        ini.add(QStringLiteral("FilterName") + n, collection.at(i).Name);
        ini.add(QStringLiteral("FilterDef") + n, joinFilterDefs(collection.at(i)));
    }
}

void LoadMainFilters()
{
    gFilters = readFilters(app::kSectionMain);
    addDefaultFilters(gFilters, app::gIniVersion);
    app::setIniPartWriter(app::IniPart::MainFilters,
                          [](app::IniText& ini) { writeFilters(ini, gFilters); });
}

QString FilterIconKey(const clsFilter& filter)
{
    if (filter.Defs.isEmpty())
        return QStringLiteral("FILTER");
    const QString first = iconOfDef(filter.Defs.first());
    if (first.isEmpty())
        return QStringLiteral("FILTER");
    for (const clsFilterDef& def : filter.Defs) {
        const QString icon = iconOfDef(def);
        if (!icon.isEmpty() && icon != first)
            return QStringLiteral("FILTER");
    }
    return first;
}

} // namespace vd::browser
