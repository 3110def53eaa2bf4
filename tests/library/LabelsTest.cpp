#include "library/OrganizationBench.h"

#include <random>

namespace mirel {
namespace {

using testing::missingReference;

struct ErrorRow
{
    const char* name;
    OrganizationError::Case errorCase;
    const char* description;
};

class OrganizationErrorTest : public ::testing::TestWithParam<ErrorRow>
{
};

TEST_P(OrganizationErrorTest, HasItsDescription)
{
    EXPECT_EQ(OrganizationError(GetParam().errorCase).description(),
              QString::fromLatin1(GetParam().description));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, OrganizationErrorTest,
    ::testing::Values(ErrorRow{"InvalidName", OrganizationError::Case::invalidName,
                               "A non-empty name is required."},
                      ErrorRow{"FolderCycle", OrganizationError::Case::folderCycle,
                               "A folder cannot be nested inside itself or one of its descendants."},
                      ErrorRow{"MissingTarget", OrganizationError::Case::missingTarget,
                               "The rule target no longer exists."}),
    [](const auto& row) { return std::string(row.param.name); });

class Labels : public testing::OrganizationBench
{
protected:
    QStringList found(const char* search)
    {
        QStringList names;
        for (const Tag& each : store->tags(QString::fromUtf8(search)))
            names.append(each.name);
        QStringList summarized;
        for (const TagSummary& each : store->tagSummaries(QString::fromUtf8(search)))
            summarized.append(each.tag.name);
        EXPECT_EQ(names, summarized) << "both searches find the same";
        return names;
    }
};

TEST_F(Labels, ANewLabelIsStoredAsGiven)
{
    const Tag made =
        store->createTag(QStringLiteral("Deep & Work"), QStringLiteral("#aabbcc"), Tag::Source::generated);
    EXPECT_EQ(made, (Tag{.id = 1,
                         .name = QStringLiteral("Deep & Work"),
                         .slug = QStringLiteral("deep-work"),
                         .colorHex = QStringLiteral("#aabbcc"),
                         .source = Tag::Source::generated}));
    EXPECT_EQ(store->tags(), QList<Tag>{made});
}

TEST_F(Labels, ANameThatExistsInAnyCaseKeepsAllButItsColor)
{
    const Tag first =
        store->createTag(QStringLiteral("  Design "), QStringLiteral("#111111"), Tag::Source::manual);
    EXPECT_EQ(first.name, u"Design");
    const Tag second =
        store->createTag(QStringLiteral("design"), QStringLiteral("#222222"), Tag::Source::generated);
    EXPECT_EQ(second, (Tag{.id = first.id,
                           .name = QStringLiteral("Design"),
                           .slug = QStringLiteral("design"),
                           .colorHex = QStringLiteral("#222222"),
                           .source = Tag::Source::manual}));
    EXPECT_EQ(count("tags"), 1);
}

TEST_F(Labels, AnEmptyNameIsStoredWithARandomSlug)
{
    const Tag made = tag(" \n ");
    EXPECT_EQ(made.name, u"");
    EXPECT_FALSE(QUuid::fromString(made.slug).isNull());
    EXPECT_EQ(tag("").id, made.id);
}

TEST_F(Labels, NamesOfSymbolsDoNotCollide)
{
    EXPECT_NE(tag("###").slug, tag("!!!").slug);
    EXPECT_NE(tag("❤️").slug, tag("✔️").slug);
    EXPECT_EQ(count("tags"), 4);
}

TEST_F(Labels, TwoNamesWithOneSlugCollide)
{
    tag("Design!");
    expectError(SQLiteStoreError::Case::execute,
                "Local library command failed: UNIQUE constraint failed: tags.slug",
                [this] { tag("design?"); });
    tag("Ärger");
    expectError(SQLiteStoreError::Case::execute,
                "Local library command failed: UNIQUE constraint failed: tags.slug",
                [this] { tag("ärger"); });
    EXPECT_EQ(count("tags"), 2);
}

TEST_F(Labels, ALabelThatVanishesWhileItIsMadeIsAnError)
{
    connection->execute("CREATE TRIGGER vanish AFTER INSERT ON tags BEGIN DELETE FROM tags; END");
    expectError(SQLiteStoreError::Case::notFound, "The label could not be loaded.", [this] { tag("a"); });
}

class LabelNameTest : public Labels, public ::testing::WithParamInterface<testing::CharacterCase>
{
};

TEST_P(LabelNameTest, IsCutAtAHundredCharacters)
{
    const auto& character = GetParam();
    const Tag made = store->createTag(character.given(150), QStringLiteral("#111111"), Tag::Source::manual);
    EXPECT_EQ(made.name, character.stored(100));
    const Tag renamed = store->renameTag(made.id, u' ' + character.given(101), made.colorHex);
    EXPECT_EQ(renamed.name, character.stored(100)) << "trimmed first";
    EXPECT_EQ(store->renameTag(made.id, character.given(99), made.colorHex).name, character.stored(99));
}

INSTANTIATE_TEST_SUITE_P(Characters, LabelNameTest, ::testing::ValuesIn(testing::characterCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(Labels, AVeryLongNameIsCutBeforeItsSlugIsMade)
{
    const Tag made = store->createTag(testing::longText(), QStringLiteral("#111111"), Tag::Source::manual);
    EXPECT_EQ(made.name, testing::longText().first(100));
    EXPECT_EQ(made.slug, QStringLiteral("s").repeated(200));
    EXPECT_EQ(store->renameTag(made.id, testing::longText(), made.colorHex), made);
    EXPECT_EQ(store->tags(), QList<Tag>{made});
}

TEST_F(Labels, RenamingChangesNameSlugAndColorAndKeepsTheSource)
{
    const qint64 id =
        store->createTag(QStringLiteral("a"), QStringLiteral("#111111"), Tag::Source::generated).id;
    const Tag renamed = store->renameTag(id, QStringLiteral(" Café "), QStringLiteral("#222222"));
    EXPECT_EQ(renamed, (Tag{.id = id,
                            .name = QStringLiteral("Café"),
                            .slug = QStringLiteral("cafe"),
                            .colorHex = QStringLiteral("#222222"),
                            .source = Tag::Source::generated}));
    EXPECT_EQ(store->tags(), QList<Tag>{renamed});
    EXPECT_EQ(store->renameTag(id, QStringLiteral("CAFÉ"), QStringLiteral("#222222")).name, u"CAFÉ");
}

TEST_F(Labels, RenamingToNothingChangesNothing)
{
    const Tag before = tag("a");
    expectError(OrganizationError::Case::invalidName, "A non-empty name is required.",
                [&] { store->renameTag(before.id, QStringLiteral("   "), QStringLiteral("#222222")); });
    EXPECT_EQ(store->tags(), QList<Tag>{before});
}

TEST_F(Labels, RenamingToTheNameOfAnotherFails)
{
    const QList<Tag> before{tag("a"), tag("b")};
    for (const char* name : {"A", "a!"}) {
        try {
            store->renameTag(before[1].id, QString::fromUtf8(name), QStringLiteral("#222222"));
            ADD_FAILURE() << name;
        } catch (const SQLiteStoreError& error) {
            EXPECT_EQ(error.errorCase(), SQLiteStoreError::Case::execute);
            EXPECT_TRUE(error.message().startsWith(u"UNIQUE constraint failed: tags."));
        }
    }
    EXPECT_EQ(store->tags(), before);
}

TEST_F(Labels, RenamingAnUnknownLabelFails)
{
    expectError(SQLiteStoreError::Case::notFound, "The label no longer exists.",
                [this] { store->renameTag(7, QStringLiteral("a"), QStringLiteral("#111111")); });
}

TEST_F(Labels, SearchingLooksInNameAndSlugAndOrdersByName)
{
    for (const char* name : {"beta", "Alpha", "abc", "Café", "日本語", "x%y"})
        tag(name);
    struct SearchRow
    {
        const char* search;
        QStringList names;
    };
    const auto names = [](const char* text) { return QString::fromUtf8(text).split(u' '); };
    for (const auto& [search, expected] : std::initializer_list<SearchRow>{
             {"", names("abc Alpha beta Café x%y 日本語")},
             {" \n", names("abc Alpha beta Café x%y 日本語")},
             {" ALPH ", {QStringLiteral("Alpha")}},
             {"a_c", {QStringLiteral("abc")}},
             {"a%a", {QStringLiteral("Alpha")}},
             {"cafe", {QStringLiteral("Café")}},
             {"café", {QStringLiteral("Café")}},
             {"x-y", {QStringLiteral("x%y")}},
             {"本", {QStringLiteral("日本語")}},
             {"'", {}},
             {"zebra", {}},
         })
        EXPECT_EQ(found(search), expected) << search;
}

TEST_F(Labels, SummariesCountBookmarksAndThoseUnread)
{
    const Tag used = tag("used");
    const Tag unused = tag("Unused");
    for (int number = 1; number <= 5; ++number)
        store->addTag(used.id, add(number));
    store->updateLocalState(1, {}, true, false, false);
    store->updateLocalState(2, {}, false, false, true);
    store->updateLocalState(3, {}, false, true, false);
    store->deleteBookmarkLocally(4);
    EXPECT_EQ(store->tagSummaries(),
              (QList<TagSummary>{{.tag = unused}, {.tag = used, .bookmarkCount = 5, .unreadCount = 3}}))
        << "one deleted here counts as well";
}

TEST_F(Labels, AddingTwiceLinksOnceAndRemovingUnlinks)
{
    const qint64 bookmarkID = add(1);
    const Tag a = tag("a");
    const Tag b = tag("b");
    store->addTag(a.id, bookmarkID);
    store->addTag(a.id, bookmarkID);
    store->addTag(b.id, bookmarkID);
    EXPECT_EQ(store->bookmark(bookmarkID).tags, (QList<Tag>{a, b}));
    store->removeTag(a.id, bookmarkID);
    store->removeTag(a.id, bookmarkID);
    EXPECT_EQ(store->bookmark(bookmarkID).tags, QList<Tag>{b});
}

TEST_F(Labels, LinkingWhatIsNotThereFails)
{
    const qint64 bookmarkID = add(1);
    const qint64 tagID = tag("a").id;
    expectError(SQLiteStoreError::Case::execute, missingReference, [&] { store->addTag(tagID, 99); });
    expectError(SQLiteStoreError::Case::execute, missingReference, [&] { store->addTag(99, bookmarkID); });
    EXPECT_EQ(count("bookmark_tags"), 0);
}

TEST_F(Labels, MergingMovesTheLinksAndDeletesTheSources)
{
    const qint64 both = add(1);
    const qint64 onlySource = add(2);
    const qint64 onlyTarget = add(3);
    const qint64 other = add(4);
    const qint64 target = tag("target").id;
    const qint64 source = tag("source").id;
    const qint64 second = tag("second").id;
    const qint64 untouched = tag("untouched").id;
    store->addTag(target, both);
    store->addTag(source, both);
    store->addTag(source, onlySource);
    store->addTag(second, onlySource);
    store->addTag(target, onlyTarget);
    store->addTag(untouched, other);

    store->mergeTags({source, target, second, source, 99}, target);

    const QStringList merged{QStringLiteral("target")};
    EXPECT_EQ(tagNames(both), merged);
    EXPECT_EQ(tagNames(onlySource), merged);
    EXPECT_EQ(tagNames(onlyTarget), merged);
    EXPECT_EQ(tagNames(other), QStringList{QStringLiteral("untouched")});
    EXPECT_EQ(found(""), (QStringList{QStringLiteral("target"), QStringLiteral("untouched")}));
}

TEST_F(Labels, MergingNothingOrTheTargetAloneChangesNothing)
{
    const qint64 target = tag("target").id;
    store->addTag(target, add(1));
    store->mergeTags({}, target);
    store->mergeTags({target}, target);
    EXPECT_EQ(tagNames(1), QStringList{QStringLiteral("target")});
}

TEST_F(Labels, AMergeThatFailsHalfwayIsRolledBack)
{
    const qint64 target = tag("target").id;
    const qint64 one = tag("one").id;
    const qint64 two = tag("two").id;
    store->addTag(one, add(1));
    store->addTag(two, add(2));
    // The second of the deletions.
    connection->execute("CREATE TRIGGER stop BEFORE DELETE ON tags WHEN (SELECT COUNT(*) FROM tags) = 2 "
                        "BEGIN SELECT RAISE(ABORT, 'stopped'); END");
    expectError(SQLiteStoreError::Case::execute, "Local library command failed: stopped", [&] {
        store->mergeTags({one, two}, target);
    });
    EXPECT_EQ(tagNames(1), QStringList{QStringLiteral("one")});
    EXPECT_EQ(tagNames(2), QStringList{QStringLiteral("two")});
    EXPECT_EQ(count("tags"), 3);
    connection->execute("DROP TRIGGER stop");
    store->mergeTags({one, two}, target);
    EXPECT_EQ(count("tags"), 1) << "the next one is not within the failed transaction";
}

TEST_F(Labels, MergingIntoALabelThatIsNotThereLosesNothing)
{
    const qint64 source = tag("source").id;
    store->addTag(source, add(1));
    expectError(SQLiteStoreError::Case::execute, missingReference, [&] { store->mergeTags({source}, 99); });
    EXPECT_EQ(tagNames(1), QStringList{QStringLiteral("source")});
}

TEST_F(Labels, MergingLosesNoAssignment)
{
    std::mt19937 random(7);
    constexpr int bookmarks = 12;
    for (int number = 1; number <= bookmarks; ++number)
        add(number);
    for (int round = 0; round < 20; ++round) {
        QList<qint64> ids;
        for (int i = 0; i < 6; ++i)
            ids.append(tag(("label " + std::to_string(i)).c_str()).id);
        // What a merge must leave each bookmark with.
        const qint64 target = ids[static_cast<qsizetype>(random() % 6)];
        QList<qint64> sources;
        for (const qint64 id : ids) {
            if (random() % 2)
                sources.append(id);
        }
        QHash<qint64, QSet<qint64>> expected;
        for (qint64 bookmarkID = 1; bookmarkID <= bookmarks; ++bookmarkID) {
            for (const qint64 id : ids) {
                if (random() % 3)
                    continue;
                store->addTag(id, bookmarkID);
                expected[bookmarkID].insert(sources.contains(id) ? target : id);
            }
        }
        store->mergeTags(sources, target);
        for (qint64 bookmarkID = 1; bookmarkID <= bookmarks; ++bookmarkID) {
            QSet<qint64> kept;
            for (const Tag& each : store->bookmark(bookmarkID).tags)
                kept.insert(each.id);
            ASSERT_EQ(kept, expected.value(bookmarkID)) << "round " << round;
        }
        store->deleteTags(ids);
        ASSERT_EQ(count("bookmark_tags"), 0);
    }
}

TEST_F(Labels, DeletingTakesTheLinksAndLeavesTheBookmarks)
{
    const qint64 bookmarkID = add(1);
    const qint64 a = tag("a").id;
    store->addTag(a, bookmarkID);
    const qint64 b = tag("b").id;
    tag("c");
    store->deleteTags({a, b, a, 99});
    EXPECT_EQ(found(""), QStringList{QStringLiteral("c")});
    EXPECT_TRUE(store->bookmark(bookmarkID).tags.isEmpty());
    EXPECT_EQ(count("bookmark_tags"), 0);
    store->deleteTags({});
    EXPECT_EQ(count("tags"), 1);
}

TEST_F(Labels, ADeletionThatFailsHalfwayLeavesWhatWasDone)
{
    const QList<qint64> ids{tag("a").id, tag("b").id, tag("c").id};
    connection->execute("CREATE TRIGGER stop BEFORE DELETE ON tags WHEN (SELECT COUNT(*) FROM tags) = 2 "
                        "BEGIN SELECT RAISE(ABORT, 'stopped'); END");
    expectError(SQLiteStoreError::Case::execute, "Local library command failed: stopped",
                [&] { store->deleteTags(ids); });
    EXPECT_EQ(count("tags"), 2);
}

} // namespace
} // namespace mirel
