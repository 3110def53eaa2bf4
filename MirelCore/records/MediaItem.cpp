#include "records/MediaItem.h"

#include "records/WebHosts.h"

#include <QSet>
#include <QUrlQuery>

namespace mirel {

namespace {

QStringList pathComponents(const QUrl& url)
{
    return url.path().split(u'/', Qt::SkipEmptyParts);
}

std::optional<QString> firstQueryValue(const QUrl& url, const QString& name)
{
    const QUrlQuery query(url);
    if (!query.hasQueryItem(name))
        return std::nullopt;
    return query.queryItemValue(name, QUrl::FullyDecoded);
}

std::optional<QString> videoIDOfShortLink(const QUrl& url)
{
    // The component after the root counts, also when it is empty.
    const QString id = url.path().section(u'/', 1, 1);
    if (id.isEmpty())
        return std::nullopt;
    return id;
}

std::optional<QString> videoIDOfMainHost(const QUrl& url)
{
    const auto watched = firstQueryValue(url, QStringLiteral("v"));
    if (watched && !watched->isEmpty())
        return watched;
    const QStringList components = pathComponents(url);
    if (components.size() < 2)
        return std::nullopt;
    static const QStringList players{QStringLiteral("embed"), QStringLiteral("shorts"),
                                     QStringLiteral("live")};
    if (!players.contains(components[0]))
        return std::nullopt;
    return components[1];
}

} // namespace

std::optional<QString> MediaItem::youtubeVideoID() const
{
    if (kind != MediaKind::youtube)
        return std::nullopt;
    const QString host = url.host().toLower();
    if (host.isEmpty())
        return std::nullopt;
    if (isWithinDomain(host, webHosts::youtubeShort))
        return videoIDOfShortLink(url);
    if (isWithinDomain(host, webHosts::youtubeMain))
        return videoIDOfMainHost(url);
    return std::nullopt;
}

std::optional<QUrl> MediaItem::youtubeThumbnailURL() const
{
    const auto videoID = youtubeVideoID();
    if (!videoID)
        return std::nullopt;
    QUrl thumbnail;
    thumbnail.setScheme(QStringLiteral("https"));
    thumbnail.setHost(webHosts::youtubeImage);
    thumbnail.setPath(QStringLiteral("/vi/%1/hqdefault.jpg").arg(*videoID));
    return thumbnail;
}

std::optional<QUrl> MediaItem::youtubeEmbedURL() const
{
    const auto videoID = youtubeVideoID();
    if (!videoID)
        return std::nullopt;
    const QString origin = QStringLiteral(MIREL_WEB_ADDRESS);
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("playsinline"), QStringLiteral("1"));
    query.addQueryItem(QStringLiteral("rel"), QStringLiteral("0"));
    query.addQueryItem(QStringLiteral("origin"), origin);
    query.addQueryItem(QStringLiteral("widget_referrer"), origin);
    QUrl embed;
    embed.setScheme(QStringLiteral("https"));
    embed.setHost(webHosts::youtubeEmbed);
    embed.setPath(QStringLiteral("/embed/") + *videoID);
    embed.setQuery(query);
    return embed;
}

QList<MediaItem> uniquedByID(const QList<MediaItem>& items)
{
    QSet<QString> seen;
    QList<MediaItem> unique;
    for (const MediaItem& item : items) {
        if (seen.contains(item.id))
            continue;
        seen.insert(item.id);
        unique.append(item);
    }
    return unique;
}

} // namespace mirel
