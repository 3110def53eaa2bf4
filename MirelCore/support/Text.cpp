#include "support/Text.h"

#include <QTextBoundaryFinder>

namespace mirel {

QString trimmed(QStringView text)
{
    return text.trimmed().toString();
}

std::optional<QString> nilIfBlank(QStringView text)
{
    const QStringView rest = text.trimmed();
    if (rest.isEmpty())
        return std::nullopt;
    return rest.toString();
}

std::optional<QString> nilIfBlank(const std::optional<QString>& text)
{
    if (!text)
        return std::nullopt;
    return nilIfBlank(QStringView(*text));
}

qsizetype characterCount(const QString& text)
{
    QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (boundaries.toNextBoundary() != -1)
        ++count;
    return count;
}

QString firstCharacters(const QString& text, qsizetype count)
{
    QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, text);
    qsizetype end = 0;
    for (qsizetype i = 0; i < count; ++i) {
        const qsizetype next = boundaries.toNextBoundary();
        if (next == -1)
            return text;
        end = next;
    }
    return text.first(end);
}

} // namespace mirel
