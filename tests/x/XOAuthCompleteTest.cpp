#include "testing/Printing.h"

#include "x/VaultThatCannotSave.h"
#include "x/XAPIClient.h"
#include "x/XAPIError.h"
#include "x/XOAuthServiceTest.h"

namespace mirel {
namespace {

class XOAuthComplete : public XOAuthServiceTest
{
};

TEST_F(XOAuthComplete, SavesTheConnectionAndGivesTheUser)
{
    const PendingXAuthorization attempt = begin();
    prepareSuccess();
    EXPECT_EQ(blockOn(service.complete(callback(attempt))), ada);
    EXPECT_EQ(stored(), connected());
}

TEST_F(XOAuthComplete, ExchangesTheCodeAndAsksWhoseTheTokenIs)
{
    const PendingXAuthorization attempt = begin();
    prepareSuccess();
    static_cast<void>(blockOn(service.complete(callback(attempt, QStringLiteral("a%26b%3Dc%20d+e/f%252F")))));
    ASSERT_EQ(transport.requests().size(), 2);
    const HTTPRequest& exchange = transport.requests().first();
    EXPECT_EQ(exchange.method, "POST");
    EXPECT_EQ(exchange.url.toEncoded(), "https://api.example/2/oauth2/token");
    EXPECT_EQ(exchange.timeout, std::chrono::seconds(60));
    EXPECT_EQ(exchange.headers, (QList<HTTPHeader>{{"Content-Type", "application/x-www-form-urlencoded"},
                                                   {"Accept", "application/json"}}));
    EXPECT_EQ(exchange.body, "client_id=client&code=a%26b%3Dc%20d+e/f%252F&code_verifier=" +
                                 QByteArray("AQEB").repeated(16) +
                                 "&grant_type=authorization_code&redirect_uri=mirel://oauth/x");
    const HTTPRequest& whose = transport.requests().last();
    EXPECT_EQ(whose.method, "GET");
    EXPECT_EQ(whose.url.toEncoded(), "https://api.example/2/users/me?user.fields=id,name,username");
    EXPECT_EQ(whose.timeout, std::chrono::seconds(60));
    EXPECT_EQ(whose.headers,
              (QList<HTTPHeader>{{"Authorization", "Bearer access"}, {"Accept", "application/json"}}));
    EXPECT_TRUE(whose.body.isEmpty());
}

TEST_F(XOAuthComplete, IsMadeOfRequestsThatTheEndOfTheProgramGivesSomeTime)
{
    const PendingXAuthorization attempt = begin();
    prepareSuccess();
    static_cast<void>(blockOn(service.complete(callback(attempt))));
    ASSERT_EQ(transport.requests().size(), 2);
    for (const HTTPRequest& request : transport.requests())
        EXPECT_TRUE(request.isUnrepeatable)
            << "the code is spent by the first, and the tokens wait for the second";
}

TEST_F(XOAuthComplete, NamesAConfidentialClientInTheHeaderToo)
{
    const PendingXAuthorization attempt = begin(QStringLiteral(" sécret "));
    prepareSuccess();
    static_cast<void>(blockOn(service.complete(callback(attempt))));
    const HTTPRequest& exchange = transport.requests().first();
    EXPECT_EQ(exchange.header("Authorization"),
              "Basic " + QStringLiteral("client:sécret").toUtf8().toBase64());
    EXPECT_TRUE(exchange.body.startsWith("client_id=client&"));
    XCredentials expected = connected();
    expected.clientSecret = QStringLiteral("sécret");
    EXPECT_EQ(stored(), expected);
}

TEST_F(XOAuthComplete, TakesABlankClientSecretForNone)
{
    for (const QString& blank : {QString(), QStringLiteral("   "), QStringLiteral("\n\t")}) {
        const PendingXAuthorization attempt = begin(blank);
        prepareSuccess();
        static_cast<void>(blockOn(service.complete(callback(attempt))));
        EXPECT_EQ(transport.requests().at(transport.requests().size() - 2).header("Authorization"),
                  std::nullopt);
        EXPECT_EQ(stored(), connected());
    }
}

TEST_F(XOAuthComplete, ReturnsToTheAddressOfTheAttempt)
{
    const PendingXAuthorization attempt =
        service.begin(QStringLiteral("client"), std::nullopt, XOAuthService::httpsHandoffRedirectURI);
    prepareSuccess();
    EXPECT_EQ(blockOn(service.complete(callback(attempt))), ada);
    EXPECT_TRUE(transport.requests().first().body.endsWith(
        "&redirect_uri=" + XOAuthService::httpsHandoffRedirectURI.toLatin1()));
}

TEST_F(XOAuthComplete, CountsOnTwoHoursWhenXTellsNoLifetime)
{
    const PendingXAuthorization attempt = begin();
    transport.answer(200, R"({"access_token":"access","refresh_token":"refresh"})");
    transport.answer(200, userAnswer);
    static_cast<void>(blockOn(service.complete(callback(attempt))));
    EXPECT_EQ(stored()->expiresAt, Instant::fromSecondsSince1970(nowSeconds + 7200));
}

TEST_F(XOAuthComplete, WithoutARefreshTokenConnectsUntilTheTokenExpires)
{
    const PendingXAuthorization attempt = begin();
    transport.answer(200, R"({"access_token":"access"})");
    transport.answer(200, userAnswer);
    static_cast<void>(blockOn(service.complete(callback(attempt))));
    EXPECT_EQ(stored()->refreshToken, std::nullopt);
    XAPIClient later(vault, transport, QUrl(QStringLiteral("https://api.example/2")),
                     [] { return Instant::fromSecondsSince1970(nowSeconds + 7200); });
    try {
        static_cast<void>(blockOn(later.currentUser()));
        ADD_FAILURE() << "used a token that had expired";
    } catch (const XAPIError& error) {
        EXPECT_EQ(error, XAPIError::reconnectRequired());
    }
    EXPECT_EQ(transport.requests().size(), 2);
}

TEST_F(XOAuthComplete, ReplacesTheConnectionBefore)
{
    XCredentials before = connected();
    before.clientSecret = QStringLiteral("old");
    before.userID = QStringLiteral("7");
    blockOn(vault.saveXCredentials(before));
    const PendingXAuthorization attempt = begin();
    prepareSuccess();
    static_cast<void>(blockOn(service.complete(callback(attempt))));
    EXPECT_EQ(stored(), connected());
}

TEST_F(XOAuthComplete, NeedsAnAttempt)
{
    const QUrl anything = callback(QStringLiteral("error=access_denied"));
    EXPECT_EQ(failure(service.complete(anything)), XOAuthError::noPendingAuthorization());
    const PendingXAuthorization attempt = begin();
    prepareSuccess();
    static_cast<void>(blockOn(service.complete(callback(attempt))));
    EXPECT_EQ(failure(service.complete(callback(attempt))), XOAuthError::noPendingAuthorization());
    EXPECT_EQ(transport.requests().size(), 2);
    EXPECT_EQ(stored(), connected());
}

// A callback that is refused without a word to X. "%1" stands for the state of the attempt.
struct Refused
{
    const char* name;
    const char* query;
    XOAuthError error;
    friend void PrintTo(const Refused& row, std::ostream* stream) { *stream << row.name; }
};

class XOAuthCallback : public XOAuthServiceTest, public testing::WithParamInterface<Refused>
{
};

TEST_P(XOAuthCallback, IsRefusedAndChangesNothing)
{
    const PendingXAuthorization attempt = begin();
    const QString query = QString::fromUtf8(GetParam().query).replace(QStringLiteral("%1"), attempt.state);
    EXPECT_EQ(failure(service.complete(callback(query))), GetParam().error);
    EXPECT_TRUE(transport.requests().isEmpty());
    EXPECT_EQ(stored(), std::nullopt);
    prepareSuccess();
    EXPECT_EQ(blockOn(service.complete(callback(attempt))), ada);
}

XOAuthError denied(const char* reason)
{
    return XOAuthError::authorizationDenied(QString::fromUtf8(reason));
}

INSTANTIATE_TEST_SUITE_P(
    Callbacks, XOAuthCallback,
    testing::Values(
        Refused{"Denied", "error=access_denied&state=%1", denied("access_denied")},
        Refused{"DeniedWithADescription",
                "error=access_denied&error_description=The%20user%20said%20no.&state=%1",
                denied("The user said no.")},
        Refused{"DeniedWithAnEmptyDescription", "error=access_denied&error_description=&state=%1",
                denied("")},
        Refused{"DeniedWithAWrongState", "state=other&error=access_denied", denied("access_denied")},
        Refused{"DeniedWithoutAState", "error=access_denied", denied("access_denied")},
        Refused{"DeniedWithACode", "error=access_denied&state=%1&code=c", denied("access_denied")},
        Refused{"DeniedWithoutAReason", "error&state=%1&code=c", denied("")},
        Refused{"WrongState", "state=other&code=c", XOAuthError::stateMismatch()},
        Refused{"LongerState", "state=%1x&code=c", XOAuthError::stateMismatch()},
        Refused{"EmptyState", "state=&code=c", XOAuthError::stateMismatch()},
        Refused{"StateWithoutAValue", "state&code=c", XOAuthError::stateMismatch()},
        Refused{"NoState", "code=c", XOAuthError::stateMismatch()},
        Refused{"StateUnderAnotherName", "State=%1&code=c", XOAuthError::stateMismatch()},
        Refused{"NoQuery", "", XOAuthError::stateMismatch()},
        Refused{"WrongStateWithoutACode", "state=other", XOAuthError::stateMismatch()},
        Refused{"NoCode", "state=%1", XOAuthError::invalidCallback()},
        Refused{"EmptyCode", "state=%1&code=", XOAuthError::invalidCallback()},
        Refused{"CodeWithoutAValue", "code&state=%1", XOAuthError::invalidCallback()},
        Refused{"DescriptionWithoutAnError", "error_description=no&state=%1", XOAuthError::invalidCallback()},
        Refused{"TwoCodes", "state=%1&code=c&code=d", XOAuthError::invalidResponse()},
        Refused{"TwoStates", "state=other&state=%1&code=c", XOAuthError::invalidResponse()},
        Refused{"TwoNamesThatMeanTheSame", "state=%1&code=c&%63ode=c", XOAuthError::invalidResponse()}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(XOAuthComplete, DescribesARefusalWithoutAReasonByItsName)
{
    static_cast<void>(begin());
    const auto error = failure(service.complete(callback(QStringLiteral("error=access_denied"))));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->description(), QStringLiteral("X authorization was not completed: access_denied"));
}

TEST_F(XOAuthComplete, CanNotReadACallbackWithoutAnAddress)
{
    static_cast<void>(begin());
    EXPECT_EQ(failure(service.complete(QUrl())), XOAuthError::stateMismatch());
}

TEST_F(XOAuthComplete, OverlooksItemsThatItDoesNotKnow)
{
    const PendingXAuthorization attempt = begin();
    prepareSuccess();
    const QString query = QStringLiteral("iss=x&code=c&%73tate=%1#top").arg(attempt.state);
    EXPECT_EQ(blockOn(service.complete(callback(query))), ada);
}

// Answers of X, in order, and the failure that they are.
struct Unsuccessful
{
    const char* name;
    QList<QPair<int, QByteArray>> answers;
    XOAuthError error;
    friend void PrintTo(const Unsuccessful& row, std::ostream* stream) { *stream << row.name; }
};

class XOAuthAnswer : public XOAuthServiceTest, public testing::WithParamInterface<Unsuccessful>
{
};

TEST_P(XOAuthAnswer, FailsAndLeavesTheAttemptForAFreshCode)
{
    const PendingXAuthorization attempt = begin();
    for (const auto& [status, body] : GetParam().answers)
        transport.answer(status, body);
    EXPECT_EQ(failure(service.complete(callback(attempt))), GetParam().error);
    EXPECT_EQ(transport.requests().size(), GetParam().answers.size());
    EXPECT_EQ(stored(), std::nullopt);
    prepareSuccess();
    EXPECT_EQ(blockOn(service.complete(callback(attempt, QStringLiteral("fresh")))), ada);
    EXPECT_TRUE(transport.requests().at(GetParam().answers.size()).body.contains("&code=fresh&"));
    EXPECT_EQ(stored(), connected());
}

XOAuthError http(int status, const char* message)
{
    return XOAuthError::http(status, QString::fromUtf8(message));
}

INSTANTIATE_TEST_SUITE_P(
    OfTheTokens, XOAuthAnswer,
    testing::Values(
        Unsuccessful{"Refused",
                     {{400, R"({"error":"invalid_request","error_description":"Value was invalid."})"}},
                     http(400, "Value was invalid.")},
        Unsuccessful{
            "RefusedWithADetail", {{401, R"({"detail":"Unauthorized"})"}}, http(401, "Unauthorized")},
        Unsuccessful{"TheDescriptionBeforeTheDetail",
                     {{400, R"({"detail":"later","error_description":"first"})"}},
                     http(400, "first")},
        Unsuccessful{"AnEmptyDescriptionCounts",
                     {{400, R"({"detail":"later","error_description":""})"}},
                     http(400, "")},
        Unsuccessful{"NoDescriptionButNull",
                     {{400, R"({"detail":"later","error_description":null})"}},
                     http(400, "later")},
        Unsuccessful{"NeitherField", {{400, R"({"error":"e"})"}}, http(400, R"({"error":"e"})")},
        Unsuccessful{"FieldOfAnotherType",
                     {{400, R"({"detail":5,"error_description":"d"})"}},
                     http(400, R"({"detail":5,"error_description":"d"})")},
        Unsuccessful{"NotJSON", {{503, "<p>Down, sorry\xE2\x80\xA6"}}, http(503, "<p>Down, sorry…")},
        Unsuccessful{"NotEvenText", {{500, "\xff\xfe"}}, http(500, "Request failed")},
        Unsuccessful{"NoBody", {{500, ""}}, http(500, "")},
        Unsuccessful{
            "TooManyRequestsLikeAnyOther", {{429, R"({"detail":"Slow down"})"}}, http(429, "Slow down")},
        Unsuccessful{"StatusBelow200", {{199, "early"}}, http(199, "early")},
        Unsuccessful{"StatusAbove299", {{300, tokenAnswer}}, http(300, tokenAnswer.constData())},
        Unsuccessful{"NoTokens", {{200, ""}}, XOAuthError::invalidResponse()},
        Unsuccessful{"TokensThatAreNotJSON", {{200, "<html>"}}, XOAuthError::invalidResponse()},
        Unsuccessful{"NoAccessToken", {{200, R"({"refresh_token":"r"})"}}, XOAuthError::invalidResponse()},
        Unsuccessful{
            "AccessTokenOfAnotherType", {{200, R"({"access_token":5})"}}, XOAuthError::invalidResponse()},
        Unsuccessful{"LifetimeOfAnotherType",
                     {{200, R"({"access_token":"a","expires_in":"100"})"}},
                     XOAuthError::invalidResponse()},
        Unsuccessful{"TokensCutShort", {{200, tokenAnswer.left(60)}}, XOAuthError::invalidResponse()}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    OfTheUser, XOAuthAnswer,
    testing::Values(
        Unsuccessful{"Refused",
                     {{200, tokenAnswer}, {403, R"({"title":"Forbidden","detail":"Not enrolled."})"}},
                     http(403, "Not enrolled.")},
        Unsuccessful{"RefusedWithATitleAlone",
                     {{200, tokenAnswer}, {403, R"({"title":"Forbidden"})"}},
                     http(403, R"({"title":"Forbidden"})")},
        Unsuccessful{"TooManyRequestsLikeAnyOther", {{200, tokenAnswer}, {429, "Slow"}}, http(429, "Slow")},
        Unsuccessful{"NoUser", {{200, tokenAnswer}, {200, ""}}, XOAuthError::invalidResponse()},
        Unsuccessful{"ErrorsInPlaceOfTheUser",
                     {{200, tokenAnswer}, {200, R"({"errors":[{"detail":"gone"}]})"}},
                     XOAuthError::invalidResponse()},
        Unsuccessful{"UserWithoutAName",
                     {{200, tokenAnswer}, {200, R"({"data":{"id":"42","username":"ada"}})"}},
                     XOAuthError::invalidResponse()}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(XOAuthComplete, PassesFailuresOfTheTransportOn)
{
    const PendingXAuthorization attempt = begin();
    EXPECT_THROW(static_cast<void>(blockOn(service.complete(callback(attempt)))), ConnectionLost);
    transport.answer(200, tokenAnswer);
    EXPECT_THROW(static_cast<void>(blockOn(service.complete(callback(attempt)))), ConnectionLost);
    EXPECT_EQ(stored(), std::nullopt);
    prepareSuccess();
    EXPECT_EQ(blockOn(service.complete(callback(attempt))), ada);
}

TEST_F(XOAuthComplete, PassesAFailureToSaveOnAndLeavesTheAttempt)
{
    VaultThatCannotSave locked;
    XOAuthService other = serviceOver(locked, transport);
    const PendingXAuthorization attempt = begin(other);
    for (int i = 0; i < 2; ++i) {
        prepareSuccess();
        EXPECT_THROW(static_cast<void>(blockOn(other.complete(callback(attempt)))), VaultLocked);
    }
    EXPECT_EQ(transport.requests().size(), 4);
}

TEST_F(XOAuthComplete, NeverQuotesASecretThatXSendsBack)
{
    const QString secret = QStringLiteral("planted-client-secret");
    const QString code = QStringLiteral("planted-code");
    const QString verifier = QStringLiteral("AQEB").repeated(16);
    const QString basic = QString::fromLatin1(("client:" + secret.toUtf8()).toBase64());
    const PendingXAuthorization attempt = begin(secret);
    const QString quoting = QStringLiteral("%1, %2, %3 and %4").arg(secret, code, verifier, basic);
    const QString hidden = QStringLiteral("[hidden], [hidden], [hidden] and [hidden]");
    transport.answer(500, quoting.toUtf8());
    EXPECT_EQ(failure(service.complete(callback(attempt, code))), XOAuthError::http(500, hidden));
    transport.answer(400, R"({"error_description":")" + quoting.toUtf8() + R"("})");
    EXPECT_EQ(failure(service.complete(callback(attempt, code))), XOAuthError::http(400, hidden));
    transport.answer(200,
                     R"({"access_token":"planted-access-token","refresh_token":"planted-refresh-token"})");
    transport.answer(401, R"({"detail":"planted-access-token is unknown"})");
    EXPECT_EQ(failure(service.complete(callback(attempt, code))),
              XOAuthError::http(401, QStringLiteral("[hidden] is unknown")));
}

TEST_F(XOAuthComplete, NeverQuotesAnAnswerThatItCannotRead)
{
    const PendingXAuthorization attempt = begin(QStringLiteral("planted-client-secret"));
    const QByteArray unreadable = R"({"access_token":"planted-token","expires_in":"planted-token"})";
    transport.answer(200, unreadable);
    const auto error = failure(service.complete(callback(attempt, QStringLiteral("planted-code"))));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->description(), QStringLiteral("X returned an unreadable OAuth response."));
    const auto twice = failure(service.complete(callback(QStringLiteral("code=planted&code=planted"))));
    ASSERT_TRUE(twice);
    EXPECT_FALSE(twice->description().contains(QStringLiteral("planted")));
}

TEST_F(XOAuthComplete, LeavesPlainWordsThatLookLikeAShortSecret)
{
    const PendingXAuthorization attempt = begin(QStringLiteral("was"));
    transport.answer(400, "The code was invalid.");
    EXPECT_EQ(failure(service.complete(callback(attempt, QStringLiteral("code")))),
              http(400, "The code was invalid."));
}

} // namespace
} // namespace mirel
