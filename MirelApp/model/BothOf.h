#pragma once

#include <QCoro/QCoroTask>

#include <exception>
#include <optional>
#include <utility>

namespace mirel {

// The results of two tasks that run side by side. Waits for both, also when one fails; throws what the first
// one threw, or else the second.
template <typename First, typename Second>
[[nodiscard]] QCoro::Task<std::pair<First, Second>> bothOf(QCoro::Task<First> first,
                                                           QCoro::Task<Second> second)
{
    std::optional<First> firstResult;
    std::optional<Second> secondResult;
    std::exception_ptr firstFailure;
    std::exception_ptr secondFailure;
    try {
        firstResult = co_await first;
    } catch (...) {
        firstFailure = std::current_exception();
    }
    try {
        secondResult = co_await second;
    } catch (...) {
        secondFailure = std::current_exception();
    }
    if (firstFailure || secondFailure)
        std::rethrow_exception(firstFailure ? firstFailure : secondFailure);
    co_return std::pair<First, Second>(std::move(*firstResult), std::move(*secondResult));
}

} // namespace mirel
