#pragma once
// The syntax tree of a Jet statement, shared by the translator and the criteria of Find.

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <memory>
#include <vector>

namespace vd::db {

class TranslationContext;
struct SelectStmt;

struct JetNode
{
    enum Kind {
        Number,
        String,
        Date,    // text holds the storage form
        Null,
        Boolean, // text "-1" or "0"
        Name,    // parts
        Star,    // parts: qualifier or empty
        Unary,   // text: NOT, -, +
        Binary,  // text: operator in upper case
        Func,    // text: name as written
        Group,   // ( e )
        List,    // ( a, b, ... )
        Subquery,
        Between, // kids: e, low, high
        In,      // kids: e, List or Subquery
        IsNull,
        Like,    // kids: e, pattern
        Exists,
    };
    Kind kind;
    QString text;
    QStringList parts;
    bool negated = false;
    int param = -1;   // Name: index of a declared parameter
    int literal = -1; // Number, String, Date: index of a value taken out of the text
    std::vector<std::shared_ptr<JetNode>> kids;
    std::shared_ptr<SelectStmt> select;
};
using JetNodeP = std::shared_ptr<JetNode>;

struct FromItem
{
    enum Kind { Table, Join, Paren, Subquery } kind = Table;
    QString schema; // "" for the main database, else an attached alias
    QString table;
    QString alias;
    QString joinType; // "INNER", "LEFT", "RIGHT", "CROSS" (a comma)
    std::shared_ptr<FromItem> left, right;
    JetNodeP on;
    std::shared_ptr<SelectStmt> select;
};
using FromItemP = std::shared_ptr<FromItem>;

struct SelectItem
{
    JetNodeP expr; // Star for * and q.*
    QString alias;
};

struct OrderItem
{
    JetNodeP expr;
    bool descending = false;
};

struct SelectCore
{
    bool distinct = false;
    QString top;
    bool topPercent = false;
    std::vector<SelectItem> items;
    FromItemP from; // a chain of comma joins is a Join of type CROSS
    JetNodeP where;
    std::vector<JetNodeP> groupBy;
    JetNodeP having;
    std::vector<OrderItem> orderBy;
};

struct SelectStmt
{
    std::vector<SelectCore> cores;
    std::vector<bool> unionAll; // between core i and i+1
};

struct JetStatement
{
    enum Kind { Select, Update, Delete, Insert } kind = Select;
    QStringList parameters;
    std::shared_ptr<SelectStmt> select; // Select, and Insert ... Select
    // Update / Delete / Insert
    FromItemP target;                              // Update: the table or join; Delete: FROM
    QString deleteQualifier;                       // Delete T.* From ...
    std::vector<std::pair<QStringList, JetNodeP>> sets; // Update
    JetNodeP where;
    QStringList insertColumns;
    std::vector<JetNodeP> insertValues;
};

// Takes the literal values (numbers, texts, dates) out of a statement, so that statements that
// differ only in their values share one translation and one prepared statement. Each value
// becomes a marker the parser reads back; values whose text shapes the statement (TOP n, the
// column numbers of ORDER BY and GROUP BY, aliases, the declarations of PARAMETERS) stay.
QString extractLiterals(const QString& sql, QVector<QVariant>& literals);

// Parses one statement. Throws DbError(err::SyntaxError).
JetStatement parseJetStatement(const QString& sql, TranslationContext* ctx);
// Parses a bare expression (the criteria of Find). Throws DbError(err::SyntaxError).
JetNodeP parseJetExpression(const QString& text);

} // namespace vd::db
