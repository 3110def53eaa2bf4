#pragma once

#include "x/MetaDTO.h"
#include "x/MetricsDTO.h"
#include "x/XDirectAPI.h"

namespace mirel {

// An error as X describes it.
struct ProblemResponse
{
    std::optional<QString> title;
    std::optional<QString> detail;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("title", &ProblemResponse::title),
            jsonField("detail", &ProblemResponse::detail),
        };
    }
};

// An error as the authorization describes it.
struct OAuthProblem
{
    std::optional<QString> detail;
    std::optional<QString> errorDescription;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("detail", &OAuthProblem::detail),
            jsonField("error_description", &OAuthProblem::errorDescription),
        };
    }
};

// New tokens.
struct TokenResponse
{
    QString accessToken;
    std::optional<QString> refreshToken;
    // In seconds.
    std::optional<qint64> expiresIn;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("access_token", &TokenResponse::accessToken),
            jsonField("refresh_token", &TokenResponse::refreshToken),
            jsonField("expires_in", &TokenResponse::expiresIn),
        };
    }
};

struct CurrentUserResponse
{
    XUser data;

    static constexpr auto jsonFields() { return std::tuple{jsonField("data", &CurrentUserResponse::data)}; }
};

struct FolderPageResponse
{
    std::optional<QList<XBookmarkFolder>> data;
    std::optional<MetaDTO> meta;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("data", &FolderPageResponse::data),
            jsonField("meta", &FolderPageResponse::meta),
        };
    }
};

// A post of which only the identifier is told.
struct PostIDDTO
{
    QString id;

    static constexpr auto jsonFields() { return std::tuple{jsonField("id", &PostIDDTO::id)}; }
};

struct IDPageResponse
{
    std::optional<QList<PostIDDTO>> data;
    std::optional<MetaDTO> meta;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("data", &IDPageResponse::data),
            jsonField("meta", &IDPageResponse::meta),
        };
    }
};

// A post of which only the counters are told.
struct PostMetricsDTO
{
    QString id;
    std::optional<MetricsDTO> publicMetrics;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("id", &PostMetricsDTO::id),
            jsonField("public_metrics", &PostMetricsDTO::publicMetrics),
        };
    }
};

struct SingleTweetResponse
{
    PostMetricsDTO data;

    static constexpr auto jsonFields() { return std::tuple{jsonField("data", &SingleTweetResponse::data)}; }
};

} // namespace mirel
