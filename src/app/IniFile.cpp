#include "app/IniFile.h"

#include "platform/Latin1.h"

#include <QStringDecoder>

namespace vd::app {

namespace {

bool isBlank(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t');
}

QStringView trimBlanks(QStringView text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isBlank(text[begin]))
        ++begin;
    while (end > begin && isBlank(text[end - 1]))
        --end;
    return text.mid(begin, end - begin);
}

QString unquoted(const QString& value)
{
    if (value.size() >= 2) {
        const QChar first = value.front();
        if ((first == QLatin1Char('"') || first == QLatin1Char('\'')) && value.back() == first)
            return value.mid(1, value.size() - 2);
    }
    return value;
}

} // namespace

QString IniDocument::decode(const QByteArray& bytes)
{
    QByteArrayView view(bytes);
    if (view.startsWith("\xEF\xBB\xBF"))
        view = view.sliced(3);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(view);
    if (!utf8.hasError())
        return text;
    return platform::latin1ToText(view);
}

IniDocument IniDocument::parse(const QByteArray& bytes)
{
    IniDocument doc;
    const QString text = decode(bytes);
    IniSection* current = nullptr;
    for (QStringView rawLine : QStringView(text).split(QLatin1Char('\n'))) {
        if (rawLine.endsWith(QLatin1Char('\r')))
            rawLine.chop(1);
        const QStringView line = trimBlanks(rawLine);
        if (line.startsWith(QLatin1Char('['))) {
            const qsizetype close = line.indexOf(QLatin1Char(']'));
            const QStringView name = close < 0 ? line.mid(1) : line.mid(1, close - 1);
            doc.m_sections.append(IniSection{trimBlanks(name).toString(), {}});
            current = &doc.m_sections.last();
            continue;
        }
        const qsizetype eq = line.indexOf(QLatin1Char('='));
        if (!current || eq <= 0)
            continue;
        const QStringView key = trimBlanks(line.left(eq));
        if (key.isEmpty())
            continue;
        current->entries.append(IniEntry{key.toString(), trimBlanks(line.mid(eq + 1)).toString()});
    }
    return doc;
}

const IniEntry* IniDocument::find(const QString& section, const QString& key) const
{
    for (const IniSection& s : m_sections) {
        if (s.name.compare(section, Qt::CaseInsensitive) != 0)
            continue;
        for (const IniEntry& e : s.entries) {
            if (e.key.compare(key, Qt::CaseInsensitive) == 0)
                return &e;
        }
    }
    return nullptr;
}

std::optional<QString> IniDocument::value(const QString& section, const QString& key) const
{
    if (const IniEntry* e = find(section, key))
        return unquoted(e->value);
    return std::nullopt;
}

bool IniDocument::hasKey(const QString& section, const QString& key) const
{
    return find(section, key) != nullptr;
}

QVector<IniEntry> IniDocument::entries(const QString& section) const
{
    QVector<IniEntry> result;
    for (const IniSection& s : m_sections) {
        if (s.name.compare(section, Qt::CaseInsensitive) == 0)
            result += s.entries;
    }
    return result;
}

} // namespace vd::app
