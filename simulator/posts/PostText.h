#pragma once

#include "simulator/posts/JSONText.h"

#include <QString>

namespace mirel::simulator {

// A link in a text: what stands there, what it means, and what X knows beyond that.
struct PostLink
{
    QString shortURL;
    QString expandedURL;
    QString displayURL;
    // Further members of the entity, in their order.
    QList<std::pair<QByteArray, QByteArray>> details;
};

// The text of a post with its entities. Offsets count code points of the escaped text, as X counts them.
class PostText
{
public:
    // Escapes &, < and >.
    PostText& append(QStringView plain);
    PostText& appendHashtag(const QString& tag);
    PostText& appendMention(const QString& username, qint64 id);
    PostText& appendLink(const PostLink& link) { return appendLinks({link}); }
    // Several meanings of one place: the first link's short form stands in the text once.
    PostText& appendLinks(const QList<PostLink>& links);

    // Escaped, as sent.
    [[nodiscard]] const QString& text() const { return m_text; }
    // In code points.
    [[nodiscard]] int length() const { return m_length; }
    [[nodiscard]] bool hasEntities() const;
    [[nodiscard]] QByteArray entities() const;

private:
    // Appends text that needs no escaping and returns its range as members of an object.
    [[nodiscard]] JSONObjectText appendRange(QStringView escaped);

    QString m_text;
    int m_length = 0;
    QList<QByteArray> m_hashtags;
    QList<QByteArray> m_mentions;
    QList<QByteArray> m_urls;
};

} // namespace mirel::simulator
