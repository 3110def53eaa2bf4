#include "testing/FailingSQLite.h"
#include "testing/LibraryChecks.h"

#include "library/OrganizationBench.h"

// Every statement and every file operation of what organises the library fails in turn: the first, the
// second, and so on until none fails. Each time there is a clear error; afterwards the library is whole, what
// must be all or nothing is, and the same operation succeeds.

namespace mirel {
namespace {

using testing::FailureCountdown;
using testing::TemporaryLibrary;

// What the tables hold that the operations write.
QStringList contents(const TemporaryLibrary& library)
{
    const auto connection = library.connect();
    QStringList lines;
    for (const char* query :
         {"SELECT 'tag ' || id || ' ' || name || ' ' || color_hex AS line FROM tags ORDER BY id",
          "SELECT 'link ' || bookmark_id || ' ' || tag_id AS line FROM bookmark_tags ORDER BY 1",
          "SELECT 'folder ' || id || ' ' || name || ' ' || IFNULL(parent_id, '-') AS line FROM folders ORDER "
          "BY id",
          "SELECT 'filed ' || bookmark_id || ' ' || folder_id AS line FROM bookmark_folders ORDER BY 1",
          "SELECT 'rule ' || id || ' ' || name || ' ' || is_enabled || ' ' || IFNULL(last_run_at, '-') || ' "
          "' || "
          "last_match_count AS line FROM bookmark_rules ORDER BY id",
          "SELECT 'highlight ' || id || ' ' || selected_text AS line FROM highlights ORDER BY id",
          "SELECT 'state ' || value_json AS line FROM app_state"}) {
        for (const SQLiteRow& row : connection->rows(query))
            lines.append(row.text("line").value_or(QString()));
    }
    return lines;
}

// Three bookmarks, three labels, two folders one in the other, a rule for each, a highlight, settings.
void prepare(LocalLibraryStore& store)
{
    const QString color = QStringLiteral("#111111");
    for (int number = 1; number <= 3; ++number)
        store.upsertFromX(testing::makePost(number), Instant());
    for (const char* name : {"one", "two", "three"})
        store.createTag(QString::fromLatin1(name), color, Tag::Source::manual);
    for (qint64 id = 1; id <= 3; ++id)
        store.addTag(id, id);
    store.createFolder(QStringLiteral("outer"), {}, {}, Folder::Source::local, {});
    store.createFolder(QStringLiteral("inner"), {}, 1, Folder::Source::local, {});
    store.assignFolder(2, 1);
    store.createRule(QStringLiteral("a"), {}, BookmarkRule::Action::tag, 1, true);
    store.createRule(QStringLiteral("b"), {}, BookmarkRule::Action::folder, 1, true);
    store.createHighlight(1, QStringLiteral("words"), {}, 0, 5, color, Instant());
    store.savePreferences(AppPreferences());
}

// What an operation leaves when it fails.
enum class Leaves { nothing, whatWasDone };

struct OperationRow
{
    const char* name;
    Leaves leaves;
    void (*run)(LocalLibraryStore& store);
};

void PrintTo(const OperationRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class FailingOrganization : public ::testing::TestWithParam<OperationRow>
{
protected:
    // Runs the operation with each of the failures in turn. Returns how many ended in an error.
    static int failEachInTurn(FailureCountdown& countdown)
    {
        int errors = 0;
        for (int n = 0; !HasFailure(); ++n) {
            const TemporaryLibrary library;
            // Before the store is opened, so that its connection is watched.
            countdown.disarm();
            auto store = library.open();
            prepare(*store);
            const QStringList before = contents(library);
            countdown.arm(n);
            bool failed = false;
            try {
                GetParam().run(*store);
            } catch (const SQLiteStoreError& error) {
                failed = true;
                EXPECT_FALSE(error.message().isEmpty());
            }
            countdown.disarm();
            if (!countdown.fired())
                return errors;
            errors += failed ? 1 : 0;
            if (failed && GetParam().leaves == Leaves::nothing) {
                EXPECT_EQ(contents(library), before) << "after failure " << n;
            }
            if (failed) {
                EXPECT_NO_THROW(GetParam().run(*store)) << "after failure " << n;
            }
            store.reset();
            testing::expectWhole(library.path());
        }
        return errors;
    }
};

TEST_P(FailingOrganization, EndsInAnErrorWhicheverStatementFails)
{
    EXPECT_GT(failEachInTurn(testing::failingStatements()), 0);
}

TEST_P(FailingOrganization, IsWholeWhicheverFileOperationFails)
{
    failEachInTurn(testing::failingFileOperations());
}

const auto color = QStringLiteral("#222222");
const auto name = QStringLiteral("new");

const OperationRow operations[] = {
    {"CreateTag", Leaves::whatWasDone,
     [](LocalLibraryStore& it) { it.createTag(name, color, Tag::Source::manual); }},
    {"Tags", Leaves::nothing, [](LocalLibraryStore& it) { EXPECT_EQ(it.tags().size(), 3); }},
    {"TagSummaries", Leaves::nothing, [](LocalLibraryStore& it) { EXPECT_EQ(it.tagSummaries().size(), 3); }},
    {"RenameTag", Leaves::whatWasDone, [](LocalLibraryStore& it) { it.renameTag(1, name, color); }},
    {"AddTag", Leaves::nothing, [](LocalLibraryStore& it) { it.addTag(1, 2); }},
    {"RemoveTag", Leaves::nothing, [](LocalLibraryStore& it) { it.removeTag(1, 1); }},
    {"MergeTags", Leaves::nothing,
     [](LocalLibraryStore& it) {
         it.mergeTags({1, 2}, 3);
     }},
    {"DeleteTags", Leaves::whatWasDone,
     [](LocalLibraryStore& it) {
         it.deleteTags({1, 2});
     }},
    {"CreateFolder", Leaves::whatWasDone,
     [](LocalLibraryStore& it) { it.createFolder(name, {}, 2, Folder::Source::local, {}); }},
    {"Folders", Leaves::nothing, [](LocalLibraryStore& it) { EXPECT_EQ(it.folders().size(), 2); }},
    {"FolderSummaries", Leaves::nothing,
     [](LocalLibraryStore& it) { EXPECT_EQ(it.folderSummaries().size(), 2); }},
    {"UpdateFolder", Leaves::whatWasDone, [](LocalLibraryStore& it) { it.updateFolder(2, name, {}, 1); }},
    {"DeleteFolder", Leaves::nothing, [](LocalLibraryStore& it) { it.deleteFolder(1); }},
    {"AssignFolder", Leaves::nothing, [](LocalLibraryStore& it) { it.assignFolder(1, 1); }},
    {"UnassignFolder", Leaves::nothing, [](LocalLibraryStore& it) { it.unassignFolder(1); }},
    {"Rules", Leaves::nothing, [](LocalLibraryStore& it) { EXPECT_EQ(it.rules().size(), 2); }},
    {"SetRuleEnabled", Leaves::nothing, [](LocalLibraryStore& it) { it.setRuleEnabled(1, false); }},
    {"DeleteRule", Leaves::nothing, [](LocalLibraryStore& it) { it.deleteRule(1); }},
    {"PreviewRule", Leaves::nothing, [](LocalLibraryStore& it) { EXPECT_EQ(it.previewRule(1).size(), 3); }},
    {"RunLabelRule", Leaves::whatWasDone, [](LocalLibraryStore& it) { EXPECT_EQ(it.runRule(1), 3); }},
    {"RunFolderRule", Leaves::whatWasDone, [](LocalLibraryStore& it) { EXPECT_EQ(it.runRule(2), 3); }},
    {"RunEnabledRules", Leaves::whatWasDone,
     [](LocalLibraryStore& it) { EXPECT_EQ(it.runEnabledRules(), 6); }},
    {"CreateHighlight", Leaves::nothing,
     [](LocalLibraryStore& it) { it.createHighlight(1, name, {}, 0, 3, color, Instant()); }},
    {"Highlights", Leaves::nothing, [](LocalLibraryStore& it) { EXPECT_EQ(it.highlights().size(), 1); }},
    {"DeleteHighlight", Leaves::nothing, [](LocalLibraryStore& it) { it.deleteHighlight(1); }},
    {"AuthorSummaries", Leaves::nothing,
     [](LocalLibraryStore& it) { EXPECT_EQ(it.authorSummaries().size(), 1); }},
    {"Preferences", Leaves::nothing,
     [](LocalLibraryStore& it) { EXPECT_EQ(it.preferences(), AppPreferences()); }},
    {"SavePreferences", Leaves::nothing,
     [](LocalLibraryStore& it) {
         AppPreferences changed;
         changed.pageSize = 100;
         it.savePreferences(changed);
     }},
};

INSTANTIATE_TEST_SUITE_P(Operations, FailingOrganization, ::testing::ValuesIn(operations),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
} // namespace mirel
