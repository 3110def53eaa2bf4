#include "library/Tokenizer.h"

#include "support/Text.h"

namespace mirel {

namespace {

// Where the code point after the one at `index` starts. Half a surrogate pair is one.
qsizetype nextCodePoint(QStringView text, qsizetype index)
{
    const bool isPair =
        text[index].isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate();
    return index + (isPair ? 2 : 1);
}

} // namespace

// Asks of two neighbours at a time. Over a longer text Qt tailors its answer to the script around them, and
// then the same quote with the same neighbours would be one character here and a part of one there.
QList<QStringView> Tokenizer::characters(QStringView text)
{
    // Below this, nothing joins what stands before it, save a line feed; white space is white space.
    constexpr char16_t firstMark = 0x300;
    QList<QStringView> all;
    qsizetype start = 0;
    qsizetype previous = 0;
    for (qsizetype index = 0; index < text.size();) {
        const qsizetype next = nextCodePoint(text, index);
        const QStringView neighbours = text.sliced(previous, next - previous);
        const bool isPlain = neighbours.front() < firstMark && neighbours.back() < firstMark;
        if (index > start && (isPlain || characterCount(neighbours.toString()) > 1)) {
            all.append(text.sliced(start, index - start));
            start = index;
        }
        previous = index;
        index = next;
    }
    if (start < text.size())
        all.append(text.sliced(start));
    return all;
}

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
