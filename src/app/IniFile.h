#pragma once
// The parsed text of a settings file, read the way the classic profile functions read it:
// section and key names without regard to case, blanks around names and values dropped, one
// pair of quotes around a value dropped, the first occurrence of a key wins, lines without "="
// and lines before the first section ignored. The bytes are UTF-8, or ISO-8859-1 when they are
// not valid UTF-8 (files written by the Windows program).

#include <optional>
#include <QByteArray>
#include <QString>
#include <QVector>

namespace vd::app {

struct IniEntry
{
    QString key;   // as spelled in the file
    QString value; // as it stands after "=", blanks around it dropped, quotes kept
};

struct IniSection
{
    QString name;
    QVector<IniEntry> entries;
};

class IniDocument
{
public:
    IniDocument() = default;
    static IniDocument parse(const QByteArray& bytes);
    static QString decode(const QByteArray& bytes);

    // The value of the first matching key, with one pair of enclosing quotes removed;
    // nullopt when the section or key is missing.
    std::optional<QString> value(const QString& section, const QString& key) const;
    bool hasKey(const QString& section, const QString& key) const;
    // Every entry of every section of this name, in file order (for keys passed through).
    QVector<IniEntry> entries(const QString& section) const;
    bool isEmpty() const { return m_sections.isEmpty(); }

private:
    const IniEntry* find(const QString& section, const QString& key) const;
    QVector<IniSection> m_sections;
};

} // namespace vd::app
