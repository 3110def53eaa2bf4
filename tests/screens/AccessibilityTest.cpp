#include "screens/InventedHistory.h"
#include "screens/WindowBench.h"

#include <QAccessible>

namespace mirel::testing {

class Accessibility : public WindowBench
{
protected:
    // The visible controls from `item` that have no name for a screen reader.
    static int expectNames(QQuickItem* item)
    {
        if (!item->isVisible())
            return 0;
        int controls = 0;
        if (item->inherits("QQuickAbstractButton") || item->activeFocusOnTab()) {
            ++controls;
            QAccessibleInterface* description = QAccessible::queryAccessibleInterface(item);
            EXPECT_NE(description, nullptr) << item->metaObject()->className();
            // Of a password Qt tells nothing, its name included: the group around it has the name.
            if (description && description->state().passwordEdit)
                description = QAccessible::queryAccessibleInterface(item->parentItem());
            EXPECT_NE(description, nullptr) << qPrintable(item->objectName());
            if (description) {
                EXPECT_FALSE(description->text(QAccessible::Name).isEmpty())
                    << item->metaObject()->className() << ' ' << qPrintable(item->objectName());
                EXPECT_NE(description->role(), QAccessible::NoRole) << qPrintable(item->objectName());
            }
        }
        const QList<QQuickItem*> children = item->childItems();
        for (QQuickItem* const child : children)
            controls += expectNames(child);
        return controls;
    }
};

TEST_F(Accessibility, EveryControlHasANameAndARole)
{
    fill(inventedPosts());
    openWindow();
    // Three places, five mailboxes, the search, the order, two ways to sync, the list.
    EXPECT_GE(expectNames(window().contentItem()), 13);
    click(visible("syncMenuButton"));
    ASSERT_TRUE(eventually([this] { return visible("fullSyncItem") != nullptr; }));
    EXPECT_GE(expectNames(window().contentItem()), 15);
}

TEST_F(Accessibility, TheControlsOfASearchAndOfTheReaderHaveNamesToo)
{
    fillWithNumberedPosts(3);
    openWindow();
    const QAccessibleInterface* const field = QAccessible::queryAccessibleInterface(visible("searchField"));
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->role(), QAccessible::EditableText);
    EXPECT_EQ(field->text(QAccessible::Name), QStringLiteral("Search"));
    blockOn(model->setSearchQuery(QStringLiteral("number")));
    expectNames(window().contentItem());
    blockOn(model->openBookmark(model->bookmarks().first().id));
    ASSERT_TRUE(eventually([this] { return visible("leaveReader") != nullptr; }));
    expectNames(window().contentItem());
    const QAccessibleInterface* const pane = QAccessible::queryAccessibleInterface(visible("postPane"));
    ASSERT_NE(pane, nullptr);
    EXPECT_EQ(pane->text(QAccessible::Name), QStringLiteral("Post by Ada Lovelace"));
}

TEST_F(Accessibility, WhatStandsOverTheWindowHasNamesToo)
{
    inventHistory(library);
    openWindow();
    press(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_TRUE(eventually([this] { return visible("showTokens") != nullptr; }));
    click(visible("showTokens"));
    ASSERT_TRUE(eventually([this] { return visible("accessTokenInput") != nullptr; }));
    expectNames(window().contentItem());
    const QAccessibleInterface* const secret =
        QAccessible::queryAccessibleInterface(visible("accessTokenInput"));
    EXPECT_TRUE(secret->state().passwordEdit);
    const QAccessibleInterface* const group = QAccessible::queryAccessibleInterface(visible("accessToken"));
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->text(QAccessible::Name), QStringLiteral("User access token"));
    press(Qt::Key_Escape);
    ASSERT_TRUE(eventually([this] { return visible("showTokens") == nullptr; }));
    click(visible("syncState"));
    ASSERT_TRUE(eventually([this] { return allVisible("runRow").size() == 5; }));
    press(Qt::Key_Down);
    ASSERT_TRUE(eventually([this] { return visible("runLog") != nullptr; }));
    expectNames(window().contentItem());
    const QAccessibleInterface* const run =
        QAccessible::queryAccessibleInterface(allVisible("runRow").value(0));
    ASSERT_NE(run, nullptr);
    EXPECT_EQ(run->role(), QAccessible::ListItem);
    EXPECT_TRUE(run->text(QAccessible::Name).startsWith(QStringLiteral("rate limited, 49 fetched, ")));
    press(Qt::Key_Escape);
    ASSERT_TRUE(eventually([this] { return visible("runLog") == nullptr; }));
    press(Qt::Key_O, Qt::ControlModifier);
    ASSERT_TRUE(eventually([this] { return visible("postReferenceInput") != nullptr; }));
    expectNames(window().contentItem());
}

TEST_F(Accessibility, ARowTellsWhatItShows)
{
    fill(inventedPosts());
    openWindow();
    const QAccessibleInterface* const row = QAccessible::queryAccessibleInterface(rows().constFirst());
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->role(), QAccessible::ListItem);
    EXPECT_TRUE(
        row->text(QAccessible::Name).startsWith(QStringLiteral("Unread. Maren Oduya, @marenwrites, ")));
}

} // namespace mirel::testing
