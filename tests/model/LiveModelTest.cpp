#include "testing/Printing.h"

#include "testing/TemporaryLibrary.h"

#include "credentials/InMemoryCredentialVault.h"
#include "model/Demo.h"
#include "model/MirelAppModel.h"
#include "support/BlockOn.h"

#include <QFile>

#include <gtest/gtest.h>

namespace mirel {
namespace {

class LiveModel : public ::testing::Test
{
protected:
    LiveOptions options()
    {
        LiveOptions result;
        result.environment = QProcessEnvironment();
        result.environment.insert(QStringLiteral("MIREL_LOCAL_DATA_DIR"), library.directory());
        result.makeVault = [] { return std::make_unique<InMemoryCredentialVault>(); };
        return result;
    }

    void expectUnusable(const LiveOptions& live, const QString& error)
    {
        const auto model = MirelAppModel::live(live);
        blockOn(model->start());
        EXPECT_EQ(model->lastError(), error);
        EXPECT_FALSE(model->hasLibrary());
        EXPECT_TRUE(model->bookmarks().isEmpty());
        blockOn(model->syncNow({}, false));
        EXPECT_FALSE(model->xConfigured());
        blockOn(model->shutDown());
    }

    testing::TemporaryLibrary library;
};

TEST_F(LiveModel, OpensTheLibraryThatTheEnvironmentNames)
{
    const auto model = MirelAppModel::live(options());
    EXPECT_TRUE(model->hasLibrary());
    EXPECT_EQ(model->lastError(), std::nullopt);
    EXPECT_TRUE(QFile::exists(library.path()));
    blockOn(model->start());
    EXPECT_EQ(model->libraryResultCount(), 0);
    blockOn(model->shutDown());
}

TEST_F(LiveModel, ACorruptLibraryYieldsAModelWithTheErrorAndIsLeftAsItIs)
{
    const QByteArray damage(8192, 'x');
    QFile file(library.path());
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write(damage);
    file.close();
    expectUnusable(options(), QStringLiteral("Local library command failed: file is not a database"));
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    EXPECT_EQ(file.readAll(), damage);
}

TEST_F(LiveModel, ADirectoryInPlaceOfTheLibraryYieldsAModelWithTheError)
{
    ASSERT_TRUE(QDir(library.directory()).mkdir(QStringLiteral("mirel.sqlite3")));
    expectUnusable(options(),
                   QStringLiteral("Could not open the local library: unable to open database file"));
}

TEST_F(LiveModel, AReadOnlyLibraryYieldsAModelWithTheError)
{
    library.open();
    // A header that names a write version of the future makes the file read-only for everyone, root
    // included.
    QFile file(library.path());
    ASSERT_TRUE(file.open(QFile::ReadWrite));
    file.seek(18);
    file.write(QByteArray("\x03", 1));
    file.close();
    expectUnusable(options(),
                   QStringLiteral("Local library command failed: attempt to write a readonly database"));
}

TEST_F(LiveModel, AnAddressOfXThatIsNotOnThisComputerIsRefusedAndTheLibraryStillOpens)
{
    LiveOptions live = options();
    live.environment.insert(QStringLiteral("MIREL_X_API_URL"), QStringLiteral("https://evil.example/2"));
    const auto model = MirelAppModel::live(live);
    EXPECT_TRUE(model->hasLibrary());
    ASSERT_TRUE(model->lastError());
    EXPECT_TRUE(model->lastError()->contains(QStringLiteral("MIREL_X_API_URL")));
    blockOn(model->start());
    blockOn(model->syncNow({}, false));
    EXPECT_TRUE(model->syncRuns().isEmpty());
    blockOn(model->shutDown());
}

QString demoFailure(const QProcessEnvironment& environment)
{
    try {
        (void)Demo::liveOptions(environment);
    } catch (const DemoError& error) {
        return error.description();
    }
    return {};
}

TEST_F(LiveModel, TheDemoNeedsASimulatorAndALibraryOfItsOwn)
{
    QProcessEnvironment environment;
    EXPECT_TRUE(demoFailure(environment).contains(QStringLiteral("MIREL_X_API_URL")));
    environment.insert(QStringLiteral("MIREL_X_API_URL"), QStringLiteral("http://127.0.0.1:1/2"));
    EXPECT_TRUE(demoFailure(environment).contains(QStringLiteral("MIREL_LOCAL_DATA_DIR")));
    environment.insert(QStringLiteral("MIREL_LOCAL_DATA_DIR"), QString());
    EXPECT_TRUE(demoFailure(environment).contains(QStringLiteral("MIREL_LOCAL_DATA_DIR")));
    environment.insert(QStringLiteral("MIREL_LOCAL_DATA_DIR"), library.directory());
    EXPECT_EQ(demoFailure(environment), QString());
    EXPECT_EQ(blockOn(Demo::liveOptions(environment).makeVault()->loadXCredentials()), Demo::account());
}

TEST_F(LiveModel, AnUnreachableXEndsASyncWithAnErrorAndNothingLost)
{
    LiveOptions live = options();
    live.environment.insert(QStringLiteral("MIREL_X_API_URL"), QStringLiteral("http://127.0.0.1:1/2"));
    live.makeVault = [] { return std::make_unique<InMemoryCredentialVault>(Demo::account()); };
    library.open()->upsertFromX(testing::makePost(1), library.clock.now());
    const auto model = MirelAppModel::live(live);
    blockOn(model->start());
    blockOn(model->syncNow({}, false));
    EXPECT_TRUE(model->lastError());
    EXPECT_EQ(model->syncRuns().first().status, SyncRun::Status::failed);
    EXPECT_EQ(model->counts().all, 1);
    blockOn(model->shutDown());
}

} // namespace
} // namespace mirel
