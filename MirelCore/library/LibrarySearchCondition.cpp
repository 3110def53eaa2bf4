#include "library/LibrarySearchCondition.h"

#include "library/LibrarySearchSubject.h"
#include "library/SearchableText.h"
#include "library/Tokenizer.h"
#include "support/Text.h"

namespace mirel {

namespace {

using Test = LibrarySearchCondition::Test;

struct Meaning
{
    QLatin1StringView value;
    Test test = Test::everything;
    LibraryContentType contentType = LibraryContentType::tweet;
};

constexpr Meaning hasMeanings[] = {
    {QLatin1StringView("media"), Test::media},
    {QLatin1StringView("no-media"), Test::noMedia},
    {QLatin1StringView("nomedia"), Test::noMedia},
    {QLatin1StringView("without-media"), Test::noMedia},
    {QLatin1StringView("without_media"), Test::noMedia},
    {QLatin1StringView("notes"), Test::notes},
    {QLatin1StringView("links"), Test::links},
    {QLatin1StringView("article"), Test::contentType, LibraryContentType::article},
};

constexpr Meaning statusMeanings[] = {
    {QLatin1StringView("untagged"), Test::untagged},
    {QLatin1StringView("archived"), Test::archived},
    {QLatin1StringView("active"), Test::active},
    {QLatin1StringView("inbox"), Test::inbox},
    {QLatin1StringView("favorite"), Test::favorite},
    {QLatin1StringView("favorited"), Test::favorite},
    {QLatin1StringView("thread"), Test::contentType, LibraryContentType::thread},
    {QLatin1StringView("threads"), Test::contentType, LibraryContentType::thread},
    {QLatin1StringView("read"), Test::read},
    {QLatin1StringView("unread"), Test::unread},
};

constexpr Meaning typeMeanings[] = {
    {QLatin1StringView("article"), Test::contentType, LibraryContentType::article},
    {QLatin1StringView("articles"), Test::contentType, LibraryContentType::article},
    {QLatin1StringView("tweet"), Test::contentType, LibraryContentType::tweet},
    {QLatin1StringView("tweets"), Test::contentType, LibraryContentType::tweet},
    {QLatin1StringView("quote"), Test::contentType, LibraryContentType::quote},
    {QLatin1StringView("quotes"), Test::contentType, LibraryContentType::quote},
    {QLatin1StringView("thread"), Test::contentType, LibraryContentType::thread},
    {QLatin1StringView("threads"), Test::contentType, LibraryContentType::thread},
    {QLatin1StringView("link"), Test::contentType, LibraryContentType::externalLink},
    {QLatin1StringView("links"), Test::contentType, LibraryContentType::externalLink},
    {QLatin1StringView("external"), Test::contentType, LibraryContentType::externalLink},
    {QLatin1StringView("external-link"), Test::contentType, LibraryContentType::externalLink},
    {QLatin1StringView("video"), Test::contentType, LibraryContentType::video},
    {QLatin1StringView("videos"), Test::contentType, LibraryContentType::video},
    {QLatin1StringView("image"), Test::contentType, LibraryContentType::image},
    {QLatin1StringView("images"), Test::contentType, LibraryContentType::image},
    {QLatin1StringView("photo"), Test::contentType, LibraryContentType::image},
    {QLatin1StringView("photos"), Test::contentType, LibraryContentType::image},
};

constexpr Meaning sourceMeanings[] = {
    {QLatin1StringView("bookmark"), Test::everything},
    {QLatin1StringView("bookmarks"), Test::everything},
    {QLatin1StringView("x"), Test::everything},
};

// What `value` means in `meanings`, or `otherwise`.
template <std::size_t count>
Meaning meaningOf(const QString& value, const Meaning (&meanings)[count], Test otherwise = Test::everything)
{
    const auto* const known =
        std::find_if(std::begin(meanings), std::end(meanings),
                     [&value](const Meaning& meaning) { return meaning.value == value; });
    return known == std::end(meanings) ? Meaning{.test = otherwise} : *known;
}

// Absent for an unknown key.
std::optional<Meaning> meaningOf(const QString& key, const QString& value)
{
    const auto isKey = [&key](const char* name) { return key == QLatin1StringView(name); };
    if (isKey("tag") || isKey("label"))
        return Meaning{.test = Test::label};
    if (isKey("collection") || isKey("folder"))
        return Meaning{.test = Test::folder};
    if (isKey("author"))
        return Meaning{.test = Test::author};
    if (isKey("has"))
        return meaningOf(value, hasMeanings);
    if (isKey("is"))
        return meaningOf(value, statusMeanings);
    if (isKey("type"))
        return meaningOf(value, typeMeanings);
    if (isKey("url"))
        return Meaning{.test = Test::url};
    if (isKey("source"))
        return meaningOf(value, sourceMeanings, Test::nothing);
    return std::nullopt;
}

// Where the first character that is a colon stands, or -1. One that carries a combining mark is another
// character.
qsizetype firstColon(const QString& text)
{
    qsizetype index = 0;
    for (const QStringView character : Tokenizer::characters(text)) {
        if (character == u":")
            return index;
        index += character.size();
    }
    return -1;
}

QString withoutAtSigns(QStringView text)
{
    while (text.startsWith(u'@'))
        text = text.sliced(1);
    while (text.endsWith(u'@'))
        text.chop(1);
    return text.toString();
}

} // namespace

LibrarySearchCondition::LibrarySearchCondition(const QString& text)
    : m_text(text)
{
    const QString whole = trimmed(text);
    if (whole.isEmpty()) {
        m_test = Test::everything;
        return;
    }
    const qsizetype colon = firstColon(whole);
    const bool hasTwoPieces = colon > 0 && colon < whole.size() - 1;
    if (!hasTwoPieces || !understand(whole.first(colon), whole.sliced(colon + 1)))
        m_needle = searchBytes(whole);
}

bool LibrarySearchCondition::understand(const QString& key, const QString& piece)
{
    const QString value = withoutAtSigns(searchKey(piece));
    const std::optional<Meaning> meaning =
        value.isEmpty() ? Meaning{.test = Test::everything} : meaningOf(searchKey(key), value);
    if (!meaning)
        return false;
    m_test = meaning->test;
    m_contentType = meaning->contentType;
    m_value = value;
    if (m_test == Test::url)
        m_needle = searchBytes(value);
    if (m_test == Test::links)
        m_needle = "http";
    return true;
}

bool LibrarySearchCondition::matches(const LibrarySearchSubject& subject) const
{
    switch (m_test) {
    case Test::everything:
        return true;
    case Test::nothing:
        return false;
    case Test::text:
        return subject.textContains(m_needle);
    case Test::label:
        return subject.hasLabel(m_value);
    case Test::folder:
        return subject.isInFolder(m_value);
    case Test::author:
        return subject.isByAuthor(m_value);
    case Test::url:
        return subject.sourceURLContains(m_needle) || subject.textContains(m_needle);
    case Test::media:
        return subject.hasPresentedMedia();
    case Test::noMedia:
        return !subject.hasPresentedMedia();
    case Test::notes:
        return subject.hasNotes();
    case Test::links:
        return subject.hasPresentedLinks() || subject.textContains(m_needle);
    case Test::contentType:
        return subject.contentType() == m_contentType;
    case Test::untagged:
        return !subject.hasAnyLabel();
    case Test::archived:
        return subject.isArchived();
    case Test::active:
        return !subject.isArchived();
    case Test::inbox:
        return !subject.isArchived() && !subject.isFavorite() && !subject.folderID();
    case Test::favorite:
        return subject.isFavorite();
    case Test::read:
        return subject.isRead();
    case Test::unread:
        return !subject.isRead();
    }
    Q_UNREACHABLE();
}

} // namespace mirel
