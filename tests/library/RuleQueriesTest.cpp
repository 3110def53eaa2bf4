#include "library/OrganizationBench.h"

// Rules with the language of their queries.

namespace mirel {
namespace {

class RuleQueries : public testing::OrganizationBench
{
protected:
    qint64 addText(int number, const char* text)
    {
        SyncedBookmark post = testing::makePost(number);
        post.text = QString::fromUtf8(text);
        return store->upsertFromX(post, library.clock.now()).id;
    }

    qint64 labelRule(const char* query, const char* label)
    {
        return store
            ->createRule(QString::fromUtf8(query), QString::fromUtf8(query), BookmarkRule::Action::tag,
                         tag(label).id, true)
            .id;
    }

    // The ids of the bookmarks that the rule shows.
    QList<qint64> previewed(qint64 ruleID)
    {
        QList<qint64> ids;
        for (const Bookmark& bookmark : store->previewRule(ruleID))
            ids.append(bookmark.id);
        return ids;
    }
};

TEST_F(RuleQueries, ARuleFilesWhatItsQueryMatchesAndNothingElse)
{
    const qint64 first = addText(1, "Growing tomatoes");
    const qint64 other = addText(2, "Growing potatoes");
    const qint64 second = addText(3, "TOMATOES again");
    const qint64 rule = labelRule("tomatoes", "red");
    EXPECT_EQ(previewed(rule), (QList<qint64>{second, first}));
    EXPECT_EQ(store->runRule(rule), 2);
    const QStringList red{QStringLiteral("red")};
    EXPECT_EQ(tagNames(first), red);
    EXPECT_EQ(tagNames(second), red);
    EXPECT_TRUE(tagNames(other).isEmpty());
}

TEST_F(RuleQueries, ARuleThatMatchesNothingRunsAndNotesIt)
{
    addText(1, "Growing tomatoes");
    const qint64 rule = labelRule("zebra", "label");
    EXPECT_EQ(store->runRule(rule), 0);
    EXPECT_EQ(count("bookmark_tags"), 0);
    EXPECT_EQ(store->rules().first().lastRunAt, library.clock.now());
}

TEST_F(RuleQueries, AQueryThatCannotBeUnderstoodStillRuns)
{
    const qint64 plain = addText(1, "Growing tomatoes");
    for (const char* query : {"(", ")", "OR", "((NOT", "\"", "has:?", ": :", "is:"}) {
        const qint64 rule = labelRule(query, "label");
        EXPECT_NO_THROW(store->runRule(rule)) << query;
        store->deleteRule(rule);
    }
    EXPECT_EQ(previewed(labelRule("(tomatoes", "label")), QList<qint64>{plain}) << "a missing parenthesis";
    EXPECT_EQ(previewed(labelRule("has:?", "label")), QList<qint64>{plain}) << "an unknown value";
    EXPECT_TRUE(previewed(labelRule("foo:bar", "label")).isEmpty()) << "an unknown key is a text";
}

TEST_F(RuleQueries, ALaterRuleSeesWhatAnEarlierOneFiled)
{
    addText(1, "Growing tomatoes");
    addText(2, "Growing potatoes");
    store->createRule(QStringLiteral("first"), QStringLiteral("tomatoes"), BookmarkRule::Action::tag,
                      tag("red").id, true);
    store->createRule(QStringLiteral("second"), QStringLiteral("label:red"), BookmarkRule::Action::folder,
                      folder("Garden").id, true);
    EXPECT_EQ(store->runEnabledRules(), 2);
    EXPECT_EQ(store->bookmark(1).folder->name, u"Garden");
    EXPECT_EQ(store->bookmark(2).folder, std::nullopt);
}

TEST_F(RuleQueries, TheRestIsReachedOnceTheNewestNoLongerMatch)
{
    for (int number = 1; number <= 503; ++number)
        addText(number, "Growing tomatoes");
    const qint64 rule = labelRule("tomatoes is:untagged", "red");
    EXPECT_EQ(store->runRule(rule), 500);
    EXPECT_EQ(store->runRule(rule), 3);
    EXPECT_EQ(store->runRule(rule), 0);
    EXPECT_EQ(count("bookmark_tags"), 503);
}

} // namespace
} // namespace mirel
