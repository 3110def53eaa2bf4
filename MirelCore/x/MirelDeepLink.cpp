#include "x/MirelDeepLink.h"

#include "records/WebHosts.h"
#include "support/Text.h"
#include "support/WebURL.h"
#include "x/XOAuthService.h"

#include <QUrlQuery>

namespace mirel {

namespace {

bool isMirels(const QUrl& url)
{
    return url.scheme().toLower() == MirelDeepLink::xOAuthCallbackScheme;
}

bool isHostOfX(const QString& host)
{
    const QString www = QStringLiteral("www.");
    const QStringView bare = host.startsWith(www) ? QStringView(host).sliced(www.size()) : QStringView(host);
    return bare == webHosts::x || bare == webHosts::formerX;
}

// The value of the first item that can name a post; one further on does not count.
std::optional<QString> namedInQuery(const QUrl& url)
{
    const QStringList names{QStringLiteral("url"), QStringLiteral("tweet"), QStringLiteral("tweet_id"),
                            QStringLiteral("id")};
    const auto items = QUrlQuery(url).queryItems(QUrl::FullyDecoded);
    for (const auto& [name, value] : items) {
        if (names.contains(name.toLower()))
            return nilIfBlank(QStringView(value));
    }
    return std::nullopt;
}

} // namespace

const QString MirelDeepLink::xOAuthCallbackScheme = QStringLiteral("mirel");

bool MirelDeepLink::isXOAuthCallback(const QUrl& url)
{
    return isMirels(url) && url.host().toLower() == QLatin1StringView("oauth") &&
           url.path(QUrl::FullyDecoded).toLower() == QLatin1StringView("/x");
}

std::optional<QUrl> MirelDeepLink::xOAuthCallbackIn(const QString& text)
{
    auto url = parseURL(trimmed(text));
    if (!url)
        return std::nullopt;
    if (url->adjusted(QUrl::RemoveQuery) == QUrl(XOAuthService::httpsHandoffRedirectURI)) {
        const QString query = url->query(QUrl::FullyEncoded);
        *url = QUrl(XOAuthService::nativeRedirectURI);
        url->setQuery(query, QUrl::StrictMode);
    }
    return isXOAuthCallback(*url) ? url : std::nullopt;
}

std::optional<QString> MirelDeepLink::postReference(const QUrl& url)
{
    const QString host = url.host().toLower();
    if (isHostOfX(host))
        return absoluteString(url);
    if (!isMirels(url) || (host != QLatin1StringView("open") && host != QLatin1StringView("post")))
        return std::nullopt;
    if (const auto reference = namedInQuery(url))
        return reference;
    const QStringList components = url.path(QUrl::FullyDecoded).split(u'/', Qt::SkipEmptyParts);
    const QString path = components.join(u'/');
    return nilIfBlank(QStringView(path));
}

} // namespace mirel
