#include "testing/Printing.h"

#include "model/BookmarkListModel.h"

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QRandomGenerator>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace mirel {
namespace {

Bookmark makeBookmark(qint64 id, const QString& text = {})
{
    return {.id = id,
            .tweetID = QString::number(id),
            .author = {.id = 3, .name = QStringLiteral("Ada Lovelace"), .username = QStringLiteral("ada")},
            .text = text,
            .sourceURL = QUrl(QStringLiteral("https://x.com/ada/status/1"))};
}

QList<Bookmark> makeBookmarks(std::initializer_list<qint64> ids)
{
    QList<Bookmark> bookmarks;
    for (const qint64 id : ids)
        bookmarks.append(makeBookmark(id));
    return bookmarks;
}

class BookmarkList : public ::testing::Test
{
protected:
    QVariant role(int row, BookmarkListModel::Role which) { return model.data(model.index(row), which); }

    BookmarkListModel model;
    // Aborts the test when a signal contradicts the rows.
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(BookmarkList, ShowsItsBookmarksInOrder)
{
    model.setBookmarks(makeBookmarks({3, 1, 2}));
    ASSERT_EQ(model.rowCount(), 3);
    EXPECT_EQ(role(0, BookmarkListModel::BookmarkIDRole), 3);
    EXPECT_EQ(role(2, BookmarkListModel::BookmarkIDRole), 2);
}

TEST_F(BookmarkList, FindsTheRowOfABookmark)
{
    model.setBookmarks(makeBookmarks({3, 1, 2}));
    EXPECT_EQ(model.rowOf(1), 1);
    EXPECT_EQ(model.rowOf(7), -1);
}

TEST_F(BookmarkList, GivesTheValuesOfOneBookmarkByTheNamesOfItsRoles)
{
    const QVariantMap values = BookmarkListModel::values(makeBookmark(3, QStringLiteral("A &amp; B")));
    EXPECT_EQ(values.size(), model.roleNames().size());
    EXPECT_EQ(values[QStringLiteral("bookmarkID")], 3);
    EXPECT_EQ(values[QStringLiteral("text")], QStringLiteral("A & B"));
    EXPECT_EQ(values[QStringLiteral("authorInitials")], QStringLiteral("AL"));
}

TEST_F(BookmarkList, AnUnchangedListSendsNoSignal)
{
    model.setBookmarks(makeBookmarks({3, 1, 2}));
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.setBookmarks(makeBookmarks({3, 1, 2}));
    EXPECT_EQ(inserted.size() + removed.size() + changed.size(), 0);
}

TEST_F(BookmarkList, ARowKeepsItsIdentityWhenOthersComeAndGo)
{
    model.setBookmarks(makeBookmarks({1, 2, 3}));
    const QPersistentModelIndex two(model.index(1));
    model.setBookmarks(makeBookmarks({9, 8, 3, 2}));
    EXPECT_EQ(two.row(), 3);
    EXPECT_EQ(two.data(BookmarkListModel::BookmarkIDRole), 2);
}

TEST_F(BookmarkList, AChangedBookmarkUpdatesItsRowAlone)
{
    model.setBookmarks(makeBookmarks({1, 2, 3}));
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QList<Bookmark> bookmarks = makeBookmarks({1, 2, 3});
    bookmarks[1].text = QStringLiteral("new");
    model.setBookmarks(bookmarks);
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(role(1, BookmarkListModel::TextRole), QStringLiteral("new"));
}

TEST_F(BookmarkList, NeighboursComeAndGoTogether)
{
    model.setBookmarks(makeBookmarks({1, 2, 3, 4, 5, 6}));
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    model.setBookmarks(makeBookmarks({3, 11, 12, 13, 6, 14, 15}));
    EXPECT_EQ(removed.size(), 2);
    EXPECT_EQ(inserted.size(), 2);
    EXPECT_EQ(model.bookmarks(), makeBookmarks({3, 11, 12, 13, 6, 14, 15}));
}

TEST_F(BookmarkList, AnyListBecomesAnyOther)
{
    QRandomGenerator random(7);
    for (int round = 0; round < 300; ++round) {
        QList<Bookmark> bookmarks;
        QList<qint64> ids{1, 2, 3, 4, 5, 6, 7, 8};
        for (int i = 0; i < 8; ++i) {
            const qint64 id = ids.takeAt(random.bounded(static_cast<int>(ids.size())));
            if (random.bounded(2) == 0)
                bookmarks.append(makeBookmark(id, QString::number(random.bounded(3))));
        }
        model.setBookmarks(bookmarks);
        EXPECT_EQ(model.bookmarks(), bookmarks);
        EXPECT_EQ(model.count(), bookmarks.size());
    }
}

TEST_F(BookmarkList, ResolvesTheEscapesOfXOnceAndNoOthers)
{
    model.setBookmarks({makeBookmark(1, QStringLiteral("a &lt;b&gt; &amp;amp; &quot;"))});
    EXPECT_EQ(role(0, BookmarkListModel::TextRole), QStringLiteral("a <b> &amp; &quot;"));
}

struct InitialsCase
{
    const char* name;
    const char* author;
    const char* initials;
};

class AuthorInitials : public ::testing::TestWithParam<InitialsCase>
{
};

TEST_P(AuthorInitials, AreThoseOfTheFirstAndTheLastWord)
{
    BookmarkListModel model;
    Bookmark bookmark = makeBookmark(1);
    bookmark.author.name = QString::fromUtf8(GetParam().author);
    model.setBookmarks({bookmark});
    EXPECT_EQ(model.data(model.index(0), BookmarkListModel::AuthorInitialsRole).toString(),
              QString::fromUtf8(GetParam().initials));
}

INSTANTIATE_TEST_SUITE_P(Names, AuthorInitials,
                         ::testing::Values(InitialsCase{"TwoWords", "Ada Lovelace", "AL"},
                                           InitialsCase{"ManyWords", "ada king of lovelace", "AL"},
                                           InitialsCase{"OneWord", "ada", "A"},
                                           InitialsCase{"Emoji", "👩‍💻 Dev", "👩‍💻D"},
                                           InitialsCase{"Japanese", "山田太郎", "山"},
                                           InitialsCase{"Nothing", "", ""}),
                         [](const auto& row) { return row.param.name; });

TEST_F(BookmarkList, AMediaItemShowsAStillImage)
{
    Bookmark bookmark = makeBookmark(1);
    bookmark.media = {
        {.id = QStringLiteral("a"),
         .kind = MediaKind::photo,
         .url = QUrl(QStringLiteral("https://p.example/1"))},
        {.id = QStringLiteral("b"),
         .kind = MediaKind::video,
         .url = QUrl(QStringLiteral("https://v.example/2")),
         .previewURL = QUrl(QStringLiteral("https://p.example/2"))},
        {.id = QStringLiteral("c"),
         .kind = MediaKind::animatedGIF,
         .url = QUrl(QStringLiteral("https://v.example/3"))},
        {.id = QStringLiteral("d"),
         .kind = MediaKind::youtube,
         .url = QUrl(QStringLiteral("https://youtu.be/abc"))},
    };
    model.setBookmarks({bookmark});
    QStringList urls;
    for (const QVariant& media : role(0, BookmarkListModel::MediaRole).toList())
        urls.append(media.toMap().value(QStringLiteral("url")).toUrl().toString());
    EXPECT_EQ(urls, (QStringList{QStringLiteral("https://p.example/1"), QStringLiteral("https://p.example/2"),
                                 QString(), QStringLiteral("https://i.ytimg.com/vi/abc/hqdefault.jpg")}));
}

} // namespace
} // namespace mirel
