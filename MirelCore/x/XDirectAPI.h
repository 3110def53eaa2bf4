#pragma once

#include "records/ThreadPost.h"
#include "x/XBookmarksFetching.h"
#include "x/XUser.h"

namespace mirel {

// A bookmark folder on X.
struct XBookmarkFolder
{
    QString id;
    QString name;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("id", &XBookmarkFolder::id),
            jsonField("name", &XBookmarkFolder::name),
        };
    }

    friend bool operator==(const XBookmarkFolder&, const XBookmarkFolder&) = default;
};

template <typename Element>
struct XPage
{
    QList<Element> items;
    // The token of the next page; absent on the last one.
    std::optional<QString> nextToken;
    // What X reported, else the number of items.
    qint64 resultCount = 0;

    friend bool operator==(const XPage&, const XPage&) = default;
};

// Everything that Mirel asks of X. Every operation throws XAPIError or what the transport throws.
class XDirectAPI : public XBookmarksFetching
{
public:
    ~XDirectAPI() override;

    // The account that the credentials belong to.
    [[nodiscard]] virtual QCoro::Task<XUser> currentUser() = 0;

    [[nodiscard]] virtual QCoro::Task<XPage<XBookmarkFolder>>
    bookmarkFolders(std::optional<QString> paginationToken, qint64 maxResults) = 0;

    // The ids of the posts in a folder.
    [[nodiscard]] virtual QCoro::Task<XPage<QString>>
    folderPostIDs(QString folderID, std::optional<QString> paginationToken, qint64 maxResults) = 0;

    [[nodiscard]] virtual QCoro::Task<PostMetrics> metrics(QString tweetID) = 0;

    // The posts of a conversation by that author alone, earliest first; at most 100.
    [[nodiscard]] virtual QCoro::Task<QList<ThreadPost>> conversation(QString conversationID,
                                                                      QString authorID) = 0;

    // Removes a post from the user's bookmarks on X.
    virtual QCoro::Task<> deleteBookmark(QString tweetID) = 0;
};

} // namespace mirel
