#pragma once

#include <QByteArray>
#include <QList>
#include <QRegularExpression>
#include <QString>

#include <optional>

namespace mirel {

// One thing that goes wrong, or merely changes, at some request. README.md tells what each does.
struct Fault
{
    enum class Action {
        // Only the delay.
        None,
        Status,
        CutBeforeHeaders,
        CutInBody,
        Stall,
        StallInBody,
        RepeatedToken,
        EmptyPage,
        NoData,
        Undecodable,
        MissingAuthor,
        Redirect,
        HugeBody,
        AddPosts,
        RemovePosts,
        DenyAuthorization,
        ExpireTokens,
    };

    // What the body of a Status consists of.
    enum class Body { Problem, Errors, Text, HTML, Binary, Empty };

    // Which of the requests to that path, counted from 1 since the scenario was set.
    struct Selection
    {
        int from = 1;
        std::optional<int> to;
        // When not empty: these alone.
        QList<int> numbers;

        [[nodiscard]] bool contains(int number) const;
    };

    // Of removed posts.
    enum class End { Newest, Oldest };

    Action action = Action::None;
    // Matches the whole path.
    QRegularExpression path;
    // Empty: any.
    QString method;
    Selection requests;
    int delayMilliseconds = 0;

    int status = 0;
    Body body = Body::Problem;
    // Instead of `body`.
    std::optional<QByteArray> customBody;
    // The text of the header x-rate-limit-reset, or absent.
    std::optional<QByteArray> rateLimitReset;
    // The same, counted from the moment of the answer.
    std::optional<int> rateLimitResetInSeconds;
    QString location;
    // How much of a body arrives, or how large a huge body is. Negative: the default.
    qint64 bytes = -1;
    bool chunked = false;
    int count = 1;
    End end = End::Newest;
};

} // namespace mirel
