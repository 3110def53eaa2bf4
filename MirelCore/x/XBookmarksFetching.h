#pragma once

#include "records/SyncedBookmark.h"

#include <QCoro/QCoroTask>

namespace mirel {

// A page of bookmarks, newest first.
struct XBookmarkPage
{
    QList<SyncedBookmark> items;
    // The token of the next page; absent on the last one.
    std::optional<QString> nextToken;
    // What X reported, else the number of items.
    qint64 resultCount = 0;

    friend bool operator==(const XBookmarkPage&, const XBookmarkPage&) = default;
};

// What the walk over the user's bookmarks needs of X.
class XBookmarksFetching
{
public:
    virtual ~XBookmarksFetching();

    // One page of at most `maxResults` bookmarks; the first one without a token. Throws XAPIError or what
    // the transport throws.
    [[nodiscard]] virtual QCoro::Task<XBookmarkPage> bookmarks(std::optional<QString> paginationToken,
                                                               qint64 maxResults) = 0;
};

} // namespace mirel
