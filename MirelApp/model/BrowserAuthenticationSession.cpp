#include "model/BrowserAuthenticationSession.h"

#include "model/SettingsValidationError.h"

#include <utility>

namespace mirel {

namespace {

// The call may destroy the session, and the completion with it.
void fail(WebAuthenticationSession::Completion& completion, const std::exception_ptr& failure)
{
    const auto call = std::exchange(completion, {});
    if (call)
        call({.failure = failure});
}

} // namespace

BrowserAuthenticationSession::BrowserAuthenticationSession(OpenPage openPage)
    : m_openPage(std::move(openPage))
{
}

bool BrowserAuthenticationSession::start(const QUrl& page, Completion completion)
{
    // The opener may fail when this object has gone.
    const auto failed = [waiting = std::weak_ptr(m_completion)] {
        using enum SettingsValidationError::Case;
        if (const auto present = waiting.lock())
            fail(*present,
                 std::make_exception_ptr(SettingsValidationError(xAuthenticationSessionDidNotStart)));
    };
    if (!m_openPage(page, failed))
        return false;
    *m_completion = std::move(completion);
    return true;
}

void BrowserAuthenticationSession::cancel()
{
    fail(*m_completion, std::make_exception_ptr(WebAuthenticationCanceled()));
}

} // namespace mirel
