#pragma once

#include "testing/TemporaryLibrary.h"

#include "x/XDirectAPI.h"

#include <functional>
#include <vector>

namespace mirel::testing {

// X as a list of prepared pages. Lives on one thread with the service that it serves.
class FakeX : public XDirectAPI
{
public:
    struct Call
    {
        std::optional<QString> token;
        qint64 maxResults = 0;
    };

    // Answers the n-th call (from 0); may throw. Until it is set, nothing is bookmarked.
    std::function<XBookmarkPage(int call)> answer = [](int) { return XBookmarkPage{}; };
    std::vector<Call> calls;

    QCoro::Task<XBookmarkPage> bookmarks(std::optional<QString> paginationToken, qint64 maxResults) override
    {
        calls.push_back({paginationToken, maxResults});
        co_return answer(static_cast<int>(calls.size()) - 1);
    }
    QCoro::Task<XUser> currentUser() override { co_return XUser{}; }
    QCoro::Task<XPage<XBookmarkFolder>> bookmarkFolders(std::optional<QString>, qint64) override
    {
        co_return {};
    }
    QCoro::Task<XPage<QString>> folderPostIDs(QString, std::optional<QString>, qint64) override
    {
        co_return {};
    }
    QCoro::Task<PostMetrics> metrics(QString) override { co_return {}; }
    QCoro::Task<QList<ThreadPost>> conversation(QString, QString) override { co_return {}; }
    QCoro::Task<> deleteBookmark(QString) override { co_return; }
};

// A page of the posts from `first` to `last`, both included.
inline XBookmarkPage makePage(int first, int last, std::optional<QString> nextToken = {})
{
    XBookmarkPage page{.nextToken = std::move(nextToken)};
    for (int number = first; number <= last; ++number)
        page.items.append(makePost(number));
    page.resultCount = page.items.size();
    return page;
}

} // namespace mirel::testing
