#include "catalogue/JetSql.h"

#include "catalogue/DbError.h"
#include "catalogue/JetJoins.h"
#include "catalogue/JetSqlParse.h"

#include <algorithm>
#include <QDateTime>
#include <QHash>
#include <QRegularExpression>
#include <utility>

namespace vd::db {

// --- dates ---------------------------------------------------------------------------------

QString dateToStorage(const QDateTime& dt)
{
    return dt.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QDateTime dateFromStorage(const QString& text)
{
    // "YYYY-MM-DD HH:MM:SS", or the date alone
    if (text.size() < 10 || text[4] != QLatin1Char('-') || text[7] != QLatin1Char('-'))
        return {};
    bool ok1 = false, ok2 = false, ok3 = false;
    const int y = QStringView(text).mid(0, 4).toInt(&ok1);
    const int m = QStringView(text).mid(5, 2).toInt(&ok2);
    const int d = QStringView(text).mid(8, 2).toInt(&ok3);
    if (!ok1 || !ok2 || !ok3)
        return {};
    int hh = 0, mm = 0, ss = 0;
    if (text.size() >= 19) {
        hh = QStringView(text).mid(11, 2).toInt();
        mm = QStringView(text).mid(14, 2).toInt();
        ss = QStringView(text).mid(17, 2).toInt();
    }
    const QDate date(y, m, d);
    const QTime time(hh, mm, ss);
    if (!date.isValid() || !time.isValid())
        return {};
    return QDateTime(date, time);
}

bool parseJetDate(const QString& body, QDateTime& out)
{
    static const QRegularExpression re(
        QStringLiteral(
            R"(^\s*(?:(\d{1,4})([-/.])(\d{1,2})\2(\d{1,4}))?\s*(?:(\d{1,2}):(\d{1,2})(?::(\d{1,2}))?\s*([ap]m?)?)?\s*$)"),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch m = re.match(body);
    if (!m.hasMatch() || body.trimmed().isEmpty())
        return false;
    QDate date(1899, 12, 30);
    if (m.capturedLength(1)) {
        int a = m.captured(1).toInt(), b = m.captured(3).toInt(), c = m.captured(4).toInt();
        int y, mo, d;
        if (m.capturedLength(1) == 4) { // year first: yyyy-mm-dd
            y = a;
            mo = b;
            d = c;
        } else { // US order, with the day first when the month cannot be one
            mo = a;
            d = b;
            y = c;
            if (mo > 12 && d <= 12)
                std::swap(mo, d);
            if (m.capturedLength(4) <= 2)
                y += y < 30 ? 2000 : 1900;
        }
        date = QDate(y, mo, d);
        if (!date.isValid())
            return false;
    }
    QTime time(0, 0, 0);
    if (m.capturedLength(5)) {
        int h = m.captured(5).toInt();
        const int mi = m.captured(6).toInt();
        const int s = m.capturedLength(7) ? m.captured(7).toInt() : 0;
        const QString ampm = m.captured(8).toLower();
        if (!ampm.isEmpty()) {
            if (h < 1 || h > 12)
                return false;
            if (ampm.startsWith(QLatin1Char('p')) && h != 12)
                h += 12;
            else if (ampm.startsWith(QLatin1Char('a')) && h == 12)
                h = 0;
        }
        time = QTime(h, mi, s);
        if (!time.isValid())
            return false;
    }
    out = QDateTime(date, time);
    return true;
}

// --- LIKE patterns -------------------------------------------------------------------------

char32_t foldCase(char32_t c)
{
    if (c < 128)
        return (c >= 'A' && c <= 'Z') ? c + 32 : c;
    return QChar::toCaseFolded(c);
}

JetPattern::JetPattern(const QString& pattern)
{
    const QList<uint> cps = pattern.toUcs4();
    for (int i = 0; i < cps.size(); ++i) {
        const char32_t c = cps[i];
        Element e;
        if (c == '*') {
            e.kind = Element::AnyRun;
            if (!m_elements.isEmpty() && m_elements.back().kind == Element::AnyRun)
                continue;
        } else if (c == '?') {
            e.kind = Element::Any;
        } else if (c == '#') {
            e.kind = Element::Digit;
        } else if (c == '[') {
            int j = i + 1;
            while (j < cps.size() && cps[j] != ']')
                ++j;
            if (j >= cps.size()) { // an open bracket without its end is a plain character
                e.kind = Element::Literal;
                e.ch = foldCase(c);
            } else {
                e.kind = Element::Set;
                int k = i + 1;
                if (k < j && cps[k] == '!') {
                    e.negated = true;
                    ++k;
                }
                for (; k < j; ++k) {
                    char32_t lo = foldCase(cps[k]);
                    char32_t hi = lo;
                    if (k + 2 < j && cps[k + 1] == '-') {
                        hi = foldCase(cps[k + 2]);
                        k += 2;
                    }
                    if (hi < lo)
                        std::swap(lo, hi);
                    e.ranges.push_back({lo, hi});
                }
                if (e.ranges.isEmpty() && !e.negated) { // "[]" matches nothing but itself: skip
                    i = j;
                    continue;
                }
                i = j;
            }
        } else {
            e.kind = Element::Literal;
            e.ch = foldCase(c);
        }
        m_elements.push_back(e);
    }
    // The plain shapes: literals, with a run of any characters at either end or both.
    qsizetype first = 0;
    qsizetype last = m_elements.size();
    const bool leading = first < last && m_elements[first].kind == Element::AnyRun;
    if (leading)
        ++first;
    const bool trailing = first < last && m_elements[last - 1].kind == Element::AnyRun;
    if (trailing)
        --last;
    QByteArray literal;
    for (qsizetype i = first; i < last; ++i) {
        const Element& e = m_elements[i];
        if (e.kind != Element::Literal || e.ch == 0 || e.ch >= 0x80)
            return;
        literal.append(char(e.ch));
    }
    if (literal.isEmpty())
        return;
    m_literal = literal;
    m_plain = leading && trailing ? Plain::Contains
              : leading           ? Plain::Suffix
              : trailing          ? Plain::Prefix
                                  : Plain::Exact;
}

// False when the text is not plain ASCII: a character beyond it may fold to one inside it
// (the Kelvin sign to "k"), which the full comparison handles.
bool JetPattern::matchAscii(const char* text, int length, bool& matched) const
{
    for (int i = 0; i < length; ++i)
        if (static_cast<unsigned char>(text[i]) >= 0x80)
            return false;
    const char* lit = m_literal.constData();
    const int n = int(m_literal.size());
    const auto equalAt = [&](int at) {
        for (int k = 0; k < n; ++k) {
            const char c = text[at + k];
            if ((c >= 'A' && c <= 'Z' ? char(c + 32) : c) != lit[k])
                return false;
        }
        return true;
    };
    switch (m_plain) {
    case Plain::Exact:
        matched = length == n && equalAt(0);
        break;
    case Plain::Prefix:
        matched = length >= n && equalAt(0);
        break;
    case Plain::Suffix:
        matched = length >= n && equalAt(length - n);
        break;
    case Plain::Contains:
        matched = false;
        for (int at = 0; at + n <= length && !matched; ++at)
            matched = equalAt(at);
        break;
    case Plain::No:
        return false;
    }
    return true;
}

bool JetPattern::matchFolded(const char32_t* s, size_t n) const
{
    const Element* p = m_elements.constData();
    const size_t pn = size_t(m_elements.size());
    size_t si = 0, pi = 0;
    size_t starP = size_t(-1), starS = 0;
    auto single = [](const Element& e, char32_t c) {
        switch (e.kind) {
        case Element::Literal:
            return e.ch == c;
        case Element::Any:
            return true;
        case Element::Digit:
            return c >= '0' && c <= '9';
        case Element::Set: {
            bool in = false;
            for (const auto& r : e.ranges)
                if (c >= r.first && c <= r.second) {
                    in = true;
                    break;
                }
            return in != e.negated;
        }
        case Element::AnyRun:
            break;
        }
        return false;
    };
    while (si < n) {
        if (pi < pn && p[pi].kind == Element::AnyRun) {
            starP = pi++;
            starS = si;
        } else if (pi < pn && single(p[pi], s[si])) {
            ++pi;
            ++si;
        } else if (starP != size_t(-1)) {
            pi = starP + 1;
            si = ++starS;
        } else {
            return false;
        }
    }
    while (pi < pn && p[pi].kind == Element::AnyRun)
        ++pi;
    return pi == pn;
}

bool JetPattern::matches(const QString& text) const
{
    const QList<uint> cps = text.toUcs4();
    std::u32string folded;
    folded.reserve(size_t(cps.size()));
    for (uint c : cps)
        folded.push_back(foldCase(c));
    return matchFolded(folded.data(), folded.size());
}

bool JetPattern::matchesUtf8(const char* text, int length) const
{
    bool matched = false;
    if (m_plain != Plain::No && matchAscii(text, length, matched))
        return matched;
    thread_local std::u32string buf;
    buf.clear();
    const auto* s = reinterpret_cast<const unsigned char*>(text);
    int i = 0;
    while (i < length) {
        char32_t c = s[i];
        if (c < 0x80) {
            ++i;
        } else if ((c & 0xE0) == 0xC0 && i + 1 < length) {
            c = ((c & 0x1F) << 6) | (s[i + 1] & 0x3F);
            i += 2;
        } else if ((c & 0xF0) == 0xE0 && i + 2 < length) {
            c = ((c & 0x0F) << 12) | ((s[i + 1] & 0x3F) << 6) | (s[i + 2] & 0x3F);
            i += 3;
        } else if ((c & 0xF8) == 0xF0 && i + 3 < length) {
            c = ((c & 0x07) << 18) | ((s[i + 1] & 0x3F) << 12) | ((s[i + 2] & 0x3F) << 6) |
                (s[i + 3] & 0x3F);
            i += 4;
        } else {
            ++i; // a broken sequence counts as the byte itself
        }
        buf.push_back(foldCase(c));
    }
    return matchFolded(buf.data(), buf.size());
}

// --- writing SQLite text -------------------------------------------------------------------

namespace {

QString quoteName(const QString& name)
{
    QString s = name;
    s.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + s + QLatin1Char('"');
}

QString quoteText(const QString& text)
{
    QString s = text;
    s.replace(QLatin1Char('\''), QStringLiteral("''"));
    return QLatin1Char('\'') + s + QLatin1Char('\'');
}

// One table of a FROM clause, as star expansion and name qualification see it.
struct Source
{
    QString qualifier; // alias, or the table's name
    QString schema;
    QString table;
    QStringList columns; // empty when unknown
};

class Writer
{
public:
    Writer(TranslationContext& ctx, const QString& sql) : m_ctx(ctx), m_sql(sql) {}

    QString expr(const JetNodeP& n)
    {
        switch (n->kind) {
        case JetNode::Number:
        case JetNode::String:
        case JetNode::Date:
            if (n->literal >= 0)
                return QStringLiteral("?%1").arg(m_literalBase + n->literal + 1);
            return n->kind == JetNode::Number ? n->text : quoteText(n->text);
        case JetNode::Null:
            return QStringLiteral("NULL");
        case JetNode::Boolean:
            return n->text;
        case JetNode::Name:
            if (n->param >= 0)
                return QStringLiteral("?%1").arg(n->param + 1);
            return nameText(n->parts);
        case JetNode::Star:
            return n->parts.isEmpty() ? QStringLiteral("*") : quoteName(n->parts[0]) + ".*";
        case JetNode::Unary:
            if (n->text == QLatin1String("NOT"))
                return QStringLiteral("(NOT ") + expr(n->kids[0]) + QLatin1Char(')');
            return QStringLiteral("(%1%2)").arg(n->text, expr(n->kids[0]));
        case JetNode::Binary:
            return binary(n);
        case JetNode::Func:
            return function(n);
        case JetNode::Group:
            return QLatin1Char('(') + expr(n->kids[0]) + QLatin1Char(')');
        case JetNode::List: {
            QStringList parts;
            for (const auto& k : n->kids)
                parts << expr(k);
            return QLatin1Char('(') + parts.join(QLatin1Char(',')) + QLatin1Char(')');
        }
        case JetNode::Subquery:
            return QLatin1Char('(') + select(*n->select, false) + QLatin1Char(')');
        case JetNode::Between:
            return QStringLiteral("(%1 %2BETWEEN %3 AND %4)")
                .arg(caseFree(n->kids[0]), n->negated ? QStringLiteral("NOT ") : QString(),
                     expr(n->kids[1]), expr(n->kids[2]));
        case JetNode::In: {
            const JetNodeP& set = n->kids[1];
            const QString inner = set->kind == JetNode::Subquery ? expr(set) : expr(set);
            return QStringLiteral("(%1 %2IN %3)")
                .arg(caseFree(n->kids[0]), n->negated ? QStringLiteral("NOT ") : QString(), inner);
        }
        case JetNode::IsNull:
            return QStringLiteral("(%1 IS %2NULL)")
                .arg(expr(n->kids[0]), n->negated ? QStringLiteral("NOT ") : QString());
        case JetNode::Like:
            return QStringLiteral("(%1 %2LIKE %3)")
                .arg(expr(n->kids[0]), n->negated ? QStringLiteral("NOT ") : QString(),
                     expr(n->kids[1]));
        case JetNode::Exists:
            return QStringLiteral("EXISTS (") + select(*n->select, false) + QLatin1Char(')');
        }
        return {};
    }

    QString select(const SelectStmt& st, bool topLevel)
    {
        QString out;
        const size_t n = st.cores.size();
        for (size_t i = 0; i < n; ++i) {
            const SelectCore& c = st.cores[i];
            QString text = core(c, topLevel && i == 0, n == 1);
            const bool last = i + 1 == n;
            // A part's own TOP or ORDER BY must not reach the whole compound.
            if (n > 1 && ((!c.top.isEmpty()) || (!last && !c.orderBy.empty())))
                text = QStringLiteral("SELECT * FROM (") + text + QLatin1Char(')');
            if (i > 0)
                out +=
                    st.unionAll[i - 1] ? QStringLiteral(" UNION ALL ") : QStringLiteral(" UNION ");
            out += text;
        }
        return out;
    }

    QString from(const FromItemP& f)
    {
        switch (f->kind) {
        case FromItem::Table: {
            QString t = f->schema.isEmpty()
                            ? quoteName(f->table)
                            : quoteName(f->schema) + QLatin1Char('.') + quoteName(f->table);
            if (!f->alias.isEmpty())
                t += QStringLiteral(" AS ") + quoteName(f->alias);
            return t;
        }
        case FromItem::Subquery: {
            QString t = QLatin1Char('(') + select(*f->select, false) + QLatin1Char(')');
            if (!f->alias.isEmpty())
                t += QStringLiteral(" AS ") + quoteName(f->alias);
            return t;
        }
        case FromItem::Paren:
            return QLatin1Char('(') + from(f->left) + QLatin1Char(')');
        case FromItem::Join: {
            if (f->joinType == QLatin1String("CROSS"))
                return from(f->left) + QStringLiteral(", ") + from(f->right);
            if (f->joinType == QLatin1String("RIGHT")) // older engines lack RIGHT JOIN: swap sides
                return from(f->right) + QStringLiteral(" LEFT JOIN ") + from(f->left) +
                       QStringLiteral(" ON ") + expr(f->on);
            const bool inner =
                std::find(m_innerJoins.begin(), m_innerJoins.end(), f.get()) != m_innerJoins.end();
            return from(f->left) + QLatin1Char(' ') +
                   (inner ? QStringLiteral("INNER") : f->joinType) + QStringLiteral(" JOIN ") +
                   from(f->right) + QStringLiteral(" ON ") + expr(f->on);
        }
        }
        return {};
    }

    void collectSources(const FromItemP& f, std::vector<Source>& out)
    {
        if (!f)
            return;
        switch (f->kind) {
        case FromItem::Table: {
            Source s;
            s.qualifier = f->alias.isEmpty() ? f->table : f->alias;
            s.schema = f->schema.isEmpty() ? QStringLiteral("main") : f->schema;
            s.table = f->table;
            s.columns = m_ctx.tableColumns(s.schema, s.table);
            out.push_back(s);
            break;
        }
        case FromItem::Subquery: {
            Source s;
            s.qualifier = f->alias;
            out.push_back(s);
            break;
        }
        case FromItem::Paren:
            collectSources(f->left, out);
            break;
        case FromItem::Join:
            collectSources(f->left, out);
            collectSources(f->right, out);
            break;
        }
    }

    QString nameText(const QStringList& parts)
    {
        QStringList q;
        for (const QString& p : parts)
            q << quoteName(p);
        return q.join(QLatin1Char('.'));
    }

private:
    struct OutColumn
    {
        QString text;       // expression as written out
        QString name;       // the name the engine gives it
        QString qualifier;  // for a column reference: its table's qualifier
        bool named = false; // alias written by the caller
        bool isExpression = false;
        int source = -1; // the table it reads, for a column reference
        QString column;
    };

    // The table a column reference reads: by its qualifier, or the one table that has it.
    static int sourceOf(const std::vector<Source>& sources, const QStringList& parts)
    {
        if (parts.size() >= 2) {
            const QString& q = parts[parts.size() - 2];
            for (size_t i = 0; i < sources.size(); ++i)
                if (sources[i].qualifier.compare(q, Qt::CaseInsensitive) == 0)
                    return int(i);
            return -1;
        }
        int found = -1;
        for (size_t i = 0; i < sources.size(); ++i)
            for (const QString& c : sources[i].columns)
                if (c.compare(parts.back(), Qt::CaseInsensitive) == 0) {
                    if (found >= 0)
                        return -1; // ambiguous
                    found = int(i);
                }
        return found;
    }

    QString core(const SelectCore& c, bool nameColumns, bool alone)
    {
        std::vector<Source> sources;
        collectSources(c.from, sources);
        const std::vector<const FromItem*> inner = joinsMadeInner(c, [&](const QStringList& parts) {
            const int s = sourceOf(sources, parts);
            return s >= 0 ? sources[size_t(s)].qualifier : QString();
        });

        // Expand the select list into its output columns, so names can be checked.
        std::vector<OutColumn> cols;
        bool expandable = true;
        for (const SelectItem& item : c.items) {
            if (item.expr->kind == JetNode::Star) {
                const QString qual = item.expr->parts.value(0);
                bool any = false;
                for (const Source& s : sources) {
                    if (!qual.isEmpty() && s.qualifier.compare(qual, Qt::CaseInsensitive) != 0)
                        continue;
                    any = true;
                    if (s.columns.isEmpty())
                        expandable = false;
                    for (const QString& col : s.columns) {
                        OutColumn oc;
                        oc.text = quoteName(s.qualifier) + QLatin1Char('.') + quoteName(col);
                        oc.name = col;
                        oc.qualifier = s.qualifier;
                        oc.source = int(&s - sources.data());
                        oc.column = col;
                        cols.push_back(oc);
                    }
                }
                if (!any)
                    expandable = false;
                continue;
            }
            OutColumn oc;
            oc.text = expr(item.expr);
            if (!item.alias.isEmpty()) {
                oc.name = item.alias;
                oc.named = true;
            } else if (item.expr->kind == JetNode::Name && item.expr->param < 0) {
                oc.name = item.expr->parts.back();
                if (item.expr->parts.size() > 1)
                    oc.qualifier = item.expr->parts[item.expr->parts.size() - 2];
            } else {
                oc.isExpression = true;
            }
            if (item.expr->kind == JetNode::Name && item.expr->param < 0) {
                oc.source = sourceOf(sources, item.expr->parts);
                oc.column = item.expr->parts.back();
            }
            cols.push_back(oc);
        }

        QStringList items;
        bool duplicates = false;
        if (!expandable) {
            // A star over an unknown table: write the list as given.
            int pos = 0;
            for (const SelectItem& item : c.items) {
                if (item.expr->kind == JetNode::Star) {
                    items << expr(item.expr);
                } else {
                    QString t = expr(item.expr);
                    if (!item.alias.isEmpty())
                        t += QStringLiteral(" AS ") + quoteName(item.alias);
                    else if (nameColumns &&
                             !(item.expr->kind == JetNode::Name && item.expr->param < 0))
                        t += QStringLiteral(" AS ") +
                             quoteName(QStringLiteral("Expr%1").arg(1000 + pos));
                    items << t;
                }
                ++pos;
            }
        } else {
            QHash<QString, int> counts;
            for (const OutColumn& oc : cols)
                if (!oc.isExpression && ++counts[oc.name.toLower()] > 1)
                    duplicates = true;
            for (size_t pos = 0; pos < cols.size(); ++pos) {
                const OutColumn& oc = cols[pos];
                QString t = oc.text;
                if (oc.named) {
                    t += QStringLiteral(" AS ") + quoteName(oc.name);
                } else if (oc.isExpression) {
                    if (nameColumns)
                        t += QStringLiteral(" AS ") +
                             quoteName(QStringLiteral("Expr%1").arg(1000 + int(pos)));
                } else if (counts.value(oc.name.toLower()) > 1 && !oc.qualifier.isEmpty()) {
                    t += QStringLiteral(" AS ") +
                         quoteName(oc.qualifier + QLatin1Char('.') + oc.name);
                }
                items << t;
            }
        }
        if (expandable && !duplicates) {
            // Nothing to rename: stars stay stars, which the engine prepares faster.
            items.clear();
            int pos = 0;
            for (const SelectItem& item : c.items) {
                QString t = expr(item.expr);
                if (item.expr->kind == JetNode::Star) {
                    const QString qual = item.expr->parts.value(0);
                    for (const Source& src : sources)
                        if (qual.isEmpty() || src.qualifier.compare(qual, Qt::CaseInsensitive) == 0)
                            pos += int(src.columns.size());
                    items << t;
                    continue;
                }
                if (!item.alias.isEmpty())
                    t += QStringLiteral(" AS ") + quoteName(item.alias);
                else if (nameColumns && !(item.expr->kind == JetNode::Name && item.expr->param < 0))
                    t += QStringLiteral(" AS ") +
                         quoteName(QStringLiteral("Expr%1").arg(1000 + pos));
                else if (nameColumns && cols[size_t(pos)].source >= 0 &&
                         !sources[size_t(cols[size_t(pos)].source)].columns.contains(
                             cols[size_t(pos)].name))
                    // The field is named as the statement writes it ("GA_ID" for GA_Id).
                    t += QStringLiteral(" AS ") + quoteName(cols[size_t(pos)].name);
                items << t;
                ++pos;
            }
        }
        if (m_editable && nameColumns) {
            // Hidden rowids of the tables read, and where each visible column comes from.
            for (size_t i = 0; i < sources.size(); ++i) {
                const Source& src = sources[i];
                if (src.table.isEmpty())
                    continue;
                m_editable->sources.push_back({src.schema, src.table, src.qualifier});
                items << quoteName(src.qualifier) + QStringLiteral(".rowid AS \"__rowid%1\"")
                                                        .arg(m_editable->sources.size());
            }
            auto editableIndex = [&](int source) {
                if (source < 0 || sources[size_t(source)].table.isEmpty())
                    return -1;
                int k = 0;
                for (int i = 0; i < source; ++i)
                    if (!sources[size_t(i)].table.isEmpty())
                        ++k;
                return k;
            };
            if (expandable) {
                for (const OutColumn& oc : cols) {
                    m_editable->originSource << editableIndex(oc.source);
                    m_editable->originColumn << oc.column;
                }
            }
        }

        QString out = QStringLiteral("SELECT ");
        if (c.distinct)
            out += QStringLiteral("DISTINCT ");
        out += items.join(QLatin1Char(','));
        if (c.from) {
            const auto outer = std::exchange(m_innerJoins, inner);
            out += QStringLiteral(" FROM ") + from(c.from);
            m_innerJoins = outer;
        }
        if (c.where)
            out += QStringLiteral(" WHERE ") + expr(c.where);
        if (!c.groupBy.empty()) {
            QStringList g;
            for (const auto& e : c.groupBy)
                g << expr(e);
            out += QStringLiteral(" GROUP BY ") + g.join(QLatin1Char(','));
        }
        if (c.having)
            out += QStringLiteral(" HAVING ") + expr(c.having);
        // A join made inner lets the engine choose another table order, and with it another
        // order of equal rows: the first table's rowid decides between them as the first
        // table's walk did before, and rows without an order keep coming in that walk's order.
        const bool reordered = !inner.empty() && alone && !c.distinct && c.groupBy.empty() &&
                               !c.having && !sources.empty() && !sources.front().table.isEmpty() &&
                               !aggregates(c);
        const QString rowid =
            reordered ? quoteName(sources.front().qualifier) + QStringLiteral(".rowid") : QString();
        if (!c.orderBy.empty()) {
            const JetNodeP& last = c.orderBy.back().expr;
            const bool tied = reordered && !(isColumn(last) && last->parts.size() >= 2 &&
                                             last->parts.back().compare(QLatin1String("rowid"),
                                                                        Qt::CaseInsensitive) == 0 &&
                                             sourceOf(sources, last->parts) == 0);
            // The sort is not taken from an index of the first table: walking that index
            // would fetch the joined row of every entry before the filter on it can reject it.
            const bool unindexed =
                tied && std::all_of(c.orderBy.begin(), c.orderBy.end(), [&](const OrderItem& o) {
                    return isColumn(o.expr) && sourceOf(sources, o.expr->parts) >= 0;
                });
            const QString plus = unindexed ? QStringLiteral("+") : QString();
            QStringList o;
            for (const OrderItem& item : c.orderBy)
                o << plus + expr(item.expr) + QStringLiteral(" COLLATE NOCASE") +
                         (item.descending ? QStringLiteral(" DESC") : QString());
            if (tied)
                o << plus + rowid +
                         (c.orderBy.back().descending ? QStringLiteral(" DESC") : QString());
            out += QStringLiteral(" ORDER BY ") + o.join(QLatin1Char(','));
        } else if (reordered && nameColumns) {
            out += QStringLiteral(" ORDER BY ") + rowid;
        }
        if (!c.top.isEmpty()) {
            if (c.topPercent)
                throw DbError(err::SyntaxError, QStringLiteral("TOP ... PERCENT is not supported."),
                              m_sql);
            out += QStringLiteral(" LIMIT ") + c.top;
        }
        return out;
    }

    QString binary(const JetNodeP& n)
    {
        const QString a = expr(n->kids[0]);
        const QString b = expr(n->kids[1]);
        const QString& op = n->text;
        if (op == QLatin1String("&"))
            return QStringLiteral("(ifnull(%1,'')||ifnull(%2,''))").arg(a, b);
        if (op == QLatin1String("+") && n->kids[0]->kind != JetNode::Number &&
            n->kids[1]->kind != JetNode::Number)
            return QStringLiteral("vd_plus(%1,%2)").arg(a, b); // two texts join
        if (op == QLatin1String("/"))
            return QStringLiteral("(CAST(%1 AS REAL)/%2)").arg(a, b);
        if (op == QLatin1String("\\"))
            return QStringLiteral("(CAST(round(%1) AS INTEGER)/CAST(round(%2) AS INTEGER))")
                .arg(a, b);
        if (op == QLatin1String("MOD"))
            return QLatin1Char('(') + a + QStringLiteral(" % ") + b + QLatin1Char(')');
        if (op == QLatin1String("^"))
            return QStringLiteral("vd_pow(%1,%2)").arg(a, b);
        if (op == QLatin1String("XOR"))
            return QStringLiteral("((%1)<>(%2))").arg(truth(a), truth(b));
        if (op == QLatin1String("EQV"))
            return QStringLiteral("((%1)=(%2))").arg(truth(a), truth(b));
        if (op == QLatin1String("IMP"))
            return QStringLiteral("((NOT %1) OR %2)").arg(a, b);
        // Jet compares text without regard to case. Text columns carry that themselves; a
        // comparison of two expressions ("right(FileName,11)='X.ZIP'") is told so here, and
        // so is every comparison of criteria, whose columns may be expressions underneath.
        if ((m_caseFree && isComparison(op) && !isNumber(n->kids[0]) && !isNumber(n->kids[1])) ||
            (!isColumn(n->kids[0]) && !isColumn(n->kids[1])))
            return QStringLiteral("(%1 %2 %3 COLLATE NOCASE)").arg(a, op, b);
        return QStringLiteral("(%1 %2 %3)").arg(a, op, b);
    }

    // An aggregate anywhere in the select list makes it one row per group.
    static bool aggregates(const SelectCore& c)
    {
        static const QStringList names = {QStringLiteral("count"), QStringLiteral("sum"),
                                          QStringLiteral("min"),   QStringLiteral("max"),
                                          QStringLiteral("avg"),   QStringLiteral("first"),
                                          QStringLiteral("last")};
        const std::function<bool(const JetNodeP&)> has = [&](const JetNodeP& n) {
            if (!n)
                return false;
            if (n->kind == JetNode::Func && names.contains(n->text.toLower()))
                return true;
            return std::any_of(n->kids.begin(), n->kids.end(), has);
        };
        return std::any_of(c.items.begin(), c.items.end(),
                           [&](const SelectItem& item) { return has(item.expr); });
    }

    static bool isColumn(const JetNodeP& n) { return n->kind == JetNode::Name && n->param < 0; }
    QString caseFree(const JetNodeP& n)
    {
        return isColumn(n) && !m_caseFree ? expr(n) : expr(n) + QStringLiteral(" COLLATE NOCASE");
    }

    // A number compares by value whatever the collation, and leaves indexes usable.
    static bool isNumber(const JetNodeP& n)
    {
        if (n->kind == JetNode::Unary && n->text == QLatin1String("-"))
            return isNumber(n->kids[0]);
        return n->kind == JetNode::Number || n->kind == JetNode::Boolean;
    }

    static bool isComparison(const QString& op)
    {
        return op == QLatin1String("=") || op == QLatin1String("<>") || op == QLatin1String("<") ||
               op == QLatin1String(">") || op == QLatin1String("<=") || op == QLatin1String(">=");
    }

    static QString truth(const QString& e) { return QStringLiteral("(%1)<>0").arg(e); }

    QString args(const JetNodeP& n, int from = 0)
    {
        QStringList parts;
        for (size_t i = size_t(from); i < n->kids.size(); ++i)
            parts << expr(n->kids[i]);
        return parts.join(QLatin1Char(','));
    }

    void needArgs(const JetNodeP& n, size_t low, size_t high)
    {
        if (n->kids.size() < low || n->kids.size() > high)
            throw DbError(
                err::SyntaxError,
                QStringLiteral("Wrong number of arguments used with function '%1'.").arg(n->text),
                m_sql);
    }

    QString function(const JetNodeP& n)
    {
        static const QHash<QString, QString> renamed = {
            {QStringLiteral("ucase"), QStringLiteral("vd_ucase")},
            {QStringLiteral("lcase"), QStringLiteral("vd_lcase")},
            {QStringLiteral("left"), QStringLiteral("vd_left")},
            {QStringLiteral("right"), QStringLiteral("vd_right")},
            {QStringLiteral("mid"), QStringLiteral("vd_mid")},
            {QStringLiteral("len"), QStringLiteral("vd_len")},
            {QStringLiteral("instr"), QStringLiteral("vd_instr")},
            {QStringLiteral("val"), QStringLiteral("vd_val")},
            {QStringLiteral("format"), QStringLiteral("vd_format")},
            {QStringLiteral("str"), QStringLiteral("vd_str")},
            {QStringLiteral("cstr"), QStringLiteral("vd_cstr")},
            {QStringLiteral("chr"), QStringLiteral("vd_chr")},
            {QStringLiteral("asc"), QStringLiteral("vd_asc")},
            {QStringLiteral("int"), QStringLiteral("vd_int")},
            {QStringLiteral("fix"), QStringLiteral("vd_fix")},
            {QStringLiteral("cint"), QStringLiteral("vd_round")},
            {QStringLiteral("clng"), QStringLiteral("vd_round")},
            {QStringLiteral("cbyte"), QStringLiteral("vd_round")},
            {QStringLiteral("now"), QStringLiteral("vd_now")},
            {QStringLiteral("date"), QStringLiteral("vd_date")},
            {QStringLiteral("year"), QStringLiteral("vd_year")},
            {QStringLiteral("month"), QStringLiteral("vd_month")},
            {QStringLiteral("day"), QStringLiteral("vd_day")},
            {QStringLiteral("hour"), QStringLiteral("vd_hour")},
            {QStringLiteral("minute"), QStringLiteral("vd_minute")},
            {QStringLiteral("second"), QStringLiteral("vd_second")},
            {QStringLiteral("space"), QStringLiteral("vd_space")},
            {QStringLiteral("sgn"), QStringLiteral("sign")},
        };
        const QString name = n->text.toLower();
        if (name == QLatin1String("isnull")) {
            needArgs(n, 1, 1);
            return QStringLiteral("(%1 IS NULL)").arg(expr(n->kids[0]));
        }
        if (name == QLatin1String("iif")) {
            needArgs(n, 3, 3);
            return QStringLiteral("(CASE WHEN %1 THEN %2 ELSE %3 END)")
                .arg(expr(n->kids[0]), expr(n->kids[1]), expr(n->kids[2]));
        }
        if (name == QLatin1String("nz")) {
            needArgs(n, 1, 2);
            return QStringLiteral("ifnull(%1,%2)")
                .arg(expr(n->kids[0]),
                     n->kids.size() > 1 ? expr(n->kids[1]) : QStringLiteral("''"));
        }
        if (name == QLatin1String("cdbl") || name == QLatin1String("csng")) {
            needArgs(n, 1, 1);
            return QStringLiteral("CAST(%1 AS REAL)").arg(expr(n->kids[0]));
        }
        if (name == QLatin1String("count") && n->negated)
            return QStringLiteral("count(DISTINCT %1)").arg(args(n));
        const auto it = renamed.constFind(name);
        if (it != renamed.constEnd())
            return it.value() + QLatin1Char('(') + args(n) + QLatin1Char(')');
        return n->text + QLatin1Char('(') + args(n) + QLatin1Char(')');
    }

public:
    Translation* m_editable = nullptr;         // set when the rows will be written
    std::vector<const FromItem*> m_innerJoins; // LEFT joins of the FROM being written, made inner
    int m_literalBase = 0;                     // literals are numbered behind the parameters
    bool m_caseFree = false;                   // every comparison without regard to case

private:
    TranslationContext& m_ctx;
    const QString& m_sql;
};

// A plain SELECT of one part, without grouping, can take row updates.
bool editable(const JetStatement& st)
{
    if (st.kind != JetStatement::Select || st.select->cores.size() != 1)
        return false;
    const SelectCore& c = st.select->cores[0];
    if (!c.from || c.distinct || !c.groupBy.empty() || c.having)
        return false;
    static const QStringList aggregates = {QStringLiteral("count"), QStringLiteral("sum"),
                                           QStringLiteral("min"),   QStringLiteral("max"),
                                           QStringLiteral("avg"),   QStringLiteral("first"),
                                           QStringLiteral("last")};
    for (const SelectItem& item : c.items)
        if (item.expr->kind == JetNode::Func && aggregates.contains(item.expr->text.toLower()))
            return false;
    return true;
}

// Tables joined from the left only: each row of the result is one combination of rows.
bool keyable(const FromItemP& f)
{
    if (!f)
        return false;
    switch (f->kind) {
    case FromItem::Table:
        return true;
    case FromItem::Paren:
        return keyable(f->left);
    case FromItem::Join:
        return f->joinType != QLatin1String("RIGHT") && keyable(f->left) && keyable(f->right);
    case FromItem::Subquery:
        return false;
    }
    return false;
}

// --- the statements behind a big recordset ------------------------------------------------

bool mentions(const JetNodeP& n, const std::function<bool(const JetNode&)>& test)
{
    if (!n)
        return false;
    if (test(*n))
        return true;
    for (const JetNodeP& k : n->kids)
        if (mentions(k, test))
            return true;
    return false;
}

// ORDER BY items that point into the select list (a column number, a column's alias) take
// that column's expression, so that the order holds under another select list. False when an
// item cannot be written so.
bool resolveOrder(SelectCore& c)
{
    auto aliasOf = [&](const QString& name) -> const SelectItem* {
        for (const SelectItem& item : c.items)
            if (!item.alias.isEmpty() && item.alias.compare(name, Qt::CaseInsensitive) == 0)
                return &item;
        return nullptr;
    };
    for (OrderItem& o : c.orderBy) {
        const JetNodeP e = o.expr;
        if (e->kind == JetNode::Number) {
            bool ok = false;
            const int n = e->text.toInt(&ok);
            if (e->literal >= 0 || !ok || n < 1 || n > int(c.items.size()))
                return false;
            for (const SelectItem& item : c.items)
                if (item.expr->kind == JetNode::Star)
                    return false;
            o.expr = c.items[size_t(n - 1)].expr;
        } else if (e->kind == JetNode::Name && e->param < 0 && e->parts.size() == 1 &&
                   aliasOf(e->parts[0])) {
            o.expr = aliasOf(e->parts[0])->expr;
        } else if (mentions(e, [&](const JetNode& k) {
                       return k.kind == JetNode::Name && k.param < 0 && k.parts.size() == 1 &&
                              aliasOf(k.parts[0]);
                   })) {
            return false;
        }
        if (o.expr->kind == JetNode::Number) // a constant would read as a column number
            return false;
    }
    return true;
}

QString keyStatement(TranslationContext& ctx, const QString& jetSql, const SelectStmt& st,
                     int literalBase, const QString& qualifier)
{
    SelectStmt keyed = st;
    SelectCore& c = keyed.cores[0];
    if (!resolveOrder(c))
        return {};
    auto id = std::make_shared<JetNode>();
    id->kind = JetNode::Name;
    id->parts = {qualifier, QStringLiteral("rowid")};
    c.items = {SelectItem{id, QString()}};
    // Without an order the rows come as the table lies, as the whole statement reads them;
    // left alone, the engine would read the keys from whatever index is smallest.
    if (c.orderBy.empty())
        c.orderBy.push_back(OrderItem{id, false});
    Writer w(ctx, jetSql);
    w.m_literalBase = literalBase;
    return w.select(keyed, false);
}

// The column of `table` that an ON clause "x = table.column" compares, "" for any other join.
QString equalityColumn(const FromItem& join, const FromItem& table)
{
    if ((join.joinType != QLatin1String("LEFT") && join.joinType != QLatin1String("INNER")) ||
        !join.on || join.on->kind != JetNode::Binary || join.on->text != QLatin1String("="))
        return {};
    const QString q = table.alias.isEmpty() ? table.table : table.alias;
    auto ofTable = [&](const JetNode& k) {
        return k.kind == JetNode::Name && k.param < 0 && k.parts.size() >= 2 &&
               k.parts[k.parts.size() - 2].compare(q, Qt::CaseInsensitive) == 0;
    };
    for (int side = 0; side < 2; ++side) {
        const JetNodeP& mine = join.on->kids[size_t(side)];
        const JetNodeP& other = join.on->kids[size_t(1 - side)];
        if (ofTable(*mine) && !mentions(other, ofTable))
            return mine->parts.back();
    }
    return {};
}

int tableCount(const FromItemP& f)
{
    if (!f)
        return 0;
    if (f->kind == FromItem::Join)
        return tableCount(f->left) + tableCount(f->right);
    if (f->kind == FromItem::Paren)
        return tableCount(f->left);
    return f->kind == FromItem::Table ? 1 : 0;
}

void joinColumns(const FromItemP& f, QStringList& out)
{
    if (!f || f->kind == FromItem::Table || f->kind == FromItem::Subquery)
        return;
    if (f->kind == FromItem::Paren) {
        joinColumns(f->left, out);
        return;
    }
    joinColumns(f->left, out);
    FromItemP right = f->right;
    while (right->kind == FromItem::Paren)
        right = right->left;
    if (right->kind == FromItem::Table) {
        out << equalityColumn(*f, *right);
        return;
    }
    for (int i = tableCount(right); i > 0; --i)
        out << QString();
}

QString deleteStatement(Writer& w, const JetStatement& st)
{
    FromItemP t = st.target;
    while (t->kind == FromItem::Paren)
        t = t->left;
    if (t->kind == FromItem::Table) {
        QString out = QStringLiteral("DELETE FROM ") + w.from(t);
        if (st.where)
            out += QStringLiteral(" WHERE ") + w.expr(st.where);
        return out;
    }
    // Delete T.* From T Left Join ...: delete the rows of T that the join selects.
    std::vector<Source> sources;
    w.collectSources(st.target, sources);
    const Source* target = sources.empty() ? nullptr : &sources.front();
    if (!st.deleteQualifier.isEmpty()) {
        target = nullptr;
        for (const Source& s : sources)
            if (s.qualifier.compare(st.deleteQualifier, Qt::CaseInsensitive) == 0)
                target = &s;
    }
    if (!target || target->table.isEmpty())
        throw DbError(err::SyntaxError, QStringLiteral("Could not find the table to delete from."),
                      {});
    const QString table =
        target->schema == QLatin1String("main")
            ? quoteName(target->table)
            : quoteName(target->schema) + QLatin1Char('.') + quoteName(target->table);
    QString inner = QStringLiteral("SELECT ") + quoteName(target->qualifier) +
                    QStringLiteral(".rowid FROM ") + w.from(st.target);
    if (st.where)
        inner += QStringLiteral(" WHERE ") + w.expr(st.where);
    return QStringLiteral("DELETE FROM ") + table + QStringLiteral(" WHERE rowid IN (") + inner +
           QLatin1Char(')');
}

QString updateStatement(Writer& w, const JetStatement& st)
{
    FromItemP t = st.target;
    while (t->kind == FromItem::Paren)
        t = t->left;
    QStringList sets;
    for (const auto& [target, value] : st.sets)
        sets << quoteName(target.back()) + QLatin1Char('=') + w.expr(value);
    if (t->kind == FromItem::Table) {
        QString out = QStringLiteral("UPDATE ") + w.from(t) + QStringLiteral(" SET ") +
                      sets.join(QLatin1Char(','));
        if (st.where)
            out += QStringLiteral(" WHERE ") + w.expr(st.where);
        return out;
    }
    // An update over a join changes the rows of its first table that the join selects.
    std::vector<Source> sources;
    w.collectSources(st.target, sources);
    if (sources.empty() || sources.front().table.isEmpty())
        throw DbError(err::SyntaxError, QStringLiteral("Could not find the table to update."), {});
    const Source& s = sources.front();
    const QString table = s.schema == QLatin1String("main")
                              ? quoteName(s.table)
                              : quoteName(s.schema) + QLatin1Char('.') + quoteName(s.table);
    QString inner = QStringLiteral("SELECT ") + quoteName(s.qualifier) +
                    QStringLiteral(".rowid FROM ") + w.from(st.target);
    if (st.where)
        inner += QStringLiteral(" WHERE ") + w.expr(st.where);
    return QStringLiteral("UPDATE ") + table + QStringLiteral(" AS ") + quoteName(s.qualifier) +
           QStringLiteral(" SET ") + sets.join(QLatin1Char(',')) +
           QStringLiteral(" WHERE rowid IN (") + inner + QLatin1Char(')');
}

} // namespace

std::shared_ptr<const Translation> translateJet(const QString& jetSql, const QString& shape,
                                                int literalCount, TranslationContext& ctx,
                                                bool withRowid)
{
    auto tr = std::make_shared<Translation>();
    tr->jet = jetSql;
    tr->literalCount = literalCount;
    JetStatement st;
    try {
        st = parseJetStatement(shape.trimmed(), &ctx);
    } catch (const DbError& e) {
        // Report the statement as the caller wrote it, positions included.
        if (shape == jetSql)
            throw;
        parseJetStatement(jetSql.trimmed(), &ctx);
        throw DbError(e.number(), e.description(), jetSql);
    }
    tr->parameters = st.parameters;
    Writer w(ctx, jetSql);
    w.m_literalBase = int(st.parameters.size());
    switch (st.kind) {
    case JetStatement::Select: {
        tr->isSelect = true;
        if (withRowid && editable(st))
            w.m_editable = tr.get();
        tr->sqlite = w.select(*st.select, true);
        if (w.m_editable && keyable(st.select->cores[0].from) && !tr->sources.isEmpty()) {
            SelectStmt page = *st.select;
            SelectCore& c = page.cores[0];
            c.orderBy.clear();
            c.top.clear();
            auto in = std::make_shared<JetNode>();
            in->kind = JetNode::In;
            auto id = std::make_shared<JetNode>();
            id->kind = JetNode::Name;
            id->parts = {tr->sources[0].qualifier, QStringLiteral("rowid")};
            auto list = std::make_shared<JetNode>();
            list->kind = JetNode::List;
            for (int k = 0; k < Translation::kPageKeys; ++k) {
                auto p = std::make_shared<JetNode>();
                p->kind = JetNode::Name;
                p->parts = {QStringLiteral("__key")};
                p->param = int(st.parameters.size()) + literalCount + k;
                list->kids.push_back(p);
            }
            in->kids = {id, list};
            c.where = in;
            Translation pageShape;
            Writer pw(ctx, jetSql);
            pw.m_editable = &pageShape;
            pw.m_literalBase = w.m_literalBase;
            tr->pageSql = pw.select(page, true);

            tr->keySql =
                keyStatement(ctx, jetSql, *st.select, w.m_literalBase, tr->sources[0].qualifier);
            joinColumns(st.select->cores[0].from, tr->joinColumns);
            SelectStmt scan = *st.select;
            if (scan.cores[0].top.isEmpty())
                scan.cores[0].orderBy.clear();
            Translation scanShape;
            Writer sw(ctx, jetSql);
            sw.m_editable = &scanShape;
            sw.m_literalBase = w.m_literalBase;
            tr->scanSql = sw.select(scan, true);
        }
        break;
    }
    case JetStatement::Update:
        tr->sqlite = updateStatement(w, st);
        break;
    case JetStatement::Delete:
        tr->sqlite = deleteStatement(w, st);
        break;
    case JetStatement::Insert: {
        QString out = QStringLiteral("INSERT INTO ") + w.from(st.target);
        if (!st.insertColumns.isEmpty()) {
            QStringList cols;
            for (const QString& c : st.insertColumns)
                cols << quoteName(c);
            out += QStringLiteral(" (") + cols.join(QLatin1Char(',')) + QLatin1Char(')');
        }
        if (st.select) {
            out += QLatin1Char(' ') + w.select(*st.select, false);
        } else {
            QStringList values;
            for (const auto& v : st.insertValues)
                values << w.expr(v);
            out += QStringLiteral(" VALUES (") + values.join(QLatin1Char(',')) + QLatin1Char(')');
        }
        tr->sqlite = out;
        break;
    }
    }
    return tr;
}

QString translateCriteria(const QString& criteria, TranslationContext& ctx,
                          const std::function<QString(const QStringList&)>& column)
{
    JetNodeP expr = parseJetExpression(criteria);
    std::function<void(const JetNodeP&)> rename = [&](const JetNodeP& n) {
        if (n->kind == JetNode::Name && n->param < 0)
            n->parts = {column(n->parts)};
        if (n->select)
            throw DbError(err::SyntaxError, QStringLiteral("A criterion cannot hold a subquery."),
                          criteria);
        for (const JetNodeP& k : n->kids)
            rename(k);
    };
    rename(expr);
    Writer w(ctx, criteria);
    w.m_caseFree = true;
    return w.expr(expr);
}

} // namespace vd::db
