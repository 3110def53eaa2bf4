#include "x/XAPIClient.h"

#include "support/RawJSONDecoding.h"
#include "x/XAPIError.h"
#include "x/XRequests.h"

#include <cmath>

namespace mirel {

namespace {

// A token that lasts no longer than this is refreshed before it is used.
constexpr double refreshMarginSeconds = 30;

// What every request for whole posts asks for.
QList<FormField> commonPostQuery()
{
    return {
        {QStringLiteral("tweet.fields"),
         QStringLiteral("id,text,article,author_id,created_at,entities,public_metrics,attachments,"
                        "conversation_id,in_reply_to_user_id,referenced_tweets,lang,note_tweet")},
        {QStringLiteral("expansions"),
         QStringLiteral("author_id,attachments.media_keys,referenced_tweets.id,"
                        "referenced_tweets.id.author_id,referenced_tweets.id.attachments.media_keys,"
                        "article.cover_media,article.media_entities")},
        {QStringLiteral("user.fields"), QStringLiteral("id,name,username,profile_image_url")},
        {QStringLiteral("media.fields"),
         QStringLiteral("media_key,type,url,preview_image_url,width,height,alt_text,variants,duration_ms")},
    };
}

QList<FormField> pageQuery(const std::optional<QString>& paginationToken, qint64 maxResults)
{
    constexpr qint64 largestPage = 100;
    QList<FormField> query{
        {QStringLiteral("max_results"), QString::number(std::clamp<qint64>(maxResults, 1, largestPage))}};
    if (paginationToken && !paginationToken->isEmpty())
        query.append({QStringLiteral("pagination_token"), *paginationToken});
    return query;
}

QByteArray bookmarksPath(const XCredentials& credentials)
{
    return "/users/" + pathSegmentEncoded(credentials.userID) + "/bookmarks";
}

template <typename Response>
Response decodeResponse(const QByteArray& body)
{
    try {
        return decodeRawJSON<Response>(body);
    } catch (const RawJSONError&) {
        throw XAPIError::invalidResponse();
    }
}

// Seconds since 1970 as a floating-point number, with nothing around it.
std::optional<Instant> resetInstant(const HTTPResponse& response)
{
    const auto header = response.header("x-rate-limit-reset");
    // QByteArray::toDouble would overlook white space.
    if (!header || *header != header->trimmed())
        return std::nullopt;
    bool isNumber = false;
    const double seconds = header->toDouble(&isNumber);
    // Beyond the year 9999 a calendar cannot follow.
    constexpr double lastSecond = 253402300799;
    if (!isNumber || !(std::abs(seconds) <= lastSecond))
        return std::nullopt;
    return Instant::fromSecondsSince1970(seconds);
}

QString failureMessage(const QByteArray& body)
{
    try {
        const auto problem = decodeRawJSON<ProblemResponse>(body);
        if (problem.detail)
            return *problem.detail;
        if (problem.title)
            return *problem.title;
    } catch (const RawJSONError&) {
    }
    return xRequests::failureText(body);
}

XAPIError responseError(const HTTPResponse& response, const QStringList& secrets)
{
    constexpr int tooManyRequests = 429;
    if (response.status == tooManyRequests)
        return XAPIError::rateLimited(resetInstant(response));
    const QString message = failureMessage(response.body);
    return XAPIError::http(response.status, xRequests::withoutSecrets(message, secrets));
}

template <typename Element>
XPage<Element> makePage(QList<Element> items, const std::optional<MetaDTO>& meta)
{
    XPage<Element> page;
    page.items = std::move(items);
    page.nextToken = meta ? meta->nextToken : std::nullopt;
    page.resultCount = meta ? meta->resultCount.value_or(page.items.size()) : page.items.size();
    return page;
}

// The quoted posts whose articles name media that X did not send with them, each once.
QStringList quotedPostsWithMissingMedia(const ParsedBookmarkPage& page)
{
    QStringList wanted;
    for (qsizetype i = 0; i < page.items.size(); ++i) {
        const auto& quoted = page.items[i].quotedPost;
        if (!quoted)
            continue;
        QSet<QString> present;
        for (const MediaItem& item : quoted->media)
            present.insert(item.id);
        const QStringList& keys = page.quotedArticleMediaKeys[i];
        const bool hasAll =
            std::all_of(keys.begin(), keys.end(), [&](const QString& key) { return present.contains(key); });
        if (!hasAll)
            wanted.append(quoted->tweetID);
    }
    wanted.removeDuplicates();
    return wanted;
}

// Adds to the quoted post what the whole post `found` brings.
void enrich(QuotedPost& quoted, const TweetDTO& found, const postMapping::MediaByKey& media)
{
    if (found.article) {
        quoted.media.append(postMapping::mediaItems(found.article->allMediaKeys(), media));
        if (found.article->title)
            quoted.contentTitle = found.article->title;
        if (found.article->plainText)
            quoted.contentText = found.article->plainText;
    }
    quoted.media.append(postMapping::youtubeItems(found));
    quoted.media = uniquedByID(quoted.media);
}

} // namespace

XAPIClient::XAPIClient(CredentialVault& credentials, HTTPTransport& transport, QUrl baseURL, Clock now)
    : m_credentials(credentials)
    , m_transport(transport)
    , m_baseURL(std::move(baseURL))
    , m_now(std::move(now))
{
}

QCoro::Task<XBookmarkPage> XAPIClient::bookmarks(std::optional<QString> paginationToken, qint64 maxResults)
{
    const XCredentials credentials = co_await authorizedCredentials();
    const QByteArray body =
        co_await get(bookmarksPath(credentials), commonPostQuery() + pageQuery(paginationToken, maxResults),
                     credentials.accessToken);
    ParsedBookmarkPage parsed = postMapping::parseBookmarkPage(body);
    XBookmarkPage page;
    page.nextToken = parsed.nextToken;
    page.resultCount = parsed.resultCount;
    page.items = co_await enrichMissingQuotedArticleMedia(std::move(parsed), credentials.accessToken);
    co_return page;
}

QCoro::Task<XUser> XAPIClient::currentUser()
{
    const XCredentials credentials = co_await authorizedCredentials();
    HTTPRequest asking = xRequests::currentUser(m_baseURL, credentials.accessToken);
    const QByteArray body = co_await send(std::move(asking));
    co_return decodeResponse<CurrentUserResponse>(body).data;
}

QCoro::Task<XPage<XBookmarkFolder>> XAPIClient::bookmarkFolders(std::optional<QString> paginationToken,
                                                                qint64 maxResults)
{
    const XCredentials credentials = co_await authorizedCredentials();
    const QByteArray body = co_await get(bookmarksPath(credentials) + "/folders",
                                         pageQuery(paginationToken, maxResults), credentials.accessToken);
    const auto response = decodeResponse<FolderPageResponse>(body);
    co_return makePage(response.data.value_or(QList<XBookmarkFolder>{}), response.meta);
}

QCoro::Task<XPage<QString>>
XAPIClient::folderPostIDs(QString folderID, std::optional<QString> paginationToken, qint64 maxResults)
{
    const XCredentials credentials = co_await authorizedCredentials();
    const QByteArray path = bookmarksPath(credentials) + "/folders/" + pathSegmentEncoded(folderID);
    const QByteArray body =
        co_await get(path, pageQuery(paginationToken, maxResults), credentials.accessToken);
    const auto response = decodeResponse<IDPageResponse>(body);
    QStringList ids;
    for (const PostIDDTO& post : response.data.value_or(QList<PostIDDTO>{}))
        ids.append(post.id);
    co_return makePage(ids, response.meta);
}

QCoro::Task<PostMetrics> XAPIClient::metrics(QString tweetID)
{
    const XCredentials credentials = co_await authorizedCredentials();
    const QList<FormField> query{{QStringLiteral("tweet.fields"), QStringLiteral("public_metrics")}};
    const QByteArray body =
        co_await get("/tweets/" + pathSegmentEncoded(tweetID), query, credentials.accessToken);
    const auto response = decodeResponse<SingleTweetResponse>(body);
    if (!response.data.publicMetrics)
        throw XAPIError::invalidResponse();
    co_return response.data.publicMetrics->model();
}

QCoro::Task<QList<ThreadPost>> XAPIClient::conversation(QString conversationID, QString authorID)
{
    const XCredentials credentials = co_await authorizedCredentials();
    QList<FormField> query = commonPostQuery();
    query.append({QStringLiteral("query"), QStringLiteral("conversation_id:") + conversationID});
    query.append({QStringLiteral("max_results"), QStringLiteral("100")});
    const QByteArray body = co_await get("/tweets/search/recent", query, credentials.accessToken);
    co_return postMapping::threadPosts(body, authorID);
}

QCoro::Task<> XAPIClient::deleteBookmark(QString tweetID)
{
    const XCredentials credentials = co_await authorizedCredentials();
    HTTPRequest deletion =
        xRequests::below(m_baseURL, "DELETE", bookmarksPath(credentials) + '/' + pathSegmentEncoded(tweetID));
    deletion.headers = xRequests::authorizedHeaders(credentials.accessToken);
    co_await send(std::move(deletion));
}

QCoro::Task<XCredentials> XAPIClient::authorizedCredentials()
{
    const auto stored = co_await m_credentials.loadXCredentials();
    if (!stored)
        throw XAPIError::credentialsMissing();
    XCredentials credentials = *stored;
    if (credentials.expiresAt && *credentials.expiresAt <= m_now().addingSeconds(refreshMarginSeconds))
        credentials = co_await refresh(credentials);
    if (credentials.accessToken.isEmpty() || credentials.userID.isEmpty())
        throw XAPIError::reconnectRequired();
    co_return credentials;
}

// The user removed them meanwhile, or connected another account or client: they are not to come back.
QCoro::Task<bool> XAPIClient::haveGone(XCredentials credentials)
{
    try {
        for (;;) {
            const qint64 changes = m_credentials.changes();
            const auto stored = co_await m_credentials.loadXCredentials();
            if (changes == m_credentials.changes()) {
                co_return !stored || stored->userID != credentials.userID ||
                    stored->clientID != credentials.clientID;
            }
        }
    } catch (const Error&) {
        // A vault that cannot be read just now may still take the new token, which would be lost otherwise.
        co_return false;
    }
}

QCoro::Task<XCredentials> XAPIClient::refresh(XCredentials credentials)
{
    if (!credentials.refreshToken || credentials.refreshToken->isEmpty())
        throw XAPIError::reconnectRequired();
    const QByteArray body = co_await send(refreshRequest(credentials));
    const auto tokens = decodeResponse<TokenResponse>(body);
    if (co_await haveGone(credentials))
        throw XAPIError::credentialsMissing();
    credentials.accessToken = tokens.accessToken;
    if (tokens.refreshToken)
        credentials.refreshToken = tokens.refreshToken;
    credentials.expiresAt = xRequests::expiry(tokens, m_now());
    // X forgets the old refresh token with its answer, so the new one is saved before anything can fail.
    co_await m_credentials.saveXCredentials(credentials);
    co_return credentials;
}

HTTPRequest XAPIClient::refreshRequest(const XCredentials& credentials) const
{
    return xRequests::tokens(
        m_baseURL, credentials.clientID, credentials.clientSecret,
        {{QStringLiteral("grant_type"), QStringLiteral("refresh_token")},
         {QStringLiteral("refresh_token"), credentials.refreshToken.value_or(QString())}});
}

QCoro::Task<QByteArray> XAPIClient::get(QByteArray path, QList<FormField> query, QString accessToken)
{
    return send(xRequests::authorizedGet(m_baseURL, path, std::move(query), accessToken));
}

QCoro::Task<QByteArray> XAPIClient::send(HTTPRequest request)
{
    const QStringList secrets = xRequests::secretsIn(request);
    const HTTPResponse response = co_await m_transport.data(std::move(request));
    if (!response.isSuccess())
        throw responseError(response, secrets);
    co_return response.body;
}

QCoro::Task<QList<SyncedBookmark>> XAPIClient::enrichMissingQuotedArticleMedia(ParsedBookmarkPage page,
                                                                               QString accessToken)
{
    const QStringList wanted = quotedPostsWithMissingMedia(page);
    if (wanted.isEmpty())
        co_return page.items;
    QList<FormField> query = commonPostQuery();
    query.append({QStringLiteral("ids"), wanted.join(u',')});
    const QByteArray body = co_await get("/tweets", query, accessToken);
    const auto response = decodeResponse<TweetPageResponse>(body);
    const auto media = postMapping::mediaByKey(response.includes);
    if (!media)
        throw XAPIError::invalidResponse();
    QHash<QString, TweetDTO> posts;
    for (const TweetDTO& post : response.data)
        posts.insert(post.id, post);
    if (posts.size() != response.data.size())
        throw XAPIError::invalidResponse();
    for (SyncedBookmark& item : page.items) {
        if (item.quotedPost && posts.contains(item.quotedPost->tweetID))
            enrich(*item.quotedPost, *posts.constFind(item.quotedPost->tweetID), *media);
    }
    co_return page.items;
}

} // namespace mirel
