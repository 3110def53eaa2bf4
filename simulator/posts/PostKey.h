#pragma once

#include <compare>

namespace mirel::simulator {

// Names one post of the simulated world: a bookmarked one by its serial number, or one that stands
// around it (what it quotes, what it answers, the rest of its conversation).
struct PostKey
{
    // The bookmarked post itself.
    static constexpr int bookmarked = 0;
    // What it quotes, repeats or answers.
    static constexpr int referenced = 1;
    // The posts of its author's thread, from here on.
    static constexpr int thread = 8;
    // Other people's replies in its conversation, from here on.
    static constexpr int replies = 24;

    // Serial numbers and roles fit into the low bits of an identifier.
    static constexpr int serialLimit = 1 << 16;
    static constexpr int roleLimit = 1 << 6;

    int serial = 0;
    int role = bookmarked;

    friend auto operator<=>(const PostKey&, const PostKey&) = default;
};

} // namespace mirel::simulator
