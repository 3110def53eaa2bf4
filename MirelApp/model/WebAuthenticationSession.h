#pragma once

#include "support/Error.h"

#include <QUrl>

#include <exception>
#include <functional>
#include <optional>

namespace mirel {

// The user left a sign-in before its end.
class WebAuthenticationCanceled : public Error
{
public:
    [[nodiscard]] QString description() const override;
};

// One sign-in on a page of the web, which ends when the browser returns to Mirel. Lives on the main thread.
// One that is destroyed ends in silence.
class WebAuthenticationSession
{
public:
    // Both are absent when the browser came back with nothing.
    struct Outcome
    {
        // Where the browser returned to.
        std::optional<QUrl> callbackURL;
        // WebAuthenticationCanceled, or what else went wrong.
        std::exception_ptr failure;
    };
    // May destroy the session.
    using Completion = std::function<void(const Outcome&)>;

    virtual ~WebAuthenticationSession();

    // Shows `page` to the user. Returns whether that was possible; if so, `completion` is called at most
    // once, after this returned. It is not called for a callback that reaches the program by another road.
    [[nodiscard]] virtual bool start(const QUrl& page, Completion completion) = 0;

    // Ends it as canceled: `completion` is called before this returns, and may have destroyed the session by
    // then. Does nothing when nothing was started, or when it is over.
    virtual void cancel() = 0;
};

} // namespace mirel
