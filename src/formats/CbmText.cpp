#include "formats/CbmText.h"

namespace vd::formats {

QString upperLatin1(const QString& text)
{
    QString upper = text;
    for (QChar& c : upper) {
        const QChar u = c.toUpper();
        if (u.unicode() <= 0xFF)
            c = u;
    }
    return upper;
}

QString trimRightBlanks(const QString& text)
{
    qsizetype end = text.size();
    while (end > 0 && text[end - 1] == QLatin1Char(' '))
        --end;
    return text.left(end);
}

} // namespace vd::formats
