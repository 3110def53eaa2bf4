#include "library/OrganizationBench.h"

namespace mirel {
namespace {

class Highlights : public testing::OrganizationBench
{
protected:
    BookmarkHighlight highlight(const QString& text, qint64 startOffset = 0, qint64 endOffset = 0,
                                const std::optional<QString>& context = {}, qint64 bookmarkID = 1)
    {
        return store->createHighlight(bookmarkID, text, context, startOffset, endOffset,
                                      QStringLiteral("#fde68a"), library.clock.now());
    }
};

TEST_F(Highlights, AreStoredAsGiven)
{
    add(1);
    const BookmarkHighlight made =
        store->createHighlight(1, QStringLiteral("the words"), QStringLiteral(" around the words "), 7, 16,
                               QStringLiteral("#a7f3d0"), Instant::fromSecondsSince1970(1'600'000'000.125));
    EXPECT_EQ(made, (BookmarkHighlight{.id = 1,
                                       .bookmarkID = 1,
                                       .selectedText = QStringLiteral("the words"),
                                       .contextText = QStringLiteral(" around the words "),
                                       .startOffset = 7,
                                       .endOffset = 16,
                                       .colorHex = QStringLiteral("#a7f3d0"),
                                       .createdAt = Instant::fromSecondsSince1970(1'600'000'000.125)}));
    EXPECT_EQ(store->highlights(1), QList<BookmarkHighlight>{made});
}

TEST_F(Highlights, ABlankSelectionIsRefused)
{
    add(1);
    for (const char16_t* text : {u"", u"  ", u"\n\u2003"})
        expectError(OrganizationError::Case::invalidName, "A non-empty name is required.",
                    [&] { highlight(QString::fromUtf16(text)); });
    EXPECT_TRUE(store->highlights().isEmpty());
}

TEST_F(Highlights, ABookmarkThatIsNotThereFails)
{
    expectError(SQLiteStoreError::Case::execute, testing::missingReference,
                [this] { highlight(QStringLiteral("a")); });
    EXPECT_EQ(count("highlights"), 0);
}

class HighlightTextTest : public Highlights, public ::testing::WithParamInterface<testing::CharacterCase>
{
};

TEST_P(HighlightTextTest, IsCutAtItsCharacters)
{
    add(1);
    const auto& character = GetParam();
    const BookmarkHighlight made =
        highlight(u' ' + character.given(600) + u'\n', 0, 600, u' ' + character.given(1300));
    EXPECT_EQ(made.selectedText, character.stored(500)) << "trimmed first";
    EXPECT_EQ(made.contextText, u' ' + character.stored(1199)) << "not trimmed";
    EXPECT_EQ(made.endOffset, 600) << "the offsets are those of the whole selection";
    EXPECT_EQ(store->highlights(1), QList<BookmarkHighlight>{made});
}

INSTANTIATE_TEST_SUITE_P(Characters, HighlightTextTest, ::testing::ValuesIn(testing::characterCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(Highlights, AVeryLongSelectionIsCut)
{
    add(1);
    const BookmarkHighlight made = highlight(testing::longText(), 0, 1'000'000, testing::longText());
    EXPECT_EQ(made.selectedText, testing::longText().first(500));
    EXPECT_EQ(made.contextText, testing::longText().first(1'200));
    EXPECT_EQ(store->highlights(1), QList<BookmarkHighlight>{made});
}

TEST_F(Highlights, ABlankContextStays)
{
    add(1);
    EXPECT_EQ(highlight(QStringLiteral("a"), 0, 1, QString()).contextText, QString());
    EXPECT_EQ(highlight(QStringLiteral("a"), 0, 1, QStringLiteral(" \n")).contextText, QStringLiteral(" \n"));
    EXPECT_EQ(highlight(QStringLiteral("a"), 0, 1).contextText, std::nullopt);
}

struct OffsetRow
{
    const char* name;
    qint64 start;
    qint64 end;
    qint64 storedStart;
    qint64 storedEnd;
};

class HighlightOffsetTest : public Highlights, public ::testing::WithParamInterface<OffsetRow>
{
};

TEST_P(HighlightOffsetTest, IsClamped)
{
    add(1);
    const BookmarkHighlight made = highlight(QStringLiteral("a"), GetParam().start, GetParam().end);
    EXPECT_EQ(made.startOffset, GetParam().storedStart);
    EXPECT_EQ(made.endOffset, GetParam().storedEnd);
    EXPECT_EQ(store->highlights(1), QList<BookmarkHighlight>{made});
}

INSTANTIATE_TEST_SUITE_P(
    Offsets, HighlightOffsetTest,
    ::testing::Values(OffsetRow{"InOrder", 3, 9, 3, 9}, OffsetRow{"Empty", 4, 4, 4, 4},
                      OffsetRow{"EndBeforeStart", 9, 3, 9, 9},
                      // The start that was passed raises the end, not the one that is stored.
                      OffsetRow{"BothNegative", -5, -2, 0, -2}, OffsetRow{"NegativeInReverse", -2, -5, 0, -2},
                      OffsetRow{"NegativeStart", -5, 4, 0, 4}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(Highlights, ComeNewestFirstOfOneBookmarkOrOfAll)
{
    add(1);
    add(2);
    const BookmarkHighlight first = highlight(QStringLiteral("first"));
    library.clock.advance(2);
    const BookmarkHighlight last = highlight(QStringLiteral("last"));
    library.clock.advance(-1);
    const BookmarkHighlight middle = highlight(QStringLiteral("middle"), 0, 0, {}, 2);
    EXPECT_EQ(store->highlights(), (QList<BookmarkHighlight>{last, middle, first}));
    EXPECT_EQ(store->highlights(1), (QList<BookmarkHighlight>{last, first}));
    EXPECT_EQ(store->highlights(2), QList<BookmarkHighlight>{middle});
    EXPECT_TRUE(store->highlights(3).isEmpty());
}

TEST_F(Highlights, AreDeletedOneByOne)
{
    add(1);
    const BookmarkHighlight first = highlight(QStringLiteral("first"));
    const BookmarkHighlight second = highlight(QStringLiteral("second"));
    store->deleteHighlight(first.id);
    store->deleteHighlight(99);
    EXPECT_EQ(store->highlights(), QList<BookmarkHighlight>{second});
}

TEST_F(Highlights, OfABookmarkThatIsHiddenStay)
{
    add(1);
    const BookmarkHighlight made = highlight(QStringLiteral("a"));
    store->deleteBookmarkLocally(1);
    EXPECT_EQ(store->highlights(), QList<BookmarkHighlight>{made});
}

TEST_F(Highlights, AMistypedColumnTakesItsDefault)
{
    add(1);
    connection->execute("INSERT INTO highlights VALUES (5, 1, x'00', x'00', 'a', 'b', x'00', 'never')");
    EXPECT_EQ(store->highlights(1),
              (QList<BookmarkHighlight>{{.id = 5, .bookmarkID = 1, .colorHex = QStringLiteral("#fde68a")}}))
        << "made at the first second of 1970";
}

TEST_F(Highlights, ATextEndsAtItsFirstNUL)
{
    const qint64 bookmarkID = store->upsertFromX(testing::makePost(1), library.clock.now()).id;
    const QString nothing = QString(1, QChar::Null) + QStringLiteral("abc");
    EXPECT_THROW(static_cast<void>(
                     store->createHighlight(bookmarkID, nothing, {}, 0, 3, QString(), library.clock.now())),
                 OrganizationError);
    const BookmarkHighlight highlight =
        store->createHighlight(bookmarkID, QStringLiteral("ab ") + nothing, nothing, 0, 3,
                               QStringLiteral("#fde68a"), library.clock.now());
    EXPECT_EQ(highlight.selectedText, QStringLiteral("ab"));
    EXPECT_EQ(store->highlights(bookmarkID), QList{highlight});
}

} // namespace
} // namespace mirel
