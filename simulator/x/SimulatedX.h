#pragma once

#include "simulator/RequestLog.h"
#include "simulator/ScenarioPlayer.h"
#include "simulator/SimulatorOptions.h"
#include "simulator/http/HTTPResponse.h"
#include "simulator/posts/PostFactory.h"
#include "simulator/x/Account.h"
#include "simulator/x/Folders.h"
#include "simulator/x/TokenAuthority.h"

#include <QRegularExpression>

namespace mirel::simulator {

class PageWriter;

// Plays X for one account: answers every request, records it, and lets the scenario spoil it. Everything
// runs on the thread that calls it.
class SimulatedX
{
public:
    // `origin` is where it is served, "http://127.0.0.1:8080".
    SimulatedX(const SimulatorOptions& options, const QString& origin);

    [[nodiscard]] HTTPReply answer(const HTTPRequest& request);

    void setScenario(const Scenario& scenario);
    void expireAccessTokens() { m_tokens.expireAccessTokens(); }
    [[nodiscard]] RequestLog& log() { return m_log; }
    [[nodiscard]] Account& account() { return m_account; }
    // Of the bookmarked posts, newest bookmark first.
    [[nodiscard]] QStringList accountIDs() const;

private:
    using Handler = HTTPResponse (SimulatedX::*)(const HTTPRequest&);
    struct Route
    {
        QByteArray method;
        QRegularExpression path;
        Handler handler;
        // Needs a good access token.
        bool isGuarded = false;
    };

    [[nodiscard]] static const QList<Route>& routes();
    [[nodiscard]] HTTPResponse route(const HTTPRequest& request);
    [[nodiscard]] HTTPReply control(const HTTPRequest& request);
    [[nodiscard]] HTTPResponse controlResponse(const HTTPRequest& request);
    // Lets the scenario's changes happen before the request is answered.
    void applyChanges(const QList<Fault>& faults);
    [[nodiscard]] std::optional<HTTPResponse> replacement(const QList<Fault>& faults) const;
    [[nodiscard]] bool isActive(Fault::Action action) const;

    [[nodiscard]] HTTPResponse currentUser(const HTTPRequest& request);
    [[nodiscard]] HTTPResponse bookmarks(const HTTPRequest& request);
    [[nodiscard]] HTTPResponse deleteBookmark(const HTTPRequest& request);
    [[nodiscard]] HTTPResponse folders(const HTTPRequest& request);
    [[nodiscard]] HTTPResponse folderPosts(const HTTPRequest& request);
    [[nodiscard]] HTTPResponse post(const HTTPRequest& request);
    [[nodiscard]] HTTPResponse posts(const HTTPRequest& request);
    [[nodiscard]] HTTPResponse recentSearch(const HTTPRequest& request);
    [[nodiscard]] HTTPResponse authorizationPage(const HTTPRequest& request);
    [[nodiscard]] HTTPResponse token(const HTTPRequest& request);
    [[nodiscard]] HTTPResponse picture(const HTTPRequest& request);
    [[nodiscard]] HTTPResponse video(const HTTPRequest& request);

    // The answer to a request that should not have come, which is recorded.
    [[nodiscard]] HTTPResponse refused(int status, const QString& title, const QString& detail);
    [[nodiscard]] HTTPResponse invalidParameter(const QString& name, const QString& value);
    // Absent when the path names the account's own user.
    [[nodiscard]] std::optional<HTTPResponse> refusedUser(const HTTPRequest& request);
    // Absent when the query consists of the items that whole posts are asked for with, and of `others`.
    [[nodiscard]] std::optional<HTTPResponse> refusedPostQuery(const HTTPRequest& request,
                                                               const QStringList& others);

    struct Paging
    {
        int count = 0;
        std::optional<int> before;
        int variant = 0;
    };
    // Throws HTTPResponse when the items of the query make no sense.
    [[nodiscard]] Paging paging(const HTTPRequest& request, const QByteArray& list);
    [[nodiscard]] QByteArray listName(const char* name) const;
    void writeTokens(PageWriter& page, const Paging& paging, const Account::Slice& slice) const;
    void addIfVisible(PageWriter& page, const QString& id, const QString& parameter) const;

    SimulatorOptions m_options;
    SimulatedIdentity m_identity;
    PostFactory m_factory;
    Account m_account;
    Folders m_folders;
    TokenAuthority m_tokens;
    ScenarioPlayer m_player;
    RequestLog m_log;
    // Of the request that is being answered.
    QList<Fault> m_active;
};

} // namespace mirel::simulator
