#include "library/Parser.h"

namespace mirel {

namespace {

constexpr auto andWord = QLatin1StringView("AND");
constexpr auto orWord = QLatin1StringView("OR");
constexpr auto notWord = QLatin1StringView("NOT");
constexpr auto opening = QLatin1StringView("(");
constexpr auto closing = QLatin1StringView(")");

} // namespace

LibrarySearchExpression Parser::parse(const QStringList& tokens)
{
    Parser parser(tokens);
    parser.startDisjunction();
    bool hasResult = false;
    while (!parser.m_calls.empty())
        hasResult = hasResult ? parser.continueCall() : parser.startFactor();
    return {std::move(parser.m_nodes), std::move(parser.m_conditions)};
}

Parser::Parser(const QStringList& tokens)
    : m_tokens(tokens)
{
}

bool Parser::startFactor()
{
    m_result.reset();
    if (m_position == m_tokens.size() || isAt(closing))
        return true;
    if (stepPast(notWord)) {
        m_calls.push_back({.rule = Call::Rule::negation});
        return false;
    }
    if (stepPast(opening)) {
        m_calls.push_back({.rule = Call::Rule::parentheses});
        startDisjunction();
        return false;
    }
    m_conditions.emplace_back(m_tokens[m_position]);
    ++m_position;
    m_result = m_nodes.size();
    m_nodes.push_back({.kind = Kind::condition, .first = m_conditions.size() - 1});
    return true;
}

bool Parser::continueCall()
{
    switch (m_calls.back().rule) {
    case Call::Rule::disjunction:
        return continueDisjunction();
    case Call::Rule::conjunction:
        return continueConjunction();
    case Call::Rule::negation:
        if (m_result) {
            m_nodes.push_back({.kind = Kind::negation, .first = *m_result});
            m_result = m_nodes.size() - 1;
        }
        m_calls.pop_back();
        return true;
    case Call::Rule::parentheses:
        stepPast(closing);
        m_calls.pop_back();
        return true;
    }
    Q_UNREACHABLE();
}

bool Parser::continueConjunction()
{
    if (!takeOperand(Kind::conjunction) || m_position == m_tokens.size() || isAt(closing) || isAt(orWord))
        return endCall();
    stepPast(andWord);
    return false;
}

bool Parser::continueDisjunction()
{
    if (!takeOperand(Kind::disjunction) || !stepPast(orWord))
        return endCall();
    m_calls.push_back({.rule = Call::Rule::conjunction});
    return false;
}

void Parser::startDisjunction()
{
    m_calls.push_back({.rule = Call::Rule::disjunction});
    m_calls.push_back({.rule = Call::Rule::conjunction});
}

bool Parser::takeOperand(Kind kind)
{
    if (!m_result)
        return false;
    auto& left = m_calls.back().left;
    if (!left) {
        left = m_result;
        return true;
    }
    m_nodes.push_back({.kind = kind, .first = *left, .second = *m_result});
    left = m_nodes.size() - 1;
    return true;
}

bool Parser::endCall()
{
    m_result = m_calls.back().left;
    m_calls.pop_back();
    return true;
}

bool Parser::isAt(QLatin1StringView token) const
{
    // No letter of the operators has a third form that only the upper case brings together.
    return m_position < m_tokens.size() && m_tokens[m_position].compare(token, Qt::CaseInsensitive) == 0;
}

bool Parser::stepPast(QLatin1StringView token)
{
    if (!isAt(token))
        return false;
    ++m_position;
    return true;
}

} // namespace mirel
