#pragma once

#include "support/RawJSONValue.h"

#include <memory>
#include <optional>

namespace mirel {

// A parsed JSON text that keeps every token as it was sent: numbers of any size, "1.0", escapes, unknown and
// repeated keys. Immutable; copies share the text.
class RawJSON
{
public:
    // How deep arrays and objects may be nested.
    static constexpr int maximumDepth = 256;

    // How many bytes the parser reads past the end of a text.
    static constexpr qsizetype padding = 64;

    // Any JSON text, also a bare value such as "null". Throws RawJSONError when `utf8` is not JSON, is not
    // UTF-8, or is nested too deeply. Half a surrogate pair in an escape is no error. Shares `utf8` when that
    // was given room for `padding` more bytes by reserve(), else copies it.
    [[nodiscard]] static RawJSON parse(const QByteArray& utf8);

    // The value of the first member `key` of a text that holds an object, at a third of the cost of parse():
    // all of the text is checked, but only that value kept, in which numbers may be written otherwise. Absent
    // when there is no such value or it is no object, and when only parse() can tell whether the text is
    // JSON. Needs `utf8` to be given room by reserve() as for parse(), else it is copied.
    [[nodiscard]] static std::optional<RawJSON> parseObject(const QByteArray& utf8, QByteArrayView key);

    // The value of the text. Valid as long as a copy of this RawJSON lives.
    [[nodiscard]] RawJSONValue root() const { return {m_tree.get(), 0}; }

private:
    explicit RawJSON(std::shared_ptr<const detail::RawJSONTree> tree)
        : m_tree(std::move(tree))
    {
    }

    std::shared_ptr<const detail::RawJSONTree> m_tree;
};

} // namespace mirel
