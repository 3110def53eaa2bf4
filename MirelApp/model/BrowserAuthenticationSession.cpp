#include "model/BrowserAuthenticationSession.h"

#include <utility>

namespace mirel {

BrowserAuthenticationSession::BrowserAuthenticationSession(OpenPage openPage)
    : m_openPage(std::move(openPage))
{
}

bool BrowserAuthenticationSession::start(const QUrl& page, Completion completion)
{
    if (!m_openPage(page))
        return false;
    m_completion = std::move(completion);
    return true;
}

void BrowserAuthenticationSession::cancel()
{
    // Its call may destroy this object.
    const Completion completion = std::exchange(m_completion, {});
    if (completion)
        completion({.failure = std::make_exception_ptr(WebAuthenticationCanceled())});
}

} // namespace mirel
