#pragma once

#include "credentials/CredentialVault.h"
#include "transport/HTTPTransport.h"
#include "x/FormEncoding.h"
#include "x/PostMapping.h"
#include "x/XDirectAPI.h"

namespace mirel {

// Mirel's only road to the X API, the authorization flow apart. Keeps no state between calls and never
// retries: each operation reads the credentials from the vault, refreshes the access token when it is about
// to expire, and sends one authorised request.
//
// Every operation throws XAPIError, or what the transport or the vault throws:
//   credentialsMissing   the vault holds none
//   reconnectRequired    access token or user id are empty, or the token expires and cannot be refreshed
//   rateLimited          X answered 429
//   http                 X answered any other status outside 200 to 299
//   invalidResponse      the answer cannot be read
class XAPIClient : public XDirectAPI
{
public:
    // `credentials` and `transport` outlive the client, and the client outlives its calls. `baseURL` is the
    // root of the API, to which every path is appended; `now` decides when a token is due.
    XAPIClient(CredentialVault& credentials, HTTPTransport& transport, QUrl baseURL, Clock now);

    // Also brings the media of articles inside quoted posts, which X leaves out of a page of bookmarks; that
    // takes a second request when there are any, and its failure fails the call.
    [[nodiscard]] QCoro::Task<XBookmarkPage> bookmarks(std::optional<QString> paginationToken,
                                                       qint64 maxResults) override;
    [[nodiscard]] QCoro::Task<XUser> currentUser() override;
    [[nodiscard]] QCoro::Task<XPage<XBookmarkFolder>> bookmarkFolders(std::optional<QString> paginationToken,
                                                                      qint64 maxResults) override;
    [[nodiscard]] QCoro::Task<XPage<QString>>
    folderPostIDs(QString folderID, std::optional<QString> paginationToken, qint64 maxResults) override;
    // invalidResponse also when X tells no counters.
    [[nodiscard]] QCoro::Task<PostMetrics> metrics(QString tweetID) override;
    // invalidResponse also when X finds nothing.
    [[nodiscard]] QCoro::Task<QList<ThreadPost>> conversation(QString conversationID,
                                                              QString authorID) override;
    QCoro::Task<> deleteBookmark(QString tweetID) override;

private:
    QCoro::Task<XCredentials> authorizedCredentials();
    QCoro::Task<XCredentials> refresh(XCredentials credentials);
    QCoro::Task<bool> haveGone(XCredentials credentials);
    QCoro::Task<QByteArray> get(QByteArray path, QList<FormField> query, QString accessToken);
    // The body of a successful answer.
    QCoro::Task<QByteArray> send(HTTPRequest request);
    QCoro::Task<QList<SyncedBookmark>> enrichMissingQuotedArticleMedia(ParsedBookmarkPage page,
                                                                       QString accessToken);
    [[nodiscard]] HTTPRequest refreshRequest(const XCredentials& credentials) const;

    CredentialVault& m_credentials;
    HTTPTransport& m_transport;
    QUrl m_baseURL;
    Clock m_now;
};

} // namespace mirel
