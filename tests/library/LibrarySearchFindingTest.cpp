#include "testing/Printing.h"

#include "library/LibrarySearchContext.h"
#include "library/LibrarySearchFinding.h"

#include "SearchTesting.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

using testing::makeLabel;
using testing::makeMedia;

// A bookmark in which each part holds a word of its own, and "everywhere".
Bookmark fullBookmark()
{
    Bookmark bookmark = testing::makeBookmark();
    bookmark.text = QStringLiteral("Everywhere Engine");
    bookmark.contentTitle = QStringLiteral("Everywhere looms");
    bookmark.contentText = QStringLiteral("everywhere threads http");
    bookmark.note = QStringLiteral("everywhere mine");
    bookmark.sourceURL = QUrl(QStringLiteral("https://posts.example/everywhere"));
    bookmark.author.name = QStringLiteral("Everywhere Ada");
    bookmark.author.username = QStringLiteral("ada");
    bookmark.quotedPost =
        QuotedPost{.text = QStringLiteral("everywhere quoted"), .media = {makeMedia(MediaKind::photo)}};
    bookmark.tags = {makeLabel(1, QStringLiteral("everywhere"), QStringLiteral("slug")),
                     makeLabel(2, QStringLiteral("Design"), QStringLiteral("design"))};
    bookmark.folder =
        Folder{.id = 1, .name = QStringLiteral("Everywhere Later"), .slug = QStringLiteral("f")};
    bookmark.isRead = true;
    return bookmark;
}

PresentationFacts fullPresentation(const Bookmark&)
{
    return {.hasExternalLinks = true,
            .quoted = PresentationFacts::Quoted{
                .title = QStringLiteral("Everywhere cotton"),
                .externalLinks = {QUrl(QStringLiteral("https://everywhere.example/"))},
                .hasMedia = true}};
}

QList<LibrarySearchFinding> findings(const char* query)
{
    const Bookmark bookmark = fullBookmark();
    return explain(LibrarySearchExpression::parse(QString::fromUtf8(query)),
                   LibrarySearchContext(bookmark, fullPresentation));
}

struct FindingRow
{
    const char* name;
    const char* query;
    bool matches;
    // Separated by spaces.
    const char* fields;
};

class FindingTest : public ::testing::TestWithParam<FindingRow>
{
};

TEST_P(FindingTest, TellsWhereTheConditionMatched)
{
    const auto all = findings(GetParam().query);
    ASSERT_EQ(all.size(), 1);
    EXPECT_EQ(all.first().matches, GetParam().matches);
    EXPECT_EQ(all.first().fields.join(u' '), QString::fromUtf8(GetParam().fields));
}

INSTANTIATE_TEST_SUITE_P(
    Conditions, FindingTest,
    ::testing::Values(
        FindingRow{"Text", "ENGINE", true, "text"},
        FindingRow{"PrimaryTitle", "cotton", true, "primaryTitle"},
        FindingRow{"ContentTitle", "looms", true, "contentTitle"},
        FindingRow{"ContentText", "threads", true, "contentText"}, FindingRow{"Note", "mine", true, "note"},
        FindingRow{"SourceURL", "posts.example", true, "sourceURL"},
        FindingRow{"Username", "ada", true, "author.name author.username"},
        FindingRow{"QuotedText", "quoted", true, "quotedPost.text"},
        FindingRow{"QuotedLink", "everywhere.example", true, "quotedContent.externalLinks"},
        FindingRow{"LabelName", "design", true, "tags"}, FindingRow{"FolderName", "later", true, "folder"},
        FindingRow{"Everywhere", "everywhere", true,
                   "text primaryTitle contentTitle contentText note sourceURL author.name quotedPost.text "
                   "quotedContent.externalLinks tags folder"},
        FindingRow{"AcrossTwo", "\"engine everywhere\"", true, "text primaryTitle"},
        FindingRow{"AcrossThree", "\"a ada e\"", true, "author.name author.username quotedPost.text"},
        FindingRow{"AcrossLabels", "\"everywhere design\"", true, "tags"},
        FindingRow{"Nowhere", "steam", false, ""}, FindingRow{"Label", "label:slug", true, "tags"},
        FindingRow{"NoLabel", "label:none", false, ""}, FindingRow{"Folder", "folder:f", true, "folder"},
        FindingRow{"AuthorByBoth", "author:ada", true, "author.name author.username"},
        FindingRow{"AuthorByName", "author:every", true, "author.name"},
        FindingRow{"Address", "url:posts", true, "sourceURL"},
        FindingRow{"AddressEverywhere", "url:everywhere", true,
                   "sourceURL text primaryTitle contentTitle contentText note author.name quotedPost.text "
                   "quotedContent.externalLinks tags folder"},
        FindingRow{"Media", "has:media", true, "quotedPost.media quotedContent.media"},
        FindingRow{"NoMedia", "has:no-media", false, ""}, FindingRow{"Notes", "has:notes", true, "note"},
        FindingRow{"Links", "has:links", true,
                   "externalLinks quotedContent.externalLinks contentText sourceURL"},
        FindingRow{"Type", "type:article", true, "contentType"},
        FindingRow{"OtherType", "type:video", false, ""}, FindingRow{"Untagged", "is:untagged", false, ""},
        FindingRow{"Read", "is:read", true, "isRead"}, FindingRow{"Unread", "is:unread", false, ""},
        FindingRow{"Active", "is:active", true, "isArchived"},
        FindingRow{"Archived", "is:archived", false, ""}, FindingRow{"Favorite", "is:favorite", false, ""},
        FindingRow{"Inbox", "is:inbox", false, ""}, FindingRow{"Nonsense", "is:nonsense", true, ""},
        FindingRow{"Source", "source:x", true, ""}, FindingRow{"OtherSource", "source:y", false, ""}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(LibrarySearchFinding, TellsTheStateOfABareBookmark)
{
    Bookmark bookmark = testing::makeBookmark();
    bookmark.isFavorite = true;
    const auto fieldsOf = [&bookmark](const char* query) {
        const LibrarySearchContext context(bookmark, [](const Bookmark&) { return PresentationFacts(); });
        return explain(LibrarySearchExpression::parse(QString::fromUtf8(query)), context)
            .first()
            .fields.join(u' ');
    };
    EXPECT_EQ(fieldsOf("is:untagged"), u"tags");
    EXPECT_EQ(fieldsOf("is:favorite"), u"isFavorite");
    EXPECT_EQ(fieldsOf("is:unread"), u"isRead");
    EXPECT_EQ(fieldsOf("has:no-media"), u"media");
    bookmark.isFavorite = false;
    EXPECT_EQ(fieldsOf("is:inbox"), u"isArchived isFavorite folder");
    bookmark.isArchived = true;
    EXPECT_EQ(fieldsOf("is:archived"), u"isArchived");
    bookmark.media = {makeMedia(MediaKind::photo)};
    EXPECT_EQ(fieldsOf("has:media"), u"media");
}

TEST(LibrarySearchFinding, TellsOfEveryConditionFromLeftToRight)
{
    const QList<LibrarySearchFinding> expected{
        {.condition = QStringLiteral("steam"), .matches = false},
        {.condition = QStringLiteral("Engine"), .matches = true, .fields = {QStringLiteral("text")}},
        {.condition = QStringLiteral("is:Read"), .matches = true, .fields = {QStringLiteral("isRead")}},
        {.condition = QStringLiteral("a b"), .matches = false},
    };
    EXPECT_EQ(findings("steam (Engine OR NOT is:Read) NOT \"a b\""), expected);
    EXPECT_TRUE(findings("").isEmpty());
}

} // namespace
} // namespace mirel
