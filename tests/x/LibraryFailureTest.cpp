#include "testing/Printing.h"

#include "testing/FailingSQLite.h"
#include "testing/LibraryChecks.h"
#include "x/SyncTestBench.h"

#include "support/FileError.h"

#include <cerrno>

// Every statement and every file operation of an open and of a sync fails in turn: the first, the second,
// and so on until none fails. Each time there is a clear error or, where a failure may be survived, none;
// afterwards the library opens, is whole, and holds what was there before.

namespace mirel {
namespace {

using testing::expectWhole;
using testing::FailureCountdown;
using testing::makePage;
using testing::makePost;
using testing::TemporaryLibrary;

// How a library looks before it is opened.
enum class Before { nothing, current, old };

struct FailureCase
{
    const char* name;
    FailureCountdown& (*countdown)();
    Before before;
};

void PrintTo(const FailureCase& row, std::ostream* stream)
{
    *stream << row.name;
}

void prepare(const TemporaryLibrary& library, Before before)
{
    if (before == Before::nothing)
        return;
    const auto store = library.open();
    store->upsertFromX(makePost(1), library.clock.now());
    store->updateLocalState(1, QStringLiteral("note"), true, true, false);
    if (before == Before::old) {
        library.connect()->execute(
            "DROP TRIGGER bookmarks_search_insert; DROP TRIGGER bookmarks_search_update;"
            "DROP TRIGGER bookmarks_search_delete; DROP TABLE bookmark_search; DROP TABLE chats;"
            "ALTER TABLE bookmarks DROP COLUMN thread_enriched_at;"
            "ALTER TABLE tag_suggestions DROP COLUMN assignment_created;");
    }
}

class FailingOpen : public ::testing::TestWithParam<FailureCase>
{
};

TEST_P(FailingOpen, EndsInAnErrorAndTheLibraryOpensAgain)
{
    FailureCountdown& countdown = GetParam().countdown();
    int errors = 0;
    for (int n = 0;; ++n) {
        const TemporaryLibrary library;
        prepare(library, GetParam().before);
        countdown.arm(n);
        try {
            library.open();
        } catch (const Error& error) {
            ++errors;
            EXPECT_FALSE(error.description().isEmpty());
        }
        countdown.disarm();
        if (!countdown.fired())
            break;
        const auto store = library.open();
        if (GetParam().before != Before::nothing) {
            EXPECT_EQ(store->bookmark(1).note, QStringLiteral("note")) << "after failure " << n;
        }
        expectWhole(library.path());
        ASSERT_FALSE(HasFailure()) << "at failure " << n;
    }
    EXPECT_GT(errors, 10);
}

INSTANTIATE_TEST_SUITE_P(
    Libraries, FailingOpen,
    ::testing::Values(FailureCase{"StatementsOfANewOne", testing::failingStatements, Before::nothing},
                      FailureCase{"StatementsOfACurrentOne", testing::failingStatements, Before::current},
                      FailureCase{"StatementsOfAnOldOne", testing::failingStatements, Before::old},
                      FailureCase{"FileOperationsOfANewOne", testing::failingFileOperations, Before::nothing},
                      FailureCase{"FileOperationsOfACurrentOne", testing::failingFileOperations,
                                  Before::current},
                      FailureCase{"FileOperationsOfAnOldOne", testing::failingFileOperations, Before::old}),
    [](const auto& row) { return row.param.name; });

// Fails the n-th of its operations.
class FailingFileManager : public FileManager
{
public:
    explicit FailingFileManager(int failing)
        : m_remaining(failing)
    {
    }

    void createDirectory(const QString& path) const override
    {
        failIfDue(path);
        FileManager::createDirectory(path);
    }
    void createPrivateFile(const QString& path) const override
    {
        failIfDue(path);
        FileManager::createPrivateFile(path);
    }

    [[nodiscard]] bool fired() const { return m_remaining < 0; }

private:
    void failIfDue(const QString& path) const
    {
        if (m_remaining-- == 0)
            throw FileError(path, ENOSPC);
    }

    mutable int m_remaining;
};

TEST(FailingOpen, DirectoriesAndFilesThatCannotBeCreatedAreThePlatformsError)
{
    int errors = 0;
    for (int n = 0;; ++n) {
        const TemporaryLibrary library;
        const FailingFileManager files(n);
        try {
            const LocalLibraryStore store(library.path(), Instant::now, files);
            break;
        } catch (const FileError& error) {
            ++errors;
            EXPECT_EQ(error.number(), ENOSPC);
            EXPECT_TRUE(error.description().contains(QStringLiteral("No space left on device")));
        }
        EXPECT_EQ(library.open()->libraryCounts().all, 0);
    }
    EXPECT_EQ(errors, 2) << "the directory and the file";
}

class FailingSync : public ::testing::TestWithParam<FailureCase>
{
};

// One full sync of two pages, a folder and threads, with a rule, into a library that holds the first post
// already.
struct FailingSyncRun
{
    TemporaryLibrary library;
    testing::FakeX x;
    qint64 reported = 0;
    bool failed = false;

    void run(FailureCountdown& countdown, int n)
    {
        prepare(library, Before::current);
        prepareUser();
        prepareX();
        Serial<LocalLibraryStore> store(std::make_shared<ServiceThread>(QStringLiteral("library")),
                                        [this] { return library.open(); });
        MirelSyncService service(x, store, library.clock.clock());
        countdown.arm(n);
        try {
            blockOn(service.sync(SyncRun::Kind::manual, BookmarkSyncMode::full,
                                 [this](BookmarkSyncProgress page) -> QCoro::Task<> {
                                     reported = page.fetched;
                                     co_return;
                                 }));
        } catch (const Error& error) {
            failed = true;
            EXPECT_FALSE(error.description().isEmpty());
        }
        countdown.disarm();
    }

    void prepareUser() const
    {
        const auto opened = library.open();
        opened->savePreferences([] {
            AppPreferences preferences;
            preferences.threadEnrichment = AppPreferences::ThreadEnrichment::automatic;
            return preferences;
        }());
        const Tag label =
            opened->createTag(QStringLiteral("Filed"), QStringLiteral("#123456"), Tag::Source::manual);
        opened->createRule(QStringLiteral("Filed"), QStringLiteral("folder:kitchen"),
                           BookmarkRule::Action::tag, label.id, true);
    }

    void prepareX()
    {
        x.answer = [](int call) { return call == 0 ? makePage(1, 4, QStringLiteral("a")) : makePage(5, 6); };
        x.folders = [](std::optional<QString>) {
            return XPage<XBookmarkFolder>{.items = {{QStringLiteral("F1"), QStringLiteral("Kitchen")}}};
        };
        x.folderPosts = [](const QString&, std::optional<QString>) {
            return XPage<QString>{.items = {makePost(2).tweetID, makePost(6).tweetID}};
        };
        x.thread = [](const QString& conversation) {
            return testing::makeThread(conversation == u"20003" ? 3 : 0);
        };
    }

    void expectNothingLost(int n)
    {
        {
            const auto store = library.open();
            EXPECT_EQ(store->bookmark(1).note, QStringLiteral("note"));
            EXPECT_GE(store->libraryCounts().all, reported) << "after failure " << n;
        }
        expectWhole(library.path());
    }

    void expectNextSyncCompletes()
    {
        x.calls.clear();
        Serial<LocalLibraryStore> store(std::make_shared<ServiceThread>(QStringLiteral("library")),
                                        [this] { return library.open(); });
        MirelSyncService service(x, store, library.clock.clock());
        EXPECT_EQ(blockOn(service.sync(SyncRun::Kind::manual, BookmarkSyncMode::full, {})).fetched, 6);
        const QList<Bookmark> bookmarks = blockOn(store.call([](LocalLibraryStore& it) {
            return it.listBookmarks(LibraryFilter::all, 100, 0, LibrarySort::oldest);
        }));
        ASSERT_EQ(bookmarks.size(), 6);
        EXPECT_EQ(bookmarks[1].folder->name, QStringLiteral("Kitchen"));
        EXPECT_EQ(bookmarks[5].tags.size(), 1);
        EXPECT_EQ(bookmarks[2].thread.size(), 3);
    }
};

TEST_P(FailingSync, LosesNothingAndTheNextOneCompletes)
{
    FailureCountdown& countdown = GetParam().countdown();
    int failures = 0;
    for (int n = 0;; ++n) {
        FailingSyncRun sync;
        sync.run(countdown, n);
        if (!countdown.fired())
            break;
        failures += sync.failed ? 1 : 0;
        sync.expectNothingLost(n);
        sync.expectNextSyncCompletes();
        ASSERT_FALSE(HasFailure()) << "at failure " << n;
    }
    EXPECT_GT(failures, 10);
}

INSTANTIATE_TEST_SUITE_P(
    Libraries, FailingSync,
    ::testing::Values(FailureCase{"Statements", testing::failingStatements, Before::current},
                      FailureCase{"FileOperations", testing::failingFileOperations, Before::current}),
    [](const auto& row) { return row.param.name; });

} // namespace
} // namespace mirel
