#include "testing/Printing.h"

#include "library/SQLiteConnection.h"
#include "library/SQLiteStoreError.h"
#include "support/FileError.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace mirel {
namespace {

class SQLiteConnectionTest : public ::testing::Test
{
protected:
    QTemporaryDir directory;
    QString path = directory.filePath(QStringLiteral("deeply/nested/test.sqlite3"));
    SQLiteConnection connection{path};

    template <typename Operation>
    void expectError(SQLiteStoreError::Case errorCase, Operation operation)
    {
        try {
            operation();
            FAIL() << "nothing was thrown";
        } catch (const SQLiteStoreError& error) {
            EXPECT_EQ(error.errorCase(), errorCase) << error.description().toStdString();
        }
    }
};

TEST_F(SQLiteConnectionTest, CreatesTheDirectoriesForTheUserAloneAndTheFileToo)
{
    const auto owner = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    EXPECT_EQ(QFile::permissions(path), owner);
    EXPECT_EQ(QFile::permissions(QFileInfo(path).path()), owner | QFile::ExeOwner | QFile::ExeUser);
}

TEST_F(SQLiteConnectionTest, TheSideFilesAreForTheUserAloneToo)
{
    connection.execute("PRAGMA journal_mode = WAL; CREATE TABLE t (a); INSERT INTO t VALUES (1);");
    ASSERT_TRUE(QFile::exists(path + QStringLiteral("-wal")));
    EXPECT_EQ(QFile::permissions(path + QStringLiteral("-wal")), QFile::permissions(path));
}

TEST_F(SQLiteConnectionTest, ReadsBackEveryTypeOfValue)
{
    const auto row = connection.firstRow(
        "SELECT ? AS whole, ? AS real, ? AS text, ? AS absent, x'00ff' AS blob",
        {qint64(-9'007'199'254'740'993), 0.25, QStringLiteral("Grüße 🐻‍❄️"), nullptr});
    ASSERT_TRUE(row);
    EXPECT_EQ(row->integer("whole"), -9'007'199'254'740'993);
    EXPECT_EQ(row->number("whole"), -9'007'199'254'740'993.0);
    EXPECT_EQ(row->number("real"), 0.25);
    EXPECT_EQ(row->text("text"), QStringLiteral("Grüße 🐻‍❄️"));
    EXPECT_EQ(row->column("absent"), SQLiteColumn());
    EXPECT_EQ(row->column("blob"), SQLiteColumn()) << "a BLOB reads as NULL";
}

TEST_F(SQLiteConnectionTest, AValueOfAnotherTypeReadsAsAbsent)
{
    const auto row = connection.firstRow("SELECT 1 AS whole, 1.5 AS real, '1' AS text, NULL AS absent");
    ASSERT_TRUE(row);
    EXPECT_EQ(row->integer("real"), std::nullopt);
    EXPECT_EQ(row->integer("text"), std::nullopt);
    EXPECT_EQ(row->text("whole"), std::nullopt);
    EXPECT_EQ(row->number("text"), std::nullopt);
    EXPECT_EQ(row->text("absent"), std::nullopt);
    EXPECT_EQ(row->integer("missing"), std::nullopt);
}

TEST_F(SQLiteConnectionTest, OnlyTheIntegerOneReadsAsTrue)
{
    const auto row =
        connection.firstRow("SELECT 1 AS one, 2 AS two, '1' AS text, 1.0 AS real, NULL AS absent");
    ASSERT_TRUE(row);
    EXPECT_TRUE(row->boolean("one"));
    EXPECT_FALSE(row->boolean("two"));
    EXPECT_FALSE(row->boolean("text"));
    EXPECT_FALSE(row->boolean("real"));
    EXPECT_FALSE(row->boolean("absent"));
}

TEST_F(SQLiteConnectionTest, OfTwoColumnsWithOneNameTheLaterWins)
{
    EXPECT_EQ(connection.firstRow("SELECT 1 AS a, 2 AS a")->integer("a"), 2);
}

TEST_F(SQLiteConnectionTest, ATextEndsAtItsFirstNUL)
{
    const auto row = connection.firstRow("SELECT ? AS text", {QByteArray("ab\0cd", 5)});
    EXPECT_EQ(row->text("text"), QStringLiteral("ab"));
}

TEST_F(SQLiteConnectionTest, TheFirstRowOfNoResultIsAbsent)
{
    connection.execute("CREATE TABLE t (a)");
    EXPECT_FALSE(connection.firstRow("SELECT a FROM t"));
    EXPECT_TRUE(connection.rows("SELECT a FROM t").empty());
}

TEST_F(SQLiteConnectionTest, RunningAStatementThatReturnsARowIsAnError)
{
    expectError(SQLiteStoreError::Case::execute, [&] { connection.run("SELECT 1"); });
}

TEST_F(SQLiteConnectionTest, EachFailureHasItsCase)
{
    expectError(SQLiteStoreError::Case::prepare, [&] { connection.run("SELECT nonsense FROM nowhere"); });
    expectError(SQLiteStoreError::Case::prepare, [&] { connection.run(""); });
    expectError(SQLiteStoreError::Case::bind, [&] { (void)connection.rows("SELECT 1", {1}); });
    expectError(SQLiteStoreError::Case::execute, [&] { connection.execute("nonsense"); });
    connection.execute("CREATE TABLE t (a NOT NULL)");
    expectError(SQLiteStoreError::Case::execute, [&] { connection.run("INSERT INTO t VALUES (NULL)"); });
}

TEST_F(SQLiteConnectionTest, WaitsFiveSecondsForTheLockOfAnotherConnection)
{
    EXPECT_EQ(connection.firstRow("PRAGMA busy_timeout")->integer("timeout"), 5000);
}

TEST_F(SQLiteConnectionTest, ALockThatStaysIsReportedLikeAnyOtherFailure)
{
    SQLiteConnection other(path);
    other.execute("BEGIN IMMEDIATE");
    connection.execute("PRAGMA busy_timeout = 1");
    try {
        connection.execute("BEGIN IMMEDIATE");
        FAIL();
    } catch (const SQLiteStoreError& error) {
        EXPECT_EQ(error.description(), QStringLiteral("Local library command failed: database is locked"));
    }
}

TEST_F(SQLiteConnectionTest, AConnectionServesOnAfterAFailure)
{
    expectError(SQLiteStoreError::Case::prepare, [&] { connection.run("nonsense"); });
    EXPECT_EQ(connection.firstRow("SELECT 7 AS a")->integer("a"), 7);
}

TEST_F(SQLiteConnectionTest, ATransactionIsRolledBackUnlessCommitted)
{
    connection.execute("CREATE TABLE t (a)");
    {
        SQLiteTransaction transaction(connection);
        connection.run("INSERT INTO t VALUES (1)");
    }
    EXPECT_TRUE(connection.rows("SELECT a FROM t").empty());
    {
        SQLiteTransaction transaction(connection);
        connection.run("INSERT INTO t VALUES (2)");
        transaction.commit();
    }
    EXPECT_EQ(connection.firstRow("SELECT a FROM t")->integer("a"), 2);
}

TEST(SQLiteConnection, AFileThatIsNoDatabaseIsReportedWithSQLitesMessage)
{
    QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("broken")));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write(QByteArray(4096, 'x'));
    file.close();
    SQLiteConnection connection(file.fileName());
    try {
        connection.execute("PRAGMA journal_mode = WAL");
        FAIL();
    } catch (const SQLiteStoreError& error) {
        EXPECT_EQ(error.description(),
                  QStringLiteral("Local library command failed: file is not a database"));
    }
}

TEST(SQLiteConnection, ADirectoryInPlaceOfTheFileCannotBeOpened)
{
    QTemporaryDir directory;
    try {
        SQLiteConnection connection(directory.path());
        FAIL();
    } catch (const SQLiteStoreError& error) {
        EXPECT_EQ(error.errorCase(), SQLiteStoreError::Case::open);
        EXPECT_EQ(error.description(),
                  QStringLiteral("Could not open the local library: unable to open database file"));
    }
}

TEST(SQLiteConnection, AParentThatCannotBeCreatedIsThePlatformsError)
{
    QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("file")));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    EXPECT_THROW(SQLiteConnection(file.fileName() + QStringLiteral("/below/test.sqlite3")), FileError);
}

struct DescriptionCase
{
    const char* name;
    SQLiteStoreError::Case errorCase;
    const char* description;
};

class SQLiteStoreErrorDescription : public ::testing::TestWithParam<DescriptionCase>
{
};

TEST_P(SQLiteStoreErrorDescription, IsTheTextThatAUserSees)
{
    const SQLiteStoreError error(GetParam().errorCase, QStringLiteral("disk full"));
    EXPECT_EQ(error.description(), QString::fromLatin1(GetParam().description));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, SQLiteStoreErrorDescription,
    ::testing::Values(DescriptionCase{"Open", SQLiteStoreError::Case::open,
                                      "Could not open the local library: disk full"},
                      DescriptionCase{"Execute", SQLiteStoreError::Case::execute,
                                      "Local library command failed: disk full"},
                      DescriptionCase{"Prepare", SQLiteStoreError::Case::prepare,
                                      "Local library query could not be prepared: disk full"},
                      DescriptionCase{"Bind", SQLiteStoreError::Case::bind,
                                      "Local library value could not be bound: disk full"},
                      DescriptionCase{"NotFound", SQLiteStoreError::Case::notFound, "disk full"}),
    [](const auto& row) { return row.param.name; });

} // namespace
} // namespace mirel
