#include "library/OrganizationBench.h"

#include <random>

namespace mirel {
namespace {

using testing::missingReference;

constexpr const char* cycleText = "A folder cannot be nested inside itself or one of its descendants.";

class Folders : public testing::OrganizationBench
{
protected:
    QStringList found(const char* search)
    {
        QStringList names;
        for (const Folder& each : store->folders(QString::fromUtf8(search)))
            names.append(each.name);
        QStringList summarized;
        for (const FolderSummary& each : store->folderSummaries(QString::fromUtf8(search)))
            summarized.append(each.folder.name);
        EXPECT_EQ(names, summarized) << "both searches find the same";
        return names;
    }

    Folder stored(qint64 id)
    {
        for (const Folder& each : store->folders()) {
            if (each.id == id)
                return each;
        }
        ADD_FAILURE() << "no folder " << id;
        return {};
    }

    Folder move(const Folder& folder, std::optional<qint64> parentID)
    {
        return store->updateFolder(folder.id, folder.name, folder.description, parentID);
    }
};

TEST_F(Folders, ANewFolderIsStoredAsGiven)
{
    const qint64 parentID = folder("Parent").id;
    const Folder made =
        store->createFolder(QStringLiteral(" Read  later! "), QStringLiteral("for the evening"), parentID,
                            Folder::Source::x, QStringLiteral("77"));
    EXPECT_EQ(made, (Folder{.id = 2,
                            .name = QStringLiteral("Read  later!"),
                            .slug = QStringLiteral("read-later"),
                            .description = QStringLiteral("for the evening"),
                            .parentID = parentID,
                            .source = Folder::Source::x,
                            .xFolderID = QStringLiteral("77")}));
    EXPECT_EQ(stored(made.id), made);
}

TEST_F(Folders, ANameThatExistsTakesWhatIsGivenAndLosesNothing)
{
    const qint64 parentID = folder("Parent").id;
    const Folder first = folder("News");
    const Folder given = store->createFolder(QStringLiteral("NEWS"), QStringLiteral("d"), parentID,
                                             Folder::Source::x, QStringLiteral("77"));
    EXPECT_EQ(given, (Folder{.id = first.id,
                             .name = QStringLiteral("News"),
                             .slug = QStringLiteral("news"),
                             .description = QStringLiteral("d"),
                             .parentID = parentID,
                             .source = Folder::Source::local,
                             .xFolderID = QStringLiteral("77")}))
        << "the source stays";
    EXPECT_EQ(folder("news"), given) << "absent values erase nothing";
}

TEST_F(Folders, AnEmptyNameIsStoredWithARandomSlug)
{
    const Folder made = folder(" ");
    EXPECT_EQ(made.name, u"");
    EXPECT_FALSE(QUuid::fromString(made.slug).isNull());
}

TEST_F(Folders, TakenValuesFail)
{
    folder("Design!");
    expectError(SQLiteStoreError::Case::execute,
                "Local library command failed: UNIQUE constraint failed: folders.slug",
                [this] { folder("design?"); });
    store->createFolder(QStringLiteral("x"), {}, {}, Folder::Source::x, QStringLiteral("77"));
    expectError(SQLiteStoreError::Case::execute,
                "Local library command failed: UNIQUE constraint failed: folders.x_folder_id", [this] {
                    store->createFolder(QStringLiteral("y"), {}, {}, Folder::Source::x, QStringLiteral("77"));
                });
    expectError(SQLiteStoreError::Case::execute, missingReference, [this] { folder("z", 99); });
    EXPECT_EQ(count("folders"), 2);
}

TEST_F(Folders, AFolderThatVanishesWhileItIsMadeIsAnError)
{
    connection->execute("CREATE TRIGGER vanish AFTER INSERT ON folders BEGIN DELETE FROM folders; END");
    expectError(SQLiteStoreError::Case::notFound, "The folder could not be loaded.", [this] { folder("a"); });
}

TEST_F(Folders, CreatingLooksForNoCycle)
{
    const Folder a = folder("a");
    const Folder b = folder("b", a.id);
    EXPECT_EQ(folder("a", b.id).parentID, b.id);
}

class FolderNameTest : public Folders, public ::testing::WithParamInterface<testing::CharacterCase>
{
};

TEST_P(FolderNameTest, IsCutAtAHundredCharacters)
{
    const auto& character = GetParam();
    const Folder made = store->createFolder(character.given(150), {}, {}, Folder::Source::local, {});
    EXPECT_EQ(made.name, character.stored(100));
    EXPECT_EQ(store->updateFolder(made.id, u'\n' + character.given(101), {}, {}).name, character.stored(100));
}

INSTANTIATE_TEST_SUITE_P(Characters, FolderNameTest, ::testing::ValuesIn(testing::characterCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(Folders, AVeryLongNameIsCutBeforeItsSlugIsMade)
{
    const Folder made = store->createFolder(testing::longText(), {}, {}, Folder::Source::local, {});
    EXPECT_EQ(made.name, testing::longText().first(100));
    EXPECT_EQ(made.slug, QStringLiteral("s").repeated(200));
    EXPECT_EQ(store->updateFolder(made.id, testing::longText(), {}, {}), made);
    EXPECT_EQ(stored(made.id), made);
}

TEST_F(Folders, UpdatingReplacesAbsentValuesToo)
{
    const qint64 parentID = folder("Parent").id;
    const Folder made = store->createFolder(QStringLiteral("a"), QStringLiteral("d"), parentID,
                                            Folder::Source::x, QStringLiteral("77"));
    const Folder updated = store->updateFolder(made.id, QStringLiteral(" Über uns "), {}, {});
    EXPECT_EQ(updated, (Folder{.id = made.id,
                               .name = QStringLiteral("Über uns"),
                               .slug = QStringLiteral("uber-uns"),
                               .source = Folder::Source::x,
                               .xFolderID = QStringLiteral("77")}));
    EXPECT_EQ(stored(made.id), updated);
    const Folder again = store->updateFolder(made.id, QStringLiteral("b"), QStringLiteral("e"), parentID);
    EXPECT_EQ(again.description, QStringLiteral("e"));
    EXPECT_EQ(again.parentID, parentID);
}

TEST_F(Folders, UpdatingToNothingOrToATakenNameChangesNothing)
{
    const Folder a = folder("a");
    const Folder b = folder("b");
    expectError(OrganizationError::Case::invalidName, "A non-empty name is required.",
                [&] { store->updateFolder(b.id, QStringLiteral(" \n"), QStringLiteral("d"), a.id); });
    EXPECT_THROW(store->updateFolder(b.id, QStringLiteral("A"), {}, {}), SQLiteStoreError);
    EXPECT_EQ(store->folders(), (QList<Folder>{a, b}));
}

TEST_F(Folders, UpdatingAnUnknownFolderFails)
{
    expectError(SQLiteStoreError::Case::notFound, "The folder no longer exists.",
                [this] { store->updateFolder(7, QStringLiteral("a"), {}, {}); });
}

TEST_F(Folders, AFolderCannotStandInItselfOrBelow)
{
    const Folder a = folder("a");
    const Folder b = folder("b", a.id);
    const Folder c = folder("c", b.id);
    for (const qint64 parentID : {a.id, b.id, c.id}) {
        expectError(OrganizationError::Case::folderCycle, cycleText, [&] { move(a, parentID); });
        EXPECT_EQ(stored(a.id), a);
    }
    EXPECT_EQ(move(c, a.id).parentID, a.id) << "a grandparent is no cycle";
    EXPECT_EQ(move(b, c.id).parentID, c.id);
}

TEST_F(Folders, ACycleIsReportedBeforeABlankName)
{
    const Folder a = folder("a");
    expectError(OrganizationError::Case::folderCycle, cycleText,
                [&] { store->updateFolder(a.id, QString(), {}, a.id); });
}

TEST_F(Folders, AParentThatDoesNotExistFails)
{
    const Folder a = folder("a");
    expectError(SQLiteStoreError::Case::execute, missingReference, [&] { move(a, 99); });
    EXPECT_EQ(stored(a.id), a);
}

TEST_F(Folders, ACircleElsewhereStopsNothing)
{
    const Folder a = folder("a");
    const Folder b = folder("b", a.id);
    folder("a", b.id);
    const Folder c = folder("c");
    EXPECT_EQ(move(c, a.id).parentID, a.id);
    expectError(OrganizationError::Case::folderCycle, cycleText, [&] { move(a, c.id); });
}

TEST_F(Folders, AParentThatIsNoNumberEndsTheWay)
{
    const Folder a = folder("a");
    const Folder b = folder("b", a.id);
    connection->run("UPDATE folders SET parent_id = 'top' WHERE id = ?", {b.id});
    EXPECT_EQ(stored(b.id).parentID, std::nullopt);
    EXPECT_EQ(move(a, b.id).parentID, b.id);
}

TEST_F(Folders, NeverEndInACycleWhateverTheOrderOfUpdates)
{
    std::mt19937 random(11);
    constexpr qint64 folders = 8;
    for (qint64 i = 0; i < folders; ++i)
        folder(("folder " + std::to_string(i)).c_str());
    int refused = 0;
    for (int step = 0; step < 400; ++step) {
        const Folder moved = stored(1 + static_cast<qint64>(random() % folders));
        const auto parent = static_cast<qint64>(random() % (folders + 1));
        const auto parentID = parent == 0 ? std::nullopt : std::optional(parent);
        try {
            EXPECT_EQ(move(moved, parentID).parentID, parentID);
        } catch (const OrganizationError&) {
            ++refused;
            EXPECT_EQ(stored(moved.id), moved);
        }
        QHash<qint64, std::optional<qint64>> parents;
        for (const Folder& each : store->folders())
            parents.insert(each.id, each.parentID);
        for (qint64 id = 1; id <= folders; ++id) {
            int depth = 0;
            for (auto next = std::optional(id); next; next = parents.value(*next))
                ASSERT_LE(++depth, folders) << "a cycle after step " << step;
        }
    }
    EXPECT_GT(refused, 10);
    EXPECT_LT(refused, 390);
}

TEST_F(Folders, SearchingLooksInNameAndSlugAndOrdersByName)
{
    for (const char* name : {"beta", "Alpha", "abc", "Café", "日本語"})
        folder(name);
    struct SearchRow
    {
        const char* search;
        const char* names;
    };
    for (const auto& [search, names] : std::initializer_list<SearchRow>{
             {"", "abc Alpha beta Café 日本語"},
             {" ", "abc Alpha beta Café 日本語"},
             {"ALPH", "Alpha"},
             {"a_c", "abc"},
             {"cafe", "Café"},
             {"本", "日本語"},
             {"zebra", ""},
         })
        EXPECT_EQ(found(search).join(u' '), QString::fromUtf8(names)) << search;
}

TEST_F(Folders, SummariesCountBookmarksAndThoseUnread)
{
    const Folder used = folder("used");
    const Folder unused = folder("Unused", used.id);
    for (int number = 1; number <= 5; ++number)
        store->assignFolder(used.id, add(number));
    store->updateLocalState(1, {}, true, false, false);
    store->updateLocalState(2, {}, false, false, true);
    store->updateLocalState(3, {}, false, true, false);
    store->deleteBookmarkLocally(4);
    EXPECT_EQ(
        store->folderSummaries(),
        (QList<FolderSummary>{{.folder = unused}, {.folder = used, .bookmarkCount = 5, .unreadCount = 3}}))
        << "one deleted here counts as well";
}

TEST_F(Folders, AssigningMovesABookmark)
{
    const qint64 bookmarkID = add(1);
    const Folder a = folder("a");
    const Folder b = folder("b");
    store->assignFolder(a.id, bookmarkID);
    EXPECT_EQ(store->bookmark(bookmarkID).folder, a);
    store->assignFolder(b.id, bookmarkID);
    EXPECT_EQ(store->bookmark(bookmarkID).folder, b);
    EXPECT_EQ(count("bookmark_folders"), 1);
    store->unassignFolder(bookmarkID);
    store->unassignFolder(bookmarkID);
    EXPECT_EQ(store->bookmark(bookmarkID).folder, std::nullopt);
}

TEST_F(Folders, AssigningWhatIsNotThereFails)
{
    const qint64 bookmarkID = add(1);
    const Folder a = folder("a");
    store->assignFolder(a.id, bookmarkID);
    expectError(SQLiteStoreError::Case::execute, missingReference,
                [&] { store->assignFolder(99, bookmarkID); });
    expectError(SQLiteStoreError::Case::execute, missingReference, [&] { store->assignFolder(a.id, 99); });
    EXPECT_EQ(store->bookmark(bookmarkID).folder, a);
}

TEST_F(Folders, DeletingKeepsTheBookmarksAndMovesTheFoldersWithinToTheTop)
{
    const Folder a = folder("a");
    const Folder child = folder("child", a.id);
    const Folder grandchild = folder("grandchild", child.id);
    for (int number = 1; number <= 3; ++number)
        store->assignFolder(a.id, add(number));
    store->updateLocalState(2, {}, false, true, false);
    store->updateLocalState(3, {}, false, false, true);
    EXPECT_EQ(store->libraryCounts().inbox, 0);

    store->deleteFolder(a.id);
    store->deleteFolder(99);

    EXPECT_EQ(stored(child.id).parentID, std::nullopt);
    EXPECT_EQ(stored(grandchild.id).parentID, child.id);
    EXPECT_EQ(count("folders"), 2);
    for (qint64 id = 1; id <= 3; ++id)
        EXPECT_EQ(store->bookmark(id).folder, std::nullopt);
    EXPECT_EQ(store->allBookmarkIDs(LibraryFilter::inbox, LibrarySort::newest), QList<qint64>{1});
}

} // namespace
} // namespace mirel
