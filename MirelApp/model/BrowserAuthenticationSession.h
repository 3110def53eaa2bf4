#pragma once

#include "model/WebAuthenticationSession.h"

namespace mirel {

// A sign-in in a browser that Mirel does not see into: it returns by the scheme of Mirel's links, whose
// handler the system starts.
class BrowserAuthenticationSession : public WebAuthenticationSession
{
public:
    // Shows a page to the user. Returns whether it could.
    using OpenPage = std::function<bool(const QUrl& page)>;

    explicit BrowserAuthenticationSession(OpenPage openPage);

    [[nodiscard]] bool start(const QUrl& page, Completion completion) override;
    void cancel() override;

private:
    OpenPage m_openPage;
    Completion m_completion;
};

} // namespace mirel
