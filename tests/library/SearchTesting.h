#pragma once

#include "library/LibrarySearchExpression.h"
#include "presentation/PresentationFacts.h"

namespace mirel::testing {

// The tree as "or(a, and(b, c))"; "all" for the case of that name.
inline QString describe(const LibrarySearchExpression& expression)
{
    using Kind = LibrarySearchExpression::Node::Kind;
    QStringList nodes;
    for (const auto& node : expression.nodes()) {
        const auto operand = [&nodes](std::size_t place) { return nodes[static_cast<qsizetype>(place)]; };
        switch (node.kind) {
        case Kind::condition:
            nodes.append(expression.conditions()[node.first].text());
            break;
        case Kind::negation:
            nodes.append(QStringLiteral("not(%1)").arg(operand(node.first)));
            break;
        case Kind::conjunction:
            nodes.append(QStringLiteral("and(") + operand(node.first) + QStringLiteral(", ") +
                         operand(node.second) + u')');
            break;
        case Kind::disjunction:
            nodes.append(QStringLiteral("or(") + operand(node.first) + QStringLiteral(", ") +
                         operand(node.second) + u')');
            break;
        }
    }
    return nodes.isEmpty() ? QStringLiteral("all") : nodes.last();
}

inline QString describe(const QString& query)
{
    return describe(LibrarySearchExpression::parse(query));
}

// A bookmark in which each searched part says a word of its own.
inline Bookmark makeBookmark()
{
    Bookmark bookmark;
    bookmark.id = 7;
    bookmark.tweetID = QStringLiteral("10007");
    bookmark.author = {.id = 3,
                       .xID = QStringLiteral("42"),
                       .name = QStringLiteral("Ada Lovelace"),
                       .username = QStringLiteral("ada")};
    bookmark.text = QStringLiteral("Notes on the Engine");
    bookmark.sourceURL = QUrl(QStringLiteral("https://posts.example/ada/status/10007"));
    bookmark.createdAt = Instant::fromSecondsSince1970(1'000);
    bookmark.rawJSON = QByteArrayLiteral("{}");
    return bookmark;
}

inline Tag makeLabel(qint64 id, const QString& name, const QString& slug)
{
    return {.id = id, .name = name, .slug = slug, .colorHex = QStringLiteral("#112233")};
}

inline MediaItem makeMedia(MediaKind kind)
{
    return {.id = QStringLiteral("3_1"),
            .kind = kind,
            .url = QUrl(QStringLiteral("https://pictures.example/1.png"))};
}

} // namespace mirel::testing
