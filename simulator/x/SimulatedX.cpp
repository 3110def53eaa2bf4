#include "simulator/x/SimulatedX.h"

#include "simulator/FaultResponse.h"
#include "simulator/SimulatorError.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace mirel::simulator {

namespace {

using Action = Fault::Action;

constexpr qint64 hugeBodySize = 64 * 1024 * 1024 + 1;

QRegularExpression exactly(const char* pattern)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(QLatin1StringView(pattern)));
}

void setKind(Delivery& delivery, const Fault& fault)
{
    switch (fault.action) {
    case Action::CutBeforeHeaders:
        delivery.kind = Delivery::Kind::CutBeforeHeaders;
        break;
    case Action::CutInBody:
        delivery.kind = Delivery::Kind::CutInBody;
        break;
    case Action::Stall:
        delivery.kind = Delivery::Kind::Stall;
        break;
    case Action::StallInBody:
        delivery.kind = Delivery::Kind::StallInBody;
        break;
    default:
        return;
    }
    delivery.bytes = fault.bytes;
}

Delivery deliveryOf(const QList<Fault>& faults, qint64 bodySize)
{
    Delivery delivery;
    for (const Fault& fault : faults) {
        delivery.delayMilliseconds += fault.delayMilliseconds;
        delivery.chunked = delivery.chunked || fault.chunked;
        setKind(delivery, fault);
        if (fault.action == Action::HugeBody) {
            const qint64 size = fault.bytes < 0 ? hugeBodySize : fault.bytes;
            delivery.padding = std::max(qint64{0}, size - bodySize);
        }
    }
    return delivery;
}

HTTPResponse json(const QByteArray& body)
{
    HTTPResponse response;
    response.body = body;
    return response;
}

} // namespace

SimulatedX::SimulatedX(const SimulatorOptions& options, const QString& origin)
    : m_options(options)
    , m_factory(options.seed, options.posts, origin)
    , m_account(options.posts)
    , m_folders(options.seed, options.folders)
    , m_tokens(m_identity, options.clock)
{
}

HTTPReply SimulatedX::answer(const HTTPRequest& request)
{
    if (request.path.startsWith("/simulator/"))
        return control(request);
    m_log.begin(request);
    m_active = m_player.next(request.method, request.path);
    applyChanges(m_active);
    HTTPReply reply;
    if (const auto spoiled = replacement(m_active))
        reply.response = *spoiled;
    else
        reply.response = route(request);
    if (isActive(Action::Undecodable))
        reply.response.body.chop((reply.response.body.size() + 1) / 2);
    reply.delivery = deliveryOf(m_active, reply.response.body.size());
    if (request.path.startsWith("/2/"))
        reply.delivery.delayMilliseconds += m_player.scenario().delayMilliseconds;
    const bool isSilent = reply.delivery.kind == Delivery::Kind::Stall ||
                          reply.delivery.kind == Delivery::Kind::CutBeforeHeaders;
    m_log.finish(isSilent ? 0 : reply.response.status);
    return reply;
}

void SimulatedX::setScenario(const Scenario& scenario)
{
    m_player.setScenario(scenario);
    m_tokens.setLifetime(scenario.accessTokenLifetimeSeconds);
}

QStringList SimulatedX::accountIDs() const
{
    QStringList ids;
    for (const int serial : m_account.serials())
        ids.append(QString::number(m_factory.id({serial, PostKey::bookmarked})));
    return ids;
}

const QList<SimulatedX::Route>& SimulatedX::routes()
{
    static const QList<Route> table{
        {"GET", exactly("/2/users/me"), &SimulatedX::currentUser, true},
        {"GET", exactly("/2/users/[^/]+/bookmarks"), &SimulatedX::bookmarks, true},
        {"GET", exactly("/2/users/[^/]+/bookmarks/folders"), &SimulatedX::folders, true},
        {"GET", exactly("/2/users/[^/]+/bookmarks/folders/[^/]+"), &SimulatedX::folderPosts, true},
        {"DELETE", exactly("/2/users/[^/]+/bookmarks/[^/]+"), &SimulatedX::deleteBookmark, true},
        {"GET", exactly("/2/tweets/search/recent"), &SimulatedX::recentSearch, true},
        {"GET", exactly("/2/tweets"), &SimulatedX::posts, true},
        {"GET", exactly("/2/tweets/[^/]+"), &SimulatedX::post, true},
        {"POST", exactly("/2/oauth2/token"), &SimulatedX::token},
        {"GET", exactly("/i/oauth2/authorize"), &SimulatedX::authorizationPage},
        {"GET", exactly("/media/(profile|photo|preview|card)/[^/]+"), &SimulatedX::picture},
        {"GET", exactly("/media/video/[^/]+/[^/]+"), &SimulatedX::video},
    };
    return table;
}

HTTPResponse SimulatedX::route(const HTTPRequest& request)
{
    for (const Route& candidate : routes()) {
        if (candidate.method != request.method ||
            !candidate.path.match(QString::fromLatin1(request.path)).hasMatch())
            continue;
        if (candidate.isGuarded) {
            const QByteArray authorization = request.header("authorization").value_or(QByteArray());
            if (!authorization.startsWith("Bearer ") ||
                !m_tokens.accepts(QString::fromUtf8(authorization.mid(7))))
                return refused(401, QStringLiteral("Unauthorized"), QStringLiteral("Unauthorized"));
        }
        try {
            return (this->*candidate.handler)(request);
        } catch (const HTTPResponse& refusal) {
            return refusal;
        }
    }
    return refused(404, QStringLiteral("Not Found"), QStringLiteral("There is no such endpoint."));
}

HTTPReply SimulatedX::control(const HTTPRequest& request)
{
    try {
        return {controlResponse(request), {}};
    } catch (const SimulatorError& error) {
        return {problem(400, QStringLiteral("Invalid Request"), error.description()), {}};
    }
}

HTTPResponse SimulatedX::controlResponse(const HTTPRequest& request)
{
    const QByteArray call = request.method + ' ' + request.path;
    if (call == "GET /simulator/requests")
        return json(m_log.requestsJSON());
    if (call == "DELETE /simulator/requests") {
        m_log.clear();
        return json("{}");
    }
    if (call == "GET /simulator/problems")
        return json(m_log.problemsJSON());
    if (call == "POST /simulator/scenario") {
        setScenario(Scenario::fromJSON(request.body));
        return json("{}");
    }
    if (call == "POST /simulator/expire-tokens") {
        expireAccessTokens();
        return json("{}");
    }
    if (call == "GET /simulator/account") {
        const QJsonObject account{{QStringLiteral("id"), m_identity.userID},
                                  {QStringLiteral("username"), m_identity.username},
                                  {QStringLiteral("ids"), QJsonArray::fromStringList(accountIDs())}};
        return json(QJsonDocument(account).toJson(QJsonDocument::Compact));
    }
    return problem(404, QStringLiteral("Not Found"), QStringLiteral("The simulator has no such control."));
}

void SimulatedX::applyChanges(const QList<Fault>& faults)
{
    for (const Fault& fault : faults) {
        if (fault.action == Action::AddPosts)
            m_account.add(fault.count);
        else if (fault.action == Action::RemovePosts && fault.end == Fault::End::Newest)
            m_account.removeNewest(fault.count);
        else if (fault.action == Action::RemovePosts)
            m_account.removeOldest(fault.count);
        else if (fault.action == Action::ExpireTokens)
            expireAccessTokens();
    }
}

std::optional<HTTPResponse> SimulatedX::replacement(const QList<Fault>& faults) const
{
    for (const Fault& fault : faults) {
        if (fault.action == Action::Status || fault.action == Action::Redirect)
            return responseOf(fault, m_options.clock());
    }
    return std::nullopt;
}

bool SimulatedX::isActive(Action action) const
{
    return std::any_of(m_active.begin(), m_active.end(),
                       [&](const Fault& fault) { return fault.action == action; });
}

HTTPResponse SimulatedX::refused(int status, const QString& title, const QString& detail)
{
    m_log.addProblem(detail);
    return problem(status, title, detail);
}

} // namespace mirel::simulator
