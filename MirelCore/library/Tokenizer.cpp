#include "library/Tokenizer.h"

#include "support/Text.h"

namespace mirel {

QStringList Tokenizer::tokens(const QString& query)
{
    Tokenizer tokenizer;
    for (const QStringView character : characters(query))
        tokenizer.take(character);
    tokenizer.endToken();
    return tokenizer.m_tokens;
}

void Tokenizer::take(QStringView character)
{
    const bool isParenthesis = character == u"(" || character == u")";
    if (character == u"\"") {
        m_isInQuotes = !m_isInQuotes;
    } else if (m_isInQuotes) {
        m_current += character;
    } else if (isParenthesis) {
        endToken();
        m_tokens.append(character.toString());
    } else if (character.front().isSpace()) {
        endToken();
    } else {
        m_current += character;
    }
}

void Tokenizer::endToken()
{
    if (m_current.isEmpty())
        return;
    m_tokens.append(m_current);
    m_current.clear();
}

} // namespace mirel
