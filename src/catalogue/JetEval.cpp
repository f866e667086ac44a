#include "catalogue/JetEval.h"

#include "catalogue/DbError.h"
#include "catalogue/JetFunctions.h"
#include "catalogue/JetSql.h"

namespace vd::db {

namespace {

bool isNumber(const QVariant& v)
{
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Double:
    case QMetaType::Bool:
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        return true;
    default:
        return false;
    }
}

bool numeric(const QVariant& v, double& out)
{
    if (isNumber(v)) {
        out = v.typeId() == QMetaType::Bool ? (v.toBool() ? -1.0 : 0.0) : v.toDouble();
        return true;
    }
    if (v.typeId() == QMetaType::QString) {
        bool ok = false;
        out = v.toString().trimmed().toDouble(&ok);
        return ok;
    }
    return false;
}

QString text(const QVariant& v)
{
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? QStringLiteral("-1") : QStringLiteral("0");
    return v.toString();
}

QVariant boolean(bool b)
{
    return QVariant(qlonglong(b ? -1 : 0));
}

[[noreturn]] void unsupported(const QString& what)
{
    throw DbError(err::SyntaxError, QStringLiteral("'%1' cannot be used in a Find criterion.").arg(what));
}

QVariant function(const JetNode& n, const FieldLookup& field)
{
    const QString name = n.text.toLower();
    std::vector<QVariant> a;
    for (const auto& k : n.kids)
        a.push_back(evalJet(*k, field));
    auto arg = [&](size_t i) { return i < a.size() ? a[i] : QVariant(); };
    if (name == QLatin1String("isnull"))
        return boolean(arg(0).isNull());
    if (name == QLatin1String("iif"))
        return jetTruth(arg(0)) ? arg(1) : arg(2);
    if (name == QLatin1String("nz"))
        return arg(0).isNull() ? (a.size() > 1 ? arg(1) : QVariant(QString())) : arg(0);
    for (const QVariant& v : a)
        if (v.isNull())
            return {};
    if (name == QLatin1String("ucase"))
        return text(arg(0)).toUpper();
    if (name == QLatin1String("lcase"))
        return text(arg(0)).toLower();
    if (name == QLatin1String("trim"))
        return text(arg(0)).trimmed();
    if (name == QLatin1String("len"))
        return qlonglong(text(arg(0)).size());
    if (name == QLatin1String("left"))
        return text(arg(0)).left(std::max<qlonglong>(0, arg(1).toLongLong()));
    if (name == QLatin1String("right"))
        return text(arg(0)).right(std::max<qlonglong>(0, arg(1).toLongLong()));
    if (name == QLatin1String("mid"))
        return text(arg(0)).mid(std::max<qlonglong>(1, arg(1).toLongLong()) - 1,
                                a.size() > 2 ? std::max<qlonglong>(0, arg(2).toLongLong()) : -1);
    if (name == QLatin1String("val"))
        return vbVal(text(arg(0)));
    unsupported(n.text);
}

} // namespace

bool jetTruth(const QVariant& v)
{
    if (v.isNull())
        return false;
    double d = 0;
    if (numeric(v, d))
        return d != 0;
    return false;
}

std::optional<int> jetCompare(const QVariant& a, const QVariant& b)
{
    if (a.isNull() || b.isNull())
        return std::nullopt;
    double x = 0, y = 0;
    if ((isNumber(a) || isNumber(b)) && numeric(a, x) && numeric(b, y))
        return x < y ? -1 : (x > y ? 1 : 0);
    const int c = QString::compare(text(a), text(b), Qt::CaseInsensitive);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

QVariant evalJet(const JetNode& n, const FieldLookup& field)
{
    switch (n.kind) {
    case JetNode::Number: {
        bool ok = false;
        const qlonglong i = n.text.toLongLong(&ok);
        return ok ? QVariant(i) : QVariant(n.text.toDouble());
    }
    case JetNode::String:
    case JetNode::Date:
        return n.text;
    case JetNode::Null:
        return {};
    case JetNode::Boolean:
        return QVariant(n.text.toLongLong());
    case JetNode::Name:
        return field(n.parts);
    case JetNode::Group:
        return evalJet(*n.kids[0], field);
    case JetNode::Unary: {
        const QVariant v = evalJet(*n.kids[0], field);
        if (n.text == QLatin1String("NOT"))
            return v.isNull() ? QVariant() : boolean(!jetTruth(v));
        double d = 0;
        if (v.isNull() || !numeric(v, d))
            return {};
        return n.text == QLatin1String("-") ? QVariant(-d) : QVariant(d);
    }
    case JetNode::Binary: {
        const QString& op = n.text;
        if (op == QLatin1String("AND")) {
            const QVariant l = evalJet(*n.kids[0], field);
            if (!l.isNull() && !jetTruth(l))
                return boolean(false);
            const QVariant r = evalJet(*n.kids[1], field);
            if (!r.isNull() && !jetTruth(r))
                return boolean(false);
            return l.isNull() || r.isNull() ? QVariant() : boolean(true);
        }
        if (op == QLatin1String("OR")) {
            const QVariant l = evalJet(*n.kids[0], field);
            if (jetTruth(l))
                return boolean(true);
            const QVariant r = evalJet(*n.kids[1], field);
            if (jetTruth(r))
                return boolean(true);
            return l.isNull() || r.isNull() ? QVariant() : boolean(false);
        }
        const QVariant l = evalJet(*n.kids[0], field);
        const QVariant r = evalJet(*n.kids[1], field);
        if (op == QLatin1String("&"))
            return (l.isNull() ? QString() : text(l)) + (r.isNull() ? QString() : text(r));
        if (l.isNull() || r.isNull())
            return {};
        if (op == QLatin1String("=") || op == QLatin1String("<>") || op == QLatin1String("<") ||
            op == QLatin1String(">") || op == QLatin1String("<=") || op == QLatin1String(">=")) {
            const int c = *jetCompare(l, r);
            if (op == QLatin1String("="))
                return boolean(c == 0);
            if (op == QLatin1String("<>"))
                return boolean(c != 0);
            if (op == QLatin1String("<"))
                return boolean(c < 0);
            if (op == QLatin1String(">"))
                return boolean(c > 0);
            if (op == QLatin1String("<="))
                return boolean(c <= 0);
            return boolean(c >= 0);
        }
        double x = 0, y = 0;
        if (!numeric(l, x) || !numeric(r, y))
            unsupported(op);
        if (op == QLatin1String("+"))
            return x + y;
        if (op == QLatin1String("-"))
            return x - y;
        if (op == QLatin1String("*"))
            return x * y;
        if (op == QLatin1String("/"))
            return y == 0 ? QVariant() : QVariant(x / y);
        unsupported(op);
    }
    case JetNode::Like: {
        const QVariant v = evalJet(*n.kids[0], field);
        const QVariant p = evalJet(*n.kids[1], field);
        if (v.isNull() || p.isNull())
            return {};
        const bool m = JetPattern(text(p)).matches(text(v));
        return boolean(m != n.negated);
    }
    case JetNode::IsNull:
        return boolean(evalJet(*n.kids[0], field).isNull() != n.negated);
    case JetNode::Between: {
        const QVariant v = evalJet(*n.kids[0], field);
        const auto lo = jetCompare(v, evalJet(*n.kids[1], field));
        const auto hi = jetCompare(v, evalJet(*n.kids[2], field));
        if (!lo || !hi)
            return {};
        return boolean((*lo >= 0 && *hi <= 0) != n.negated);
    }
    case JetNode::In: {
        const QVariant v = evalJet(*n.kids[0], field);
        if (n.kids[1]->kind != JetNode::List)
            unsupported(QStringLiteral("IN (SELECT ...)"));
        for (const auto& k : n.kids[1]->kids) {
            const auto c = jetCompare(v, evalJet(*k, field));
            if (c && *c == 0)
                return boolean(!n.negated);
        }
        return boolean(n.negated);
    }
    case JetNode::Func:
        return function(n, field);
    case JetNode::Star:
    case JetNode::List:
    case JetNode::Subquery:
    case JetNode::Exists:
        break;
    }
    unsupported(QStringLiteral("this expression"));
}

} // namespace vd::db
