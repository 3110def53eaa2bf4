#include "library/OrganizationBench.h"
#include "testing/RandomChoices.h"

namespace mirel {
namespace {

class Rules : public testing::OrganizationBench
{
protected:
    BookmarkRule labelRule(const char* name, qint64 tagID, bool isEnabled = true)
    {
        return store->createRule(QString::fromUtf8(name), QString(), BookmarkRule::Action::tag, tagID,
                                 isEnabled);
    }

    BookmarkRule folderRule(const char* name, qint64 folderID)
    {
        return store->createRule(QString::fromUtf8(name), QString(), BookmarkRule::Action::folder, folderID,
                                 true);
    }

    BookmarkRule stored(qint64 id)
    {
        for (const BookmarkRule& each : store->rules()) {
            if (each.id == id)
                return each;
        }
        ADD_FAILURE() << "no rule " << id;
        return {};
    }

    QStringList found(const char* search)
    {
        QStringList names;
        for (const BookmarkRule& each : store->rules(QString::fromUtf8(search)))
            names.append(each.name);
        return names;
    }

    QList<qint64> previewed(qint64 id)
    {
        QList<qint64> ids;
        for (const Bookmark& bookmark : store->previewRule(id))
            ids.append(bookmark.id);
        return ids;
    }
};

TEST_F(Rules, ANewRuleIsStoredAsGivenAndHasNotRun)
{
    const BookmarkRule made =
        store->createRule(QStringLiteral(" Long reads\n"), QStringLiteral(" is:article "),
                          BookmarkRule::Action::folder, 99, false);
    EXPECT_EQ(made, (BookmarkRule{.id = 1,
                                  .name = QStringLiteral("Long reads"),
                                  .query = QStringLiteral(" is:article "),
                                  .action = BookmarkRule::Action::folder,
                                  .targetID = 99}))
        << "neither is the query changed nor the target looked for";
    EXPECT_EQ(store->rules(), QList<BookmarkRule>{made});
    const BookmarkRule second = labelRule("other", 7);
    EXPECT_EQ(second.action, BookmarkRule::Action::tag);
    EXPECT_TRUE(second.isEnabled);
}

TEST_F(Rules, ARuleNeedsAName)
{
    for (const char* name : {"", "  ", "\n"})
        expectError(OrganizationError::Case::invalidName, "A non-empty name is required.",
                    [&] { labelRule(name, 1); });
    EXPECT_TRUE(store->rules().isEmpty());
}

TEST_F(Rules, ATakenNameFails)
{
    const BookmarkRule made = labelRule("News", 1);
    expectError(SQLiteStoreError::Case::execute,
                "Local library command failed: UNIQUE constraint failed: bookmark_rules.name",
                [this] { labelRule("news", 2); });
    EXPECT_EQ(store->rules(), QList<BookmarkRule>{made});
}

class RuleNameTest : public Rules, public ::testing::WithParamInterface<testing::CharacterCase>
{
};

TEST_P(RuleNameTest, IsCutAtAHundredCharacters)
{
    const BookmarkRule made =
        store->createRule(GetParam().given(150), {}, BookmarkRule::Action::tag, 1, true);
    EXPECT_EQ(made.name, GetParam().stored(100));
}

INSTANTIATE_TEST_SUITE_P(Characters, RuleNameTest, ::testing::ValuesIn(testing::characterCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(Rules, AVeryLongNameIsCutAndAVeryLongQueryIsNot)
{
    const BookmarkRule made =
        store->createRule(testing::longText(), testing::longText(), BookmarkRule::Action::tag, 1, true);
    EXPECT_EQ(made.name, testing::longText().first(100));
    EXPECT_EQ(made.query, testing::longText());
    EXPECT_EQ(store->rules(), QList<BookmarkRule>{made});
}

TEST_F(Rules, SearchingLooksInNameAndQueryAndOrdersByName)
{
    const auto make = [this](const char* name, const char* query) {
        store->createRule(QString::fromUtf8(name), QString::fromUtf8(query), BookmarkRule::Action::tag, 1,
                          true);
    };
    make("beta", "from:Ada");
    make("Alpha", "abc");
    make("Café", "日本語");
    EXPECT_EQ(found("").join(u' '), u"Alpha beta Café");
    EXPECT_EQ(found(" BET "), QStringList{QStringLiteral("beta")});
    EXPECT_EQ(found("from:ada"), QStringList{QStringLiteral("beta")});
    EXPECT_EQ(found("a_c"), QStringList{QStringLiteral("Alpha")});
    EXPECT_EQ(found("本"), QStringList{QStringLiteral("Café")});
    EXPECT_TRUE(found("zebra").isEmpty());
}

TEST_F(Rules, AreEnabledDisabledAndDeleted)
{
    const qint64 id = labelRule("a", 1).id;
    store->setRuleEnabled(id, false);
    EXPECT_FALSE(stored(id).isEnabled);
    store->setRuleEnabled(id, true);
    EXPECT_TRUE(stored(id).isEnabled);
    store->setRuleEnabled(99, true);
    store->deleteRule(99);
    EXPECT_EQ(count("bookmark_rules"), 1);
    store->deleteRule(id);
    EXPECT_EQ(count("bookmark_rules"), 0);
}

TEST_F(Rules, WhatARuleFiledStaysAfterItsDeletion)
{
    add(1);
    const qint64 id = labelRule("a", tag("label").id).id;
    store->runRule(id);
    store->deleteRule(id);
    EXPECT_EQ(tagNames(1), QStringList{QStringLiteral("label")});
}

TEST_F(Rules, AnUnknownRuleCannotBePreviewedOrRun)
{
    expectError(SQLiteStoreError::Case::notFound, "The rule no longer exists.",
                [this] { (void)store->previewRule(7); });
    expectError(SQLiteStoreError::Case::notFound, "The rule no longer exists.",
                [this] { store->runRule(7); });
}

TEST_F(Rules, APreviewIsOfTheNewestFirstAndFilesNothing)
{
    const qint64 id = labelRule("a", tag("label").id).id;
    add(1);
    add(3);
    add(2);
    store->deleteBookmarkLocally(3);
    store->updateLocalState(1, {}, true, false, true);
    EXPECT_EQ(previewed(id), (QList<qint64>{2, 1})) << "archived ones as well, deleted ones not";
    EXPECT_EQ(count("bookmark_tags"), 0);
    EXPECT_EQ(stored(id).lastRunAt, std::nullopt);
}

TEST_F(Rules, APreviewNeedsNoTarget)
{
    add(1);
    EXPECT_EQ(previewed(labelRule("a", 99).id), QList<qint64>{1});
}

TEST_F(Rules, AnEmptyQueryFilesTheFiveHundredNewest)
{
    const qint64 tagID = tag("label").id;
    const qint64 id = labelRule("a", tagID).id;
    for (int number = 1; number <= 503; ++number)
        add(number);
    const QList<qint64> preview = previewed(id);
    EXPECT_EQ(preview.size(), 500);
    EXPECT_EQ(preview.first(), 503);
    EXPECT_EQ(preview.last(), 4);
    EXPECT_EQ(store->runRule(id), 500);
    EXPECT_EQ(count("bookmark_tags"), 500);
    EXPECT_TRUE(tagNames(3).isEmpty());
    EXPECT_EQ(stored(id).lastMatchCount, 500);
    EXPECT_EQ(store->runRule(id), 500) << "the rest is not reached by running again";
    EXPECT_EQ(count("bookmark_tags"), 500);
}

TEST_F(Rules, ARunNotesItsTimeAndItsMatches)
{
    const qint64 id = labelRule("a", tag("label").id).id;
    add(1);
    add(2);
    library.clock.advance(5.5);
    EXPECT_EQ(store->runRule(id), 2);
    EXPECT_EQ(stored(id).lastRunAt, library.clock.now());
    EXPECT_EQ(stored(id).lastMatchCount, 2);
}

TEST_F(Rules, RunningALabelRuleTwiceAddsNothingAndReportsTheSame)
{
    const qint64 id = labelRule("a", tag("label").id).id;
    add(1);
    add(2);
    EXPECT_EQ(store->runRule(id), 2);
    library.clock.advance(1);
    EXPECT_EQ(store->runRule(id), 2);
    EXPECT_EQ(count("bookmark_tags"), 2);
    EXPECT_EQ(stored(id).lastRunAt, library.clock.now());
}

TEST_F(Rules, AFolderRuleMovesBookmarksOutOfOtherFolders)
{
    const Folder before = folder("before");
    const Folder after = folder("after");
    const qint64 id = folderRule("a", after.id).id;
    store->assignFolder(before.id, add(1));
    add(2);
    EXPECT_EQ(store->runRule(id), 2);
    EXPECT_EQ(store->bookmark(1).folder, after);
    EXPECT_EQ(store->bookmark(2).folder, after);
}

TEST_F(Rules, ARuleMayRunThoughItIsDisabled)
{
    add(1);
    EXPECT_EQ(store->runRule(labelRule("a", tag("label").id, false).id), 1);
}

TEST_F(Rules, ATargetThatIsGoneFails)
{
    add(1);
    const qint64 target = tag("target").id;
    const qint64 merged = tag("merged").id;
    const qint64 deletedFolder = folder("folder").id;
    const qint64 ofMerged = labelRule("merged", merged).id;
    const qint64 ofFolder = folderRule("folder", deletedFolder).id;
    store->mergeTags({merged}, target);
    store->deleteFolder(deletedFolder);
    for (const qint64 id : {ofMerged, ofFolder}) {
        expectError(OrganizationError::Case::missingTarget, "The rule target no longer exists.",
                    [&] { store->runRule(id); });
        EXPECT_EQ(stored(id).lastRunAt, std::nullopt);
    }
    EXPECT_EQ(count("bookmark_tags"), 0);
    EXPECT_EQ(count("bookmark_folders"), 0);
}

TEST_F(Rules, TheTargetIsLookedForAmongThoseOfTheAction)
{
    add(1);
    tag("first label");
    const qint64 tagID = tag("second label").id;
    const qint64 folderID = folder("folder").id;
    EXPECT_THROW(store->runRule(folderRule("a", tagID).id), OrganizationError);
    EXPECT_EQ(store->runRule(labelRule("b", tagID).id), 1);
    EXPECT_EQ(store->runRule(folderRule("c", folderID).id), 1);
}

TEST_F(Rules, ARunThatFailsHalfwayKeepsWhatItFiledAndNotesNothing)
{
    const qint64 id = labelRule("a", tag("label").id).id;
    for (int number = 1; number <= 4; ++number)
        add(number);
    connection->execute("CREATE TRIGGER stop BEFORE INSERT ON bookmark_tags WHEN new.bookmark_id = 2 "
                        "BEGIN SELECT RAISE(ABORT, 'stopped'); END");
    expectError(SQLiteStoreError::Case::execute, "Local library command failed: stopped",
                [&] { store->runRule(id); });
    const QStringList label{QStringLiteral("label")};
    EXPECT_EQ(tagNames(4), label);
    EXPECT_EQ(tagNames(3), label);
    EXPECT_TRUE(tagNames(2).isEmpty());
    EXPECT_TRUE(tagNames(1).isEmpty());
    EXPECT_EQ(stored(id).lastRunAt, std::nullopt);
    EXPECT_EQ(stored(id).lastMatchCount, 0);
}

TEST_F(Rules, NoEnabledRuleFilesNothing)
{
    EXPECT_EQ(store->runEnabledRules(), 0);
    add(1);
    const qint64 id = labelRule("a", tag("label").id, false).id;
    EXPECT_EQ(store->runEnabledRules(), 0);
    EXPECT_TRUE(tagNames(1).isEmpty());
    EXPECT_EQ(stored(id).lastRunAt, std::nullopt);
}

TEST_F(Rules, EnabledRulesRunByNameAndTheirMatchesAddUp)
{
    add(1);
    add(2);
    const Folder first = folder("first");
    const Folder last = folder("last");
    folderRule("zz", last.id);
    folderRule("AA", first.id);
    labelRule("mm", tag("label").id);
    labelRule("disabled", 99, false);
    EXPECT_EQ(store->runEnabledRules(), 6);
    EXPECT_EQ(store->bookmark(1).folder, last) << "the later rule has the last word";
    EXPECT_EQ(tagNames(2), QStringList{QStringLiteral("label")});
}

TEST_F(Rules, TheFirstFailureStopsTheRulesAfterIt)
{
    add(1);
    const qint64 before = labelRule("a", tag("before").id).id;
    labelRule("B", 99);
    const qint64 after = labelRule("c", tag("after").id).id;
    expectError(OrganizationError::Case::missingTarget, "The rule target no longer exists.",
                [this] { store->runEnabledRules(); });
    EXPECT_EQ(tagNames(1), QStringList{QStringLiteral("before")});
    EXPECT_EQ(stored(before).lastMatchCount, 1);
    EXPECT_EQ(stored(after).lastRunAt, std::nullopt);
}

// Posts that differ in what rules ask for and leave as it is: text, author, media, article, state.
SyncedBookmark variedPost(int number)
{
    SyncedBookmark post = testing::makePost(number);
    if (number % 3 == 0) {
        post.author = {.xID = QStringLiteral("43"),
                       .name = QStringLiteral("Grace Hopper"),
                       .username = QStringLiteral("grace")};
    }
    if (number % 4 == 1)
        post.media = {{.id = QStringLiteral("3_1"), .url = QUrl(QStringLiteral("https://p.example/1.jpg"))}};
    if (number % 5 == 2)
        post.contentTitle = QStringLiteral("An article");
    return post;
}

TEST_F(Rules, RunningAllAgainChangesNothing)
{
    testing::RandomChoices random(13);
    constexpr int bookmarks = 30;
    for (int number = 1; number <= bookmarks; ++number) {
        const qint64 id = store->upsertFromX(variedPost(number), library.clock.now()).id;
        store->updateLocalState(id, {}, number % 2 == 0, false, false);
    }
    const QStringList conditions{
        QStringLiteral("\"number 1\""), QStringLiteral("\"number 23\""), QStringLiteral("is:read"),
        QStringLiteral("is:unread"),    QStringLiteral("has:media"),     QStringLiteral("type:article"),
        QStringLiteral("type:tweet"),   QStringLiteral("author:ada"),    QStringLiteral("author:hopper")};
    for (int round = 0; round < 20; ++round) {
        for (const BookmarkRule& each : store->rules())
            store->deleteRule(each.id);
        for (int i = 0; i < 4; ++i) {
            const QString first = random.oneOf(conditions);
            const QString second = random.oneOf(conditions);
            const QString query =
                (random.chance(2) ? QStringLiteral("%1 OR %2") : QStringLiteral("%1 NOT %2"))
                    .arg(first, second);
            const std::string target = "target " + std::to_string(random.below(3));
            const bool isLabel = random.chance(2);
            store->createRule(QStringLiteral("rule %1").arg(i), query,
                              isLabel ? BookmarkRule::Action::tag : BookmarkRule::Action::folder,
                              isLabel ? tag(target.c_str()).id : folder(target.c_str()).id, true);
        }
        const qint64 filed = store->runEnabledRules();
        EXPECT_GT(filed, 0);
        EXPECT_LT(filed, 4 * bookmarks);
        const auto once = store->listBookmarks(LibraryFilter::all, 500, 0, LibrarySort::newest);
        const auto rules = store->rules();
        EXPECT_EQ(store->runEnabledRules(), filed);
        EXPECT_EQ(store->listBookmarks(LibraryFilter::all, 500, 0, LibrarySort::newest), once);
        EXPECT_EQ(store->rules(), rules) << "the clock stands still";
    }
}

TEST_F(Rules, AMistypedColumnTakesItsDefault)
{
    connection->execute("PRAGMA ignore_check_constraints = ON;"
                        "INSERT INTO bookmark_rules VALUES (5, x'00', x'00', 'burn', 'x', 2, 'never', 'x')");
    EXPECT_EQ(store->rules(), (QList<BookmarkRule>{{.id = 5}}));
    EXPECT_TRUE(previewed(5).isEmpty());
    expectError(OrganizationError::Case::missingTarget, "The rule target no longer exists.",
                [this] { store->runRule(5); });
}

} // namespace
} // namespace mirel
