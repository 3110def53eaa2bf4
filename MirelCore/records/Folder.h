#pragma once

#include "support/JSONCoding.h"

#include <array>

namespace mirel {

// A folder. Folders nest, and a bookmark is in at most one. Its identity is `id`.
struct Folder
{
    enum class Source {
        local,
        // Mirrors a bookmark folder on X.
        x
    };

    qint64 id = 0;
    // Unique without regard to case.
    QString name;
    QString slug;
    std::optional<QString> description;
    std::optional<qint64> parentID;
    Source source = Source::local;
    // X's folder id.
    std::optional<QString> xFolderID;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("id", &Folder::id),
            jsonField("name", &Folder::name),
            jsonField("slug", &Folder::slug),
            jsonField("description", &Folder::description),
            jsonField("parentID", &Folder::parentID),
            jsonField("source", &Folder::source),
            jsonField("xFolderID", &Folder::xFolderID),
        };
    }

    friend bool operator==(const Folder&, const Folder&) = default;
};

[[nodiscard]] constexpr auto rawValues(Folder::Source)
{
    return std::array{
        RawValue{Folder::Source::local, QLatin1StringView("local")},
        RawValue{Folder::Source::x, QLatin1StringView("x")},
    };
}

// A folder with the number of bookmarks in it.
struct FolderSummary
{
    Folder folder;
    qint64 bookmarkCount = 0;
    qint64 unreadCount = 0;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("folder", &FolderSummary::folder),
            jsonField("bookmarkCount", &FolderSummary::bookmarkCount),
            jsonField("unreadCount", &FolderSummary::unreadCount),
        };
    }

    friend bool operator==(const FolderSummary&, const FolderSummary&) = default;
};

} // namespace mirel
