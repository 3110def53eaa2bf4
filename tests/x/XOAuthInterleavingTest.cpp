#include "testing/Printing.h"

#include "x/HeldTransport.h"
#include "x/XOAuthServiceTest.h"

namespace mirel {
namespace {

const QByteArray refusal =
    R"({"error":"invalid_request","error_description":"Value passed for the token was invalid."})";

// A vault whose writing waits until the test opens its gate.
class HeldVault : public InMemoryCredentialVault
{
public:
    Gate saving;

    QCoro::Task<> saveXCredentials(XCredentials credentials) override
    {
        co_await saving.opened();
        co_await InMemoryCredentialVault::saveXCredentials(credentials);
    }
};

// What X says to several calls at once.
class XOAuthInterleaving : public XOAuthServiceTest
{
protected:
    static XOAuthError spent()
    {
        return XOAuthError::http(400, QStringLiteral("Value passed for the token was invalid."));
    }

    HeldTransport network;
    XOAuthService held = serviceOver(vault, network);
};

TEST_F(XOAuthInterleaving, ARepeatedCallbackDuringTheExchangeIsRefusedByX)
{
    const PendingXAuthorization attempt = begin(held);
    auto first = held.complete(callback(attempt));
    auto second = held.complete(callback(attempt));
    ASSERT_EQ(network.count(), 2);
    EXPECT_EQ(network.request(0).body, network.request(1).body);
    network.answer(0, 200, tokenAnswer);
    network.answer(1, 400, refusal);
    EXPECT_EQ(failure(std::move(second)), spent());
    network.answer(2, 200, userAnswer);
    EXPECT_EQ(blockOn(std::move(first)), ada);
    EXPECT_EQ(stored(), connected());
}

TEST_F(XOAuthInterleaving, TheRepeatedCallbackMayBeTheOneThatSucceeds)
{
    const PendingXAuthorization attempt = begin(held);
    auto first = held.complete(callback(attempt));
    auto second = held.complete(callback(attempt));
    network.answer(1, 200, tokenAnswer);
    network.answer(2, 200, userAnswer);
    EXPECT_EQ(blockOn(std::move(second)), ada);
    network.answer(0, 400, refusal);
    EXPECT_EQ(failure(std::move(first)), spent());
    EXPECT_EQ(stored(), connected());
}

TEST_F(XOAuthInterleaving, ARepeatedCallbackThatXAnswersLateChangesNothing)
{
    const PendingXAuthorization attempt = begin(held);
    auto first = held.complete(callback(attempt));
    auto second = held.complete(callback(attempt));
    network.answer(0, 200, tokenAnswer);
    network.answer(2, 200, userAnswer);
    EXPECT_EQ(blockOn(std::move(first)), ada);
    network.answer(1, 200, R"({"access_token":"other"})");
    network.answer(3, 200, R"({"data":{"id":"7","name":"Eve","username":"eve"}})");
    EXPECT_EQ(failure(std::move(second)), XOAuthError::noPendingAuthorization());
    EXPECT_EQ(stored(), connected());
}

TEST_F(XOAuthInterleaving, AWrongCallbackDuringTheExchangeChangesNothing)
{
    const PendingXAuthorization attempt = begin(held);
    auto task = held.complete(callback(attempt));
    EXPECT_EQ(failure(held.complete(callback(QStringLiteral("state=other&code=c")))),
              XOAuthError::stateMismatch());
    EXPECT_EQ(failure(held.complete(callback(QStringLiteral("error=access_denied")))),
              XOAuthError::authorizationDenied(QStringLiteral("access_denied")));
    EXPECT_EQ(network.count(), 1);
    network.answer(0, 200, tokenAnswer);
    network.answer(1, 200, userAnswer);
    EXPECT_EQ(blockOn(std::move(task)), ada);
    EXPECT_EQ(stored(), connected());
}

TEST_F(XOAuthInterleaving, AnAttemptThatBeginsDuringTheExchangeReplacesTheOlderOne)
{
    const PendingXAuthorization older = begin(held);
    auto late = held.complete(callback(older));
    const PendingXAuthorization newer = begin(held, QStringLiteral("secret"));
    network.answer(0, 200, tokenAnswer);
    network.answer(1, 200, userAnswer);
    EXPECT_EQ(failure(std::move(late)), XOAuthError::stateMismatch());
    EXPECT_EQ(stored(), std::nullopt);
    auto task = held.complete(callback(newer));
    network.answer(2, 200, tokenAnswer);
    network.answer(3, 200, userAnswer);
    EXPECT_EQ(blockOn(std::move(task)), ada);
    EXPECT_EQ(stored()->clientSecret, QStringLiteral("secret"));
}

TEST_F(XOAuthInterleaving, TwoAttemptsAtOnceEachExchangeWithTheirOwnVerifier)
{
    const PendingXAuthorization older = begin(held);
    auto late = held.complete(callback(older));
    const PendingXAuthorization newer = begin(held);
    auto task = held.complete(callback(newer));
    ASSERT_EQ(network.count(), 2);
    EXPECT_TRUE(network.request(0).body.contains("code_verifier=" + QByteArray("AQEB").repeated(16)));
    EXPECT_TRUE(network.request(1).body.contains("code_verifier=" + QByteArray("AwMD").repeated(16)));
    network.answer(1, 200, tokenAnswer);
    network.answer(2, 200, userAnswer);
    EXPECT_EQ(blockOn(std::move(task)), ada);
    network.answer(0, 200, R"({"access_token":"old"})");
    network.answer(3, 200, userAnswer);
    EXPECT_EQ(failure(std::move(late)), XOAuthError::noPendingAuthorization());
    EXPECT_EQ(stored(), connected());
}

TEST_F(XOAuthInterleaving, AnAttemptOfTheSameRandomBytesIsStillAnotherOne)
{
    XOAuthService other(vault, network, QUrl(QStringLiteral("https://api.example/2")),
                        QUrl(QStringLiteral("https://x.example/authorize")), &now,
                        [](qsizetype count) { return QByteArray(count, 'r'); });
    const PendingXAuthorization older = begin(other);
    auto late = other.complete(callback(older));
    const PendingXAuthorization newer = begin(other, QStringLiteral("secret"));
    EXPECT_EQ(older.state, newer.state);
    network.answer(0, 200, tokenAnswer);
    network.answer(1, 200, userAnswer);
    EXPECT_EQ(failure(std::move(late)), XOAuthError::stateMismatch());
    EXPECT_EQ(stored(), std::nullopt);
}

TEST_F(XOAuthInterleaving, AnAttemptThatBeginsWhileTheOlderOneIsSavedStays)
{
    HeldVault slow;
    XOAuthService other = serviceOver(slow, transport);
    const PendingXAuthorization older = begin(other);
    prepareSuccess();
    auto saving = other.complete(callback(older));
    EXPECT_FALSE(saving.isReady());
    const PendingXAuthorization newer = begin(other);
    slow.saving.open();
    EXPECT_EQ(blockOn(std::move(saving)), ada);
    EXPECT_EQ(blockOn(slow.loadXCredentials()), connected());
    prepareSuccess();
    EXPECT_EQ(blockOn(other.complete(callback(newer))), ada);
}

TEST_F(XOAuthInterleaving, AnAttemptThatIsAbandonedDuringTheExchangeSavesNothing)
{
    const PendingXAuthorization attempt = begin(held);
    auto task = held.complete(callback(attempt));
    network.answer(0, 200, tokenAnswer);
    held.abandon();
    network.answer(1, 200, userAnswer);
    EXPECT_EQ(failure(std::move(task)), XOAuthError::noPendingAuthorization());
    EXPECT_EQ(stored(), std::nullopt);
    EXPECT_EQ(failure(held.complete(callback(attempt))), XOAuthError::noPendingAuthorization());
    EXPECT_EQ(network.count(), 2);
}

TEST_F(XOAuthInterleaving, AbandoningWithoutAnAttemptChangesNothing)
{
    held.abandon();
    const PendingXAuthorization attempt = begin(held);
    auto task = held.complete(callback(attempt));
    network.answer(0, 200, tokenAnswer);
    network.answer(1, 200, userAnswer);
    EXPECT_EQ(blockOn(std::move(task)), ada);
}

TEST_F(XOAuthInterleaving, CancelingTheNetworkEndsTheCallAndLeavesTheAttempt)
{
    const PendingXAuthorization attempt = begin(held);
    auto exchanging = held.complete(callback(attempt));
    network.cancelAll();
    EXPECT_THROW(static_cast<void>(blockOn(std::move(exchanging))), HTTPTransportError);
    auto resolving = held.complete(callback(attempt));
    network.answer(1, 200, tokenAnswer);
    network.cancelAll();
    EXPECT_THROW(static_cast<void>(blockOn(std::move(resolving))), HTTPTransportError);
    EXPECT_EQ(stored(), std::nullopt);
    auto task = held.complete(callback(attempt, QStringLiteral("fresh")));
    network.answer(3, 200, tokenAnswer);
    network.answer(4, 200, userAnswer);
    EXPECT_EQ(blockOn(std::move(task)), ada);
}

TEST_F(XOAuthInterleaving, ACanceledCallWhoseAttemptWasReplacedLeavesTheNewOne)
{
    const PendingXAuthorization older = begin(held);
    auto late = held.complete(callback(older));
    const PendingXAuthorization newer = begin(held);
    network.cancelAll();
    EXPECT_THROW(static_cast<void>(blockOn(std::move(late))), HTTPTransportError);
    EXPECT_EQ(failure(held.complete(callback(older))), XOAuthError::stateMismatch());
    auto task = held.complete(callback(newer));
    network.answer(1, 200, tokenAnswer);
    network.answer(2, 200, userAnswer);
    EXPECT_EQ(blockOn(std::move(task)), ada);
}

} // namespace
} // namespace mirel
