#include "catalogue/JetSqlParse.h"

#include "catalogue/DbError.h"
#include "catalogue/JetSql.h"

#include <QDateTime>
#include <QSet>

namespace vd::db {

namespace {

enum class Tok { End, Word, Quoted, String, Number, Date, Op, Literal };

struct Token
{
    Tok kind = Tok::End;
    QString text;
    int pos = 0;
};

// Words that end an expression or an item; they are never taken as a bare alias or name.
const QSet<QString>& reservedWords()
{
    static const QSet<QString> words = {
        QStringLiteral("SELECT"),  QStringLiteral("FROM"),     QStringLiteral("WHERE"),
        QStringLiteral("GROUP"),   QStringLiteral("BY"),       QStringLiteral("HAVING"),
        QStringLiteral("ORDER"),   QStringLiteral("UNION"),    QStringLiteral("ALL"),
        QStringLiteral("ON"),      QStringLiteral("JOIN"),     QStringLiteral("INNER"),
        QStringLiteral("LEFT"),    QStringLiteral("RIGHT"),    QStringLiteral("OUTER"),
        QStringLiteral("AS"),      QStringLiteral("AND"),      QStringLiteral("OR"),
        QStringLiteral("NOT"),     QStringLiteral("XOR"),      QStringLiteral("LIKE"),
        QStringLiteral("IS"),      QStringLiteral("IN"),       QStringLiteral("BETWEEN"),
        QStringLiteral("DISTINCT"), QStringLiteral("DISTINCTROW"), QStringLiteral("TOP"),
        QStringLiteral("ASC"),     QStringLiteral("DESC"),     QStringLiteral("SET"),
        QStringLiteral("VALUES"),  QStringLiteral("INTO"),     QStringLiteral("MOD"),
        QStringLiteral("EXISTS"),  QStringLiteral("EQV"),      QStringLiteral("IMP"),
    };
    return words;
}

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('$') ||
           c.unicode() > 127;
}

// Where a number that starts at `i` ends: digits, a point and digits, an exponent.
int numberEnd(const QString& s, int i)
{
    const int n = int(s.size());
    int j = i;
    while (j < n && s[j].isDigit())
        ++j;
    if (j < n && s[j] == QLatin1Char('.')) {
        ++j;
        while (j < n && s[j].isDigit())
            ++j;
    }
    if (j < n && (s[j] == QLatin1Char('e') || s[j] == QLatin1Char('E'))) {
        int k = j + 1;
        if (k < n && (s[k] == QLatin1Char('+') || s[k] == QLatin1Char('-')))
            ++k;
        if (k < n && s[k].isDigit()) {
            while (k < n && s[k].isDigit())
                ++k;
            j = k;
        }
    }
    return j;
}

class Lexer
{
public:
    explicit Lexer(const QString& s) : m_s(s) {}

    std::vector<Token> run()
    {
        std::vector<Token> out;
        const int n = m_s.size();
        int i = 0;
        while (i < n) {
            const QChar c = m_s[i];
            if (c.isSpace()) {
                ++i;
                continue;
            }
            Token t;
            t.pos = i;
            if (c == QChar(0x01)) {
                // A value taken out of the text: kind letter and index between markers.
                const int end = m_s.indexOf(QChar(0x01), i + 1);
                if (end < 0)
                    fail(QStringLiteral("a broken value marker"), i);
                t.kind = Tok::Literal;
                t.text = m_s.mid(i + 1, end - i - 1);
                i = end + 1;
            } else if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
                t.kind = Tok::String;
                ++i;
                for (;;) {
                    if (i >= n)
                        fail(QStringLiteral("a text in quotes is not closed"), t.pos);
                    if (m_s[i] == c) {
                        if (i + 1 < n && m_s[i + 1] == c) {
                            t.text += c;
                            i += 2;
                            continue;
                        }
                        ++i;
                        break;
                    }
                    t.text += m_s[i++];
                }
            } else if (c == QLatin1Char('[') || c == QLatin1Char('`')) {
                const QChar close = c == QLatin1Char('[') ? QLatin1Char(']') : QLatin1Char('`');
                const int end = m_s.indexOf(close, i + 1);
                if (end < 0)
                    fail(QStringLiteral("a name in brackets is not closed"), i);
                t.kind = Tok::Quoted;
                t.text = m_s.mid(i + 1, end - i - 1);
                i = end + 1;
            } else if (c == QLatin1Char('#')) {
                const int end = m_s.indexOf(QLatin1Char('#'), i + 1);
                if (end < 0)
                    fail(QStringLiteral("a date literal is not closed"), i);
                t.kind = Tok::Date;
                t.text = m_s.mid(i + 1, end - i - 1);
                i = end + 1;
            } else if (c.isDigit() || (c == QLatin1Char('.') && i + 1 < n && m_s[i + 1].isDigit() &&
                                       !(out.size() && (out.back().kind == Tok::Word ||
                                                        out.back().kind == Tok::Quoted)))) {
                t.kind = Tok::Number;
                int j = numberEnd(m_s, i);
                // A name may begin with digits after a point ("T.1st"); keep it a word then.
                if (j < n && isWordChar(m_s[j]) && !m_s[j].isDigit()) {
                    t.kind = Tok::Word;
                    while (j < n && isWordChar(m_s[j]))
                        ++j;
                }
                t.text = m_s.mid(i, j - i);
                i = j;
            } else if (isWordChar(c)) {
                t.kind = Tok::Word;
                int j = i;
                while (j < n && isWordChar(m_s[j]))
                    ++j;
                t.text = m_s.mid(i, j - i);
                i = j;
            } else {
                t.kind = Tok::Op;
                const QString two = m_s.mid(i, 2);
                if (two == QLatin1String("<>") || two == QLatin1String("<=") ||
                    two == QLatin1String(">=") || two == QLatin1String("!=")) {
                    t.text = two == QLatin1String("!=") ? QStringLiteral("<>") : two;
                    i += 2;
                } else if (QStringLiteral("()=<>,.;+-*/\\&^!").contains(c)) {
                    t.text = c == QLatin1Char('!') ? QStringLiteral(".") : QString(c);
                    ++i;
                } else {
                    fail(QStringLiteral("unexpected character '%1'").arg(c), i);
                }
            }
            out.push_back(t);
        }
        Token end;
        end.pos = n;
        out.push_back(end);
        return out;
    }

private:
    [[noreturn]] void fail(const QString& what, int pos)
    {
        throw DbError(err::SyntaxError,
                      QStringLiteral("Syntax error (%1) at position %2.").arg(what).arg(pos + 1),
                      m_s);
    }
    const QString& m_s;
};

class Parser
{
public:
    Parser(const QString& sql, TranslationContext* ctx) : m_sql(sql), m_ctx(ctx)
    {
        m_t = Lexer(sql).run();
    }

    JetStatement statement()
    {
        JetStatement st;
        if (isWord("PARAMETERS")) {
            next();
            st.parameters = parameterDeclarations();
            m_params = st.parameters;
        }
        if (isWord("SELECT") || isOp("(")) {
            st.kind = JetStatement::Select;
            st.select = selectStmt();
        } else if (isWord("UPDATE")) {
            next();
            st.kind = JetStatement::Update;
            st.target = fromJoin();
            expectWord("SET");
            do {
                QStringList target = nameParts();
                expectOp("=");
                st.sets.emplace_back(target, expr());
            } while (acceptOp(","));
            if (acceptWord("WHERE"))
                st.where = expr();
        } else if (isWord("DELETE")) {
            next();
            st.kind = JetStatement::Delete;
            if (acceptOp("*")) {
            } else if (!isWord("FROM")) {
                // "Delete T.* From ..." or "Delete T From ..."
                st.deleteQualifier = namePart();
                if (acceptOp(".") && !acceptOp("*"))
                    namePart();
            }
            expectWord("FROM");
            st.target = fromList();
            if (acceptWord("WHERE"))
                st.where = expr();
        } else if (isWord("INSERT")) {
            next();
            st.kind = JetStatement::Insert;
            expectWord("INTO");
            st.target = fromPrimary(false);
            if (isOp("(") && !peekWord(1, "SELECT")) {
                next();
                do {
                    st.insertColumns << namePart();
                } while (acceptOp(","));
                expectOp(")");
            }
            if (acceptWord("VALUES")) {
                expectOp("(");
                do {
                    st.insertValues.push_back(expr());
                } while (acceptOp(","));
                expectOp(")");
            } else {
                st.select = selectStmt();
            }
        } else {
            fail(QStringLiteral("expected SELECT, UPDATE, DELETE or INSERT"));
        }
        acceptOp(";");
        if (cur().kind != Tok::End)
            fail(QStringLiteral("unexpected text"));
        return st;
    }

    JetNodeP bareExpression()
    {
        JetNodeP e = expr();
        if (cur().kind != Tok::End)
            fail(QStringLiteral("unexpected text"));
        return e;
    }

private:
    // --- token helpers -------------------------------------------------------------------
    const Token& cur() const { return m_t[m_i]; }
    const Token& peek(int ahead) const
    {
        const size_t k = std::min(m_t.size() - 1, m_i + size_t(ahead));
        return m_t[k];
    }
    void next()
    {
        if (m_i + 1 < m_t.size())
            ++m_i;
    }
    bool isWord(const char* w) const
    {
        return cur().kind == Tok::Word && cur().text.compare(QLatin1String(w), Qt::CaseInsensitive) == 0;
    }
    bool peekWord(int ahead, const char* w) const
    {
        const Token& t = peek(ahead);
        return t.kind == Tok::Word && t.text.compare(QLatin1String(w), Qt::CaseInsensitive) == 0;
    }
    bool isOp(const char* op) const { return cur().kind == Tok::Op && cur().text == QLatin1String(op); }
    bool acceptWord(const char* w)
    {
        if (!isWord(w))
            return false;
        next();
        return true;
    }
    bool acceptOp(const char* op)
    {
        if (!isOp(op))
            return false;
        next();
        return true;
    }
    void expectWord(const char* w)
    {
        if (!acceptWord(w))
            fail(QStringLiteral("expected %1").arg(QLatin1String(w)));
    }
    void expectOp(const char* op)
    {
        if (!acceptOp(op))
            fail(QStringLiteral("expected '%1'").arg(QLatin1String(op)));
    }
    bool isReserved(const Token& t) const
    {
        return t.kind == Tok::Word && reservedWords().contains(t.text.toUpper());
    }
    [[noreturn]] void fail(const QString& what) const
    {
        QString near = cur().kind == Tok::End ? QStringLiteral("end of statement")
                                              : QStringLiteral("'%1'").arg(cur().text);
        throw DbError(err::SyntaxError,
                      QStringLiteral("Syntax error: %1 near %2 (position %3).")
                          .arg(what, near)
                          .arg(cur().pos + 1),
                      m_sql);
    }

    static JetNodeP node(JetNode::Kind k, const QString& text = {})
    {
        auto n = std::make_shared<JetNode>();
        n->kind = k;
        n->text = text;
        return n;
    }

    // --- names ---------------------------------------------------------------------------
    QString namePart()
    {
        if (cur().kind == Tok::Quoted || (cur().kind == Tok::Word && !isReserved(cur()))) {
            QString s = cur().text;
            next();
            return s;
        }
        // Reserved words may still name a field after a point ("T.Order").
        if (cur().kind == Tok::Word && m_i > 0 && m_t[m_i - 1].kind == Tok::Op &&
            m_t[m_i - 1].text == QLatin1String(".")) {
            QString s = cur().text;
            next();
            return s;
        }
        fail(QStringLiteral("expected a name"));
    }
    QStringList nameParts()
    {
        QStringList parts{namePart()};
        while (isOp(".") && peek(1).kind != Tok::End && !(peek(1).kind == Tok::Op)) {
            next();
            parts << namePart();
        }
        return parts;
    }

    QStringList parameterDeclarations()
    {
        QStringList names;
        do {
            names << namePart();
            // The type word (Value, Text, Long, DateTime, Text (255) ...).
            while (cur().kind == Tok::Word || cur().kind == Tok::Quoted)
                next();
            if (acceptOp("(")) {
                while (!isOp(")") && cur().kind != Tok::End)
                    next();
                expectOp(")");
            }
        } while (acceptOp(","));
        expectOp(";");
        return names;
    }

    // --- SELECT --------------------------------------------------------------------------
    std::shared_ptr<SelectStmt> selectStmt()
    {
        auto st = std::make_shared<SelectStmt>();
        for (;;) {
            if (isOp("(") && peekWord(1, "SELECT")) {
                next();
                auto inner = selectStmt();
                expectOp(")");
                for (size_t k = 0; k < inner->cores.size(); ++k) {
                    st->cores.push_back(inner->cores[k]);
                    if (k < inner->unionAll.size())
                        st->unionAll.push_back(inner->unionAll[k]);
                }
            } else {
                st->cores.push_back(selectCore());
            }
            if (!acceptWord("UNION"))
                break;
            st->unionAll.push_back(acceptWord("ALL"));
        }
        return st;
    }

    SelectCore selectCore()
    {
        SelectCore c;
        expectWord("SELECT");
        for (;;) {
            if (acceptWord("DISTINCT") || acceptWord("DISTINCTROW")) {
                c.distinct = true;
            } else if (acceptWord("ALL")) {
            } else if (isWord("TOP") && peek(1).kind == Tok::Number) {
                next();
                c.top = cur().text;
                next();
                c.topPercent = acceptWord("PERCENT");
            } else {
                break;
            }
        }
        do {
            c.items.push_back(selectItem());
        } while (acceptOp(","));
        if (acceptWord("FROM"))
            c.from = fromList();
        if (acceptWord("WHERE"))
            c.where = expr();
        if (isWord("GROUP")) {
            next();
            expectWord("BY");
            do {
                c.groupBy.push_back(expr());
            } while (acceptOp(","));
        }
        if (acceptWord("HAVING"))
            c.having = expr();
        if (isWord("ORDER")) {
            next();
            expectWord("BY");
            do {
                OrderItem o;
                o.expr = expr();
                if (acceptWord("DESC"))
                    o.descending = true;
                else
                    acceptWord("ASC");
                c.orderBy.push_back(o);
            } while (acceptOp(","));
        }
        return c;
    }

    SelectItem selectItem()
    {
        SelectItem item;
        if (isOp("*")) {
            next();
            item.expr = node(JetNode::Star);
            return item;
        }
        if ((cur().kind == Tok::Word || cur().kind == Tok::Quoted) && peek(1).kind == Tok::Op &&
            peek(1).text == QLatin1String(".") && peek(2).kind == Tok::Op &&
            peek(2).text == QLatin1String("*")) {
            item.expr = node(JetNode::Star);
            item.expr->parts << cur().text;
            next();
            next();
            next();
            return item;
        }
        item.expr = expr();
        if (acceptWord("AS")) {
            if (cur().kind == Tok::String || cur().kind == Tok::Quoted || cur().kind == Tok::Word) {
                item.alias = cur().text;
                next();
            } else {
                fail(QStringLiteral("expected a name after AS"));
            }
        } else if (cur().kind == Tok::Quoted || (cur().kind == Tok::Word && !isReserved(cur()))) {
            item.alias = cur().text;
            next();
        }
        return item;
    }

    // --- FROM ----------------------------------------------------------------------------
    FromItemP fromList()
    {
        FromItemP left = fromJoin();
        while (acceptOp(",")) {
            auto j = std::make_shared<FromItem>();
            j->kind = FromItem::Join;
            j->joinType = QStringLiteral("CROSS");
            j->left = left;
            j->right = fromJoin();
            left = j;
        }
        return left;
    }

    FromItemP fromJoin()
    {
        FromItemP left = fromPrimary(true);
        for (;;) {
            QString type;
            if (isWord("INNER") && peekWord(1, "JOIN")) {
                type = QStringLiteral("INNER");
                next();
            } else if ((isWord("LEFT") || isWord("RIGHT")) &&
                       (peekWord(1, "JOIN") || (peekWord(1, "OUTER") && peekWord(2, "JOIN")))) {
                type = cur().text.toUpper();
                next();
                acceptWord("OUTER");
            } else if (isWord("JOIN")) {
                type = QStringLiteral("INNER");
            } else {
                break;
            }
            expectWord("JOIN");
            auto j = std::make_shared<FromItem>();
            j->kind = FromItem::Join;
            j->joinType = type;
            j->left = left;
            j->right = fromPrimary(true);
            expectWord("ON");
            j->on = expr();
            left = j;
        }
        return left;
    }

    FromItemP fromPrimary(bool allowAlias)
    {
        auto f = std::make_shared<FromItem>();
        if (isOp("(")) {
            next();
            if (isWord("SELECT")) {
                f->kind = FromItem::Subquery;
                f->select = selectStmt();
                expectOp(")");
            } else {
                f->kind = FromItem::Paren;
                f->left = fromList();
                expectOp(")");
                return f;
            }
        } else {
            f->kind = FromItem::Table;
            if (cur().kind == Tok::Quoted && cur().text.startsWith(QLatin1Char(';'))) {
                f->schema = externalDatabase(cur().text);
                next();
                expectOp(".");
            }
            f->table = namePart();
            if (isOp(".") && f->schema.isEmpty()) {
                // schema.table for a database attached under a name
                next();
                f->schema = f->table;
                f->table = namePart();
            }
        }
        if (allowAlias) {
            if (acceptWord("AS"))
                f->alias = namePart();
            else if (cur().kind == Tok::Quoted || (cur().kind == Tok::Word && !isReserved(cur())))
                f->alias = namePart();
        }
        return f;
    }

    QString externalDatabase(const QString& connect)
    {
        // ";database=PATH" and further ";key=value" parts
        const QStringList parts = connect.split(QLatin1Char(';'), Qt::SkipEmptyParts);
        for (const QString& p : parts) {
            const int eq = p.indexOf(QLatin1Char('='));
            if (eq > 0 && p.left(eq).trimmed().compare(QLatin1String("database"),
                                                       Qt::CaseInsensitive) == 0) {
                if (!m_ctx)
                    fail(QStringLiteral("another database cannot be reached here"));
                return m_ctx->attachAlias(p.mid(eq + 1).trimmed());
            }
        }
        fail(QStringLiteral("a database path is missing in [;database=...]"));
    }

    // --- expressions ---------------------------------------------------------------------
    JetNodeP binary(const QString& op, JetNodeP a, JetNodeP b)
    {
        auto n = node(JetNode::Binary, op);
        n->kids = {a, b};
        return n;
    }

    JetNodeP expr() { return orExpr(); }

    JetNodeP orExpr()
    {
        JetNodeP left = andExpr();
        for (;;) {
            if (acceptWord("OR"))
                left = binary(QStringLiteral("OR"), left, andExpr());
            else if (acceptWord("XOR"))
                left = binary(QStringLiteral("XOR"), left, andExpr());
            else if (acceptWord("EQV"))
                left = binary(QStringLiteral("EQV"), left, andExpr());
            else if (acceptWord("IMP"))
                left = binary(QStringLiteral("IMP"), left, andExpr());
            else
                return left;
        }
    }

    JetNodeP andExpr()
    {
        JetNodeP left = notExpr();
        while (acceptWord("AND"))
            left = binary(QStringLiteral("AND"), left, notExpr());
        return left;
    }

    JetNodeP notExpr()
    {
        if (acceptWord("NOT")) {
            auto n = node(JetNode::Unary, QStringLiteral("NOT"));
            n->kids = {notExpr()};
            return n;
        }
        return compareExpr();
    }

    JetNodeP compareExpr()
    {
        JetNodeP left = concatExpr();
        for (;;) {
            if (cur().kind == Tok::Op &&
                (isOp("=") || isOp("<>") || isOp("<") || isOp(">") || isOp("<=") || isOp(">="))) {
                const QString op = cur().text;
                next();
                left = binary(op, left, concatExpr());
                continue;
            }
            bool negated = false;
            if (isWord("NOT") && (peekWord(1, "LIKE") || peekWord(1, "BETWEEN") || peekWord(1, "IN"))) {
                negated = true;
                next();
            }
            if (acceptWord("LIKE") || acceptWord("ALIKE")) {
                auto n = node(JetNode::Like);
                n->negated = negated;
                n->kids = {left, concatExpr()};
                left = n;
            } else if (acceptWord("BETWEEN")) {
                auto n = node(JetNode::Between);
                n->negated = negated;
                JetNodeP low = concatExpr();
                expectWord("AND");
                n->kids = {left, low, concatExpr()};
                left = n;
            } else if (acceptWord("IN")) {
                auto n = node(JetNode::In);
                n->negated = negated;
                expectOp("(");
                if (isWord("SELECT")) {
                    auto s = node(JetNode::Subquery);
                    s->select = selectStmt();
                    n->kids = {left, s};
                } else {
                    auto l = node(JetNode::List);
                    do {
                        l->kids.push_back(expr());
                    } while (acceptOp(","));
                    n->kids = {left, l};
                }
                expectOp(")");
                left = n;
            } else if (isWord("IS")) {
                next();
                auto n = node(JetNode::IsNull);
                n->negated = acceptWord("NOT");
                expectWord("NULL");
                n->kids = {left};
                left = n;
            } else {
                if (negated)
                    fail(QStringLiteral("expected LIKE, BETWEEN or IN"));
                return left;
            }
        }
    }

    JetNodeP concatExpr()
    {
        JetNodeP left = addExpr();
        while (acceptOp("&"))
            left = binary(QStringLiteral("&"), left, addExpr());
        return left;
    }

    JetNodeP addExpr()
    {
        JetNodeP left = modExpr();
        for (;;) {
            if (acceptOp("+"))
                left = binary(QStringLiteral("+"), left, modExpr());
            else if (acceptOp("-"))
                left = binary(QStringLiteral("-"), left, modExpr());
            else
                return left;
        }
    }

    JetNodeP modExpr()
    {
        JetNodeP left = intDivExpr();
        while (acceptWord("MOD"))
            left = binary(QStringLiteral("MOD"), left, intDivExpr());
        return left;
    }

    JetNodeP intDivExpr()
    {
        JetNodeP left = mulExpr();
        while (acceptOp("\\"))
            left = binary(QStringLiteral("\\"), left, mulExpr());
        return left;
    }

    JetNodeP mulExpr()
    {
        JetNodeP left = unaryExpr();
        for (;;) {
            if (acceptOp("*"))
                left = binary(QStringLiteral("*"), left, unaryExpr());
            else if (acceptOp("/"))
                left = binary(QStringLiteral("/"), left, unaryExpr());
            else
                return left;
        }
    }

    JetNodeP unaryExpr()
    {
        if (isOp("-") || isOp("+")) {
            auto n = node(JetNode::Unary, cur().text);
            next();
            n->kids = {unaryExpr()};
            return n;
        }
        return powExpr();
    }

    JetNodeP powExpr()
    {
        JetNodeP left = primary();
        while (acceptOp("^"))
            left = binary(QStringLiteral("^"), left, primary());
        return left;
    }

    JetNodeP primary()
    {
        const Token t = cur();
        switch (t.kind) {
        case Tok::Literal: {
            next();
            const QChar kind = t.text.at(0);
            auto n = node(kind == QLatin1Char('N') ? JetNode::Number
                          : kind == QLatin1Char('D') ? JetNode::Date
                                                     : JetNode::String);
            n->literal = t.text.mid(1).toInt();
            return n;
        }
        case Tok::Number:
            next();
            return node(JetNode::Number, t.text);
        case Tok::String:
            next();
            return node(JetNode::String, t.text);
        case Tok::Date: {
            QDateTime dt;
            if (!parseJetDate(t.text, dt))
                fail(QStringLiteral("#%1# is not a date").arg(t.text));
            next();
            return node(JetNode::Date, dateToStorage(dt));
        }
        case Tok::Op:
            if (t.text == QLatin1String("(")) {
                next();
                if (isWord("SELECT")) {
                    auto s = node(JetNode::Subquery);
                    s->select = selectStmt();
                    expectOp(")");
                    return s;
                }
                JetNodeP first = expr();
                if (isOp(",")) {
                    auto l = node(JetNode::List);
                    l->kids.push_back(first);
                    while (acceptOp(","))
                        l->kids.push_back(expr());
                    expectOp(")");
                    return l;
                }
                expectOp(")");
                auto g = node(JetNode::Group);
                g->kids = {first};
                return g;
            }
            fail(QStringLiteral("expected a value"));
        case Tok::Word:
            if (t.text.compare(QLatin1String("NULL"), Qt::CaseInsensitive) == 0) {
                next();
                return node(JetNode::Null);
            }
            if ((t.text.compare(QLatin1String("TRUE"), Qt::CaseInsensitive) == 0 ||
                 t.text.compare(QLatin1String("FALSE"), Qt::CaseInsensitive) == 0) &&
                !(peek(1).kind == Tok::Op &&
                  (peek(1).text == QLatin1String("(") || peek(1).text == QLatin1String(".")))) {
                next();
                return node(JetNode::Boolean, t.text.compare(QLatin1String("TRUE"),
                                                             Qt::CaseInsensitive) == 0
                                                  ? QStringLiteral("-1")
                                                  : QStringLiteral("0"));
            }
            if (t.text.compare(QLatin1String("EXISTS"), Qt::CaseInsensitive) == 0) {
                next();
                expectOp("(");
                auto n = node(JetNode::Exists);
                n->select = selectStmt();
                expectOp(")");
                return n;
            }
            if (peek(1).kind == Tok::Op && peek(1).text == QLatin1String("(") &&
                (!isReserved(t) || t.text.compare(QLatin1String("LEFT"), Qt::CaseInsensitive) == 0 ||
                 t.text.compare(QLatin1String("RIGHT"), Qt::CaseInsensitive) == 0))
                return functionCall();
            if (isReserved(t))
                fail(QStringLiteral("expected a value"));
            [[fallthrough]];
        case Tok::Quoted: {
            auto n = node(JetNode::Name);
            n->parts = nameParts();
            if (n->parts.size() == 1) {
                for (int k = 0; k < m_params.size(); ++k)
                    if (m_params[k].compare(n->parts[0], Qt::CaseInsensitive) == 0)
                        n->param = k;
            }
            return n;
        }
        case Tok::End:
            fail(QStringLiteral("expected a value"));
        }
        fail(QStringLiteral("expected a value"));
    }

    JetNodeP functionCall()
    {
        auto n = node(JetNode::Func, cur().text);
        next();
        expectOp("(");
        if (acceptOp(")"))
            return n;
        if (acceptWord("DISTINCT"))
            n->negated = true; // Count(Distinct x)
        do {
            if (isOp("*")) {
                next();
                n->kids.push_back(node(JetNode::Star));
            } else {
                n->kids.push_back(expr());
            }
        } while (acceptOp(","));
        expectOp(")");
        return n;
    }

    const QString& m_sql;
    TranslationContext* m_ctx;
    std::vector<Token> m_t;
    size_t m_i = 0;
    QStringList m_params;
};

} // namespace

QString extractLiterals(const QString& sql, QVector<QVariant>& literals)
{
    literals.clear();
    QString out;
    out.reserve(sql.size());
    const int n = int(sql.size());
    bool keepNumbers = false; // inside ORDER BY / GROUP BY
    bool keepNext = false;    // behind TOP
    QString lastWord, wordBefore;
    int i = 0;
    // The declarations of PARAMETERS stay as they are.
    if (sql.trimmed().startsWith(QLatin1String("PARAMETERS"), Qt::CaseInsensitive)) {
        const int semi = sql.indexOf(QLatin1Char(';'));
        if (semi < 0)
            return sql;
        out += sql.left(semi + 1);
        i = semi + 1;
    }
    auto marker = [&](char kind, const QVariant& value) {
        out += QChar(0x01) + QLatin1Char(kind) + QString::number(literals.size()) + QChar(0x01);
        literals << value;
    };
    while (i < n) {
        const QChar c = sql[i];
        if (c == QLatin1Char('[') || c == QLatin1Char('`')) {
            const int end = sql.indexOf(c == QLatin1Char('[') ? QLatin1Char(']') : QLatin1Char('`'), i + 1);
            const int stop = end < 0 ? n : end + 1;
            out += QStringView(sql).mid(i, stop - i);
            i = stop;
            lastWord.clear();
            continue;
        }
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            QString value;
            int j = i + 1;
            bool closed = false;
            while (j < n) {
                if (sql[j] == c) {
                    if (j + 1 < n && sql[j + 1] == c) {
                        value += c;
                        j += 2;
                        continue;
                    }
                    closed = true;
                    ++j;
                    break;
                }
                value += sql[j++];
            }
            if (!closed || lastWord.compare(QLatin1String("AS"), Qt::CaseInsensitive) == 0)
                out += QStringView(sql).mid(i, j - i); // an alias, or broken: left to the parser
            else
                marker('S', value);
            i = j;
            lastWord.clear();
            continue;
        }
        if (c == QLatin1Char('#')) {
            const int end = sql.indexOf(QLatin1Char('#'), i + 1);
            QDateTime dt;
            if (end > 0 && parseJetDate(sql.mid(i + 1, end - i - 1), dt)) {
                marker('D', dateToStorage(dt));
                i = end + 1;
            } else {
                out += c;
                ++i;
            }
            lastWord.clear();
            continue;
        }
        if (isWordChar(c) && !c.isDigit()) {
            int j = i;
            while (j < n && isWordChar(sql[j]))
                ++j;
            const QString word = sql.mid(i, j - i);
            out += word;
            i = j;
            if (word.compare(QLatin1String("BY"), Qt::CaseInsensitive) == 0 &&
                (lastWord.compare(QLatin1String("ORDER"), Qt::CaseInsensitive) == 0 ||
                 lastWord.compare(QLatin1String("GROUP"), Qt::CaseInsensitive) == 0))
                keepNumbers = true;
            else if (word.compare(QLatin1String("UNION"), Qt::CaseInsensitive) == 0 ||
                     word.compare(QLatin1String("HAVING"), Qt::CaseInsensitive) == 0)
                keepNumbers = false;
            keepNext = word.compare(QLatin1String("TOP"), Qt::CaseInsensitive) == 0;
            wordBefore = lastWord;
            lastWord = word;
            continue;
        }
        if (c.isDigit() || (c == QLatin1Char('.') && i + 1 < n && sql[i + 1].isDigit())) {
            // A number, unless it is the tail of a name ("T.1st") or follows a point of one.
            const int j = numberEnd(sql, i);
            const bool afterPoint = i > 0 && sql[i - 1] == QLatin1Char('.');
            const bool nameTail = j < n && isWordChar(sql[j]);
            const QString text = sql.mid(i, j - i);
            if (keepNumbers || keepNext || afterPoint || nameTail) {
                out += text;
            } else {
                bool ok = false;
                const qlonglong v = text.toLongLong(&ok);
                marker('N', ok ? QVariant(v) : QVariant(text.toDouble()));
            }
            keepNext = false;
            i = j;
            lastWord.clear();
            continue;
        }
        if (!c.isSpace())
            lastWord.clear();
        out += c;
        ++i;
    }
    return out;
}

JetStatement parseJetStatement(const QString& sql, TranslationContext* ctx)
{
    Parser p(sql, ctx);
    return p.statement();
}

JetNodeP parseJetExpression(const QString& text)
{
    Parser p(text, nullptr);
    return p.bareExpression();
}

} // namespace vd::db
