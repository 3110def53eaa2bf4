#include "testing/Printing.h"

#include "library/LibrarySearchCondition.h"
#include "library/LibrarySearchSubject.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

using Question = LibrarySearchCondition::Test;

struct MeaningRow
{
    const char* name;
    const char* text;
    Question test;
    // What is compared or looked for.
    const char* value = "";
};

class ConditionTest : public ::testing::TestWithParam<MeaningRow>
{
};

TEST_P(ConditionTest, IsUnderstood)
{
    const LibrarySearchCondition condition(QString::fromUtf8(GetParam().text));
    EXPECT_EQ(condition.test(), GetParam().test);
    EXPECT_EQ(condition.text(), QString::fromUtf8(GetParam().text));
    const bool isNeedle = condition.test() == Question::text || condition.test() == Question::url ||
                          condition.test() == Question::links;
    EXPECT_EQ(isNeedle ? condition.needle() : condition.value().toUtf8(), QByteArray(GetParam().value));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ConditionTest,
    ::testing::Values(
        MeaningRow{"Blank", "  \n ", Question::everything},
        MeaningRow{"Word", "Engine", Question::text, "engine"},
        MeaningRow{"Phrase", " Deep  Work\n", Question::text, "deep  work"},
        MeaningRow{"EmptyValue", "label:", Question::text, "label:"},
        MeaningRow{"BlankValue", "label:  ", Question::text, "label:"},
        MeaningRow{"EmptyKey", ":X", Question::text, ":x"},
        MeaningRow{"EmptyKeyWithTwoColons", ":a:b", Question::text, ":a:b"},
        MeaningRow{"ColonAlone", ":", Question::text, ":"},
        MeaningRow{"ColonsAlone", "::", Question::text, "::"},
        MeaningRow{"UnknownKey", "X:y", Question::text, "x:y"},
        MeaningRow{"UnknownKeyAndAtSign", "x:@y@", Question::text, "x:@y@"},
        MeaningRow{"UnknownKeyAndAtSignsAlone", "x:@@", Question::everything},
        MeaningRow{"Address", "HTTPS://Example.com/a", Question::text, "https://example.com/a"},
        MeaningRow{"MarkedColonIsALetter", "label:\xcc\x88x", Question::text, "label:\xcc\x88x"},
        MeaningRow{"Label", "label:Design", Question::label, "design"},
        MeaningRow{"Tag", "TAG:design", Question::label, "design"},
        MeaningRow{"SpacedLabel", " Label : My Label ", Question::label, "my label"},
        MeaningRow{"LabelWithColon", "label:a:b", Question::label, "a:b"},
        MeaningRow{"LabelWithColonFirst", "label::a", Question::label, ":a"},
        MeaningRow{"LabelOfAtSigns", "label:@", Question::everything},
        MeaningRow{"LabelWithAtSigns", "label:@@a@b@", Question::label, "a@b"},
        MeaningRow{"SpaceBehindAtSigns", "label:@ a", Question::label, " a"},
        MeaningRow{"Folder", "folder:Later", Question::folder, "later"},
        MeaningRow{"Collection", "collection:Later", Question::folder, "later"},
        MeaningRow{"Author", "author:Alice", Question::author, "alice"},
        MeaningRow{"AuthorWithAtSign", "author:@alice", Question::author, "alice"},
        MeaningRow{"URL", "url:Example.COM", Question::url, "example.com"},
        MeaningRow{"URLWithColon", "url:https://x", Question::url, "https://x"},
        MeaningRow{"Bookmark", "source:bookmark", Question::everything, "bookmark"},
        MeaningRow{"Bookmarks", "source:Bookmarks", Question::everything, "bookmarks"},
        MeaningRow{"SourceX", "source:x", Question::everything, "x"},
        MeaningRow{"OtherSource", "source:other", Question::nothing, "other"},
        MeaningRow{"SourceOfAtSigns", "source:@", Question::everything},
        MeaningRow{"Media", "has:media", Question::media, "media"},
        MeaningRow{"MediaInCapitals", "HAS:MEDIA", Question::media, "media"},
        MeaningRow{"MediaWithAtSign", "has:@media", Question::media, "media"},
        MeaningRow{"NoMedia", "has:no-media", Question::noMedia, "no-media"},
        MeaningRow{"NoMediaJoined", "has:nomedia", Question::noMedia, "nomedia"},
        MeaningRow{"WithoutMedia", "has:without-media", Question::noMedia, "without-media"},
        MeaningRow{"WithoutMediaUnderscore", "has:without_media", Question::noMedia, "without_media"},
        MeaningRow{"Notes", "has:notes", Question::notes, "notes"},
        MeaningRow{"NoteIsNoValue", "has:note", Question::everything, "note"},
        MeaningRow{"Links", "has:links", Question::links, "http"},
        MeaningRow{"UnknownHas", "has:nonsense", Question::everything, "nonsense"},
        MeaningRow{"Untagged", "is:untagged", Question::untagged, "untagged"},
        MeaningRow{"Archived", "is:archived", Question::archived, "archived"},
        MeaningRow{"Active", "is:active", Question::active, "active"},
        MeaningRow{"Inbox", "is:inbox", Question::inbox, "inbox"},
        MeaningRow{"Favorite", "is:favorite", Question::favorite, "favorite"},
        MeaningRow{"Favorited", "is:favorited", Question::favorite, "favorited"},
        MeaningRow{"Read", "is:Read", Question::read, "read"},
        MeaningRow{"Unread", "is:unread", Question::unread, "unread"},
        MeaningRow{"UnknownStatus", "is:nonsense", Question::everything, "nonsense"},
        MeaningRow{"UnknownType", "type:nonsense", Question::everything, "nonsense"},
        MeaningRow{"RawStringIsNoType", "type:external_link", Question::everything, "external_link"},
        MeaningRow{"DottedI", "İS:read", Question::text, "i\xcc\x87s:read"},
        MeaningRow{"DotlessI", "ıs:read", Question::text, "ıs:read"},
        MeaningRow{"CapitalIIsDottedInEveryLanguage", "IS:READ", Question::read, "read"}),
    [](const auto& row) { return std::string(row.param.name); });

struct TypeRow
{
    const char* text;
    LibraryContentType contentType;
};

TEST(LibrarySearchCondition, NamesContentTypes)
{
    using enum LibraryContentType;
    const std::vector<TypeRow> rows{
        {"type:article", article},    {"type:articles", article},      {"type:tweet", tweet},
        {"type:tweets", tweet},       {"type:quote", quote},           {"type:quotes", quote},
        {"type:thread", thread},      {"type:threads", thread},        {"type:link", externalLink},
        {"type:links", externalLink}, {"type:external", externalLink}, {"type:external-link", externalLink},
        {"type:video", video},        {"type:videos", video},          {"type:image", image},
        {"type:images", image},       {"type:photo", image},           {"type:photos", image},
        {"Type: Photos ", image},     {"has:article", article},        {"is:thread", thread},
        {"is:threads", thread},
    };
    for (const TypeRow& row : rows) {
        const LibrarySearchCondition condition(QString::fromUtf8(row.text));
        EXPECT_EQ(condition.test(), Question::contentType) << row.text;
        EXPECT_EQ(condition.contentType(), row.contentType) << row.text;
    }
}

// A subject whose every fact is given.
class GivenSubject final : public LibrarySearchSubject
{
public:
    bool hasLabel(const QString& value) const override { return value == label; }
    bool isInFolder(const QString& value) const override { return value == folder; }
    bool isByAuthor(const QString& value) const override { return value == author; }
    bool hasAnyLabel() const override { return !label.isEmpty(); }
    bool isArchived() const override { return archived; }
    bool isFavorite() const override { return favorite; }
    bool isRead() const override { return read; }
    bool hasNotes() const override { return notes; }
    bool hasPresentedMedia() const override { return media; }
    bool hasPresentedLinks() const override { return links; }
    LibraryContentType contentType() const override { return type; }
    bool sourceURLContains(const QByteArray& needle) const override { return url.contains(needle); }
    bool textContains(const QByteArray& needle) const override { return text.contains(needle); }
    qint64 authorID() const override { return 1; }
    std::optional<qint64> folderID() const override
    {
        return folder.isEmpty() ? std::nullopt : std::optional<qint64>(2);
    }
    bool hasLabelWithID(qint64) const override { return false; }
    Instant createdAt() const override { return {}; }

    QString label;
    QString folder;
    QString author;
    bool archived = false;
    bool favorite = false;
    bool read = false;
    bool notes = false;
    bool media = false;
    bool links = false;
    LibraryContentType type = LibraryContentType::tweet;
    QByteArray url;
    QByteArray text;
};

bool isMetBy(const char* text, const GivenSubject& subject)
{
    return LibrarySearchCondition(QString::fromUtf8(text)).matches(subject);
}

// Each condition is met by the subject after `change` and not before.
struct FactRow
{
    const char* name;
    const char* text;
    void (*change)(GivenSubject&);
};

class FactTest : public ::testing::TestWithParam<FactRow>
{
};

TEST_P(FactTest, DecidesTheCondition)
{
    GivenSubject subject;
    EXPECT_FALSE(isMetBy(GetParam().text, subject));
    GetParam().change(subject);
    EXPECT_TRUE(isMetBy(GetParam().text, subject));
}

INSTANTIATE_TEST_SUITE_P(
    Conditions, FactTest,
    ::testing::Values(
        FactRow{"Text", "Engine", [](GivenSubject& it) { it.text = "the engine"; }},
        FactRow{"Label", "label:Design", [](GivenSubject& it) { it.label = QStringLiteral("design"); }},
        FactRow{"Folder", "folder:later", [](GivenSubject& it) { it.folder = QStringLiteral("later"); }},
        FactRow{"Author", "author:@ada", [](GivenSubject& it) { it.author = QStringLiteral("ada"); }},
        FactRow{"URLInTheAddress", "url:example", [](GivenSubject& it) { it.url = "https://example.com"; }},
        FactRow{"URLInTheText", "url:example", [](GivenSubject& it) { it.text = "see example.com"; }},
        FactRow{"Media", "has:media", [](GivenSubject& it) { it.media = true; }},
        FactRow{"Notes", "has:notes", [](GivenSubject& it) { it.notes = true; }},
        FactRow{"PresentedLinks", "has:links", [](GivenSubject& it) { it.links = true; }},
        FactRow{"LinksInTheText", "has:links", [](GivenSubject& it) { it.text = "http"; }},
        FactRow{"Archived", "is:archived", [](GivenSubject& it) { it.archived = true; }},
        FactRow{"Favorite", "is:favorite", [](GivenSubject& it) { it.favorite = true; }},
        FactRow{"Read", "is:read", [](GivenSubject& it) { it.read = true; }},
        FactRow{"Type", "type:video", [](GivenSubject& it) { it.type = LibraryContentType::video; }},
        FactRow{"Thread", "is:thread", [](GivenSubject& it) { it.type = LibraryContentType::thread; }},
        FactRow{"Article", "has:article", [](GivenSubject& it) { it.type = LibraryContentType::article; }}),
    [](const auto& row) { return std::string(row.param.name); });

// Each condition is met by the plain subject and not after `change`.
class AbsentFactTest : public FactTest
{
};

TEST_P(AbsentFactTest, DecidesTheCondition)
{
    GivenSubject subject;
    EXPECT_TRUE(isMetBy(GetParam().text, subject));
    GetParam().change(subject);
    EXPECT_FALSE(isMetBy(GetParam().text, subject));
}

INSTANTIATE_TEST_SUITE_P(
    Conditions, AbsentFactTest,
    ::testing::Values(
        FactRow{"NoMedia", "has:no-media", [](GivenSubject& it) { it.media = true; }},
        FactRow{"Untagged", "is:untagged", [](GivenSubject& it) { it.label = QStringLiteral("a"); }},
        FactRow{"Active", "is:active", [](GivenSubject& it) { it.archived = true; }},
        FactRow{"Unread", "is:unread", [](GivenSubject& it) { it.read = true; }},
        FactRow{"InboxArchived", "is:inbox", [](GivenSubject& it) { it.archived = true; }},
        FactRow{"InboxFavorite", "is:inbox", [](GivenSubject& it) { it.favorite = true; }},
        FactRow{"InboxFolder", "is:inbox", [](GivenSubject& it) { it.folder = QStringLiteral("a"); }},
        FactRow{"Tweet", "type:tweet", [](GivenSubject& it) { it.type = LibraryContentType::image; }}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(LibrarySearchCondition, WhatMeansNothingMatchesEverythingAndAnotherSourceNothing)
{
    const GivenSubject subject;
    for (const char* text : {"  ", "is:nonsense", "has:nonsense", "type:nonsense", "type:external_link",
                             "label:@", "x:@", "source:x", "source:bookmark", "source:bookmarks"})
        EXPECT_TRUE(isMetBy(text, subject)) << text;
    EXPECT_FALSE(isMetBy("source:other", subject));
}

TEST(LibrarySearchCondition, AReadPostMayStayInTheInbox)
{
    GivenSubject subject;
    subject.read = true;
    EXPECT_TRUE(isMetBy("is:inbox", subject));
}

} // namespace
} // namespace mirel
