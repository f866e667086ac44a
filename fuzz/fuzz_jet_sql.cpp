// The Jet SQL translation on any statement text: it either gives SQLite text or throws the
// data layer's error, never anything else. The schema it sees is the catalogue's.

#include "catalogue/DbError.h"
#include "catalogue/JetSql.h"
#include "catalogue/JetSqlParse.h"

#include <cstdint>

using namespace vd::db;

namespace {

class CatalogueShape : public TranslationContext
{
public:
    QString attachAlias(const QString&) override { return QStringLiteral("a1"); }
    QStringList tableColumns(const QString&, const QString& table) override
    {
        const QString t = table.toLower();
        if (t == QLatin1String("category"))
            return {"ID",        "tCategory", "tFile", "tPath", "tUnpackPath",   "tImage",
                    "iFileType", "iType",     "lSize", "GB_ID", "tsLastStarted", "lStartCount",
                    "tHash"};
        if (t == QLatin1String("c64files"))
            return {"ID",    "Category_File", "Category_User", "tProgram",      "tExtension",
                    "lSize", "lIndex",        "GB_ID",         "tsLastStarted", "lStartCount"};
        if (t == QLatin1String("games"))
            return {"GA_ID", "Name", "Filename", "FileToRun", "GE_ID", "YE_ID", "PU_ID"};
        return {};
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString jet = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    CatalogueShape ctx;
    QVector<QVariant> literals;
    try {
        const QString shape = extractLiterals(jet, literals);
        for (bool withRowid : {false, true}) {
            const auto tr = translateJet(jet, shape, int(literals.size()), ctx, withRowid);
            if (!tr || tr->sqlite.isEmpty())
                __builtin_trap();
        }
    } catch (const DbError&) {
        // A statement the layer refuses: the caller reports it.
    }
    return 0;
}
