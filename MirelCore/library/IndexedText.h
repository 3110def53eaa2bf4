#pragma once

#include "library/SearchableText.h"

namespace mirel {

// The searchable text of a bookmark as it is kept in memory. A long part that repeats an earlier one, as the
// text of an article often does, is kept once: of the repetition only its ends, which is enough for needles
// that are not long.
class IndexedText
{
public:
    // Nothing is kept.
    IndexedText() = default;
    explicit IndexedText(const QList<SearchableField>& fields);

    // Whether the two below know the answer for that needle.
    [[nodiscard]] bool canFind(const QByteArray& needle) const;
    // The text that searchableText() makes contains `needle`.
    [[nodiscard]] bool contains(const QByteArray& needle) const;
    // The address of the post contains `needle`.
    [[nodiscard]] bool addressContains(const QByteArray& needle) const;

    [[nodiscard]] qsizetype size() const { return m_bytes.size(); }

private:
    QByteArray m_bytes;
    qsizetype m_addressBegin = 0;
    qsizetype m_addressLength = 0;
    bool m_isShortened = false;
};

} // namespace mirel
