#include "app/Translate.h"

namespace vd::app {

QString Translate(const QString& text, const QString& param)
{
    QString s = text;
    s.replace(QStringLiteral("@1"), param);
    return s;
}

} // namespace vd::app
