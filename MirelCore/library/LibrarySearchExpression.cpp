#include "library/LibrarySearchExpression.h"

#include "library/LibrarySearchContext.h"
#include "library/Parser.h"
#include "library/Tokenizer.h"

#include <QVarLengthArray>

namespace mirel {

LibrarySearchExpression::LibrarySearchExpression(std::vector<Node> nodes,
                                                 std::vector<LibrarySearchCondition> conditions)
{
    if (!nodes.empty())
        m_tree = std::make_shared<const Tree>(Tree{std::move(nodes), std::move(conditions)});
}

LibrarySearchExpression LibrarySearchExpression::parse(const std::optional<QString>& query)
{
    return Parser::parse(Tokenizer::tokens(query.value_or(QString())));
}

bool LibrarySearchExpression::matches(const Bookmark& bookmark) const
{
    return matches(LibrarySearchContext(bookmark));
}

bool LibrarySearchExpression::matches(const LibrarySearchSubject& subject) const
{
    if (!m_tree)
        return true;
    const auto& [nodes, conditions] = *m_tree;
    // The nodes whose left operand is being asked.
    QVarLengthArray<const Node*, 64> waiting;
    const Node* node = &nodes.back();
    while (true) {
        for (; node->kind != Node::Kind::condition; node = &nodes[node->first])
            waiting.append(node);
        bool result = conditions[node->first].matches(subject);
        node = nullptr;
        while (!node) {
            if (waiting.isEmpty())
                return result;
            const Node* const asker = waiting.last();
            waiting.removeLast();
            if (asker->kind == Node::Kind::negation)
                result = !result;
            else if (result == (asker->kind == Node::Kind::conjunction))
                // The left operand left it open: the result is that of the right one.
                node = &nodes[asker->second];
        }
    }
}

const std::vector<LibrarySearchExpression::Node>& LibrarySearchExpression::nodes() const
{
    static const std::vector<Node> none;
    return m_tree ? m_tree->nodes : none;
}

const std::vector<LibrarySearchCondition>& LibrarySearchExpression::conditions() const
{
    static const std::vector<LibrarySearchCondition> none;
    return m_tree ? m_tree->conditions : none;
}

LibraryContentType LibrarySearchExpression::contentType(const Bookmark& bookmark)
{
    return LibrarySearchContext(bookmark).contentType();
}

} // namespace mirel
