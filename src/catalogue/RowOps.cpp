#include "catalogue/RowOps.h"

#include "app/Globals.h"
#include "app/Translate.h"
#include "catalogue/CatalogueSchema.h"
#include "catalogue/Database.h"
#include "catalogue/JetFunctions.h"
#include "catalogue/JetSql.h"
#include "catalogue/Recordset.h"
#include "platform/DialogService.h"

namespace vd::catalogue {

QString AddWhere(const QString& where, const QString& term, QString& joiner)
{
    if (joiner.isEmpty())
        joiner = QStringLiteral("And");
    if (term.isEmpty())
        return {};
    if (where.isEmpty())
        return QStringLiteral(" where ") + term;
    const QString join = where.endsWith(QLatin1Char('(')) ? QString() : joiner;
    return where + QLatin1Char(' ') + join + QLatin1Char(' ') + term;
}

QString AddWhere(const QString& where, const QString& term)
{
    QString joiner;
    return AddWhere(where, term, joiner);
}

QString LikeClause(const QString& prefix, const QString& value)
{
    if (value.isEmpty())
        return {};
    if (value.contains(QLatin1Char('*')))
        return prefix + QLatin1Char('\'') + value + QLatin1Char('\'');
    return prefix + QStringLiteral("'*") + value + QStringLiteral("*'");
}

QString SqlQuote(const QString& value)
{
    QString s = value;
    s.replace(QLatin1Char('\''), QStringLiteral("''"));
    return s;
}

QString FormatDateLiteral(const QDateTime& date)
{
    const int hour = date.time().hour();
    const int h12 = hour % 12 == 0 ? 12 : hour % 12;
    return QStringLiteral("#%1 %2:%3 %4#")
        .arg(date.date().toString(QStringLiteral("MM/dd/yyyy")))
        .arg(h12, 2, 10, QLatin1Char('0'))
        .arg(date.time().toString(QStringLiteral("mm:ss")),
             hour < 12 ? QStringLiteral("am") : QStringLiteral("pm"));
}

QString ValueText(const QVariant& value)
{
    if (value.isNull() || !value.isValid())
        return {};
    switch (value.typeId()) {
    case QMetaType::QDateTime:
        return db::dateToStorage(value.toDateTime());
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'g', 15);
    default:
        return value.toString();
    }
}

QString GetDbValue(const QString& field, const QString& source, QString& where)
{
    if (!where.isEmpty() && !where.contains(QLatin1String("where"), Qt::CaseInsensitive))
        where = QStringLiteral("where ") + where;
    if (!app::gDB)
        return {};
    try {
        auto rs = app::gDB->openRecordset(QStringLiteral("Select ") + field +
                                              QStringLiteral(" As FldValue From ") + source +
                                              QLatin1Char(' ') + where,
                                          db::RecordsetType::Snapshot, db::option::ForwardOnly);
        if (rs->eof())
            return {};
        return ValueText(rs->value(0));
    } catch (const db::DbError&) {
        return {};
    }
}

QString GetDbValue(const QString& field, const QString& source, const QString& where)
{
    QString w = where;
    return GetDbValue(field, source, w);
}

bool CategoryExists(const QString& name, const QString& idClause, bool warn)
{
    const QString id = GetDbValue(QStringLiteral("ID"), QStringLiteral("Category"),
                                  QStringLiteral("iType=3 AND tCategory ='") + SqlQuote(name) +
                                      QLatin1Char('\'') + idClause);
    const bool found = db::vbVal(id).toDouble() > 0;
    if (found && warn)
        platform::dialogs().msgBox(app::Translate(QStringLiteral("Diese Kategorie besteht schon!")),
                                   platform::vbExclamation);
    return found;
}

qint64 FindOrAddCategory(const QString& name, bool addAlways, qint64& lastCategoryID)
{
    std::unique_ptr<db::Recordset> rs;
    if (addAlways) {
        rs = app::gDB->openRecordset(QStringLiteral("Select * From Category"),
                                     db::RecordsetType::Dynaset);
    } else {
        rs = app::gDB->openRecordset(QStringLiteral("Select * From Category where tCategory='") +
                                         SqlQuote(name) + QStringLiteral("' and iType=3"),
                                     db::RecordsetType::Dynaset);
        if (!rs->eof())
            return rs->value(QStringLiteral("ID")).toLongLong();
    }
    const qint64 id = ++lastCategoryID;
    rs->addNew();
    rs->setValue(QStringLiteral("ID"), id);
    rs->setValue(QStringLiteral("iType"), kTypeUserCategory);
    rs->setValue(QStringLiteral("tCategory"), name.left(255));
    rs->setValue(QStringLiteral("tsCreated"), QDateTime::currentDateTime());
    rs->update();
    return id;
}

void DeleteEntry(qint64 id)
{
    app::gDB->execute(QStringLiteral("Delete from C64Files where ID=") + QString::number(id));
}

void DeleteCategoryRow(qint64 id, int iType)
{
    const QString sid = QString::number(id);
    if (iType == kTypeUserCategory)
        app::gDB->execute(QStringLiteral("Update C64Files Set Category_User=Null where Category_User=") + sid);
    else
        app::gDB->execute(QStringLiteral("Delete * From C64Files where Category_File=") + sid);
    app::gDB->execute(QStringLiteral("Delete * from Category where ID=") + sid);
}

QString XorHexText(const QString& text, const QString& key, bool encode)
{
    auto keyCode = [&](int i) -> int {
        return key.isEmpty() ? 0 : key[i % key.size()].unicode() & 0xFF;
    };
    QString out;
    if (encode) {
        for (int i = 0; i < text.size(); ++i) {
            const int b = ((text[i].unicode() & 0xFF) ^ keyCode(i)) & 0xFF;
            out += QStringLiteral("%1").arg(b, 2, 16, QLatin1Char('0')).toUpper();
        }
    } else {
        const int pairs = int(text.size() / 2);
        for (int i = 0; i < pairs; ++i) {
            bool ok = false;
            const int b = text.mid(i * 2, 2).toInt(&ok, 16);
            out += QChar(char16_t(((ok ? b : 0) ^ keyCode(i)) & 0xFF));
        }
    }
    return out;
}

} // namespace vd::catalogue
