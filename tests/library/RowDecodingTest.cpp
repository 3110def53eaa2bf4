#include "testing/Printing.h"

#include "library/RowDecoding.h"

#include <gtest/gtest.h>

namespace mirel {
namespace {

constexpr const char* columns[] = {"id",
                                   "name",
                                   "slug",
                                   "color_hex",
                                   "source",
                                   "description",
                                   "parent_id",
                                   "x_folder_id",
                                   "bookmark_count",
                                   "unread_count",
                                   "x_id",
                                   "username",
                                   "profile_image_url",
                                   "query",
                                   "action",
                                   "target_id",
                                   "is_enabled",
                                   "last_run_at",
                                   "last_match_count",
                                   "bookmark_id",
                                   "selected_text",
                                   "context_text",
                                   "start_offset",
                                   "end_offset",
                                   "created_at"};

SQLiteRow rowOf(const SQLiteColumn& column)
{
    SQLiteRow row;
    for (const char* name : columns)
        row.append(name, column);
    return row;
}

const Tag defaultTag{.colorHex = QStringLiteral("#3E6BF5")};
const BookmarkHighlight defaultHighlight{.colorHex = QStringLiteral("#fde68a")};

void expectDefaults(const SQLiteRow& row)
{
    EXPECT_EQ(decodeTag(row), defaultTag);
    EXPECT_EQ(decodeTagSummary(row), TagSummary{.tag = defaultTag});
    EXPECT_EQ(decodeFolder(row), Folder{});
    EXPECT_EQ(decodeFolderSummary(row), FolderSummary{});
    EXPECT_EQ(decodeAuthorSummary(row), AuthorSummary{});
    EXPECT_EQ(decodeRule(row), BookmarkRule{});
    EXPECT_EQ(decodeHighlight(row), defaultHighlight);
}

TEST(RowDecoding, OfMissingAndNullColumnsTakesTheDefaults)
{
    expectDefaults(SQLiteRow());
    expectDefaults(rowOf(SQLiteColumn()));
}

TEST(RowDecoding, OfATextInPlaceOfANumberTakesTheDefaultsOfNumbers)
{
    const SQLiteRow row = rowOf(QByteArray("text"));
    const QString text = QStringLiteral("text");
    EXPECT_EQ(decodeRule(row), (BookmarkRule{.name = text, .query = text})) << "an unknown action is a label";
    EXPECT_EQ(decodeHighlight(row),
              (BookmarkHighlight{.selectedText = text, .contextText = text, .colorHex = text}));
    EXPECT_EQ(decodeAuthorSummary(row).author.id, 0);
    EXPECT_EQ(decodeAuthorSummary(row).bookmarkCount, 0);
    EXPECT_EQ(decodeTagSummary(row).bookmarkCount, 0);
    EXPECT_EQ(decodeFolderSummary(row).unreadCount, 0);
    EXPECT_EQ(decodeFolder(row).source, Folder::Source::local) << "an unknown source";
    EXPECT_EQ(decodeTag(row).source, Tag::Source::manual) << "an unknown source";
}

TEST(RowDecoding, OfANumberInPlaceOfATextTakesTheDefaultsOfTexts)
{
    const SQLiteRow row = rowOf(qint64{2});
    const Instant instant = Instant::fromSecondsSince1970(2);
    EXPECT_EQ(decodeRule(row),
              (BookmarkRule{.id = 2, .targetID = 2, .lastRunAt = instant, .lastMatchCount = 2}))
        << "enabled is only the number 1";
    EXPECT_EQ(decodeHighlight(row), (BookmarkHighlight{.id = 2,
                                                       .bookmarkID = 2,
                                                       .startOffset = 2,
                                                       .endOffset = 2,
                                                       .colorHex = QStringLiteral("#fde68a"),
                                                       .createdAt = instant}));
    EXPECT_EQ(decodeAuthorSummary(row), (AuthorSummary{.author = {.id = 2}, .bookmarkCount = 2}));
    EXPECT_TRUE(decodeRule(rowOf(qint64{1})).isEnabled);
}

TEST(RowDecoding, OfAFractionTakesItForInstantsOnly)
{
    const SQLiteRow row = rowOf(2.5);
    const Instant instant = Instant::fromSecondsSince1970(2.5);
    EXPECT_EQ(decodeRule(row), (BookmarkRule{.lastRunAt = instant}));
    EXPECT_EQ(decodeHighlight(row),
              (BookmarkHighlight{.colorHex = QStringLiteral("#fde68a"), .createdAt = instant}));
}

} // namespace
} // namespace mirel
