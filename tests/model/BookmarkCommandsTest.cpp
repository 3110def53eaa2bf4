#include "testing/Printing.h"

#include "model/ModelTestBench.h"
#include "testing/Eventually.h"

#include "x/XAPIError.h"

#include <QCoro/QCoroFuture>
#include <QPromise>

namespace mirel {
namespace {

using testing::eventually;
using testing::makePost;
using testing::makeThread;

// The commands for one bookmark that reach X.
class BookmarkCommands : public testing::ModelTestBench
{
protected:
    void SetUp() override { startWith(3); }

    Bookmark read(qint64 id) { return library.open()->bookmark(id); }
    // What X was asked, other than for bookmarks.
    QStringList asked() const { return x->asked; }
    static XAPIError refusal() { return XAPIError::http(403, QStringLiteral("Forbidden")); }
};

TEST_F(BookmarkCommands, RefreshingThePostsCountersShowsThem)
{
    const qint64 id = idOf(2);
    x->counters = [](const QString&) { return PostMetrics{.views = 99, .likes = 7}; };
    QList<bool> working;
    QObject::connect(model.get(), &MirelAppModel::isWorkingChanged,
                     [&] { working.append(model->isWorking()); });
    blockOn(model->refreshMetrics(id));
    EXPECT_EQ(asked(), QStringList(QStringLiteral("metrics 10002")));
    EXPECT_EQ(model->bookmarks()[model->bookmarkList()->rowOf(id)].metrics.views, 99);
    EXPECT_EQ(working, (QList<bool>{true, false}));
    EXPECT_EQ(model->lastError(), std::nullopt);
    EXPECT_EQ(model->statusMessage(), std::nullopt);
}

TEST_F(BookmarkCommands, CountersThatXRefusesStayAndTheErrorIsTold)
{
    x->counters = [](const QString&) -> PostMetrics { throw refusal(); };
    blockOn(model->refreshMetrics(idOf(2)));
    EXPECT_EQ(model->lastError(), QStringLiteral("X returned HTTP 403: Forbidden"));
    EXPECT_FALSE(model->isWorking());
    EXPECT_EQ(read(idOf(2)).metrics, makePost(2).metrics);
}

TEST_F(BookmarkCommands, FetchingAThreadShowsItWhereverThePostIs)
{
    const qint64 id = idOf(2);
    blockOn(model->openBookmark(id));
    x->thread = [](const QString&) { return makeThread(3); };
    blockOn(model->enrichThread(id));
    EXPECT_EQ(asked(), QStringList(QStringLiteral("conversation 20002 of 42")));
    EXPECT_EQ(model->readerBookmark()->thread.size(), 3);
    EXPECT_EQ(model->bookmarks()[model->bookmarkList()->rowOf(id)].thread.size(), 3);
    EXPECT_TRUE(model->enrichingThreadBookmarkIDs().isEmpty());
    EXPECT_FALSE(model->isWorking());
    EXPECT_EQ(model->lastError(), std::nullopt);
}

TEST_F(BookmarkCommands, AThreadThatFailsLeavesNothingBusyAndThePostAsItWas)
{
    const qint64 id = idOf(2);
    blockOn(model->openBookmark(id));
    const auto before = model->readerBookmark();
    x->thread = [](const QString&) -> QList<ThreadPost> { throw XAPIError::invalidResponse(); };
    blockOn(model->enrichThread(id));
    EXPECT_EQ(model->lastError(), QStringLiteral("X returned an unreadable response."));
    EXPECT_TRUE(model->enrichingThreadBookmarkIDs().isEmpty());
    EXPECT_FALSE(model->isWorking());
    EXPECT_EQ(model->readerBookmark(), before);
}

TEST_F(BookmarkCommands, TwoThreadsAreFetchedAtOnceEachWithABusyStateOfItsOwn)
{
    const qint64 first = idOf(1);
    const qint64 second = idOf(2);
    QPromise<void> gate;
    gate.start();
    // On the thread of the services.
    x->meanwhile = [opened = gate.future()](const QString& question) -> QCoro::Task<> {
        if (question.contains(u"20001"))
            co_await opened;
    };
    auto task = model->enrichThread(first);
    auto other = model->enrichThread(second);
    EXPECT_EQ(model->enrichingThreadBookmarkIDs(), (QSet<qint64>{first, second}));
    EXPECT_TRUE(eventually([&] { return other.isReady(); }));
    EXPECT_EQ(model->enrichingThreadBookmarkIDs(), QSet<qint64>{first});
    gate.finish();
    blockOn(std::move(task));
    EXPECT_TRUE(model->enrichingThreadBookmarkIDs().isEmpty());
}

TEST_F(BookmarkCommands, AThreadThatArrivesAfterTheUserWentOnLeavesTheReaderAlone)
{
    blockOn(model->openBookmark(idOf(1)));
    x->thread = [](const QString&) { return makeThread(2); };
    auto task = model->enrichThread(idOf(1));
    blockOn(model->openBookmark(idOf(3)));
    blockOn(std::move(task));
    EXPECT_EQ(model->readerBookmark()->id, idOf(3));
    EXPECT_TRUE(model->readerBookmark()->thread.isEmpty());
    EXPECT_EQ(read(idOf(1)).thread.size(), 2);
}

TEST_F(BookmarkCommands, ReadingAPostAnewKeepsItsRow)
{
    const qint64 id = idOf(2);
    const int row = model->bookmarkList()->rowOf(id);
    change(id, true, true, false);
    blockOn(model->refreshBookmarkPresentation(id));
    EXPECT_EQ(model->bookmarkList()->rowOf(id), row);
    EXPECT_TRUE(model->bookmarks()[row].isFavorite);
    EXPECT_EQ(model->bookmarks().size(), 3);
    EXPECT_EQ(model->readerBookmark(), std::nullopt);
}

TEST_F(BookmarkCommands, ReadingAPostAnewThatIsOnNoListChangesTheReaderAlone)
{
    const qint64 id = idOf(2);
    blockOn(model->openBookmark(id));
    blockOn(model->openMailbox(LibraryFilter::archive));
    blockOn(model->openBookmark(id));
    change(id, false, true, false);
    blockOn(model->refreshBookmarkPresentation(id));
    EXPECT_TRUE(model->readerBookmark()->isFavorite);
    EXPECT_TRUE(model->bookmarks().isEmpty());
}

TEST_F(BookmarkCommands, ReadingAPostAnewThatIsGoneIsAnError)
{
    const qint64 id = idOf(2);
    library.open()->deleteBookmarkLocally(id);
    blockOn(model->refreshBookmarkPresentation(id));
    EXPECT_EQ(model->lastError(), QStringLiteral("The bookmark no longer exists."));
}

TEST_F(BookmarkCommands, DeletingFollowsThePreference)
{
    const Bookmark first = read(idOf(1));
    const Bookmark second = read(idOf(2));
    blockOn(model->deleteBookmark(first));
    EXPECT_EQ(asked(), QStringList(QStringLiteral("delete 10001"))) << "the default";
    AppPreferences preferences;
    preferences.deleteFromX = false;
    blockOn(model->savePreferences(preferences));
    blockOn(model->deleteBookmark(second));
    EXPECT_EQ(asked(), QStringList(QStringLiteral("delete 10001")));
    EXPECT_EQ(shownTexts(), QStringList(QStringLiteral("Post number 3")));
    EXPECT_EQ(model->counts().all, 1);
    EXPECT_EQ(model->lastError(), std::nullopt);
    EXPECT_EQ(model->statusMessage(), std::nullopt);
}

TEST_F(BookmarkCommands, DeletingMayBeToldWhatToDoOnX)
{
    blockOn(model->deleteBookmark(read(idOf(1)), false));
    EXPECT_EQ(asked(), QStringList());
    EXPECT_EQ(model->counts().all, 2);
}

TEST_F(BookmarkCommands, WhenXRefusesTheBookmarkStaysOnTheScreen)
{
    x->removal = [](const QString&) { throw refusal(); };
    blockOn(model->deleteBookmark(read(idOf(1))));
    EXPECT_EQ(model->lastError(), QStringLiteral("X returned HTTP 403: Forbidden"));
    EXPECT_EQ(model->bookmarks().size(), 3);
    EXPECT_EQ(library.open()->libraryCounts().all, 3);
}

TEST_F(BookmarkCommands, DeletingTheOpenPostClosesTheReader)
{
    const qint64 id = idOf(2);
    blockOn(model->openBookmark(id));
    blockOn(model->deleteBookmark(read(id)));
    EXPECT_EQ(model->readerBookmark(), std::nullopt);
    EXPECT_EQ(model->selectedBookmarkID(), std::nullopt);
}

TEST(BookmarkCommandsWithoutServices, DoNothing)
{
    MirelAppModel model{MirelServices{}};
    blockOn(model.refreshMetrics(1));
    blockOn(model.enrichThread(1));
    blockOn(model.deleteBookmark(Bookmark{}));
    blockOn(model.refreshBookmarkPresentation(1));
    EXPECT_FALSE(model.isWorking());
    EXPECT_TRUE(model.enrichingThreadBookmarkIDs().isEmpty());
    EXPECT_EQ(model.lastError(), std::nullopt);
}

} // namespace
} // namespace mirel
