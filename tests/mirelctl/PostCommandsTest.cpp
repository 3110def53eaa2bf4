#include "CommandBench.h"

#include <csignal>

namespace mirel::testing {
namespace {

class PostCommands : public CommandBench
{
protected:
    void SetUp() override
    {
        CommandBench::SetUp();
        storePosts(2);
    }

    Bookmark stored(int number)
    {
        return inLibrary(
            [id = makePost(number).tweetID](LocalLibraryStore& it) { return it.bookmark(id).value(); });
    }
    qint64 count()
    {
        return inLibrary([](LocalLibraryStore& it) { return it.libraryCounts().all; });
    }
};

TEST_F(PostCommands, ThreadTellsHowLongItIs)
{
    test.x->thread = {{.tweetID = QStringLiteral("1")}, {.tweetID = QStringLiteral("2")}};
    EXPECT_EQ(text("thread 10001"), "The thread has 2 posts.");
    EXPECT_EQ(stored(1).thread.size(), 2);
    test.x->thread.clear();
    EXPECT_EQ(text("thread https://x.com/ada/status/10001"), "The thread has 2 posts.")
        << "it is fetched once";
    EXPECT_EQ(text("thread 10002"), "X told of no thread around that post.");
    EXPECT_EQ(json<Bookmark>("thread 10001"), stored(1));
}

TEST_F(PostCommands, MetricsAreThePresentOnes)
{
    test.x->counters = {
        .views = 60, .reposts = 50, .bookmarks = 40, .replies = 30, .quotes = 20, .likes = 10};
    EXPECT_EQ(text("metrics 10001"), "Views      60\n"
                                     "Reposts    50\n"
                                     "Bookmarks  40\n"
                                     "Replies    30\n"
                                     "Quotes     20\n"
                                     "Likes      10");
    EXPECT_EQ(stored(1).metrics, test.x->counters);
    EXPECT_EQ(json<PostMetrics>("metrics 10001"), test.x->counters);
}

TEST_F(PostCommands, DeleteReachesXUnlessItIsToldNotTo)
{
    EXPECT_EQ(text("delete 10001"), "Deleted the bookmark here and on X.");
    EXPECT_EQ(test.x->removed, QStringList(QStringLiteral("10001")));
    EXPECT_EQ(text("delete 10002 --keep-on-x"), "Deleted the bookmark here; it stays on X.");
    EXPECT_EQ(test.x->removed, QStringList(QStringLiteral("10001")));
    EXPECT_EQ(count(), 0);
}

TEST_F(PostCommands, DeleteFollowsThePreferences)
{
    EXPECT_FALSE(text("preferences set deleteFromX false").isEmpty());
    const Bookmark bookmark = stored(1);
    EXPECT_EQ(json<Bookmark>("delete 10001"), bookmark);
    EXPECT_EQ(test.x->removed, QStringList());
    EXPECT_EQ(count(), 1);
}

TEST_F(PostCommands, NameAPostOfTheLibrary)
{
    for (const QByteArray command : {"thread ", "metrics ", "delete "}) {
        EXPECT_EQ(failure(command + "nonsense"), "Enter a valid X post URL or tweet ID.");
        EXPECT_EQ(failure(command + "77"), "That X post is not in the local library.");
    }
    EXPECT_EQ(count(), 2);
}

class FailingPostCommand : public PostCommands, public ::testing::WithParamInterface<const char*>
{
};

TEST_P(FailingPostCommand, TellsWhatXSaysAndLosesNothing)
{
    test.x->isOffline = true;
    EXPECT_EQ(failure(GetParam() + QByteArray(" 10001")), "X returned HTTP 503: down");
    EXPECT_EQ(count(), 2);
    EXPECT_EQ(stored(1).metrics, makePost(1).metrics);
    EXPECT_EQ(stored(1).threadEnrichedAt, std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(All, FailingPostCommand, ::testing::Values("thread", "metrics", "delete"),
                         [](const auto& row) { return std::string(row.param); });

TEST_F(PostCommands, CanBeInterrupted)
{
    test.x->isSilent = true;
    QTimer interrupting;
    QObject::connect(&interrupting, &QTimer::timeout, &interrupting, [&] {
        if (test.x->hangs) {
            interrupting.stop();
            raise(SIGINT);
        }
    });
    interrupting.start(1);
    EXPECT_EQ(failure("metrics 10001"), "The command was interrupted.");
    EXPECT_EQ(stored(1).metrics, makePost(1).metrics);
}

} // namespace
} // namespace mirel::testing
