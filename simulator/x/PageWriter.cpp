#include "simulator/x/PageWriter.h"

#include <QJsonDocument>

namespace mirel::simulator {

void PageWriter::add(PostKey key)
{
    const RenderedPost post = m_factory.render(key);
    m_data.append(post.json);
    include(post, true);
    if (!post.reference)
        return;
    if (post.referenceIsHidden) {
        addHidden(m_factory.id(*post.reference), QStringLiteral("referenced_tweets.id"));
    } else if (!m_wanted.contains(*post.reference)) {
        m_wanted.append(*post.reference);
        const RenderedPost referenced = m_factory.render(*post.reference);
        m_posts.append(referenced.json);
        include(referenced, false);
    }
}

void PageWriter::addHidden(qint64 id, const QString& parameter)
{
    const QString number = QString::number(id);
    m_errors.append(
        JSONObjectText()
            .text("value", number)
            .text("detail", QStringLiteral("Sorry, you are not authorized to see the Tweet with %1: [%2].")
                                .arg(parameter, number))
            .text("title", u"Authorization Error")
            .text("resource_type", u"tweet")
            .text("parameter", parameter)
            .text("resource_id", number)
            .text("section", parameter.contains(u'.') ? u"includes" : u"data")
            .text("type", u"https://api.twitter.com/2/problems/not-authorized-for-resource")
            .json());
}

QByteArray PageWriter::page(bool keepsEmptyData) const
{
    const bool hasData = !m_data.isEmpty() || keepsEmptyData;
    return body(hasData ? jsonArray(m_data) : QByteArray()).raw("meta", meta()).json();
}

QByteArray PageWriter::pageWithoutMeta() const
{
    return body(m_data.isEmpty() ? QByteArray() : jsonArray(m_data)).json();
}

QByteArray PageWriter::singlePost() const
{
    return body(m_data.value(0)).json();
}

QByteArray PageWriter::singlePostWithMetrics() const
{
    if (m_data.isEmpty())
        return body({}).json();
    QJsonObject post = QJsonDocument::fromJson(m_data.first()).object();
    for (const QString& key : post.keys()) {
        if (key != u"id" && key != u"text" && key != u"edit_history_tweet_ids" && key != u"public_metrics")
            post.remove(key);
    }
    return JSONObjectText().raw("data", QJsonDocument(post).toJson(QJsonDocument::Compact)).json();
}

JSONObjectText PageWriter::body(const QByteArray& data) const
{
    JSONObjectText object;
    if (!data.isEmpty())
        object.raw("data", data);
    if (!m_data.isEmpty())
        object.raw("includes", includes());
    if (!m_errors.isEmpty())
        object.raw("errors", jsonArray(m_errors));
    return object;
}

void PageWriter::include(const RenderedPost& post, bool withArticleMedia)
{
    includeAuthor(post.author);
    const auto media = withArticleMedia ? post.media + post.articleMedia : post.media;
    for (const auto& [key, json] : media) {
        if (m_mediaKeys.contains(key))
            continue;
        m_mediaKeys.insert(key);
        m_media.append(json);
    }
    if (post.place && !m_places.contains(*post.place))
        m_places.append(*post.place);
}

void PageWriter::includeAuthor(int author)
{
    if (m_knownAuthors.contains(author))
        return;
    m_knownAuthors.insert(author);
    m_authors.append(author);
}

QByteArray PageWriter::includes() const
{
    QList<QByteArray> users;
    for (qsizetype i = m_dropsFirstAuthor ? 1 : 0; i < m_authors.size(); ++i)
        users.append(m_factory.people().user(m_authors[i]));
    JSONObjectText object;
    object.raw("users", jsonArray(users));
    if (!m_posts.isEmpty())
        object.raw("tweets", jsonArray(m_posts));
    if (!m_media.isEmpty())
        object.raw("media", jsonArray(m_media));
    if (!m_places.isEmpty()) {
        QList<QByteArray> places;
        for (const int place : m_places)
            places.append(QJsonDocument(Content::shared().places.at(place)).toJson(QJsonDocument::Compact));
        object.raw("places", jsonArray(places));
    }
    return object.json();
}

QByteArray PageWriter::meta() const
{
    JSONObjectText object;
    object.number("result_count", m_data.size());
    if (!m_nextToken.isEmpty())
        object.text("next_token", m_nextToken);
    if (!m_previousToken.isEmpty())
        object.text("previous_token", m_previousToken);
    return object.json();
}

} // namespace mirel::simulator
