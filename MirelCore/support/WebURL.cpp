#include "support/WebURL.h"

namespace mirel {

std::optional<QUrl> parseURL(const QString& text)
{
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid())
        return std::nullopt;
    return url;
}

std::optional<QUrl> parseURL(const std::optional<QString>& text)
{
    if (!text)
        return std::nullopt;
    return parseURL(*text);
}

QString absoluteString(const QUrl& url)
{
    return url.toString(QUrl::FullyEncoded);
}

bool isWithinDomain(QStringView host, QStringView domain)
{
    if (!host.endsWith(domain))
        return false;
    const qsizetype rest = host.size() - domain.size();
    return rest == 0 || host[rest - 1] == u'.';
}

} // namespace mirel
