#pragma once

#include "simulator/posts/PostFactory.h"

#include <QSet>

namespace mirel::simulator {

// Collects posts into the body of an answer: data, includes, errors and meta, each user, post and media
// item included once.
class PageWriter
{
public:
    // `factory` must outlive it.
    explicit PageWriter(const PostFactory& factory)
        : m_factory(factory)
    {
    }

    void add(PostKey key);
    // A post that was asked for and may not be seen.
    void addHidden(qint64 id, const QString& parameter);
    // Leaves the author of the first post out of the includes.
    void dropFirstAuthor() { m_dropsFirstAuthor = true; }

    void setNextToken(const QString& token) { m_nextToken = token; }
    void setPreviousToken(const QString& token) { m_previousToken = token; }

    // Without posts there is no `data`, unless `keepsEmptyData`.
    [[nodiscard]] QByteArray page(bool keepsEmptyData = false) const;
    // Without meta, as posts that were asked for by their identifiers are answered.
    [[nodiscard]] QByteArray pageWithoutMeta() const;
    // The one post as an object instead of a list, without meta.
    [[nodiscard]] QByteArray singlePost() const;
    // The same, reduced to its public metrics and what always comes along.
    [[nodiscard]] QByteArray singlePostWithMetrics() const;

private:
    void include(const RenderedPost& post, bool withArticleMedia);
    [[nodiscard]] JSONObjectText body(const QByteArray& data) const;
    void includeAuthor(int author);
    [[nodiscard]] QByteArray includes() const;
    [[nodiscard]] QByteArray meta() const;

    const PostFactory& m_factory;
    QList<QByteArray> m_data;
    QList<QByteArray> m_posts;
    QList<QByteArray> m_media;
    QList<QByteArray> m_errors;
    QList<int> m_authors;
    QList<int> m_places;
    QSet<QByteArray> m_mediaKeys;
    QSet<int> m_knownAuthors;
    QList<PostKey> m_wanted;
    bool m_dropsFirstAuthor = false;
    QString m_nextToken;
    QString m_previousToken;
};

} // namespace mirel::simulator
