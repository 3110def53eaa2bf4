#pragma once

#include "support/Error.h"

#include <QCoro/QCoroFuture>
#include <QCoro/QCoroTask>
#include <QPromise>

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace mirel {

// The end of a sync that the user no longer wants.
class SyncCanceled : public Error
{
public:
    [[nodiscard]] QString description() const override { return QStringLiteral("Sync canceled."); }
};

// The wish to end one sync, shared by all copies: whoever started the sync keeps one and the sync has
// another. The first wish holds. May be used on any thread but where it says otherwise.
class SyncCancellation
{
public:
    SyncCancellation();

    // The user wants the end: the run is recorded as failed, and nothing that X has been asked is waited for.
    void request() const;
    // The process ends: the run stays `running` in the history, and so counts as no attempt. What X has been
    // asked is waited for; it ends with the connections.
    void abandon() const;
    [[nodiscard]] bool isRequested() const;
    [[nodiscard]] bool isAbandoned() const;

    // Throws SyncCanceled once the end was requested.
    void throwIfRequested() const;

    // Finishes `promise` when the user wants the end, or at once if that was before; from the thread of the
    // wish.
    void finishWhenRequested(const std::shared_ptr<QPromise<void>>& promise) const;

    // Keeps a task that nobody waits for any more, for leftBehind(). Both on the thread of the sync.
    void leaveBehind(QCoro::Task<> work) const;
    // Returns when all such tasks have ended.
    [[nodiscard]] QCoro::Task<> leftBehind() const;

private:
    enum class Wish { none, cancel, abandon };
    struct State;

    [[nodiscard]] Wish wish() const;

    std::shared_ptr<State> m_state;
};

namespace detail {

template <typename Result>
struct Race
{
    QPromise<void> decided;
    std::optional<Result> result;
    std::exception_ptr failure;
};

template <typename Result>
QCoro::Task<> run(std::shared_ptr<Race<Result>> race, QCoro::Task<Result> work)
{
    try {
        race->result = co_await work;
    } catch (...) {
        race->failure = std::current_exception();
    }
    race->decided.finish();
}

} // namespace detail

// Returns what `work` returns, or throws what it throws. Throws SyncCanceled as soon as the user wants the
// end; the work then goes on behind the sync, and what comes of it is dropped.
template <typename Result>
[[nodiscard]] QCoro::Task<Result> untilCanceled(SyncCancellation cancellation, QCoro::Task<Result> work)
{
    const auto race = std::make_shared<detail::Race<Result>>();
    race->decided.start();
    QCoro::Task<> running = detail::run(race, std::move(work));
    cancellation.finishWhenRequested({race, &race->decided});
    const QFuture<void> decided = race->decided.future();
    co_await decided;
    if (race->failure)
        std::rethrow_exception(race->failure);
    if (!race->result) {
        cancellation.leaveBehind(std::move(running));
        throw SyncCanceled();
    }
    co_return std::move(*race->result);
}

} // namespace mirel
