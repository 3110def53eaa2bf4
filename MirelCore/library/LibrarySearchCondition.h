#pragma once

#include "library/LibraryContentType.h"

#include <QByteArray>
#include <QString>

namespace mirel {

class LibrarySearchSubject;

// One leaf of a search, understood once and then asked of any number of bookmarks.
class LibrarySearchCondition
{
public:
    // What is asked. `everything` comes from values that mean nothing, since nothing typed is an error.
    enum class Test {
        everything,
        nothing,
        text,
        label,
        folder,
        author,
        url,
        media,
        noMedia,
        notes,
        links,
        contentType,
        untagged,
        archived,
        active,
        inbox,
        favorite,
        read,
        unread
    };

    // Never fails: a text that is no "key:value" with a known key is searched as it stands.
    explicit LibrarySearchCondition(const QString& text);

    [[nodiscard]] bool matches(const LibrarySearchSubject& subject) const;

    // As it was typed, without quotes.
    [[nodiscard]] const QString& text() const { return m_text; }
    [[nodiscard]] Test test() const { return m_test; }
    // What `label`, `folder` and `author` compare with: lower-cased, without "@" at its ends.
    [[nodiscard]] const QString& value() const { return m_value; }
    // What `text`, `url` and `links` look for, as searchBytes() makes it.
    [[nodiscard]] const QByteArray& needle() const { return m_needle; }
    // The type that `contentType` asks for.
    [[nodiscard]] LibraryContentType contentType() const { return m_contentType; }

    // The same text, hence the same meaning.
    friend bool operator==(const LibrarySearchCondition& left, const LibrarySearchCondition& right)
    {
        return left.m_text == right.m_text;
    }

private:
    // False when the key means nothing.
    [[nodiscard]] bool understand(const QString& key, const QString& piece);

    QString m_text;
    Test m_test = Test::text;
    QString m_value;
    QByteArray m_needle;
    LibraryContentType m_contentType = LibraryContentType::tweet;
};

} // namespace mirel
