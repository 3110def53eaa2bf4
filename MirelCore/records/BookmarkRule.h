#pragma once

#include "support/JSONCoding.h"

#include <array>

namespace mirel {

// A saved search that files what it matches. Its identity is `id`.
struct BookmarkRule
{
    enum class Action { tag, folder };

    qint64 id = 0;
    // Unique without regard to case.
    QString name;
    // A search expression.
    QString query;
    Action action = Action::tag;
    // The id of a Tag or a Folder, according to `action`.
    qint64 targetID = 0;
    bool isEnabled = false;
    std::optional<Instant> lastRunAt;
    qint64 lastMatchCount = 0;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("id", &BookmarkRule::id),
            jsonField("name", &BookmarkRule::name),
            jsonField("query", &BookmarkRule::query),
            jsonField("action", &BookmarkRule::action),
            jsonField("targetID", &BookmarkRule::targetID),
            jsonField("isEnabled", &BookmarkRule::isEnabled),
            jsonField("lastRunAt", &BookmarkRule::lastRunAt),
            jsonField("lastMatchCount", &BookmarkRule::lastMatchCount),
        };
    }

    friend bool operator==(const BookmarkRule&, const BookmarkRule&) = default;
};

[[nodiscard]] constexpr auto rawValues(BookmarkRule::Action)
{
    return std::array{
        RawValue{BookmarkRule::Action::tag, QLatin1StringView("tag")},
        RawValue{BookmarkRule::Action::folder, QLatin1StringView("folder")},
    };
}

} // namespace mirel
