#include "simulator/x/PageToken.h"
#include "simulator/x/PageWriter.h"
#include "simulator/x/SimulatedX.h"

#include "simulator/FaultResponse.h"

#include <algorithm>

namespace mirel::simulator {

namespace {

using Action = Fault::Action;

// What whole posts are asked for with. Other values would answer other posts, and nobody would notice.
const QList<std::pair<QString, QString>>& postQuery()
{
    static const QList<std::pair<QString, QString>> items{
        {QStringLiteral("tweet.fields"),
         QStringLiteral("id,text,article,author_id,created_at,entities,public_metrics,attachments,"
                        "conversation_id,in_reply_to_user_id,referenced_tweets,lang,note_tweet")},
        {QStringLiteral("expansions"),
         QStringLiteral(
             "author_id,attachments.media_keys,referenced_tweets.id,referenced_tweets.id.author_id,"
             "referenced_tweets.id.attachments.media_keys,article.cover_media,"
             "article.media_entities")},
        {QStringLiteral("user.fields"), QStringLiteral("id,name,username,profile_image_url")},
        {QStringLiteral("media.fields"),
         QStringLiteral("media_key,type,url,preview_image_url,width,height,alt_text,variants,duration_ms")},
    };
    return items;
}

QString lastSegment(const QByteArray& path)
{
    return QString::fromUtf8(QByteArray::fromPercentEncoding(path.mid(path.lastIndexOf('/') + 1)));
}

HTTPResponse json(const QByteArray& body)
{
    HTTPResponse response;
    response.body = body;
    return response;
}

HTTPResponse idList(const QList<QByteArray>& elements, const QString& nextToken)
{
    JSONObjectText meta;
    meta.number("result_count", elements.size());
    if (!nextToken.isEmpty())
        meta.text("next_token", nextToken);
    JSONObjectText body;
    if (!elements.isEmpty())
        body.raw("data", jsonArray(elements));
    return json(body.raw("meta", meta.json()).json());
}

} // namespace

HTTPResponse SimulatedX::currentUser(const HTTPRequest&)
{
    const QByteArray user = JSONObjectText()
                                .text("id", m_identity.userID)
                                .text("name", m_identity.name)
                                .text("username", m_identity.username)
                                .json();
    return json(JSONObjectText().raw("data", user).json());
}

HTTPResponse SimulatedX::bookmarks(const HTTPRequest& request)
{
    if (const auto refusal = refusedUser(request))
        return *refusal;
    const QStringList others{QStringLiteral("max_results"), QStringLiteral("pagination_token")};
    if (const auto refusal = refusedPostQuery(request, others))
        return *refusal;
    const Paging place = paging(request, listName("bookmarks"));
    const Account::Slice slice = m_account.slice(place.before, place.count);
    PageWriter page(m_factory);
    writeTokens(page, place, slice);
    if (isActive(Action::EmptyPage))
        return json(page.page(true));
    if (isActive(Action::NoData))
        return json(page.page());
    for (const int serial : slice.serials)
        page.add({serial, PostKey::bookmarked});
    if (isActive(Action::MissingAuthor))
        page.dropFirstAuthor();
    return json(page.page());
}

HTTPResponse SimulatedX::deleteBookmark(const HTTPRequest& request)
{
    if (const auto refusal = refusedUser(request))
        return *refusal;
    const auto key = m_factory.find(lastSegment(request.path).toLongLong());
    // Deleting what is not bookmarked is no error to X.
    if (key && key->role == PostKey::bookmarked)
        m_account.remove(key->serial);
    return json("{\"data\":{\"bookmarked\":false}}");
}

HTTPResponse SimulatedX::folders(const HTTPRequest& request)
{
    if (const auto refusal = refusedUser(request))
        return *refusal;
    const QByteArray list = listName("folders");
    const Paging place = paging(request, list);
    const auto& all = m_folders.all();
    // Counted from the end, so that `before` shrinks as in every list.
    const qsizetype start = place.before ? all.size() - *place.before : 0;
    QList<QByteArray> elements;
    for (qsizetype i = start; i < std::min(all.size(), start + place.count); ++i)
        elements.append(JSONObjectText().text("id", all.at(i).id).text("name", all.at(i).name).json());
    const qsizetype left = all.size() - start - elements.size();
    return idList(elements, left > 0 ? PageToken{static_cast<int>(left), 0}.encoded(list) : QString());
}

HTTPResponse SimulatedX::folderPosts(const HTTPRequest& request)
{
    if (const auto refusal = refusedUser(request))
        return *refusal;
    const QString id = lastSegment(request.path);
    const auto folder = m_folders.find(id);
    if (!folder)
        return refused(404, QStringLiteral("Not Found Error"),
                       QStringLiteral("There is no folder %1.").arg(id));
    const QByteArray list = listName("folder") + id.toUtf8();
    const Paging place = paging(request, list);
    QList<QByteArray> elements;
    int last = 0;
    bool hasMore = false;
    for (const int serial : m_folders.serials(*folder, m_account)) {
        if (place.before && serial >= *place.before)
            continue;
        hasMore = elements.size() == place.count;
        if (hasMore)
            break;
        last = serial;
        elements.append("{\"id\":\"" + QByteArray::number(m_factory.id({serial, PostKey::bookmarked})) +
                        "\"}");
    }
    return idList(elements, hasMore ? PageToken{last, 0}.encoded(list) : QString());
}

HTTPResponse SimulatedX::post(const HTTPRequest& request)
{
    const auto items = request.queryItems();
    const bool wantsMetrics = items.size() == 1 && items.first().first == u"tweet.fields" &&
                              items.first().second == u"public_metrics";
    if (!wantsMetrics) {
        if (const auto refusal = refusedPostQuery(request, {}))
            return *refusal;
    }
    PageWriter page(m_factory);
    const QString id = lastSegment(request.path);
    addIfVisible(page, id, QStringLiteral("id"));
    if (!wantsMetrics)
        return json(page.singlePost());
    return json(page.singlePostWithMetrics());
}

HTTPResponse SimulatedX::posts(const HTTPRequest& request)
{
    if (const auto refusal = refusedPostQuery(request, {QStringLiteral("ids")}))
        return *refusal;
    const QString text = firstValue(request.queryItems(), u"ids").value_or(QString());
    const QStringList ids = text.split(u',', Qt::SkipEmptyParts);
    if (ids.isEmpty() || ids.size() > 100)
        return invalidParameter(QStringLiteral("ids"), text);
    PageWriter page(m_factory);
    for (const QString& id : ids)
        addIfVisible(page, id, QStringLiteral("ids"));
    return json(page.pageWithoutMeta());
}

HTTPResponse SimulatedX::recentSearch(const HTTPRequest& request)
{
    if (const auto refusal =
            refusedPostQuery(request, {QStringLiteral("query"), QStringLiteral("max_results")}))
        return *refusal;
    const QString query = firstValue(request.queryItems(), u"query").value_or(QString());
    const QString operation = QStringLiteral("conversation_id:");
    if (!query.startsWith(operation) || query.size() > 512)
        return invalidParameter(QStringLiteral("query"), query);
    PageWriter page(m_factory);
    const qint64 wanted = query.mid(operation.size()).toLongLong();
    const auto first = m_factory.find(wanted);
    if (first) {
        QList<PostKey> posts = m_factory.conversation(*first);
        // Newest first.
        std::sort(posts.begin(), posts.end(),
                  [&](PostKey left, PostKey right) { return m_factory.id(left) > m_factory.id(right); });
        // Only the first post of a conversation names it.
        if (posts.last() == *first) {
            for (const PostKey key : posts)
                page.add(key);
        }
    }
    return json(page.page());
}

HTTPResponse SimulatedX::invalidParameter(const QString& name, const QString& value)
{
    const QString message =
        QStringLiteral("The `%1` query parameter value [%2] is not valid").arg(name, value);
    m_log.addProblem(message);
    const QByteArray error =
        JSONObjectText()
            .raw("parameters", JSONObjectText().raw(name.toUtf8(), jsonArray({jsonString(value)})).json())
            .text("message", message)
            .json();
    return {400,
            "application/problem+json; charset=utf-8",
            {},
            JSONObjectText()
                .raw("errors", jsonArray({error}))
                .text("title", u"Invalid Request")
                .text("detail", u"One or more parameters to your request was invalid.")
                .text("type", u"https://api.twitter.com/2/problems/invalid-request")
                .json()};
}

std::optional<HTTPResponse> SimulatedX::refusedUser(const HTTPRequest& request)
{
    if (request.path.split('/').at(3) == m_identity.userID.toLatin1())
        return std::nullopt;
    return refused(403, QStringLiteral("Forbidden"),
                   QStringLiteral("The path names another user than the access token."));
}

std::optional<HTTPResponse> SimulatedX::refusedPostQuery(const HTTPRequest& request,
                                                         const QStringList& others)
{
    const auto items = request.queryItems();
    for (const auto& [name, value] : postQuery()) {
        const QString sent = firstValue(items, name).value_or(QString());
        if (sent != value)
            return invalidParameter(name, sent);
    }
    QStringList seen;
    for (const auto& [name, value] : items) {
        const bool isKnown = others.contains(name) || firstValue(postQuery(), name);
        if (!isKnown || seen.contains(name))
            return invalidParameter(name, value);
        seen.append(name);
    }
    return std::nullopt;
}

SimulatedX::Paging SimulatedX::paging(const HTTPRequest& request, const QByteArray& list)
{
    Paging result{100, {}};
    const auto items = request.queryItems();
    if (const auto text = firstValue(items, u"max_results")) {
        result.count = text->toInt();
        if (result.count < 1 || result.count > 100)
            throw invalidParameter(QStringLiteral("max_results"), *text);
    }
    if (const auto text = firstValue(items, u"pagination_token")) {
        const auto token = PageToken::decoded(*text, list);
        if (!token)
            throw invalidParameter(QStringLiteral("pagination_token"), *text);
        result.before = token->before;
        result.variant = token->variant;
    }
    return result;
}

QByteArray SimulatedX::listName(const char* name) const
{
    return QByteArray(name) + '/' + QByteArray::number(m_options.seed) + '/';
}

void SimulatedX::writeTokens(PageWriter& page, const Paging& paging, const Account::Slice& slice) const
{
    const QByteArray list = listName("bookmarks");
    if (slice.previous)
        page.setPreviousToken(PageToken{*slice.previous, 0}.encoded(list));
    constexpr int beforeAll = PostKey::serialLimit;
    const int here = paging.before.value_or(beforeAll);
    if (isActive(Action::RepeatedToken))
        page.setNextToken(PageToken{here, paging.variant}.encoded(list));
    else if (isActive(Action::EmptyPage))
        page.setNextToken(PageToken{here, paging.variant + 1}.encoded(list));
    else if (slice.next && !isActive(Action::NoData))
        page.setNextToken(PageToken{*slice.next, 0}.encoded(list));
}

void SimulatedX::addIfVisible(PageWriter& page, const QString& id, const QString& parameter) const
{
    const auto key = m_factory.find(id.toLongLong());
    if (key && m_factory.isVisible(*key))
        page.add(*key);
    else
        page.addHidden(id.toLongLong(), parameter);
}

} // namespace mirel::simulator
