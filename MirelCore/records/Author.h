#pragma once

#include "support/JSONCoding.h"

namespace mirel {

// An author as X reports it, before it has a row in the library.
struct SyncedAuthor
{
    // X's user id.
    QString xID;
    QString name;
    // The handle, without "@".
    QString username;
    std::optional<QUrl> profileImageURL;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("xID", &SyncedAuthor::xID),
            jsonField("name", &SyncedAuthor::name),
            jsonField("username", &SyncedAuthor::username),
            jsonField("profileImageURL", &SyncedAuthor::profileImageURL),
        };
    }

    friend bool operator==(const SyncedAuthor&, const SyncedAuthor&) = default;
};

// An author of the library. Its identity is `id`, the row in `authors`.
struct Author
{
    qint64 id = 0;
    QString xID;
    QString name;
    QString username;
    std::optional<QUrl> profileImageURL;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("id", &Author::id),
            jsonField("xID", &Author::xID),
            jsonField("name", &Author::name),
            jsonField("username", &Author::username),
            jsonField("profileImageURL", &Author::profileImageURL),
        };
    }

    friend bool operator==(const Author&, const Author&) = default;
};

} // namespace mirel
