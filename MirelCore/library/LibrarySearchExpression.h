#pragma once

#include "library/LibraryContentType.h"
#include "library/LibrarySearchCondition.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace mirel {

struct Bookmark;
class LibrarySearchSubject;

// A search as a tree. Immutable; copies share the tree, on any thread. However deep the tree, no operation
// recurses.
class LibrarySearchExpression
{
public:
    struct Node
    {
        enum class Kind { condition, conjunction, disjunction, negation };

        Kind kind = Kind::condition;
        // Of a condition its place in conditions(), otherwise the place of the (left) operand in nodes().
        std::size_t first = 0;
        // The place of the right operand of a conjunction or disjunction in nodes().
        std::size_t second = 0;

        friend bool operator==(const Node&, const Node&) = default;
    };

    // The case `all`: matches everything.
    LibrarySearchExpression() = default;

    // The tree whose root is the last of `nodes`; none are the case `all`. Operands come before what holds
    // them, and the left one before the right one. `conditions` are in the order of their nodes.
    LibrarySearchExpression(std::vector<Node> nodes, std::vector<LibrarySearchCondition> conditions);

    // Never fails: every text means something. An absent query matches everything.
    [[nodiscard]] static LibrarySearchExpression parse(const std::optional<QString>& query);

    [[nodiscard]] bool matches(const Bookmark& bookmark) const;
    // Asks the conditions from left to right, and none that cannot change the result.
    [[nodiscard]] bool matches(const LibrarySearchSubject& subject) const;

    // The normal form: a query that parses to this tree. Operators are written out, quotes and parentheses
    // stand only where they are needed. Empty for the case `all`.
    [[nodiscard]] QString toString() const;

    // Empty for the case `all`.
    [[nodiscard]] const std::vector<Node>& nodes() const;
    // From left to right.
    [[nodiscard]] const std::vector<LibrarySearchCondition>& conditions() const;

    [[nodiscard]] static LibraryContentType contentType(const Bookmark& bookmark);

    // The same tree.
    friend bool operator==(const LibrarySearchExpression& left, const LibrarySearchExpression& right)
    {
        return left.nodes() == right.nodes() && left.conditions() == right.conditions();
    }

private:
    struct Tree
    {
        std::vector<Node> nodes;
        std::vector<LibrarySearchCondition> conditions;
    };
    // Absent for the case `all`.
    std::shared_ptr<const Tree> m_tree;
};

} // namespace mirel
