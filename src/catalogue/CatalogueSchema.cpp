#include "catalogue/CatalogueSchema.h"

namespace vd::catalogue {

QVector<db::TableDef> catalogueTables()
{
    using db::FieldDef;
    using db::IndexDef;
    namespace type = db::type;
    auto field = [](const char* name, int t, int size = 0, int attributes = 0) {
        return FieldDef{QLatin1String(name), t, size, attributes};
    };
    auto index = [](const char* name, const char* f, bool primary = false) {
        return IndexDef{QLatin1String(name), {QLatin1String(f)}, primary, primary};
    };

    db::TableDef files;
    files.name = QStringLiteral("C64Files");
    files.fields = {
        field("ID", type::Long),
        field("tProgram", type::Text, 100),
        field("tRealProgram", type::Text, 100),
        field("tExtension", type::Text, 10),
        field("lSize", type::Long),
        field("lIndex", type::Long),
        field("Category_File", type::Long),
        field("Category_User", type::Long),
        field("tsCreated", type::Date),
        field("GB_ID", type::Long),
        field("tsLastStarted", type::Date),
        field("lStartCount", type::Long),
    };
    // There is deliberately no C2 on this table.
    files.indexes = {index("IDIndex", "ID", true), index("C1", "Category_File"),
                     index("C3", "tProgram"),      index("C4", "GB_ID"),
                     index("C5", "tsLastStarted"), index("C6", "lStartCount")};

    db::TableDef config;
    config.name = QStringLiteral("Config");
    config.fields = {
        field("ID", type::Long, 0, 16), // the only auto-number of a catalogue
        field("tItem", type::Text, 255),
        field("mConfig", type::Memo),
        field("tsCreated", type::Date),
    };
    config.indexes = {index("IDIndex", "ID", true), index("C1", "tItem")};

    db::TableDef category;
    category.name = QStringLiteral("Category");
    category.fields = {
        field("ID", type::Long),
        field("iType", type::Integer),
        field("tCategory", type::Text, 255),
        field("tFile", type::Text, 255),
        field("tPath", type::Text, 255),
        field("tImage", type::Text, 50),
        field("tUnpackPath", type::Text, 255),
        field("tsCreated", type::Date),
        field("GB_ID", type::Long),
        field("iFileType", type::Integer),
        field("tHash", type::Text, 100),
        field("tsLastStarted", type::Date),
        field("lStartCount", type::Long),
    };
    category.indexes = {index("IDIndex", "ID", true), index("C1", "iType"),
                        index("C2", "tPath"),         index("C3", "tCategory"),
                        index("C4", "tFile"),         index("C5", "GB_ID"),
                        index("C6", "iFileType"),     index("C7", "tsLastStarted"),
                        index("C8", "lStartCount")};

    return {files, config, category};
}

} // namespace vd::catalogue
