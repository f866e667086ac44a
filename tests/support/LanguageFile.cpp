#include "support/LanguageFile.h"

#include <QFile>
#include <QStringDecoder>

namespace vd::test {

QString LanguageKey(const QString& text)
{
    QString key = text;
    if (key.startsWith(u'&'))
        key.remove(0, 1);
    if (key.endsWith(QStringLiteral(": ")))
        key.chop(2);
    else if (key.endsWith(u':'))
        key.chop(1);
    return key;
}

LanguageFile ReadLanguageFile(const QString& path)
{
    LanguageFile lng;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        lng.problems << QStringLiteral("cannot read ") + path;
        return lng;
    }
    lng.bytes = f.readAll();
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8.decode(lng.bytes);
    if (utf8.hasError())
        lng.problems << QStringLiteral("the file is not UTF-8");
    if (!lng.bytes.endsWith("\r\n"))
        lng.problems << QStringLiteral("the last line does not end in CR LF");
    const QStringList lines = text.split(QStringLiteral("\r\n"));
    for (int n = 0; n < lines.size(); ++n) {
        const QString& line = lines[n];
        const QString where = QStringLiteral("line %1: ").arg(n + 1);
        if (line.isEmpty() && n == lines.size() - 1)
            break;
        if (line.contains(u'\n') || line.contains(u'\r')) {
            lng.problems << where + QStringLiteral("a bare LF or CR inside the line");
            continue;
        }
        const QStringList parts = line.split(QStringLiteral("@@"));
        if (parts.size() != 2 || parts[0].isEmpty() || parts[1].trimmed().isEmpty()) {
            lng.problems << where + QStringLiteral("not one key and one translation: ") + line;
            continue;
        }
        const QString& key = parts[0];
        const QString& translation = parts[1];
        if (LanguageKey(key) != key)
            lng.problems << where + QStringLiteral("a key keeps its \"&\" or colon: ") + key;
        if (key != key.trimmed() || translation != translation.trimmed())
            lng.problems << where + QStringLiteral("blanks around a part: ") + line;
        const bool keyHasParam = key.contains(QStringLiteral("@1"), Qt::CaseInsensitive);
        if (keyHasParam != translation.contains(QStringLiteral("@1"), Qt::CaseInsensitive))
            lng.problems << where + QStringLiteral("\"@1\" not in both parts: ") + line;
        const QString lower = key.toLower();
        if (lng.byKey.contains(lower))
            lng.problems << where + QStringLiteral("the key comes twice: ") + key;
        lng.byKey.insert(lower, translation);
    }
    // A window translates texts that the code has already translated: a translation must not
    // be the key of a different one.
    const auto bare = [](QString t) { return LanguageKey(t).remove(u'&'); };
    for (auto it = lng.byKey.cbegin(); it != lng.byKey.cend(); ++it) {
        const QString again = LanguageKey(it.value()).toLower();
        if (lng.byKey.contains(again) && bare(lng.byKey[again]) != bare(it.value()))
            lng.problems << QStringLiteral("translated twice, \"%1\" becomes \"%2\"")
                                .arg(it.value(), lng.byKey[again]);
    }
    return lng;
}

bool IsLeftGerman(const LanguageFile& lng, const QString& shown)
{
    const auto bare = [](QString t) { return LanguageKey(t).remove(u'&'); };
    const auto it = lng.byKey.constFind(LanguageKey(shown).toLower());
    return it != lng.byKey.cend() && bare(*it) != bare(shown);
}

} // namespace vd::test
