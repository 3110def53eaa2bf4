#pragma once

#include "credentials/InMemoryCredentialVault.h"
#include "support/BlockOn.h"
#include "x/PageBuilding.h"
#include "x/RecordingTransport.h"
#include "x/XAPIClient.h"
#include "x/XAPIError.h"

#include <gtest/gtest.h>

namespace mirel {

inline void PrintTo(const XAPIError& error, std::ostream* stream)
{
    *stream << error.what();
}

// A client with credentials of the user "42", at the instant 1,000,000, whose network is prepared.
class XAPIClientTest : public testing::Test
{
protected:
    static constexpr double nowSeconds = 1'000'000;

    static XCredentials standardCredentials()
    {
        XCredentials credentials;
        credentials.clientID = QStringLiteral("client");
        credentials.accessToken = QStringLiteral("access");
        credentials.refreshToken = QStringLiteral("refresh");
        credentials.userID = QStringLiteral("42");
        return credentials;
    }

    // Credentials whose token lasts for `seconds` more.
    static XCredentials expiringIn(double seconds)
    {
        XCredentials credentials = standardCredentials();
        credentials.expiresAt = Instant::fromSecondsSince1970(nowSeconds + seconds);
        return credentials;
    }

    void store(const XCredentials& credentials) { blockOn(vault.saveXCredentials(credentials)); }
    XCredentials stored() { return blockOn(vault.loadXCredentials()).value_or(XCredentials{}); }

    // The XAPIError with which the task ends.
    template <typename Result>
    static std::optional<XAPIError> failure(QCoro::Task<Result> task)
    {
        try {
            static_cast<void>(blockOn(std::move(task)));
        } catch (const XAPIError& error) {
            return error;
        }
        return std::nullopt;
    }
    static std::optional<XAPIError> failure(QCoro::Task<> task)
    {
        try {
            blockOn(std::move(task));
        } catch (const XAPIError& error) {
            return error;
        }
        return std::nullopt;
    }

    [[nodiscard]] QByteArray urlOf(qsizetype index) const
    {
        return transport.requests().at(index).url.toEncoded();
    }

    InMemoryCredentialVault vault{standardCredentials()};
    RecordingTransport transport;
    XAPIClient client{vault, transport, QUrl(QStringLiteral("https://api.example/2")),
                      [] { return Instant::fromSecondsSince1970(nowSeconds); }};
};

} // namespace mirel
