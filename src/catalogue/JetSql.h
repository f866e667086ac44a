#pragma once
// Translation of Jet SQL text into the SQLite dialect, at the one boundary of the data layer.
// The text is tokenised and parsed into a small tree, which is then written out again:
// operators and functions that differ (&, /, IIF, isNull, Top, wildcards, #dates#, ...) are
// mapped, unnamed expressions get the engine's names Expr1000 + position, and columns that
// share a name in a join are named "Alias.Field".

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <functional>
#include <memory>

namespace vd::db {

// What the translation needs to know of the database.
class TranslationContext
{
public:
    virtual ~TranslationContext() = default;
    // Attaches the file named in "[;database=PATH]" (when not yet attached); returns its alias.
    virtual QString attachAlias(const QString& path) = 0;
    // Column names of a table in a schema ("main" or an alias); empty when unknown.
    virtual QStringList tableColumns(const QString& schema, const QString& table) = 0;
};

struct Translation
{
    QString jet;    // the statement as given
    QString sqlite; // the statement to prepare
    bool isSelect = false;
    QStringList parameters; // declared parameter names, in order; "?N" is parameter N-1
    int literalCount = 0;   // values taken out of the text, bound behind the parameters

    // For a SELECT opened as a dynaset: the tables whose rows can be written. Each has a
    // hidden column behind the visible ones that holds the row's rowid, in this order.
    struct Source
    {
        QString schema; // "main" or an attached alias
        QString table;
        QString qualifier; // alias, or the table's name
    };
    QVector<Source> sources;
    // For each visible column: the source it reads (-1 for an expression) and the column.
    QVector<int> originSource;
    QStringList originColumn;

    int hiddenColumns() const { return int(sources.size()); }

    // When every row is told apart by the rowids of its tables, a recordset keeps only those
    // and reads the rows it shows in blocks: this statement gives the rows whose first table's
    // rowid is one of kPageKeys parameters, numbered behind the declared ones.
    QString pageSql;
    static constexpr int kPageKeys = 64;

    // The same rows' first rowids alone, in the statement's order: when every table behind the
    // first is joined on a unique column, this is all a big recordset needs to read at first.
    // Empty when the order cannot be written without the select list.
    QString keySql;
    // For each table behind the first, the column of that table that its ON clause compares
    // for equality; "" when its join is of another kind.
    QStringList joinColumns;
    // The rows with their rowids but without the statement's order (unless TOP needs it):
    // what Find criteria are run over.
    QString scanSql;
};

// Translates one statement; throws DbError(err::SyntaxError) with the statement on failure.
// `withRowid` asks for the hidden rowid columns where the statement allows it. `shape` is the
// statement with its values taken out (extractLiterals), `literalCount` how many.
std::shared_ptr<const Translation> translateJet(const QString& jetSql, const QString& shape,
                                                int literalCount, TranslationContext& ctx,
                                                bool withRowid);

// Find criteria ("[File] like 'x*' And ID>5") as an SQLite condition over the columns of a
// recordset's statement. `column` names the column a field reference means (and throws for an
// unknown one); texts compare without regard to case.
QString translateCriteria(const QString& criteria, TranslationContext& ctx,
                          const std::function<QString(const QStringList&)>& column);

// The stored text of a date: "YYYY-MM-DD HH:MM:SS".
QString dateToStorage(const QDateTime& dt);
// Reads a stored date text; an invalid QDateTime when it is not one.
QDateTime dateFromStorage(const QString& text);
// Parses the body of a Jet date literal (between the # signs): "03/14/2024 09:05:00 pm",
// "2024-03-14", "14:30". Returns false when it is not a date.
bool parseJetDate(const QString& body, QDateTime& out);

// The Jet LIKE pattern: * ? # [a-c] [!x], compared without regard to case.
class JetPattern
{
public:
    explicit JetPattern(const QString& pattern);
    bool matches(const QString& text) const;
    bool matchesUtf8(const char* text, int length) const;

private:
    struct Element
    {
        enum Kind { Literal, Any, AnyRun, Digit, Set } kind;
        char32_t ch = 0;
        bool negated = false;
        QVector<std::pair<char32_t, char32_t>> ranges;
    };
    bool matchFolded(const char32_t* s, size_t n) const;
    bool matchAscii(const char* text, int length, bool& matched) const;
    QVector<Element> m_elements;
    // A search box's pattern ("*name*", "name*", "*name", "name") of ASCII characters alone is
    // matched on the bytes of an ASCII text directly: a list of a million entries runs it on
    // every row.
    enum class Plain { No, Exact, Prefix, Suffix, Contains } m_plain = Plain::No;
    QByteArray m_literal; // folded
};

// Case folding as the engine compares text.
char32_t foldCase(char32_t c);

} // namespace vd::db
