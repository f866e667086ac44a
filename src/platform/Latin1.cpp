#include "platform/Latin1.h"

namespace vd::platform {

QString latin1ToText(QByteArrayView bytes)
{
    return QString::fromLatin1(bytes);
}

QByteArray textToLatin1(QStringView text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.unicode() <= 0xFF) {
            bytes.append(char(c.unicode()));
            continue;
        }
        bytes.append('?');
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
    }
    return bytes;
}

} // namespace vd::platform
