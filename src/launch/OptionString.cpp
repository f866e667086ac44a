#include "launch/OptionString.h"

namespace vd::launch {

OptionTable ParseOptions(const QString& options)
{
    if (options.isEmpty())
        return {OptionRow{QString(), kNoItemsFlag}};
    OptionTable rows;
    const QStringList items = options.split(kItemSeparator);
    rows.reserve(items.size());
    for (const QString& item : items) {
        const QStringList pieces = item.split(kFlagSeparator);
        OptionRow row{pieces.first(), QStringLiteral("0")};
        if (pieces.size() == 2)
            row.flag = pieces.at(1) == u"0" ? QStringLiteral("0") : QStringLiteral("1");
        rows.append(row);
    }
    return rows;
}

QString JoinOptions(const OptionTable& rows)
{
    QString joined;
    for (const OptionRow& row : rows) {
        if (row.text.isEmpty())
            continue;
        if (!joined.isEmpty())
            joined += kItemSeparator;
        joined += row.text + kFlagSeparator + row.flag;
    }
    return joined;
}

bool HasNoItems(const OptionTable& rows)
{
    return rows.isEmpty() || rows.first().flag == kNoItemsFlag;
}

} // namespace vd::launch
