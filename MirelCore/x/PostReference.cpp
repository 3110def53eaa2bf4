#include "x/PostReference.h"

#include "support/Text.h"
#include "support/WebURL.h"

#include <QStringList>

namespace mirel {

namespace {

bool isNumeric(const QString& text)
{
    const QList<uint> characters = text.toUcs4();
    return !characters.isEmpty() && std::all_of(characters.begin(), characters.end(),
                                                [](uint character) { return QChar::isNumber(character); });
}

} // namespace

std::optional<QString> tweetID(const QString& text)
{
    const QString reference = trimmed(text);
    if (isNumeric(reference))
        return reference;
    const auto url = parseURL(reference);
    if (!url)
        return std::nullopt;
    const QStringList components = url->path().split(u'/', Qt::SkipEmptyParts);
    const qsizetype status = components.indexOf(QStringLiteral("status"));
    if (status == -1 || status + 1 == components.size() || !isNumeric(components[status + 1]))
        return std::nullopt;
    return components[status + 1];
}

} // namespace mirel
