#pragma once

#include <QByteArray>

#include <optional>

namespace mirel {

// The bytes that a gzip stream of one or more members holds. Absent when it is cut short or damaged; more
// than `limit` bytes are not expanded: then `isTooLarge` is set.
struct GzipDecoding
{
    std::optional<QByteArray> bytes;
    bool isTooLarge = false;
};

[[nodiscard]] GzipDecoding decodeGzip(const QByteArray& compressed, qsizetype limit);

} // namespace mirel
