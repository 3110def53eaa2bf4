#pragma once

#include "library/LibrarySearchExpression.h"

#include <QStringList>

namespace mirel {

// Builds the tree of a search from its tokens. From the weakest to the strongest bind OR, AND and NOT, in
// any case of letters; what stands side by side is joined by AND. Where a token does not fit, the tree ends
// and the rest is ignored.
//
// The rules of the grammar call one another, and a query nests as deep as it is long, so their calls stand
// on a stack of the parser's own.
class Parser
{
public:
    // Never fails.
    [[nodiscard]] static LibrarySearchExpression parse(const QStringList& tokens);

private:
    using Kind = LibrarySearchExpression::Node::Kind;

    // A rule that waits for the one that it called.
    struct Call
    {
        enum class Rule { disjunction, conjunction, negation, parentheses };

        Rule rule;
        // The left operand, once there is one.
        std::optional<std::size_t> left;
    };

    explicit Parser(const QStringList& tokens);

    // These four return whether a rule has ended, with its result in m_result. Otherwise a factor comes next.
    [[nodiscard]] bool startFactor();
    [[nodiscard]] bool continueCall();
    [[nodiscard]] bool continueConjunction();
    [[nodiscard]] bool continueDisjunction();

    void startDisjunction();
    // Takes m_result as an operand of the innermost call. False when it is absent.
    [[nodiscard]] bool takeOperand(Kind kind);
    bool endCall();

    [[nodiscard]] bool isAt(QLatin1StringView token) const;
    bool stepPast(QLatin1StringView token);

    const QStringList& m_tokens;
    qsizetype m_position = 0;
    std::vector<Call> m_calls;
    // A node, or absent where a rule found nothing and added no node.
    std::optional<std::size_t> m_result;
    std::vector<LibrarySearchExpression::Node> m_nodes;
    std::vector<LibrarySearchCondition> m_conditions;
};

} // namespace mirel
