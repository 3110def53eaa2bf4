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
            QAccessibleInterface* const description = QAccessible::queryAccessibleInterface(item);
            EXPECT_NE(description, nullptr) << item->metaObject()->className();
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
    // Five mailboxes, the order, two ways to sync, the list.
    EXPECT_GE(expectNames(window().contentItem()), 9);
    click(visible("syncMenuButton"));
    ASSERT_TRUE(eventually([this] { return visible("fullSyncItem") != nullptr; }));
    EXPECT_GE(expectNames(window().contentItem()), 11);
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
