#include "testing/Printing.h"

#include "simulator/x/Account.h"
#include "simulator/x/Folders.h"
#include "simulator/x/PageToken.h"

#include <QSet>

#include <gtest/gtest.h>

namespace mirel::simulator {
namespace {

TEST(Account, GivesItsPostsInSlicesFromTheNewest)
{
    const Account account(5);
    const Account::Slice first = account.slice({}, 2);
    EXPECT_EQ(first.serials, QList<int>({4, 3}));
    EXPECT_EQ(first.next, 3);
    EXPECT_FALSE(first.previous);
    const Account::Slice last = account.slice(1, 2);
    EXPECT_EQ(last.serials, QList<int>({0}));
    EXPECT_FALSE(last.next);
    EXPECT_EQ(account.slice(last.previous, 2).serials, QList<int>({2, 1}));
}

TEST(Account, SkipsNothingWhenPostsComeAndGoBetweenTwoSlices)
{
    Account account(6);
    const Account::Slice first = account.slice({}, 2);
    account.add(2);
    account.remove(4);
    EXPECT_EQ(account.slice(first.next, 2).serials, QList<int>({3, 2}));
    EXPECT_EQ(account.serials(), QList<int>({7, 6, 5, 3, 2, 1, 0}));
}

TEST(Account, RemovesAtBothEndsAndNeverBringsAPostBack)
{
    Account account(4);
    account.removeNewest(1);
    account.removeOldest(2);
    EXPECT_EQ(account.serials(), QList<int>({2}));
    account.add(1);
    EXPECT_EQ(account.serials(), QList<int>({4, 2}));
    EXPECT_TRUE(account.contains(2));
    EXPECT_FALSE(account.contains(3));
    account.removeOldest(10);
    EXPECT_TRUE(account.serials().isEmpty());
    EXPECT_FALSE(account.remove(2));
}

TEST(PageToken, IsReadOnlyByTheListThatItWasMadeFor)
{
    const QString token = PageToken{17, 2}.encoded("bookmarks/1/");
    const auto read = PageToken::decoded(token, "bookmarks/1/");
    ASSERT_TRUE(read);
    EXPECT_EQ(read->before, 17);
    EXPECT_EQ(read->variant, 2);
    EXPECT_FALSE(PageToken::decoded(token, "bookmarks/2/"));
    EXPECT_FALSE(PageToken::decoded(token + u'0', "bookmarks/1/"));
    EXPECT_FALSE(PageToken::decoded({}, "bookmarks/1/"));
}

TEST(Folders, HoldPostsOfTheAccountAndOneHoldsNone)
{
    const Folders folders(3, 6);
    Account account(200);
    const QList<int> before = folders.serials(0, account);
    ASSERT_GT(before.size(), 3);
    account.remove(before.first());
    EXPECT_EQ(folders.serials(0, account), before.mid(1));
    EXPECT_TRUE(folders.serials(5, account).isEmpty());
}

TEST(Folders, AreAsManyAsAskedForAndShareNoPost)
{
    const Folders folders(3, 40);
    const Account account(400);
    ASSERT_EQ(folders.all().size(), 40);
    QSet<QString> names;
    QList<int> filed;
    for (int i = 0; i < 40; ++i) {
        names.insert(folders.all()[i].name);
        EXPECT_EQ(folders.find(folders.all()[i].id), i);
        filed += folders.serials(i, account);
    }
    EXPECT_EQ(names.size(), 40);
    EXPECT_GT(filed.size(), 100);
    EXPECT_EQ(QSet<int>(filed.begin(), filed.end()).size(), filed.size());
    EXPECT_TRUE(Folders(3, 0).all().isEmpty());
}

} // namespace
} // namespace mirel::simulator
