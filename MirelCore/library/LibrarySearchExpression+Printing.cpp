#include "library/LibrarySearchExpression.h"

#include "library/Tokenizer.h"

namespace mirel {

namespace {

using Node = LibrarySearchExpression::Node;
using Kind = LibrarySearchExpression::Node::Kind;

// Between parentheses and between spaces, the neighbours that a condition has, `printed` is the token `text`.
bool readsAs(const QString& printed, const QString& text)
{
    const QString query = u'(' + printed + QStringLiteral(") ") + printed + u' ';
    return Tokenizer::tokens(query) == QStringList{QStringLiteral("("), text, QStringLiteral(")"), text};
}

// A token that reads as `text`. Quotes and neighbours would melt into a character that starts with a
// combining mark, or ends with a sign that embraces what follows. Such a character stands outside of the
// quotes and next to a line end, which melts into nothing.
QString printedToken(const QString& text)
{
    if (readsAs(text, text))
        return text;
    const QString quote = QStringLiteral("\"");
    if (const QString quoted = quote + text + quote; readsAs(quoted, text))
        return quoted;
    const QList<QStringView> all = Tokenizer::characters(text);
    for (const qsizetype start : {qsizetype(0), all.first().size()}) {
        for (const qsizetype end : {text.size(), text.size() - all.last().size()}) {
            QString quoted = text;
            if (start < end)
                quoted.insert(end, quote).insert(start, quote);
            if (const QString printed = u'\n' + quoted + u'\n'; readsAs(printed, text))
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

class Printer
{
public:
    explicit Printer(const std::vector<Node>& nodes, const std::vector<LibrarySearchCondition>& conditions)
        : m_nodes(nodes)
        , m_conditions(conditions)
    {
    }

    [[nodiscard]] QString print()
    {
        m_pieces.push_back({.node = &m_nodes.back()});
        while (!m_pieces.empty()) {
            const Piece piece = m_pieces.back();
            m_pieces.pop_back();
            if (piece.node)
                print(*piece.node);
            else
                m_printed += piece.text;
        }
        return m_printed;
    }

private:
    // A node, or else a text.
    struct Piece
    {
        const Node* node = nullptr;
        QLatin1StringView text;
    };

    void print(const Node& node)
    {
        const int strength = strengthOf(node.kind);
        switch (node.kind) {
        case Kind::condition:
            m_printed += printedToken(m_conditions[node.first].text());
            return;
        case Kind::negation:
            push(m_nodes[node.first], strength);
            return push("NOT ");
        case Kind::conjunction:
        case Kind::disjunction:
            // A row of one operator grows to the left, so a right operand must bind more strongly.
            push(m_nodes[node.second], strength + 1);
            push(node.kind == Kind::conjunction ? " AND " : " OR ");
            return push(m_nodes[node.first], strength);
        }
    }

    void push(const char* text) { m_pieces.push_back({.text = QLatin1StringView(text)}); }

    void push(const Node& operand, int strength)
    {
        const bool needsParentheses = strengthOf(operand.kind) < strength;
        if (needsParentheses)
            push(")");
        m_pieces.push_back({.node = &operand});
        if (needsParentheses)
            push("(");
    }

    const std::vector<Node>& m_nodes;
    const std::vector<LibrarySearchCondition>& m_conditions;
    // What is still to be printed, the next one last.
    std::vector<Piece> m_pieces;
    QString m_printed;
};

} // namespace

QString LibrarySearchExpression::toString() const
{
    return m_tree ? Printer(m_tree->nodes, m_tree->conditions).print() : QString();
}

} // namespace mirel
