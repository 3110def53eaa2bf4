#pragma once

#include <QCoro/QCoroTask>
#include <QEventLoop>

#include <exception>
#include <optional>
#include <type_traits>

namespace mirel {

namespace detail {

template <typename Result>
struct Outcome
{
    std::optional<std::conditional_t<std::is_void_v<Result>, bool, Result>> result;
    std::exception_ptr failure;
    bool isFinished = false;
};

// `outcome` and `loop` belong to blockOn, which returns only after this has ended.
template <typename Result>
QCoro::Task<> collect(QCoro::Task<Result> task, Outcome<Result>* outcome, QEventLoop* loop)
{
    try {
        if constexpr (std::is_void_v<Result>)
            co_await task;
        else
            outcome->result = co_await task;
    } catch (...) {
        outcome->failure = std::current_exception();
    }
    outcome->isFinished = true;
    loop->quit();
}

} // namespace detail

// Runs the event loop of this thread until `task` has ended. Returns its result or throws what it threw.
// (QCoro::waitFor never returns when the task throws.)
template <typename Result>
Result blockOn(QCoro::Task<Result> task)
{
    QEventLoop loop;
    detail::Outcome<Result> outcome;
    detail::collect(std::move(task), &outcome, &loop);
    if (!outcome.isFinished)
        loop.exec();
    if (outcome.failure)
        std::rethrow_exception(outcome.failure);
    if constexpr (!std::is_void_v<Result>)
        return std::move(*outcome.result);
}

} // namespace mirel
