#include "presentation/PresentationCase.h"

namespace mirel {

namespace {

const QByteArray plainBookmark = R"({"id":1,"tweetID":"1","author":{"id":1,"xID":"10","name":"Ada",
    "username":"ada"},"text":"Text","sourceURL":"https://x.com/ada/status/1","createdAt":0,"syncedAt":0,
    "metrics":{"views":0,"reposts":0,"bookmarks":0,"replies":0,"quotes":0,"likes":0},"media":[],"thread":[],
    "rawJSON":"","isRead":false,"isFavorite":false,"isArchived":false,"tags":[]})";
const QByteArray plainQuotedPost = R"({"tweetID":"9","text":"Quoted text","media":[]})";
const QByteArray plainThreadPost = R"({"tweetID":"1","text":"Text","createdAt":0,"metrics":{"views":0,
    "reposts":0,"bookmarks":0,"replies":0,"quotes":0,"likes":0},"media":[]})";

QJsonObject completed(const QByteArray& plain, const QJsonObject& given)
{
    QJsonObject whole = parseJSON(plain).toObject();
    for (auto field = given.constBegin(); field != given.constEnd(); ++field)
        whole.insert(field.key(), field.value());
    return whole;
}

} // namespace

Bookmark bookmarkOf(const QByteArray& columns, const QByteArray& rawJSON)
{
    QJsonObject json = completed(plainBookmark, parseJSON(columns).toObject());
    const QString quotedPost = QStringLiteral("quotedPost");
    if (json.contains(quotedPost))
        json.insert(quotedPost, completed(plainQuotedPost, json.value(quotedPost).toObject()));
    QJsonArray thread;
    for (const auto& post : json.value(QStringLiteral("thread")).toArray())
        thread.append(completed(plainThreadPost, post.toObject()));
    json.insert(QStringLiteral("thread"), thread);
    auto bookmark = fromJSON<Bookmark>(json);
    bookmark.rawJSON = rawJSON;
    return bookmark;
}

PresentationFacts factsOf(const PostPresentation& presentation)
{
    PresentationFacts facts;
    facts.kind = presentation.kind;
    facts.hasExternalLinks = !presentation.externalLinks.isEmpty();
    if (const auto& content = presentation.quotedContent) {
        facts.quoted.emplace();
        facts.quoted->kind = content->kind;
        facts.quoted->title = content->title;
        for (const ExternalLinkPreview& link : content->externalLinks)
            facts.quoted->externalLinks.append(link.url);
        facts.quoted->hasMedia = !content->media.isEmpty();
    }
    return facts;
}

} // namespace mirel
