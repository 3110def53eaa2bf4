#include "library/IndexedText.h"

#include <cstring>

namespace mirel {

namespace {

// A needle of at most this length that lies across the end of a repeated part lies within what is kept of it.
constexpr qsizetype keptEnd = 128;

// No byte of UTF-8, so that no needle crosses what was left out.
constexpr char gap = '\xFF';

QByteArray endsOf(const QByteArray& part)
{
    return part.first(keptEnd) + gap + part.last(keptEnd);
}

bool contains(const char* text, qsizetype size, const QByteArray& needle)
{
    return memmem(text, static_cast<size_t>(size), needle.constData(), static_cast<size_t>(needle.size()));
}

} // namespace

IndexedText::IndexedText(const QList<SearchableField>& fields)
{
    QByteArrayList parts;
    qsizetype size = 0;
    for (qsizetype i = 0; i < fields.size(); ++i) {
        const QByteArray& bytes = fields[i].bytes;
        const bool isAddress = fields[i].field == SearchField::sourceURL;
        const bool isRepeated = !isAddress && bytes.size() > 2 * keptEnd + 1 &&
                                std::any_of(fields.cbegin(), fields.cbegin() + i,
                                            [&bytes](const auto& earlier) { return earlier.bytes == bytes; });
        if (isAddress) {
            m_addressBegin = size;
            m_addressLength = bytes.size();
        }
        m_isShortened = m_isShortened || isRepeated;
        parts.append(isRepeated ? endsOf(bytes) : bytes);
        size += parts.last().size() + 1;
    }
    m_bytes = parts.join(' ');
}

bool IndexedText::canFind(const QByteArray& needle) const
{
    return !m_bytes.isNull() && (!m_isShortened || needle.size() <= keptEnd);
}

bool IndexedText::contains(const QByteArray& needle) const
{
    return mirel::contains(m_bytes.constData(), m_bytes.size(), needle);
}

bool IndexedText::addressContains(const QByteArray& needle) const
{
    return mirel::contains(m_bytes.constData() + m_addressBegin, m_addressLength, needle);
}

} // namespace mirel
