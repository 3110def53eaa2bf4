#include "library/LibrarySearchExpression.h"

#include "library/Tokenizer.h"
#include "support/Text.h"

namespace mirel {

namespace {

using Node = LibrarySearchExpression::Node;
using Kind = LibrarySearchExpression::Node::Kind;

// Between parentheses, as which every neighbour of a condition in a query acts, `printed` is the one token
// `text`.
bool readsAs(const QString& printed, const QString& text)
{
    const QString neighboured = u'(' + printed + u')';
    return Tokenizer::tokens(neighboured) == QStringList{QStringLiteral("("), text, QStringLiteral(")")};
}

// A token that reads as `text`. Quotes and neighbours would melt into a character that starts with a
// combining mark, or ends with a sign that takes what follows along. Such a character stands outside of the
// quotes and next to line ends, which melt into nothing.
QString printedCondition(const QString& text)
{
    if (readsAs(text, text))
        return text;
    const QString quote = QStringLiteral("\"");
    if (const QString quoted = quote + text + quote; readsAs(quoted, text))
        return quoted;
    const QList<QStringView> all = characters(text);
    const qsizetype afterFirst = all.first().size();
    const qsizetype beforeLast = text.size() - all.last().size();
    for (const qsizetype start : {qsizetype(0), afterFirst}) {
        for (const qsizetype end : {text.size(), beforeLast}) {
            QString quoted = text;
            if (start < end)
                quoted.insert(end, quote).insert(start, quote);
            const QString printed = u'\n' + quoted + u'\n';
            if (readsAs(printed, text))
                return printed;
        }
    }
    return text;
}

// How strongly the kind binds its operands.
int strengthOf(Kind kind)
{
    switch (kind) {
    case Kind::disjunction:
        return 0;
    case Kind::conjunction:
        return 1;
    case Kind::negation:
    case Kind::condition:
        return 2;
    }
    Q_UNREACHABLE();
}

} // namespace

QString LibrarySearchExpression::toString() const
{
    if (!m_tree)
        return {};
    const auto& [nodes, conditions] = *m_tree;

    // What is still to be printed, the next one last: a node or a text.
    struct Piece
    {
        const Node* node = nullptr;
        QLatin1StringView text;
    };
    std::vector<Piece> pieces{{.node = &nodes.back()}};
    const auto push = [&pieces](const Node& operand, int strength) {
        const bool isWeaker = strengthOf(operand.kind) < strength;
        if (isWeaker)
            pieces.push_back({.text = QLatin1StringView(")")});
        pieces.push_back({.node = &operand});
        if (isWeaker)
            pieces.push_back({.text = QLatin1StringView("(")});
    };

    QString printed;
    while (!pieces.empty()) {
        const auto [node, text] = pieces.back();
        pieces.pop_back();
        if (!node) {
            printed += text;
            continue;
        }
        const int strength = strengthOf(node->kind);
        switch (node->kind) {
        case Kind::condition:
            printed += printedCondition(conditions[node->first].text());
            break;
        case Kind::negation:
            push(nodes[node->first], strength);
            pieces.push_back({.text = QLatin1StringView("NOT ")});
            break;
        case Kind::conjunction:
        case Kind::disjunction: {
            // Operators of one strength stand from left to right, so only a right operand needs to be
            // stronger.
            push(nodes[node->second], strength + 1);
            pieces.push_back({.text = QLatin1StringView(node->kind == Kind::conjunction ? " AND " : " OR ")});
            push(nodes[node->first], strength);
            break;
        }
        }
    }
    return printed;
}

} // namespace mirel
