#include "support/SourceTexts.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <vector>

namespace vd::test {

namespace {

// --- the sinks ---------------------------------------------------------------------------------

constexpr int kAll = -1;

struct Sink
{
    const char* name;
    std::initializer_list<int> positions; // the arguments that carry text; kAll for every one
    bool memberOnly = false; // only as obj.name( or obj->name(, as the dialog service is called
};

// Calls whose arguments are shown to the user or translated. Titles and prompts of the dialog
// service count, its file filters and start folders do not.
const Sink kSinks[] = {
    {"Translate", {0}},
    {"TranslateText", {0}},
    {"MsgBoxT", {0, 2}},
    {"msgBox", {0, 2}, true},
    {"yesNo", {0, 1}, true},
    {"retryCancel", {0, 1}, true},
    {"inputBox", {0, 1}, true},
    {"openFile", {0}, true},
    {"saveFile", {0}, true},
    {"chooseFolder", {0}, true},
    {"setText", {kAll}},
    {"setWindowTitle", {kAll}},
    {"setToolTip", {kAll}},
    {"setTitle", {kAll}},
    {"setPlaceholderText", {kAll}},
    {"setStatusTip", {kAll}},
    {"setTabText", {kAll}},
    {"addAction", {kAll}},
    {"addMenu", {kAll}},
    {"addTab", {kAll}},
    {"insertTab", {kAll}},
    {"setHeaderLabels", {kAll}},
    {"setHeaderLabel", {kAll}},
    {"addRow", {0}},
    {"QLabel", {0}},
    {"QPushButton", {0}},
    {"QCheckBox", {0}},
    {"QRadioButton", {0}},
    {"QGroupBox", {0}},
    {"QAction", {0}},
    // A filter's name is stored in German and translated when it is read back.
    {"AddFilter", {1}},
};

// Fields of a table struct that hold a user text.
const QSet<QString> kTextFields{QStringLiteral("caption"), QStringLiteral("text"),
                                QStringLiteral("tip"),     QStringLiteral("toolTip"),
                                QStringLiteral("title"),   QStringLiteral("prompt")};

// Calls that only wrap a literal into a string type.
const QSet<QString> kWrappers{QStringLiteral("QStringLiteral"),    QStringLiteral("QLatin1String"),
                              QStringLiteral("QLatin1StringView"), QStringLiteral("fromUtf8"),
                              QStringLiteral("fromLatin1"),        QStringLiteral("QString")};

const QSet<QString> kNotFunctions{QStringLiteral("if"),      QStringLiteral("for"),
                                  QStringLiteral("while"),   QStringLiteral("switch"),
                                  QStringLiteral("catch"),   QStringLiteral("return"),
                                  QStringLiteral("sizeof"),  QStringLiteral("decltype"),
                                  QStringLiteral("alignof"), QStringLiteral("static_assert")};

// --- tokens ------------------------------------------------------------------------------------

struct Token
{
    enum Kind
    {
        Ident,
        Literal,
        Punct,
        Number
    };
    Kind kind;
    QString text;
    int line;
};

bool isIdentStart(QChar c)
{
    return c.isLetter() || c == u'_';
}

bool isIdentChar(QChar c)
{
    return c.isLetterOrNumber() || c == u'_';
}

// Reads a quoted literal starting at `i` (on the quote); leaves `i` behind the closing quote.
QString readQuoted(const QString& s, qsizetype& i, int& line)
{
    const QChar quote = s[i++];
    QString out;
    while (i < s.size() && s[i] != quote) {
        QChar c = s[i++];
        if (c == u'\n')
            ++line;
        if (c == u'\\' && i < s.size()) {
            const QChar e = s[i++];
            switch (e.unicode()) {
            case 'n':
                c = u'\n';
                break;
            case 't':
                c = u'\t';
                break;
            case 'r':
                c = u'\r';
                break;
            case '0':
                c = QChar(0);
                break;
            default:
                c = e;
            }
        }
        out += c;
    }
    ++i;
    return out;
}

// R"delim( ... )delim", `i` on the quote.
QString readRaw(const QString& s, qsizetype& i, int& line)
{
    const qsizetype open = s.indexOf(u'(', i);
    if (open < 0) {
        i = s.size();
        return {};
    }
    const QString end = u')' + s.mid(i + 1, open - i - 1) + u'"';
    const qsizetype close = s.indexOf(end, open + 1);
    const qsizetype stop = close < 0 ? s.size() : close;
    const QString body = s.mid(open + 1, stop - open - 1);
    line += int(body.count(u'\n'));
    i = close < 0 ? s.size() : close + end.size();
    return body;
}

std::vector<Token> tokenize(const QString& s)
{
    std::vector<Token> out;
    int line = 1;
    bool lineStart = true;
    qsizetype i = 0;
    const auto push = [&out](Token::Kind kind, const QString& text, int at) {
        // Adjacent literals are one literal, as the compiler sees them.
        if (kind == Token::Literal && !out.empty() && out.back().kind == Token::Literal)
            out.back().text += text;
        else
            out.push_back(Token{kind, text, at});
    };
    while (i < s.size()) {
        const QChar c = s[i];
        if (c == u'\n') {
            ++line;
            lineStart = true;
            ++i;
            continue;
        }
        if (c.isSpace()) {
            ++i;
            continue;
        }
        if (c == u'#' && lineStart) { // a preprocessor line, with its continuations
            while (i < s.size() && s[i] != u'\n') {
                if (s[i] == u'\\' && i + 1 < s.size() && s[i + 1] == u'\n') {
                    ++line;
                    ++i;
                }
                ++i;
            }
            continue;
        }
        lineStart = false;
        if (s.mid(i, 2) == u"//") {
            while (i < s.size() && s[i] != u'\n')
                ++i;
            continue;
        }
        if (s.mid(i, 2) == u"/*") {
            const qsizetype end = s.indexOf(QStringLiteral("*/"), i + 2);
            const qsizetype stop = end < 0 ? s.size() : end + 2;
            line += int(s.mid(i, stop - i).count(u'\n'));
            i = stop;
            continue;
        }
        const int at = line;
        if (isIdentStart(c)) {
            qsizetype j = i;
            while (j < s.size() && isIdentChar(s[j]))
                ++j;
            const QString word = s.mid(i, j - i);
            i = j;
            if (i < s.size() && s[i] == u'"') {
                static const QSet<QString> prefixes{QStringLiteral("u8"), QStringLiteral("u"),
                                                    QStringLiteral("U"), QStringLiteral("L")};
                if (word.endsWith(u'R')) {
                    push(Token::Literal, readRaw(s, i, line), at);
                    continue;
                }
                if (prefixes.contains(word)) {
                    push(Token::Literal, readQuoted(s, i, line), at);
                    continue;
                }
            }
            push(Token::Ident, word, at);
            continue;
        }
        if (c.isDigit()) {
            qsizetype j = i;
            while (j < s.size() && (isIdentChar(s[j]) || s[j] == u'.' || s[j] == u'\''))
                ++j;
            push(Token::Number, s.mid(i, j - i), at);
            i = j;
            continue;
        }
        if (c == u'"') {
            push(Token::Literal, readQuoted(s, i, line), at);
            continue;
        }
        if (c == u'\'') {
            readQuoted(s, i, line);
            push(Token::Number, QStringLiteral("'c'"), at);
            continue;
        }
        const QString two = s.mid(i, 2);
        if (two == u"::" || two == u"->") {
            push(Token::Punct, two, at);
            i += 2;
            continue;
        }
        push(Token::Punct, QString(c), at);
        ++i;
    }
    return out;
}

// --- one file, parsed --------------------------------------------------------------------------

struct Range
{
    int begin = 0; // first token
    int end = 0;   // one past the last
};

struct Function
{
    QString name;
    QStringList params;
    Range body; // the braces included
    bool lambda = false;
};

struct Loop
{
    QStringList bindings; // [a, b] : T
    QString var;          // v : T
    QString varType;      // the declared type of v, when it is named
    QString table;        // T
    bool tableIsCall = false;
    Range body;
};

struct StructInfo
{
    QStringList fields;
};

class Source
{
public:
    Source(const QString& file, const QString& content) : m_file(file), m_t(tokenize(content))
    {
        scan();
    }

    const QString& file() const { return m_file; }
    const std::vector<Token>& tokens() const { return m_t; }
    const QList<Function>& functions() const { return m_functions; }
    const QList<Loop>& loops() const { return m_loops; }
    const QHash<QString, StructInfo>& structs() const { return m_structs; }
    const QList<QPair<QString, int>>& anonymousTables() const { return m_anonymousTables; }

    bool is(int i, const char* punct) const
    {
        return i >= 0 && i < int(m_t.size()) && m_t[size_t(i)].kind == Token::Punct &&
               m_t[size_t(i)].text == QLatin1String(punct);
    }
    bool isIdent(int i) const
    {
        return i >= 0 && i < int(m_t.size()) && m_t[size_t(i)].kind == Token::Ident;
    }
    const Token& at(int i) const { return m_t[size_t(i)]; }
    int size() const { return int(m_t.size()); }

    // The index of the bracket closing the one at `open`; size() when unbalanced.
    int close(int open) const
    {
        int depth = 0;
        for (int i = open; i < size(); ++i) {
            if (at(i).kind != Token::Punct)
                continue;
            const QString& p = at(i).text;
            if (p == u"(" || p == u"[" || p == u"{")
                ++depth;
            else if (p == u")" || p == u"]" || p == u"}") {
                if (--depth == 0)
                    return i;
            }
        }
        return size();
    }

    // The comma-separated parts between the bracket at `open` and its closer.
    QList<Range> parts(int open) const
    {
        QList<Range> out;
        const int end = close(open);
        int start = open + 1;
        for (int i = open + 1; i < end; ++i) {
            if (is(i, "(") || is(i, "[") || is(i, "{")) {
                i = close(i);
                continue;
            }
            if (is(i, ",")) {
                out.push_back({start, i});
                start = i + 1;
            }
        }
        if (end > start)
            out.push_back({start, end});
        return out;
    }

    // The literals of an expression that are its own value: those standing at its top level,
    // inside wrappers, braced lists or grouping parentheses, but not those that are arguments of
    // some other call (their call has its own rule).
    void literalsIn(Range r, QList<int>& out) const
    {
        for (int i = r.begin; i < r.end; ++i) {
            if (at(i).kind == Token::Literal) {
                out.push_back(i);
            } else if (is(i, "(") || is(i, "{") || is(i, "[")) {
                const int end = std::min(close(i), r.end);
                const bool call = isIdent(i - 1) && is(i, "(");
                if (!call || kWrappers.contains(at(i - 1).text) || is(i, "{"))
                    literalsIn({i + 1, end}, out);
                i = end;
            }
        }
    }

    // An argument stripped of its wrappers.
    Range unwrapped(Range r) const
    {
        for (;;) {
            int name = r.begin;
            if (isIdent(name) && is(name + 1, "::")) // QString::fromUtf8
                name += 2;
            if (r.end - name < 3 || !isIdent(name) || !kWrappers.contains(at(name).text) ||
                !is(name + 1, "(") || close(name + 1) != r.end - 1)
                return r;
            r = {name + 2, r.end - 1};
        }
    }

    QString constant(const QString& name) const { return m_constants.value(name); }
    int constantLine(const QString& name) const { return m_constantLines.value(name); }

    Range functionBody(const QString& name) const
    {
        for (const Function& f : m_functions)
            if (!f.lambda && f.name == name)
                return f.body;
        return {};
    }

    // The rows of the table initialised under `name`: the braced groups of its initialiser, or
    // of the list a function of that name returns.
    QList<Range> tableRows(const QString& name, bool isCall) const
    {
        int outer = -1;
        if (isCall) {
            const Range body = functionBody(name);
            for (int i = body.begin; i < body.end && outer < 0; ++i)
                if (isIdent(i) && at(i).text == u"return" && is(i + 1, "{"))
                    outer = i + 1;
        } else {
            for (int i = 1; i + 1 < size() && outer < 0; ++i) {
                if (!isIdent(i) || at(i).text != name ||
                    !(isIdent(i - 1) || is(i - 1, ">") || is(i - 1, "*") || is(i - 1, "]") ||
                      is(i - 1, "}")))
                    continue;
                int j = i + 1;
                while (is(j, "["))
                    j = close(j) + 1;
                if (is(j, "="))
                    ++j;
                if (is(j, "{"))
                    outer = j;
            }
        }
        QList<Range> rows;
        if (outer < 0)
            return rows;
        for (const Range& part : parts(outer))
            if (is(part.begin, "{"))
                rows.push_back({part.begin, close(part.begin) + 1});
        return rows;
    }

private:
    void scan()
    {
        for (int i = 0; i < size(); ++i) {
            if (!isIdent(i))
                continue;
            const QString& word = at(i).text;
            if (word == u"struct" || word == u"class")
                scanStruct(i);
            else if (word == u"for" && is(i + 1, "("))
                scanLoop(i + 1);
            else if (word.size() > 1 && word[0] == u'k' && word[1].isUpper())
                scanConstant(i);
            if (is(i + 1, "(") && !kNotFunctions.contains(word))
                scanFunction(i);
        }
        scanLambdas();
    }

    // struct Name { fields };  or  struct { fields } table[] = {...};
    void scanStruct(int i)
    {
        int j = i + 1;
        QString name;
        if (isIdent(j))
            name = at(j++).text;
        while (j < size() && !is(j, "{") && !is(j, ";"))
            ++j;
        if (!is(j, "{"))
            return;
        const int end = close(j);
        StructInfo info;
        int start = j + 1;
        for (int k = j + 1; k < end; ++k) {
            if (is(k, "{") || is(k, "(") || is(k, "[")) {
                k = close(k);
                continue;
            }
            if (!is(k, ";"))
                continue;
            addFields({start, k}, info);
            start = k + 1;
        }
        if (name.isEmpty()) {
            if (isIdent(end + 1))
                m_anonymousTables.push_back({at(end + 1).text, int(m_anonymousStructs.size())});
            m_anonymousStructs.push_back(info);
            m_structs.insert(QStringLiteral("<anonymous>%1").arg(m_anonymousStructs.size() - 1),
                             info);
        } else {
            m_structs.insert(name, info);
        }
    }

    // One member declaration "Type a, b = 1;"; member functions are not fields.
    void addFields(Range r, StructInfo& info) const
    {
        for (int k = r.begin; k < r.end; ++k)
            if (is(k, "("))
                return;
        QString last;
        for (int k = r.begin; k < r.end; ++k) {
            if (is(k, "=") || is(k, "{") || is(k, "[")) {
                if (!last.isEmpty())
                    info.fields << last;
                last.clear();
                while (k < r.end && !is(k, ","))
                    k = (is(k, "{") || is(k, "[")) ? close(k) + 1 : k + 1;
                continue;
            }
            if (is(k, ",")) {
                if (!last.isEmpty())
                    info.fields << last;
                last.clear();
            } else if (isIdent(k)) {
                last = at(k).text;
            }
        }
        if (!last.isEmpty())
            info.fields << last;
    }

    // for (decl : table) body
    void scanLoop(int open)
    {
        const int end = close(open);
        int colon = -1;
        QStringList bindings;
        for (int k = open + 1; k < end; ++k) {
            if (is(k, "(") || is(k, "[") || is(k, "{")) {
                if (is(k, "[") && colon < 0) {
                    const int stop = close(k);
                    for (const Range& b : parts(k))
                        if (isIdent(b.begin))
                            bindings << at(b.begin).text;
                    k = stop;
                    continue;
                }
                k = close(k);
                continue;
            }
            if (is(k, ":")) {
                colon = k;
                break;
            }
        }
        Loop loop;
        loop.bindings = bindings;
        if (colon < 0 || !isIdent(colon + 1))
            return;
        if (loop.bindings.isEmpty() && isIdent(colon - 1)) {
            loop.var = at(colon - 1).text;
            for (int k = colon - 2; k > open; --k)
                if (isIdent(k) && at(k).text != u"const" && at(k).text != u"auto") {
                    loop.varType = at(k).text;
                    break;
                }
        }
        loop.table = at(colon + 1).text;
        loop.tableIsCall = is(colon + 2, "(");
        const int bodyStart = end + 1;
        if (is(bodyStart, "{")) {
            loop.body = {bodyStart, close(bodyStart) + 1};
        } else {
            int k = bodyStart;
            while (k < size() && !is(k, ";"))
                k = (is(k, "(") || is(k, "{") || is(k, "[")) ? close(k) + 1 : k + 1;
            loop.body = {bodyStart, k};
        }
        m_loops.push_back(loop);
    }

    // kName = "text";  kName("text");  kName{"text"};  kName[] = "text";
    void scanConstant(int i)
    {
        const QString& name = at(i).text;
        if (m_constants.contains(name) || !(isIdent(i - 1) || is(i - 1, "*")))
            return;
        int j = i + 1;
        while (is(j, "["))
            j = close(j) + 1;
        int end = j;
        if (is(j, "=")) {
            end = j + 1;
            while (end < size() && !is(end, ";"))
                ++end;
            ++j;
        } else if (is(j, "(") || is(j, "{")) {
            end = close(j);
            ++j;
        } else {
            return;
        }
        const Range r = unwrapped({j, end});
        if (r.end - r.begin == 1 && at(r.begin).kind == Token::Literal) {
            m_constants.insert(name, at(r.begin).text);
            m_constantLines.insert(name, at(r.begin).line);
        }
    }

    // name(params) [qualifiers] { body }  and  name = [captures](params) { body }
    void scanFunction(int i)
    {
        const int close_ = close(i + 1);
        int j = close_ + 1;
        static const QSet<QString> qualifiers{QStringLiteral("const"), QStringLiteral("noexcept"),
                                              QStringLiteral("override"), QStringLiteral("final"),
                                              QStringLiteral("mutable")};
        while (isIdent(j) && qualifiers.contains(at(j).text))
            ++j;
        if (is(j, "->"))
            while (j < size() && !is(j, "{") && !is(j, ";") && !is(j, ")"))
                ++j;
        if (!is(j, "{"))
            return;
        Function f;
        f.body = {j, close(j) + 1};
        for (const Range& p : parts(i + 1)) {
            QString last;
            for (int k = p.begin; k < p.end && !is(k, "="); ++k)
                if (isIdent(k))
                    last = at(k).text;
            f.params << last;
        }
        f.name = at(i).text;
        m_functions.push_back(f);
    }

    // Lambdas are found from their "[": name = [..](..) {..}
    void scanLambdas()
    {
        for (int i = 2; i < size(); ++i) {
            if (!is(i, "[") || !is(i - 1, "=") || !isIdent(i - 2))
                continue;
            const int capEnd = close(i);
            if (!is(capEnd + 1, "("))
                continue;
            const int paramEnd = close(capEnd + 1);
            int j = paramEnd + 1;
            while (isIdent(j) && at(j).text == u"mutable")
                ++j;
            if (is(j, "->"))
                while (j < size() && !is(j, "{") && !is(j, ";"))
                    ++j;
            if (!is(j, "{"))
                continue;
            Function f;
            f.name = at(i - 2).text;
            f.lambda = true;
            f.body = {j, close(j) + 1};
            for (const Range& p : parts(capEnd + 1)) {
                QString last;
                for (int k = p.begin; k < p.end && !is(k, "="); ++k)
                    if (isIdent(k))
                        last = at(k).text;
                f.params << last;
            }
            m_functions.push_back(f);
        }
    }

private:
    QString m_file;
    std::vector<Token> m_t;
    QList<Function> m_functions;
    QList<Loop> m_loops;
    QHash<QString, StructInfo> m_structs;
    QList<StructInfo> m_anonymousStructs;
    QList<QPair<QString, int>> m_anonymousTables; // table name, index of its struct
    QHash<QString, QString> m_constants;
    QHash<QString, int> m_constantLines;
};

// --- the gathering -----------------------------------------------------------------------------

using SinkMap = QHash<QString, QSet<int>>;

const QSet<QString>& memberOnlySinks()
{
    static const QSet<QString> names = [] {
        QSet<QString> out;
        for (const Sink& s : kSinks)
            if (s.memberOnly)
                out.insert(QString::fromLatin1(s.name));
        return out;
    }();
    return names;
}

bool carries(const SinkMap& sinks, const QString& name, int position)
{
    const auto it = sinks.constFind(name);
    return it != sinks.cend() && (it->contains(kAll) || it->contains(position));
}

class Gatherer
{
public:
    explicit Gatherer(const QList<QPair<QString, QString>>& files)
    {
        for (const auto& [file, content] : files)
            m_sources.emplace_back(file, content);
        for (const Sink& s : kSinks)
            for (int p : s.positions)
                m_global[QString::fromLatin1(s.name)].insert(p);
        for (const Source& src : m_sources)
            for (auto it = src.structs().cbegin(); it != src.structs().cend(); ++it)
                if (!it.key().startsWith(u'<'))
                    m_structs.insert(it.key(), it.value());
        m_local.resize(m_sources.size());
        for (const Source& src : m_sources)
            if (src.file().endsWith(QStringLiteral(".h")))
                for (int i = 0; i + 1 < src.size(); ++i)
                    if (src.isIdent(i) && src.is(i + 1, "("))
                        m_declared.insert(src.at(i).text);
        findForwarders();
    }

    QList<SourceText> run()
    {
        for (size_t n = 0; n < m_sources.size(); ++n) {
            const Source& src = m_sources[n];
            for (int i = 0; i + 1 < src.size(); ++i)
                if (src.isIdent(i) && src.is(i + 1, "("))
                    sinkCall(n, i);
            structTables(src);
        }
        return m_out;
    }

private:
    // Whether argument `a` of the call whose name is token `i` carries a text.
    bool isSink(size_t n, int i, int a) const
    {
        const Source& src = m_sources[n];
        const QString& name = src.at(i).text;
        if (carries(m_local[n], name, a))
            return true;
        if (!carries(m_global, name, a))
            return false;
        return !memberOnlySinks().contains(name) || src.is(i - 1, ".") || src.is(i - 1, "->");
    }

    // A function or lambda that hands a parameter on to a sink is a sink for that parameter,
    // until nothing new is found.
    void findForwarders()
    {
        bool changed = true;
        while (changed) {
            changed = false;
            for (size_t n = 0; n < m_sources.size(); ++n) {
                const Source& src = m_sources[n];
                for (const Function& f : src.functions()) {
                    for (int i = f.body.begin; i + 1 < f.body.end; ++i) {
                        if (!src.isIdent(i) || !src.is(i + 1, "("))
                            continue;
                        const QList<Range> args = src.parts(i + 1);
                        for (int a = 0; a < args.size(); ++a) {
                            if (!isSink(n, i, a))
                                continue;
                            const Range r = src.unwrapped(args[a]);
                            if (r.end - r.begin != 1 || !src.isIdent(r.begin))
                                continue;
                            const qsizetype p = f.params.indexOf(src.at(r.begin).text);
                            if (p < 0)
                                continue;
                            // Only what a header declares is called from other files.
                            SinkMap& map =
                                f.lambda || !m_declared.contains(f.name) ? m_local[n] : m_global;
                            if (!carries(map, f.name, int(p))) {
                                map[f.name].insert(int(p));
                                changed = true;
                            }
                        }
                    }
                }
            }
        }
    }

    void add(const Source& src, int token)
    {
        add(src.file(), src.at(token).text, src.at(token).line);
    }

    void add(const QString& file, const QString& text, int line)
    {
        if (std::none_of(text.cbegin(), text.cend(), [](QChar c) { return c.isLetter(); }))
            return;
        m_out.push_back(SourceText{text, file, line});
    }

    void sinkCall(size_t n, int i)
    {
        const Source& src = m_sources[n];
        const QString& name = src.at(i).text;
        const QList<Range> args = src.parts(i + 1);
        for (int a = 0; a < args.size(); ++a) {
            if (!isSink(n, i, a))
                continue;
            QList<int> literals;
            src.literalsIn(args[a], literals);
            for (int l : literals)
                add(src, l);
            followReference(n, i, src.unwrapped(args[a]), name == u"Translate");
        }
    }

    // An argument that names a constant, a loop's column, or a function whose result is the text.
    void followReference(size_t n, int call, Range r, bool translated)
    {
        const Source& src = m_sources[n];
        const int len = r.end - r.begin;
        if (len < 1 || !src.isIdent(r.begin))
            return;
        const QString& first = src.at(r.begin).text;
        if (len == 1 && !src.constant(first).isEmpty()) {
            add(src.file(), src.constant(first), src.constantLine(first));
            return;
        }
        if (translated && src.is(r.begin + 1, "(") && src.close(r.begin + 1) == r.end - 1 &&
            !src.is(r.begin - 1, ".") && !src.is(r.begin - 1, "->")) {
            functionLiterals(first);
            return;
        }
        for (const Loop& loop : src.loops()) {
            if (call < loop.body.begin || call >= loop.body.end)
                continue;
            int column = -1;
            if (len == 1)
                column = int(loop.bindings.indexOf(first));
            else if (first == loop.var && len == 4 && src.is(r.begin + 1, "[") &&
                     src.at(r.begin + 2).kind == Token::Number)
                column = src.at(r.begin + 2).text.toInt();
            else if (first == loop.var && len == 3 &&
                     (src.is(r.begin + 1, ".") || src.is(r.begin + 1, "->")))
                column = fieldIndex(loop.varType, src.at(r.begin + 2).text);
            if (column >= 0)
                tableColumn(loop.table, loop.tableIsCall, n, column);
        }
    }

    int fieldIndex(const QString& type, const QString& field) const
    {
        const auto it = m_structs.constFind(type);
        return it == m_structs.cend() ? -1 : int(it->fields.indexOf(field));
    }

    // The literals of one column of a table; the table lies in this file or, when a function
    // returns it, wherever that function is defined.
    void tableColumn(const QString& table, bool isCall, size_t n, int column)
    {
        for (size_t m = 0; m < m_sources.size(); ++m) {
            if (!isCall && m != n)
                continue;
            const Source& src = m_sources[m];
            for (const Range& row : src.tableRows(table, isCall)) {
                const QList<Range> cells = src.parts(row.begin);
                if (column >= cells.size())
                    continue;
                QList<int> literals;
                src.literalsIn(cells[column], literals);
                for (int l : literals)
                    add(src, l);
            }
        }
    }

    // Translate(SomeTip(x)): the texts are the literals the function gives back.
    void functionLiterals(const QString& function)
    {
        for (const Source& src : m_sources) {
            const Range body = src.functionBody(function);
            QList<int> literals;
            src.literalsIn({body.begin + 1, std::max(body.begin + 1, body.end - 1)}, literals);
            for (int l : literals)
                add(src, l);
        }
    }

    // Tables of structs with a text field: every row's literal in that field.
    void structTables(const Source& src)
    {
        const auto takeFields = [&](const QString& table, const StructInfo& info) {
            for (int f = 0; f < info.fields.size(); ++f) {
                if (!kTextFields.contains(info.fields[f]))
                    continue;
                for (const Range& row : src.tableRows(table, false)) {
                    const QList<Range> cells = src.parts(row.begin);
                    if (f >= cells.size())
                        continue;
                    QList<int> literals;
                    src.literalsIn(cells[f], literals);
                    for (int l : literals)
                        add(src, l);
                }
            }
        };
        for (int i = 1; i + 1 < src.size(); ++i) {
            if (!src.isIdent(i))
                continue;
            const int var = src.is(i + 1, ">") ? i + 2 : i + 1; // Name x[] or QVector<Name> x
            if (!src.isIdent(var))
                continue;
            const auto it = m_structs.constFind(src.at(i).text);
            if (it != m_structs.cend() && (src.is(var + 1, "[") || src.is(var + 1, "=")))
                takeFields(src.at(var).text, *it);
        }
        for (const auto& [table, index] : src.anonymousTables())
            takeFields(table, src.structs().value(QStringLiteral("<anonymous>%1").arg(index)));
    }

    std::vector<Source> m_sources;
    SinkMap m_global;
    std::vector<SinkMap> m_local;
    QSet<QString> m_declared; // names a header declares as functions
    QHash<QString, StructInfo> m_structs;
    QList<SourceText> m_out;
};

} // namespace

QList<SourceText> GatherTexts(const QList<QPair<QString, QString>>& files)
{
    QList<SourceText> all = Gatherer(files).run();
    // One text once per place.
    QSet<QString> seen;
    QList<SourceText> out;
    for (const SourceText& t : all) {
        const QString id = t.file + u'\n' + QString::number(t.line) + u'\n' + t.text;
        if (!seen.contains(id)) {
            seen.insert(id);
            out.push_back(t);
        }
    }
    return out;
}

QList<SourceText> GatherTexts(const QString& file, const QString& content)
{
    return GatherTexts(QList<QPair<QString, QString>>{{file, content}});
}

} // namespace vd::test
