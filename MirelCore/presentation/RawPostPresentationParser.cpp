#include "presentation/RawPostPresentationParser.h"

#include "presentation/RawJSONLookup.h"
#include "records/WebHosts.h"
#include "support/Text.h"

namespace mirel {

using namespace rawJSONLookup;

namespace {

RawJSON parse(const QByteArray& rawJSON)
{
    try {
        return RawJSON::parse(rawJSON);
    } catch (const RawJSONError&) {
        // A damaged text makes the presentation thinner and no more than that.
        return RawJSON::parse("{}");
    }
}

bool isExternal(const QUrl& url)
{
    const QString host = lowerCased(url.host());
    return !host.isEmpty() && host != webHosts::xLinkShortener && !isWithinDomain(host, webHosts::x) &&
           !isWithinDomain(host, webHosts::formerX);
}

// Where a link of a post leads, when that is out of X.
std::optional<QUrl> externalURL(const RawJSONValue& link)
{
    const auto url = parseURL(firstString(link, {"unwound_url", "expanded_url", "url"}));
    return url && isExternal(*url) ? url : std::nullopt;
}

std::optional<QUrl> imageURL(const RawJSONValue& link)
{
    for (const RawJSONValue image : elementsAt(link, {"images"})) {
        if (image.isObject())
            return parseURL(stringAt(image, {"url"}));
    }
    return std::nullopt;
}

} // namespace

RawPostPresentationParser::RawPostPresentationParser(const Bookmark& bookmark)
    : m_bookmark(bookmark)
    , m_envelope(parse(bookmark.rawJSON))
    // Older and imported rows hold the bare post.
    , m_tweet(objectAt(m_envelope.root(), {"tweet"}).value_or(m_envelope.root()))
    , m_includes(objectAt(m_envelope.root(), {"includes"}).value_or(emptyObject()))
{
}

RawPostPresentationParser::RawPostPresentationParser(const Bookmark& bookmark, RawJSON tweet)
    : m_bookmark(bookmark)
    , m_envelope(std::move(tweet))
    , m_tweet(m_envelope.root())
    , m_includes(emptyObject())
{
}

bool RawPostPresentationParser::hasArticle() const
{
    return objectAt(m_tweet, {"article"}).has_value();
}

QList<RawJSONValue> RawPostPresentationParser::referencedPosts() const
{
    return firstObjects(m_tweet, {"referenced_tweets"}).value_or(QList<RawJSONValue>());
}

bool RawPostPresentationParser::isRepost() const
{
    const QList<RawJSONValue> posts = referencedPosts();
    return std::any_of(posts.begin(), posts.end(), [](const RawJSONValue& post) {
        return stringAt(post, {"type"}) == QStringLiteral("retweeted");
    });
}

PostPresentationKind RawPostPresentationParser::kind(bool hasExternalLinks) const
{
    if (m_bookmark.contentTitle || hasArticle())
        return PostPresentationKind::article;
    if (m_bookmark.thread.size() >= 2)
        return PostPresentationKind::thread;
    if (isRepost())
        return PostPresentationKind::repost;
    if (m_bookmark.quotedPost)
        return PostPresentationKind::quote;
    return hasExternalLinks ? PostPresentationKind::externalLink : PostPresentationKind::post;
}

QList<ExternalLinkPreview> RawPostPresentationParser::externalLinks(const RawJSONValue& post) const
{
    QList<ExternalLinkPreview> links;
    for (const RawJSONValue link : elementsAt(post, {"entities", "urls"})) {
        const auto url = externalURL(link);
        if (!url)
            continue;
        links.append({
            .url = *url,
            .displayURL = stringAt(link, {"display_url"}),
            .title = stringAt(link, {"title"}),
            .summary = stringAt(link, {"description"}),
            .imageURL = imageURL(link),
        });
    }
    return links;
}

bool RawPostPresentationParser::hasExternalLinks(const RawJSONValue& post) const
{
    for (const RawJSONValue link : elementsAt(post, {"entities", "urls"})) {
        if (externalURL(link))
            return true;
    }
    return false;
}

} // namespace mirel
