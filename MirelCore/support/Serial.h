#pragma once

#include "support/ServiceThread.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QCoro/QCoroTask>
#include <QMetaObject>
#include <QThread>

#include <concepts>
#include <coroutine>
#include <exception>
#include <memory>
#include <optional>
#include <type_traits>

namespace mirel {

namespace detail {

template <typename T>
struct TaskResult
{
    using Type = T;
    static constexpr bool isTask = false;
};
template <typename T>
struct TaskResult<QCoro::Task<T>>
{
    using Type = T;
    static constexpr bool isTask = true;
};

struct Nothing
{
};
template <typename T>
using Storable = std::conditional_t<std::is_void_v<T>, Nothing, T>;

// What travels between the two threads of a call: the outcome, and where the caller waits.
template <typename Result>
struct Delivery
{
    std::optional<Storable<Result>> result;
    std::exception_ptr failure;
    std::coroutine_handle<> caller;
    QObject* callerContext = nullptr;

    void resumeCaller() const
    {
        QMetaObject::invokeMethod(
            callerContext, [waiting = caller] { waiting.resume(); }, Qt::QueuedConnection);
    }
};

} // namespace detail

// Puts a service on its thread. call() hands over a function that runs there with the service, one call at
// a time between suspension points, and the caller resumes on its own thread, which needs an event loop.
// Made and destroyed on one thread, that of its owner; call() may be used on any.
template <typename Service>
class Serial
{
public:
    // Runs `make`, which returns a std::unique_ptr<Service>, on `thread` and waits for it. Throws what it
    // throws.
    template <std::invocable Factory>
    Serial(std::shared_ptr<ServiceThread> thread, Factory make)
        : m_thread(std::move(thread))
    {
        std::exception_ptr failure;
        onThread([&] {
            try {
                m_service = make();
            } catch (...) {
                failure = std::current_exception();
            }
        });
        if (failure)
            std::rethrow_exception(failure);
    }

    // Waits until no call is in flight, then destroys the service on its thread. Whoever makes calls that
    // wait for the outside world ends those first.
    ~Serial()
    {
        onThread([this] {
            while (m_callsInFlight > 0)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            m_service.reset();
        });
    }

    Q_DISABLE_COPY_MOVE(Serial)

    // Runs `function(service)` on the service's thread and returns what it returns; when that is a task,
    // what the task returns. Exceptions pass through.
    //
    // GCC 12 destroys a lambda or an aggregate that is a temporary of an awaited expression twice. A
    // function that owns something is therefore given a name first; the compiler insists.
    template <typename Function>
    requires std::invocable<Function&, Service&>
    auto call(Function&& function)
    {
        static_assert(std::is_lvalue_reference_v<Function> ||
                          std::is_trivially_destructible_v<std::remove_cvref_t<Function>>,
                      "give the function a name before the call: its captures own something");
        return post<std::remove_cvref_t<Function>>(std::forward<Function>(function));
    }

    // The service itself, for other services that live on the same thread.
    [[nodiscard]] Service& unguarded() const { return *m_service; }

private:
    template <typename Function>
    auto post(Function function)
        -> QCoro::Task<typename detail::TaskResult<std::invoke_result_t<Function&, Service&>>::Type>
    {
        using Result = typename detail::TaskResult<std::invoke_result_t<Function&, Service&>>::Type;
        const auto delivery = std::make_shared<detail::Delivery<Result>>();
        Posting<Function, Result> posting{*this, std::move(function), delivery};
        co_await posting;
        if (delivery->failure)
            std::rethrow_exception(delivery->failure);
        if constexpr (!std::is_void_v<Result>)
            co_return std::move(*delivery->result);
    }

    template <typename Function, typename Result>
    struct Posting
    {
        Serial& serial;
        Function function;
        std::shared_ptr<detail::Delivery<Result>> delivery;

        [[nodiscard]] bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> caller)
        {
            delivery->caller = caller;
            delivery->callerContext = QAbstractEventDispatcher::instance();
            auto work = [target = &serial, run = std::move(function), outcome = delivery]() mutable {
                target->run(std::move(run), std::move(outcome));
            };
            QMetaObject::invokeMethod(serial.m_thread->context(), std::move(work), Qt::QueuedConnection);
        }
        void await_resume() const noexcept {}
    };

    template <typename Function, typename Result>
    void run(Function function, std::shared_ptr<detail::Delivery<Result>> delivery)
    {
        using Returned = std::invoke_result_t<Function&, Service&>;
        ++m_callsInFlight;
        if constexpr (detail::TaskResult<Returned>::isTask) {
            finish(std::move(function), std::move(delivery));
        } else {
            try {
                if constexpr (std::is_void_v<Result>)
                    function(*m_service);
                else
                    delivery->result = function(*m_service);
            } catch (...) {
                delivery->failure = std::current_exception();
            }
            --m_callsInFlight;
            delivery->resumeCaller();
        }
    }

    // The function lives in this frame, so a coroutine lambda keeps its captures to its end.
    template <typename Function, typename Result>
    QCoro::Task<> finish(Function function, std::shared_ptr<detail::Delivery<Result>> delivery)
    {
        try {
            if constexpr (std::is_void_v<Result>)
                co_await function(*m_service);
            else
                delivery->result = co_await function(*m_service);
        } catch (...) {
            delivery->failure = std::current_exception();
        }
        --m_callsInFlight;
        delivery->resumeCaller();
    }

    template <typename Function>
    void onThread(Function function)
    {
        const bool alreadyThere = QThread::currentThread() == m_thread->context()->thread();
        QMetaObject::invokeMethod(m_thread->context(), std::move(function),
                                  alreadyThere ? Qt::DirectConnection : Qt::BlockingQueuedConnection);
    }

    std::shared_ptr<ServiceThread> m_thread;
    std::unique_ptr<Service> m_service;
    // Touched on the service's thread only.
    int m_callsInFlight = 0;
};

} // namespace mirel
