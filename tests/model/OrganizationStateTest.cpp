#include "testing/Printing.h"

#include "model/ModelTestBench.h"

namespace mirel {
namespace {

class OrganizationState : public testing::ModelTestBench
{
protected:
    // One of each, all named "Design", and the label on the first post.
    void organize()
    {
        const auto opened = library.open();
        const Tag label = opened->createTag(QStringLiteral("Design"), QStringLiteral("#112233"), {});
        opened->createFolder(QStringLiteral("Design"), {}, {}, {}, {});
        opened->createRule(QStringLiteral("Design"), QStringLiteral("post"), BookmarkRule::Action::tag,
                           label.id, true);
        opened->addTag(label.id, opened->bookmark(testing::makePost(1).tweetID)->id);
    }

    void expectOrganized()
    {
        ASSERT_EQ(model->tagSummaries().size(), 1);
        EXPECT_EQ(model->tagSummaries().first().bookmarkCount, 1);
        EXPECT_EQ(model->folderSummaries().size(), 1);
        EXPECT_EQ(model->rules().size(), 1);
        ASSERT_EQ(model->authorSummaries().size(), 1);
        EXPECT_EQ(model->authorSummaries().first().bookmarkCount, 3);
    }

    BookmarkHighlight highlight(qint64 bookmarkID, const QString& text)
    {
        return library.open()->createHighlight(bookmarkID, text, {}, 0, 4, QStringLiteral("#fde68a"),
                                               library.clock.now());
    }
};

TEST_F(OrganizationState, StartReadsLabelsFoldersRulesAndAuthors)
{
    store(1, 3);
    organize();
    makeModel();
    blockOn(model->start());
    expectOrganized();
}

TEST_F(OrganizationState, EachOfItsDestinationsReadsItAgain)
{
    for (const auto destination : {SidebarDestination::labels, SidebarDestination::folders,
                                   SidebarDestination::rules, SidebarDestination::authors}) {
        model.reset();
        library.open()->purgeAllLocalData();
        startWith(3);
        EXPECT_TRUE(model->tagSummaries().isEmpty());
        organize();
        blockOn(model->show(destination));
        expectOrganized();
        blockOn(model->shutDown());
    }
}

TEST_F(OrganizationState, ASyncBringsItsAuthors)
{
    makeModel();
    blockOn(model->start());
    EXPECT_TRUE(model->authorSummaries().isEmpty());
    x->answer = [](int) { return testing::makePage(1, 3); };
    blockOn(model->syncNow({}, false));
    ASSERT_EQ(model->authorSummaries().size(), 1);
    EXPECT_EQ(model->authorSummaries().first().bookmarkCount, 3);
}

TEST_F(OrganizationState, AFailureKeepsWhatWasShown)
{
    store(1, 3);
    organize();
    makeModel();
    blockOn(model->start());
    library.connect()->execute("ALTER TABLE bookmark_rules RENAME TO hidden_rules");
    blockOn(model->refreshOrganization());
    EXPECT_TRUE(model->lastError());
    expectOrganized();
    library.connect()->execute("ALTER TABLE hidden_rules RENAME TO bookmark_rules");
}

TEST_F(OrganizationState, WithoutALibraryNothingIsReadAndNothingIsSaid)
{
    MirelAppModel empty{MirelServices()};
    blockOn(empty.refreshOrganization());
    EXPECT_FALSE(empty.lastError());
    EXPECT_TRUE(empty.tagSummaries().isEmpty());
}

TEST_F(OrganizationState, TheOpenPostBringsItsHighlights)
{
    startWith(2);
    const BookmarkHighlight marked = highlight(idOf(1), QStringLiteral("Post"));
    blockOn(model->openBookmark(idOf(1)));
    EXPECT_EQ(model->highlights(), QList{marked});
    blockOn(model->openBookmark(idOf(2)));
    EXPECT_TRUE(model->highlights().isEmpty());
    blockOn(model->goBack());
    EXPECT_EQ(model->highlights(), QList{marked});
}

TEST_F(OrganizationState, ARefreshFollowsTheHighlightsOfTheOpenPost)
{
    startWith(2);
    blockOn(model->openBookmark(idOf(1)));
    const BookmarkHighlight marked = highlight(idOf(1), QStringLiteral("Post"));
    blockOn(model->refreshLibrary());
    EXPECT_EQ(model->highlights(), QList{marked});
}

} // namespace
} // namespace mirel
