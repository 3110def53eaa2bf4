#pragma once

#include "x/PostMapping.h"

#include <QByteArrayList>

// Small pages in X's shape for tests.
namespace mirel::testPages {

// A post by the author "10" with `members` besides the required ones: `,"lang":"en"`.
inline QByteArray post(const QByteArray& id, const QByteArray& members = {}, const QByteArray& author = "10")
{
    return R"({"id":")" + id + R"(","text":"Text of )" + id + R"(","author_id":")" + author + '"' + members +
           '}';
}

inline QByteArray user(const QByteArray& id, const QByteArray& username)
{
    return R"({"id":")" + id + R"(","name":"Name of )" + username + R"(","username":")" + username + R"("})";
}

// The users "10", "ada", and "20", "bob".
inline QByteArray users()
{
    return R"("users":[)" + user("10", "ada") + ',' + user("20", "bob") + ']';
}

// A page of `posts` whose includes hold the two users and `includes`: `"media":[]`.
inline QByteArray page(const QByteArrayList& posts, const QByteArray& includes = {})
{
    return R"({"data":[)" + posts.join(',') + R"(],"includes":{)" + users() +
           (includes.isEmpty() ? includes : ',' + includes) + "}}";
}

// The first bookmark of such a page.
inline SyncedBookmark bookmark(const QByteArray& post, const QByteArray& includes = {})
{
    return postMapping::parseBookmarkPage(page({post}, includes)).items.first();
}

inline QStringList idsOf(const QList<MediaItem>& items)
{
    QStringList ids;
    for (const MediaItem& item : items)
        ids.append(item.id);
    return ids;
}

} // namespace mirel::testPages
