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

// Hands `link` to the program that receives links in `directory`. A program that does not answer within
// `patience` refuses. Blocks.
[[nodiscard]] Handing handOver(const HandedLink& link, const QString& directory,
                               std::chrono::milliseconds patience = std::chrono::seconds(5));

} // namespace mirel
