#pragma once
// The option string of a profile: items separated by "@@@", each item its text, "=@=" and the
// flag "1" (on) or "0" (off). The text goes onto the command line as it stands while on.

#include <QList>
#include <QString>

namespace vd::launch {

inline const QString kItemSeparator = QStringLiteral("@@@");
inline const QString kFlagSeparator = QStringLiteral("=@=");
// The flag of row 0 in the parsed form of an empty option string: "no items".
inline const QString kNoItemsFlag = QStringLiteral("-1");

struct OptionRow
{
    QString text;
    QString flag; // "1", "0", or kNoItemsFlag

    bool operator==(const OptionRow&) const = default;
};
using OptionTable = QList<OptionRow>;

// One row per item. The empty string gives one row with an empty text and the flag "-1".
// An item that splits on "=@=" into exactly two pieces is off when the second piece is exactly
// "0" and on otherwise; any other item is off, with its first piece as the text.
OptionTable ParseOptions(const QString& options);
// The rows in order, skipping rows with an empty text (that is how an item is deleted).
QString JoinOptions(const OptionTable& rows);
// True when the parsed form says "no items".
bool HasNoItems(const OptionTable& rows);

} // namespace vd::launch
