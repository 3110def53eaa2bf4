#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace mirel {

// What the addresses mean that the system hands to Mirel.
struct MirelDeepLink
{
    MirelDeepLink() = delete;

    // The scheme of all addresses that are Mirel's own.
    static const QString xOAuthCallbackScheme;

    // Whether X's authorization returned with it, in any letter case.
    [[nodiscard]] static bool isXOAuthCallback(const QUrl& url);

    // The callback of X's authorization in what a user pasted, be it from the page of Mirel's web site that
    // hands it on. Absent when there is none.
    [[nodiscard]] static std::optional<QUrl> xOAuthCallbackIn(const QString& text);

    // What names a post in it: the whole address of a page on X; of "mirel://open" and "mirel://post", the
    // value of the first query item that is called "url", "tweet", "tweet_id" or "id", or else the path
    // without its first and last "/". Absent when there is none.
    [[nodiscard]] static std::optional<QString> postReference(const QUrl& url);
};

} // namespace mirel
