#include "model/MirelAppModel.h"

#include "model/RunningCommand.h"
#include "x/MirelDeepLink.h"
#include "x/PostReference.h"

namespace mirel {

QCoro::Task<> MirelAppModel::handleOpenURL(QUrl url)
{
    const RunningCommand running(*this);
    if (MirelDeepLink::isXOAuthCallback(url) && m_services.oauth) {
        co_await completeXAuthorization(url);
        co_return;
    }
    Q_EMIT linkFollowed();
    const auto reference = MirelDeepLink::postReference(url);
    if (!reference) {
        setLastError(QStringLiteral("That Mirel link does not contain an X post URL or tweet ID."));
        co_return;
    }
    co_await openTweetURL(*reference);
}

QCoro::Task<> MirelAppModel::openTweetURL(QString text)
{
    const RunningCommand running(*this);
    const auto id = tweetID(text);
    if (!id) {
        setLastError(QStringLiteral("Enter a valid X post URL or tweet ID."));
        co_return;
    }
    if (!m_services.store)
        co_return;
    try {
        const auto find = [id = *id](LocalLibraryStore& library) { return library.bookmark(id); };
        const auto bookmark = co_await m_services.store->call(find);
        if (bookmark)
            co_await openBookmark(bookmark->id);
        else
            setLastError(QStringLiteral("That X post is not in the local library."));
    } catch (...) {
        fail(std::current_exception());
    }
}

} // namespace mirel
