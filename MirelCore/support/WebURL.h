#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace mirel {

// `text` as a URL, or absent when it is empty or breaks the grammar of URLs.
[[nodiscard]] std::optional<QUrl> parseURL(const QString& text);
[[nodiscard]] std::optional<QUrl> parseURL(const std::optional<QString>& text);

// The absolute string of a URL: percent-encoded, nothing left out.
[[nodiscard]] QString absoluteString(const QUrl& url);

// `host` is `domain` or one of its subdomains. Both lower-cased.
[[nodiscard]] bool isWithinDomain(QStringView host, QStringView domain);

} // namespace mirel
