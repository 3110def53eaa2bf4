#pragma once

#include "testing/TemporaryLibrary.h"

#include "x/XDirectAPI.h"

#include <functional>
#include <vector>

namespace mirel::testing {

// X as prepared answers, each of which may throw. Lives on one thread with the service that it serves.
class FakeX : public XDirectAPI
{
public:
    struct Call
    {
        std::optional<QString> token;
        qint64 maxResults = 0;
    };

    // Answers the n-th call (from 0) for bookmarks. Until it is set, nothing is bookmarked.
    std::function<XBookmarkPage(int call)> answer = [](int) { return XBookmarkPage{}; };
    // Unless told otherwise, there are no folders, every post is alone, and it has no counters.
    std::function<XPage<XBookmarkFolder>(std::optional<QString> token)> folders;
    std::function<XPage<QString>(QString folderID, std::optional<QString> token)> folderPosts;
    std::function<QList<ThreadPost>(QString conversationID)> thread;
    std::function<PostMetrics(QString tweetID)> counters;
    std::function<void(QString tweetID)> removal;
    // Awaited before each answer, with what was asked.
    std::function<QCoro::Task<>(QString asked)> meanwhile;

    // The calls for bookmarks.
    std::vector<Call> calls;
    // Every call, in order: "bookmarks", "folders after TOKEN", "folder ID", "conversation ID of AUTHOR",
    // "metrics ID", "delete ID".
    QStringList asked;
    // How many elements each call for folders or for what is in one wanted.
    QSet<qint64> folderPageSizes;

    QCoro::Task<XBookmarkPage> bookmarks(std::optional<QString> paginationToken, qint64 maxResults) override
    {
        calls.push_back({paginationToken, maxResults});
        const int call = static_cast<int>(calls.size()) - 1;
        co_await begin(QStringLiteral("bookmarks"), paginationToken);
        co_return answer(call);
    }
    QCoro::Task<XUser> currentUser() override { co_return XUser{}; }
    QCoro::Task<XPage<XBookmarkFolder>> bookmarkFolders(std::optional<QString> paginationToken,
                                                        qint64 maxResults) override
    {
        folderPageSizes.insert(maxResults);
        co_await begin(QStringLiteral("folders"), paginationToken);
        co_return folders ? folders(paginationToken) : XPage<XBookmarkFolder>{};
    }
    QCoro::Task<XPage<QString>> folderPostIDs(QString folderID, std::optional<QString> paginationToken,
                                              qint64 maxResults) override
    {
        folderPageSizes.insert(maxResults);
        co_await begin(QStringLiteral("folder ") + folderID, paginationToken);
        co_return folderPosts ? folderPosts(folderID, paginationToken) : XPage<QString>{};
    }
    QCoro::Task<PostMetrics> metrics(QString tweetID) override
    {
        co_await begin(QStringLiteral("metrics ") + tweetID);
        co_return counters ? counters(tweetID) : PostMetrics{};
    }
    QCoro::Task<QList<ThreadPost>> conversation(QString conversationID, QString authorID) override
    {
        co_await begin(QStringLiteral("conversation %1 of %2").arg(conversationID, authorID));
        co_return thread ? thread(conversationID) : QList<ThreadPost>{};
    }
    QCoro::Task<> deleteBookmark(QString tweetID) override
    {
        co_await begin(QStringLiteral("delete ") + tweetID);
        if (removal)
            removal(tweetID);
    }

private:
    QCoro::Task<> begin(QString question, std::optional<QString> token = {})
    {
        if (token)
            question += QStringLiteral(" after ") + *token;
        asked.append(question);
        if (meanwhile)
            co_await meanwhile(question);
    }
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

// A thread of posts by one author, a minute apart; the latest comes first.
inline QList<ThreadPost> makeThread(int length)
{
    QList<ThreadPost> posts;
    for (int number = length; number >= 1; --number) {
        posts.append({.tweetID = QStringLiteral("3000%1").arg(number),
                      .text = QStringLiteral("Thread post %1").arg(number),
                      .createdAt = Instant::fromSecondsSince1970(1'600'000'000 + 60 * number)});
    }
    return posts;
}

} // namespace mirel::testing
