#pragma once

#include "transport/HTTPTransport.h"
#include "x/FormEncoding.h"
#include "x/XResponses.h"

// What every request to X has in common, and the reading of its answers.
namespace mirel::xRequests {

// A request to `path`, percent-encoded and beginning with "/", below the root of the API.
[[nodiscard]] HTTPRequest below(const QUrl& root, const QByteArray& method, const QByteArray& path);

// What shows that a request is made for the user.
[[nodiscard]] QList<HTTPHeader> authorizedHeaders(const QString& accessToken);
[[nodiscard]] HTTPRequest authorizedGet(const QUrl& root, const QByteArray& path, QList<FormField> query,
                                        const QString& accessToken);

// Asks whose the token is. The answer is a CurrentUserResponse.
[[nodiscard]] HTTPRequest currentUser(const QUrl& root, const QString& accessToken);

// Asks for tokens with the form `fields` and the client's identifier. A client with a secret that is not
// empty is named in the header too. The answer is a TokenResponse.
[[nodiscard]] HTTPRequest tokens(const QUrl& root, const QString& clientID,
                                 const std::optional<QString>& clientSecret, QList<FormField> fields);

// When the access token of `tokens` expires that came at `now`: after two hours when X does not tell.
[[nodiscard]] Instant expiry(const TokenResponse& tokens, Instant now);

// The tokens, codes and client's secret that a request carries.
[[nodiscard]] QStringList secretsIn(const HTTPRequest& request);

// `message` without what it quotes of `secrets`.
[[nodiscard]] QString withoutSecrets(QString message, const QStringList& secrets);

// The body of a failed answer as text, or "Request failed" when it is not UTF-8.
[[nodiscard]] QString failureText(const QByteArray& body);

} // namespace mirel::xRequests
