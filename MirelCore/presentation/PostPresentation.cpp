#include "presentation/PostPresentation.h"

#include "presentation/RawPostPresentationParser.h"

namespace mirel {

QString label(PostPresentationKind kind)
{
    switch (kind) {
    case PostPresentationKind::article:
        return QStringLiteral("Article");
    case PostPresentationKind::thread:
        return QStringLiteral("Thread");
    case PostPresentationKind::repost:
        return QStringLiteral("Repost");
    case PostPresentationKind::quote:
        return QStringLiteral("Quote");
    case PostPresentationKind::externalLink:
        return QStringLiteral("External link");
    case PostPresentationKind::post:
        return QStringLiteral("Post");
    }
    Q_UNREACHABLE();
}

namespace {

// `kind` is an enumeration wherever it stands, and the text of one of its cases is not the name of it.
QJsonValue withCaseNames(const QJsonValue& value)
{
    if (value.isArray()) {
        QJsonArray array;
        for (const auto& element : value.toArray())
            array.append(withCaseNames(element));
        return array;
    }
    QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        const bool isAnimatedGIF =
            member.key() == u"kind" && member.value().toString() == rawValue(MediaKind::animatedGIF);
        member.value() =
            isAnimatedGIF ? QJsonValue(QStringLiteral("animatedGIF")) : withCaseNames(member.value());
    }
    return value.isObject() ? object : value;
}

} // namespace

PostPresentation::PostPresentation(const Bookmark& bookmark)
{
    const RawPostPresentationParser parser(bookmark);
    articleBlocks = parser.articleBlocks(parser.tweet(), bookmark.contentText.value_or(bookmark.text));
    externalLinks = parser.externalLinks(parser.tweet());
    embeddedPosts = parser.postPreviews();
    quotedContent = parser.quotedContent(embeddedPosts);
    primaryTitle = quotedContent && quotedContent->title ? quotedContent->title : bookmark.contentTitle;
    primaryMedia = quotedContent && !quotedContent->media.isEmpty() ? quotedContent->media : bookmark.media;
    kind = parser.kind(!externalLinks.isEmpty());
}

QString PostPresentation::displayLabel() const
{
    if (quotedContent)
        return QStringLiteral("Quoted ") + label(quotedContent->kind).toLower();
    return label(kind);
}

QJsonObject PostPresentation::toJSON() const
{
    QJsonObject json{
        {QStringLiteral("kind"), rawValue(kind)},
        {QStringLiteral("displayLabel"), displayLabel()},
        {QStringLiteral("articleBlocks"), mirel::toJSON(articleBlocks)},
        {QStringLiteral("externalLinks"), mirel::toJSON(externalLinks)},
        {QStringLiteral("embeddedPosts"), mirel::toJSON(embeddedPosts)},
        {QStringLiteral("primaryMedia"), mirel::toJSON(primaryMedia)},
    };
    if (quotedContent)
        json.insert(QStringLiteral("quotedContent"), mirel::toJSON(*quotedContent));
    if (primaryTitle)
        json.insert(QStringLiteral("primaryTitle"), *primaryTitle);
    return withCaseNames(json).toObject();
}

} // namespace mirel
