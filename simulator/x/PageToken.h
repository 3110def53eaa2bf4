#pragma once

#include <QString>

#include <optional>

namespace mirel::simulator {

// An opaque page token: where to go on in a list, with a check that it was made for that list.
struct PageToken
{
    // See Account::slice.
    int before = 0;
    // Tells apart tokens that lead to the same place.
    int variant = 0;

    // `list` names the list, and the seed.
    [[nodiscard]] QString encoded(const QByteArray& list) const;
    // Absent when the text is no token of that list.
    [[nodiscard]] static std::optional<PageToken> decoded(const QString& text, const QByteArray& list);
};

} // namespace mirel::simulator
