#pragma once

#include <QStringList>

namespace mirel {

// Splits a search into tokens at white space and parentheses, which are tokens of their own; double quotes
// keep both together with what surrounds them. Nothing remembers which tokens were in quotes: a quoted
// operator is the operator, and a quoted parenthesis a parenthesis. Goes by characters as a reader sees them:
// a quote that carries a combining mark is no quote.
class Tokenizer
{
public:
    // Never fails: a quote that is not closed lasts to the end. No token is empty.
    [[nodiscard]] static QStringList tokens(const QString& query);

    // The characters of `text`, views into it. Sequences of emoji fall into their parts, which makes no
    // difference to a search.
    [[nodiscard]] static QList<QStringView> characters(QStringView text);

private:
    void take(QStringView character);
    void endToken();

    QStringList m_tokens;
    QString m_current;
    bool m_isInQuotes = false;
};

} // namespace mirel
