#include "simulator/posts/PostText.h"

namespace mirel::simulator {

namespace {

int codePoints(QStringView text)
{
    int count = 0;
    for (const QChar unit : text)
        count += unit.isLowSurrogate() ? 0 : 1;
    return count;
}

} // namespace

PostText& PostText::append(QStringView plain)
{
    QString escaped = plain.toString();
    escaped.replace(u'&', QStringLiteral("&amp;"));
    escaped.replace(u'<', QStringLiteral("&lt;"));
    escaped.replace(u'>', QStringLiteral("&gt;"));
    m_text += escaped;
    m_length += codePoints(escaped);
    return *this;
}

PostText& PostText::appendHashtag(const QString& tag)
{
    m_hashtags.append(appendRange(u'#' + tag).text("tag", tag).json());
    return *this;
}

PostText& PostText::appendMention(const QString& username, qint64 id)
{
    m_mentions.append(
        appendRange(u'@' + username).text("username", username).text("id", QString::number(id)).json());
    return *this;
}

PostText& PostText::appendLinks(const QList<PostLink>& links)
{
    const JSONObjectText range = appendRange(links.first().shortURL);
    for (const PostLink& link : links) {
        JSONObjectText entity = range;
        entity.text("url", link.shortURL)
            .text("expanded_url", link.expandedURL)
            .text("display_url", link.displayURL);
        for (const auto& [key, json] : link.details)
            entity.raw(key, json);
        m_urls.append(entity.json());
    }
    return *this;
}

bool PostText::hasEntities() const
{
    return !m_hashtags.isEmpty() || !m_mentions.isEmpty() || !m_urls.isEmpty();
}

QByteArray PostText::entities() const
{
    JSONObjectText object;
    if (!m_hashtags.isEmpty())
        object.raw("hashtags", jsonArray(m_hashtags));
    if (!m_mentions.isEmpty())
        object.raw("mentions", jsonArray(m_mentions));
    if (!m_urls.isEmpty())
        object.raw("urls", jsonArray(m_urls));
    return object.json();
}

JSONObjectText PostText::appendRange(QStringView escaped)
{
    JSONObjectText range;
    range.number("start", m_length);
    m_text += escaped;
    m_length += codePoints(escaped);
    range.number("end", m_length);
    return range;
}

} // namespace mirel::simulator
