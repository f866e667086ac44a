#include "app/cli/CatalogueCommands.h"

#include "app/Globals.h"
#include "catalogue/Catalogue.h"
#include "catalogue/Database.h"
#include "catalogue/Recordset.h"

#include <QDateTime>
#include <QTextStream>

namespace vd::cli {

namespace {

QString firstWord(const QString& text)
{
    qsizetype end = 0;
    while (end < text.size() && text[end].isLetter())
        ++end;
    return text.left(end).toUpper();
}

void printRows(db::Database& db, const QString& statement, Output& io)
{
    const auto rs = db.openRecordset(statement, db::RecordsetType::ForwardOnly);
    QStringList cells;
    for (const db::FieldInfo& field : rs->fields())
        cells << field.name;
    io.out << cells.join(QLatin1Char('\t')) << '\n';
    for (; !rs->eof(); rs->moveNext()) {
        cells.clear();
        for (int i = 0; i < rs->fieldCount(); ++i)
            cells << cellText(rs->value(i));
        io.out << cells.join(QLatin1Char('\t')) << '\n';
    }
    rs->close();
}

// Closes the catalogue that the command opened, however it ends.
struct CatalogueCloser
{
    ~CatalogueCloser() { catalogue::CloseCatalogue(); }
};

} // namespace

bool returnsRows(const QString& statement)
{
    QString text = statement.trimmed();
    while (text.startsWith(QLatin1Char('(')))
        text = text.mid(1).trimmed();
    const QString word = firstWord(text);
    if (word == QLatin1String("PARAMETERS")) {
        const qsizetype semicolon = text.indexOf(QLatin1Char(';'));
        return semicolon >= 0 && returnsRows(text.mid(semicolon + 1));
    }
    return word == QLatin1String("SELECT") || word == QLatin1String("TRANSFORM");
}

QString cellText(const QVariant& value)
{
    if (value.isNull())
        return {};
    switch (value.typeId()) {
    case QMetaType::QDateTime:
        return value.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    case QMetaType::QDate:
        return value.toDate().toString(QStringLiteral("yyyy-MM-dd"));
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case QMetaType::QByteArray:
        return QString::fromLatin1(value.toByteArray().toHex());
    default:
        break;
    }
    QString text = value.toString();
    text.replace(QLatin1Char('\t'), QLatin1String("\\t"));
    text.replace(QLatin1Char('\r'), QLatin1String("\\r"));
    text.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return text;
}

int newCommand(const QStringList& arguments, Output& io)
{
    const QString path = catalogue::newCatalogue(arguments[0]);
    if (path.isEmpty())
        return kExitFailure; // the reason went out through the dialog service
    io.out << path << '\n';
    return kExitOk;
}

int sqlCommand(const QStringList& arguments, Output& io)
{
    QString path = arguments[0];
    const QString& statement = arguments[1];
    if (!catalogue::OpenCatalogueFile(path))
        return kExitFailure;
    CatalogueCloser closer;
    if (returnsRows(statement))
        printRows(*app::gDB, statement, io);
    else
        io.out << app::gDB->execute(statement) << '\n';
    return kExitOk;
}

} // namespace vd::cli
