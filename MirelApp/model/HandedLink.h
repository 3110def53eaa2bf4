#pragma once

#include "support/JSONCoding.h"

#include <chrono>

namespace mirel {

// What a start of Mirel hands to the program that runs already, instead of a window of its own.
struct HandedLink
{
    // The link that the system opens with Mirel; absent when the user just started it.
    std::optional<QString> url;
    // Where the library lies that would have been opened.
    QString libraryPath;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("url", &HandedLink::url),
            jsonField("libraryPath", &HandedLink::libraryPath),
        };
    }

    friend bool operator==(const HandedLink&, const HandedLink&) = default;
};

enum class Handing { taken, refused, nobodyThere };

// How long a program that receives links is waited for.
struct HandingPatience
{
    std::chrono::milliseconds forConnection = std::chrono::seconds(5);
    // Whoever was connected to lives, and may just be opening a large library, which answers nobody until
    // that is done.
    std::chrono::milliseconds forAnswer = std::chrono::minutes(1);
};

// Hands `link` to the program that receives links in `directory`. One that ends meanwhile, or that lets
// `patience` run out once it was connected to, refuses. Blocks.
[[nodiscard]] Handing handOver(const HandedLink& link, const QString& directory,
                               const HandingPatience& patience = {});

} // namespace mirel
