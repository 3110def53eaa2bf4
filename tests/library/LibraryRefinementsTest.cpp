#include "testing/Printing.h"

#include "library/LibraryRefinements.h"
#include "library/LibrarySearch.h"
#include "library/LibrarySearchContext.h"

#include "SearchTesting.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

using testing::makeLabel;
using testing::makeMedia;

// Author 3, label 11, folder 21, with a photo and a note, at 1,000 seconds since 1970.
Bookmark filedBookmark()
{
    Bookmark bookmark = testing::makeBookmark();
    bookmark.tags = {makeLabel(11, QStringLiteral("Design"), QStringLiteral("design"))};
    bookmark.folder = Folder{.id = 21, .name = QStringLiteral("Later"), .slug = QStringLiteral("later")};
    bookmark.media = {makeMedia(MediaKind::photo)};
    bookmark.note = QStringLiteral("mine");
    return bookmark;
}

Instant at(double seconds)
{
    return Instant::fromSecondsSince1970(seconds);
}

struct RefinementRow
{
    const char* name;
    LibraryRefinements refinements;
    bool matches;
    // Of a bookmark without label, folder, media and note.
    bool matchesBare;
};

class RefinementTest : public ::testing::TestWithParam<RefinementRow>
{
};

TEST_P(RefinementTest, NarrowsASearch)
{
    const LibraryRefinements& refinements = GetParam().refinements;
    const LibrarySearch search(refinements);
    for (const auto& [bookmark, expected] : {std::pair(filedBookmark(), GetParam().matches),
                                             std::pair(testing::makeBookmark(), GetParam().matchesBare)}) {
        EXPECT_EQ(refinements.matches(bookmark), expected);
        EXPECT_EQ(search.matches(LibrarySearchContext(bookmark)), expected);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Fields, RefinementTest,
    ::testing::Values(
        RefinementRow{"None", {}, true, true},
        RefinementRow{"Query", {.query = QStringLiteral("label:design")}, true, false},
        RefinementRow{"QueryNegated", {.query = QStringLiteral("NOT label:design")}, false, true},
        RefinementRow{"BlankQuery", {.query = QStringLiteral("  ")}, true, true},
        RefinementRow{"Author", {.authorID = 3}, true, true},
        RefinementRow{"OtherAuthor", {.authorID = 4}, false, false},
        RefinementRow{"ContentType", {.contentType = LibraryContentType::image}, true, false},
        RefinementRow{"OtherContentType", {.contentType = LibraryContentType::tweet}, false, true},
        RefinementRow{"Folder", {.folderID = 21}, true, false},
        RefinementRow{"OtherFolder", {.folderID = 22}, false, false},
        RefinementRow{"Label", {.tagID = 11}, true, false},
        RefinementRow{"OtherLabel", {.tagID = 12}, false, false},
        RefinementRow{"AnyMedia", {.media = LibraryMediaRefinement::any}, true, true},
        RefinementRow{"WithMedia", {.media = LibraryMediaRefinement::withMedia}, true, false},
        RefinementRow{"WithoutMedia", {.media = LibraryMediaRefinement::withoutMedia}, false, true},
        RefinementRow{"WithNotes", {.hasNotes = true}, true, false},
        RefinementRow{"WithoutNotes", {.hasNotes = false}, false, true},
        RefinementRow{"Source", {.source = LibrarySourceRefinement::xBookmarks}, true, true},
        RefinementRow{"FromBefore", {.dateFrom = at(999)}, true, true},
        RefinementRow{"FromThatInstant", {.dateFrom = at(1'000)}, true, true},
        RefinementRow{"FromAfter", {.dateFrom = at(1'000.001)}, false, false},
        RefinementRow{"ToBefore", {.dateTo = at(999.999)}, false, false},
        RefinementRow{"ToThatInstant", {.dateTo = at(1'000)}, true, true},
        RefinementRow{"ToAfter", {.dateTo = at(1'001)}, true, true},
        RefinementRow{"FromAfterTo", {.dateFrom = at(1'001), .dateTo = at(999)}, false, false},
        RefinementRow{"All",
                      {.query = QStringLiteral("engine"),
                       .authorID = 3,
                       .contentType = LibraryContentType::image,
                       .folderID = 21,
                       .tagID = 11,
                       .media = LibraryMediaRefinement::withMedia,
                       .hasNotes = true,
                       .source = LibrarySourceRefinement::xBookmarks,
                       .dateFrom = at(1'000),
                       .dateTo = at(1'000)},
                      true,
                      false},
        RefinementRow{"AllButTheQuery",
                      {.query = QStringLiteral("steam"), .authorID = 3, .folderID = 21, .tagID = 11},
                      false,
                      false}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(LibraryRefinements, ANoteOfWhiteSpaceCountsAsNone)
{
    Bookmark bookmark = filedBookmark();
    bookmark.note = QStringLiteral("  \n");
    EXPECT_FALSE(LibraryRefinements{.hasNotes = true}.matches(bookmark));
    EXPECT_TRUE(LibraryRefinements{.hasNotes = false}.matches(bookmark));
}

TEST(LibraryRefinements, DatesAreThoseOfThePostAndNotOfSaving)
{
    Bookmark bookmark = filedBookmark();
    bookmark.createdAt = Instant::fromISO8601(u"2019-05-01T00:00:00Z").value();
    bookmark.syncedAt = Instant::fromISO8601(u"2026-03-01T00:00:00Z").value();
    const auto startOfYear = Instant::fromISO8601(u"2026-01-01T00:00:00Z").value();
    EXPECT_FALSE(LibraryRefinements{.dateFrom = startOfYear}.matches(bookmark));
    EXPECT_TRUE(LibraryRefinements{.dateTo = startOfYear}.matches(bookmark));
}

TEST(LibraryRefinements, AskNothingMoreAfterTheFirstThatFails)
{
    const Bookmark bookmark = testing::makeBookmark();
    int readings = 0;
    const auto read = [&readings](const Bookmark&) {
        ++readings;
        return PresentationFacts();
    };
    const LibraryRefinements byAuthor{.authorID = 4, .contentType = LibraryContentType::tweet};
    EXPECT_FALSE(LibrarySearch(byAuthor).matches(LibrarySearchContext(bookmark, read)));
    const LibraryRefinements byQuery{.query = QStringLiteral("is:read"),
                                     .contentType = LibraryContentType::tweet};
    EXPECT_FALSE(LibrarySearch(byQuery).matches(LibrarySearchContext(bookmark, read)));
    EXPECT_EQ(readings, 0);
    const LibraryRefinements byType{.query = QStringLiteral("type:tweet OR has:links"),
                                    .contentType = LibraryContentType::tweet};
    EXPECT_TRUE(LibrarySearch(byType).matches(LibrarySearchContext(bookmark, read)));
    EXPECT_EQ(readings, 1) << "the expression and the refinements share one presentation";
}

TEST(LibraryRefinements, WithADateFromAreACopy)
{
    const LibraryRefinements original{.query = QStringLiteral("a"), .dateFrom = at(1), .dateTo = at(9)};
    const LibraryRefinements later = original.with(at(5));
    EXPECT_EQ(later, (LibraryRefinements{.query = QStringLiteral("a"), .dateFrom = at(5), .dateTo = at(9)}));
    EXPECT_EQ(original.with(std::nullopt),
              (LibraryRefinements{.query = QStringLiteral("a"), .dateTo = at(9)}));
    EXPECT_EQ(original.dateFrom, at(1));
}

TEST(LibraryRefinements, CompareFieldByField)
{
    const LibraryRefinements plain;
    const QList<LibraryRefinements> others{
        {.query = QStringLiteral("a")},
        {.authorID = 1},
        {.contentType = LibraryContentType::tweet},
        {.folderID = 1},
        {.tagID = 1},
        {.media = LibraryMediaRefinement::withMedia},
        {.hasNotes = false},
        {.source = LibrarySourceRefinement::xBookmarks},
        {.dateFrom = at(0)},
        {.dateTo = at(0)},
    };
    EXPECT_EQ(plain, LibraryRefinements());
    for (const LibraryRefinements& other : others) {
        EXPECT_NE(other, plain);
        EXPECT_EQ(other, LibraryRefinements(other));
    }
}

template <typename Enumeration>
QStringList textsOf()
{
    QStringList texts;
    for (const auto& row : rawValues(Enumeration()))
        texts.append(row.text);
    return texts;
}

TEST(LibraryRefinements, TheirChoicesHaveTheirTexts)
{
    EXPECT_EQ(
        textsOf<LibraryMediaRefinement>(),
        (QStringList{QStringLiteral("any"), QStringLiteral("withMedia"), QStringLiteral("withoutMedia")}));
    EXPECT_EQ(rawValue(LibraryMediaRefinement::withoutMedia), u"withoutMedia");
    EXPECT_EQ(textsOf<LibrarySourceRefinement>(),
              (QStringList{QStringLiteral("any"), QStringLiteral("x_bookmarks")}));
}

} // namespace
} // namespace mirel
