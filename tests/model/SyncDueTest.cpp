#include "testing/Printing.h"

#include "model/ModelTestBench.h"

#include "x/XAPIError.h"

namespace mirel {
namespace {

using testing::makePage;

constexpr double hour = 3600;

// When an automatic sync starts. The preferences are those of a new library: every 24 hours.
class SyncDue : public testing::ModelTestBench
{
protected:
    // The model as it stands when everything has been read, before anything was synced by itself.
    void openModel(std::optional<XCredentials> credentials = XCredentials{.accessToken = QStringLiteral("a")})
    {
        syncsAutomatically = prefersAutomaticSync;
        makeModel(std::move(credentials));
        x->answer = [](int) { return makePage(1, 5); };
        blockOn(model->load());
        blockOn(model->refreshCredentialState());
    }

    // A run of an earlier process that got to `status`.
    void record(SyncRun::Status status)
    {
        const auto opened = library.open();
        const SyncRun run = opened->createSyncRun(SyncRun::Kind::manual);
        if (status == SyncRun::Status::queued)
            return;
        opened->updateSyncRun(run.id, SyncRun::Status::running, 0, 0, 0, 0);
        if (status != SyncRun::Status::running)
            opened->updateSyncRun(run.id, status, 1, 2, 3, 4);
    }

    // Asks whether a sync is due, and returns whether there was one.
    bool syncs()
    {
        const std::size_t before = x->calls.size();
        blockOn(model->syncIfDue());
        return x->calls.size() > before;
    }

    bool prefersAutomaticSync = true;
};

TEST_F(SyncDue, ALibraryWithoutHistoryIsSyncedAtOnceAndTheRunIsAutomaticEvenSo)
{
    openModel();
    EXPECT_TRUE(syncs());
    ASSERT_EQ(model->syncRuns().size(), 1);
    EXPECT_EQ(model->syncRuns().first().kind, SyncRun::Kind::automatic);
    EXPECT_EQ(model->statusMessage(),
              QStringLiteral("Quick sync checked 5 recent bookmarks across 1 page(s), 5 new."));
    EXPECT_FALSE(syncs()) << "one was just done";
}

struct FinalStatus
{
    const char* name;
    SyncRun::Status status;
};

class SyncDueAfter : public SyncDue, public ::testing::WithParamInterface<FinalStatus>
{
};

TEST_P(SyncDueAfter, WaitsForTheIntervalWhateverCameOfTheLastAttempt)
{
    record(GetParam().status);
    openModel();
    EXPECT_FALSE(syncs());
    library.clock.advance(23 * hour + 59 * 60);
    EXPECT_FALSE(syncs()) << "after 23 hours and 59 minutes";
    library.clock.advance(59);
    EXPECT_FALSE(syncs()) << "a second before";
    library.clock.advance(1);
    EXPECT_TRUE(syncs()) << "after 24 hours to the second";
}

TEST_P(SyncDueAfter, ADayAndASecondASyncIsDue)
{
    record(GetParam().status);
    library.clock.advance(24 * hour + 1);
    openModel();
    EXPECT_TRUE(syncs());
}

INSTANTIATE_TEST_SUITE_P(, SyncDueAfter,
                         ::testing::Values(FinalStatus{"Completed", SyncRun::Status::completed},
                                           FinalStatus{"RateLimited", SyncRun::Status::rateLimited},
                                           FinalStatus{"Failed", SyncRun::Status::failed}),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_F(SyncDue, AnAttemptThatFailsIsNotRepeatedBeforeTheInterval)
{
    openModel();
    x->answer = [](int) -> XBookmarkPage { throw XAPIError::rateLimited({}); };
    EXPECT_TRUE(syncs());
    EXPECT_EQ(model->lastError(), QStringLiteral("X rate limit reached."));
    EXPECT_FALSE(syncs());
    library.clock.advance(24 * hour);
    EXPECT_TRUE(syncs());
}

TEST_F(SyncDue, TheResetOfARateLimitIsNotConsulted)
{
    openModel();
    const Instant reset = library.clock.now().addingSeconds(15 * 60);
    x->answer = [reset](int) -> XBookmarkPage { throw XAPIError::rateLimited(reset); };
    EXPECT_TRUE(syncs());
    library.clock.advance(16 * 60);
    EXPECT_FALSE(syncs()) << "the limit is over, the interval is not";

    const Instant later = library.clock.now().addingSeconds(1'000 * hour);
    library.clock.advance(24 * hour);
    x->answer = [later](int) -> XBookmarkPage { throw XAPIError::rateLimited(later); };
    EXPECT_TRUE(syncs());
    library.clock.advance(24 * hour);
    EXPECT_TRUE(syncs()) << "the interval is over, the limit is not";
}

TEST_F(SyncDue, RunsThatNeverEndedCountAsNoHistory)
{
    record(SyncRun::Status::queued);
    record(SyncRun::Status::running);
    openModel();
    EXPECT_EQ(model->syncRuns().size(), 2);
    EXPECT_TRUE(syncs());
}

TEST_F(SyncDue, TheNewestRunThatEndedDecides)
{
    record(SyncRun::Status::completed);
    library.clock.advance(20 * hour);
    record(SyncRun::Status::failed);
    library.clock.advance(hour);
    record(SyncRun::Status::running);
    openModel();
    library.clock.advance(4 * hour);
    EXPECT_FALSE(syncs()) << "25 hours after the first, 5 after the second";
}

TEST_F(SyncDue, ARunThatEndedWithoutATimeCountsFromItsBeginning)
{
    record(SyncRun::Status::completed);
    library.connect()->execute("UPDATE sync_runs SET completed_at = NULL");
    library.clock.advance(24 * hour - 1);
    openModel();
    EXPECT_FALSE(syncs());
    library.clock.advance(1);
    EXPECT_TRUE(syncs());
}

TEST_F(SyncDue, TwentyUnfinishedRunsHideWhatCameBefore)
{
    record(SyncRun::Status::completed);
    for (int run = 0; run < 19; ++run)
        record(SyncRun::Status::running);
    openModel();
    EXPECT_EQ(model->syncRuns().size(), 20);
    EXPECT_FALSE(syncs()) << "the one that ended is still among the twenty";
    record(SyncRun::Status::running);
    blockOn(model->refreshSyncRuns());
    EXPECT_EQ(model->syncRuns().size(), 20);
    EXPECT_TRUE(syncs());
}

TEST_F(SyncDue, TheIntervalIsTheOneThatTheUserHasChosen)
{
    for (const int hours : {1, 6, 12, 24}) {
        SCOPED_TRACE(hours);
        prefer([hours](AppPreferences& preferences) { preferences.automaticSyncIntervalHours = hours; });
        record(SyncRun::Status::completed);
        openModel();
        library.clock.advance(hours * hour - 1);
        EXPECT_FALSE(syncs());
        library.clock.advance(1);
        EXPECT_TRUE(syncs());
        blockOn(model->shutDown());
        model.reset();
        library.clock.advance(1);
    }
}

TEST_F(SyncDue, NeverWhenTheUserDoesNotWantIt)
{
    prefersAutomaticSync = false;
    openModel();
    EXPECT_TRUE(model->xConfigured());
    EXPECT_FALSE(syncs());
    EXPECT_TRUE(model->syncRuns().isEmpty());
}

TEST_F(SyncDue, NeverWithoutAConnection)
{
    openModel(std::nullopt);
    EXPECT_FALSE(syncs());
    EXPECT_EQ(model->lastError(), std::nullopt);
}

TEST_F(SyncDue, NotWhileASyncRuns)
{
    openModel();
    testing::HeldLibrary held(*model);
    auto running = model->syncNow({}, true);
    ASSERT_TRUE(model->isSyncing());
    auto asked = model->syncIfDue();
    EXPECT_TRUE(asked.isReady()) << "there is nothing to wait for";
    held.release();
    blockOn(std::move(running));
    blockOn(std::move(asked));
    EXPECT_EQ(model->syncRuns().size(), 1);
}

TEST_F(SyncDue, NotOnceTheModelShutsDown)
{
    openModel();
    blockOn(model->shutDown());
    EXPECT_FALSE(syncs());
}

TEST_F(SyncDue, TheStartOfTheModelAsksOnceItKnowsWhetherXIsConnected)
{
    syncsAutomatically = true;
    makeModel();
    x->answer = [](int) { return makePage(1, 5); };
    bool wasConnected = false;
    QObject::connect(model.get(), &MirelAppModel::syncChanged, model.get(),
                     [&] { wasConnected = wasConnected || (model->isSyncing() && model->xConfigured()); });
    blockOn(model->start());
    EXPECT_TRUE(x->calls.empty()) << "the library is on screen first";
    runUntil([this] { return model->xConfigured() && !model->isSyncing(); });
    EXPECT_TRUE(wasConnected);
    ASSERT_EQ(model->syncRuns().size(), 1);
    EXPECT_EQ(model->syncRuns().first().kind, SyncRun::Kind::automatic);
    EXPECT_EQ(model->counts().all, 5);
}

TEST(SyncDueWithoutServices, NothingHappens)
{
    MirelAppModel model{MirelServices{}, QStringLiteral("file is not a database")};
    blockOn(model.start());
    blockOn(model.syncIfDue());
    EXPECT_EQ(model.lastError(), QStringLiteral("file is not a database"));
    EXPECT_FALSE(model.isSyncing());
    blockOn(model.shutDown());
}

} // namespace
} // namespace mirel
