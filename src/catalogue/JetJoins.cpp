#include "catalogue/JetJoins.h"

namespace vd::db {

namespace {

bool isColumnOf(const JetNodeP& n, const QString& qualifier, const QualifierOf& qualifierOf)
{
    if (!n || n->kind != JetNode::Name || n->param >= 0 || n->parts.isEmpty())
        return false;
    return qualifierOf(n->parts).compare(qualifier, Qt::CaseInsensitive) == 0;
}

bool isComparison(const QString& op)
{
    return op == QLatin1String("=") || op == QLatin1String("<>") || op == QLatin1String("<") ||
           op == QLatin1String(">") || op == QLatin1String("<=") || op == QLatin1String(">=");
}

} // namespace

bool rejectsNullRow(const JetNode& term, const QString& qualifier, const QualifierOf& qualifierOf)
{
    const auto column = [&](size_t kid) {
        return kid < term.kids.size() && isColumnOf(term.kids[kid], qualifier, qualifierOf);
    };
    switch (term.kind) {
    case JetNode::Group:
        return !term.kids.empty() && rejectsNullRow(*term.kids[0], qualifier, qualifierOf);
    case JetNode::Binary:
        if (term.kids.size() != 2)
            return false;
        if (term.text == QLatin1String("AND"))
            return rejectsNullRow(*term.kids[0], qualifier, qualifierOf) ||
                   rejectsNullRow(*term.kids[1], qualifier, qualifierOf);
        if (term.text == QLatin1String("OR"))
            return rejectsNullRow(*term.kids[0], qualifier, qualifierOf) &&
                   rejectsNullRow(*term.kids[1], qualifier, qualifierOf);
        // Null compared with anything is Null.
        return isComparison(term.text) && (column(0) || column(1));
    case JetNode::Like:
        // The engine's like() gives Null for a Null operand, and NOT Null stays Null.
        return column(0) || column(1);
    case JetNode::Between:
        return column(0);
    case JetNode::In:
        // "Null NOT IN" an empty set is true.
        return !term.negated && column(0);
    case JetNode::IsNull:
        return term.negated && column(0);
    case JetNode::Unary: {
        // not isNull(F.x)
        if (term.text != QLatin1String("NOT") || term.kids.empty())
            return false;
        const JetNode* inner = term.kids[0].get();
        while (inner->kind == JetNode::Group && !inner->kids.empty())
            inner = inner->kids[0].get();
        return inner->kind == JetNode::Func &&
               inner->text.compare(QLatin1String("isnull"), Qt::CaseInsensitive) == 0 &&
               inner->kids.size() == 1 && isColumnOf(inner->kids[0], qualifier, qualifierOf);
    }
    default:
        return false;
    }
}

std::vector<const FromItem*> joinsMadeInner(const SelectCore& core, const QualifierOf& qualifierOf)
{
    std::vector<const FromItem*> out;
    if (!core.where)
        return out;
    const FromItem* f = core.from.get();
    while (f) {
        if (f->kind == FromItem::Paren) {
            f = f->left.get();
            continue;
        }
        if (f->kind != FromItem::Join)
            break;
        if (f->joinType == QLatin1String("LEFT") && f->right) {
            const FromItem* right = f->right.get();
            while (right->kind == FromItem::Paren && right->left)
                right = right->left.get();
            if (right->kind == FromItem::Table) {
                const QString q = right->alias.isEmpty() ? right->table : right->alias;
                if (rejectsNullRow(*core.where, q, qualifierOf))
                    out.push_back(f);
            }
        }
        f = f->left.get();
    }
    return out;
}

} // namespace vd::db
