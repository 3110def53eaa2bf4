#pragma once

#include "support/JSONCoding.h"

#include <array>

namespace mirel {

// One attempt at a sync. Its identity is `id`.
struct SyncRun
{
    enum class Kind { initial, manual, automatic };
    // `completed`, `rateLimited` and `failed` are final.
    enum class Status { queued, running, completed, rateLimited, failed };

    qint64 id = 0;
    Kind kind = Kind::manual;
    Status status = Status::queued;
    qint64 pages = 0;
    qint64 fetched = 0;
    qint64 created = 0;
    qint64 updated = 0;
    std::optional<QString> errorMessage;
    std::optional<Instant> rateLimitResetAt;
    // Set once, at the first `running`.
    std::optional<Instant> startedAt;
    // Set on a final status.
    std::optional<Instant> completedAt;
    Instant createdAt;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("id", &SyncRun::id),
            jsonField("kind", &SyncRun::kind),
            jsonField("status", &SyncRun::status),
            jsonField("pages", &SyncRun::pages),
            jsonField("fetched", &SyncRun::fetched),
            jsonField("created", &SyncRun::created),
            jsonField("updated", &SyncRun::updated),
            jsonField("errorMessage", &SyncRun::errorMessage),
            jsonField("rateLimitResetAt", &SyncRun::rateLimitResetAt),
            jsonField("startedAt", &SyncRun::startedAt),
            jsonField("completedAt", &SyncRun::completedAt),
            jsonField("createdAt", &SyncRun::createdAt),
        };
    }

    friend bool operator==(const SyncRun&, const SyncRun&) = default;
};

[[nodiscard]] constexpr auto rawValues(SyncRun::Kind)
{
    return std::array{
        RawValue{SyncRun::Kind::initial, QLatin1StringView("initial")},
        RawValue{SyncRun::Kind::manual, QLatin1StringView("manual")},
        RawValue{SyncRun::Kind::automatic, QLatin1StringView("automatic")},
    };
}

[[nodiscard]] constexpr auto rawValues(SyncRun::Status)
{
    return std::array{
        RawValue{SyncRun::Status::queued, QLatin1StringView("queued")},
        RawValue{SyncRun::Status::running, QLatin1StringView("running")},
        RawValue{SyncRun::Status::completed, QLatin1StringView("completed")},
        RawValue{SyncRun::Status::rateLimited, QLatin1StringView("rate_limited")},
        RawValue{SyncRun::Status::failed, QLatin1StringView("failed")},
    };
}

// One line in the story of a run. Its identity is `id`.
struct SyncLogEntry
{
    enum class Event { started, page, completed, failed };

    qint64 id = 0;
    qint64 runID = 0;
    Event event = Event::started;
    QString message;
    std::optional<qint64> page;
    std::optional<qint64> requested;
    std::optional<qint64> received;
    std::optional<qint64> reported;
    std::optional<qint64> cumulative;
    std::optional<bool> hasNextPage;
    Instant createdAt;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("id", &SyncLogEntry::id),
            jsonField("runID", &SyncLogEntry::runID),
            jsonField("event", &SyncLogEntry::event),
            jsonField("message", &SyncLogEntry::message),
            jsonField("page", &SyncLogEntry::page),
            jsonField("requested", &SyncLogEntry::requested),
            jsonField("received", &SyncLogEntry::received),
            jsonField("reported", &SyncLogEntry::reported),
            jsonField("cumulative", &SyncLogEntry::cumulative),
            jsonField("hasNextPage", &SyncLogEntry::hasNextPage),
            jsonField("createdAt", &SyncLogEntry::createdAt),
        };
    }

    friend bool operator==(const SyncLogEntry&, const SyncLogEntry&) = default;
};

[[nodiscard]] constexpr auto rawValues(SyncLogEntry::Event)
{
    return std::array{
        RawValue{SyncLogEntry::Event::started, QLatin1StringView("started")},
        RawValue{SyncLogEntry::Event::page, QLatin1StringView("page")},
        RawValue{SyncLogEntry::Event::completed, QLatin1StringView("completed")},
        RawValue{SyncLogEntry::Event::failed, QLatin1StringView("failed")},
    };
}

} // namespace mirel
