#pragma once

#include "model/WebAuthenticationSession.h"

#include <memory>

namespace mirel {

// A sign-in in a browser that Mirel does not see into: it returns by the scheme of Mirel's links, whose
// handler the system starts.
class BrowserAuthenticationSession : public WebAuthenticationSession
{
public:
    // Shows a page to the user. Returns whether it could, as far as that is known; when it comes out later
    // that it could not, calls `failed`.
    using OpenPage = std::function<bool(const QUrl& page, const std::function<void()>& failed)>;

    explicit BrowserAuthenticationSession(OpenPage openPage);

    [[nodiscard]] bool start(const QUrl& page, Completion completion) override;
    void cancel() override;

private:
    OpenPage m_openPage;
    // Empty once it was called.
    std::shared_ptr<Completion> m_completion = std::make_shared<Completion>();
};

} // namespace mirel
