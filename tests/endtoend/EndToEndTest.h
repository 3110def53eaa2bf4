#pragma once

#include "testing/Printing.h"

#include "LibraryFile.h"
#include "RunningProgram.h"
#include "SimulatorProcess.h"
#include "support/JSONCoding.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace mirel::testing {

// A simulator, a fresh library directory, and mirelctl to bring them together. Without the keyring it runs
// as the demo does.
class EndToEndTest : public ::testing::Test
{
protected:
    explicit EndToEndTest(int posts = 120, bool usesKeyring = false)
        : simulator(posts)
        , m_usesKeyring(usesKeyring)
    {
    }

    [[nodiscard]] QProcessEnvironment environment() const
    {
        QProcessEnvironment result = plainEnvironment();
        result.insert(QStringLiteral("MIREL_LOCAL_DATA_DIR"), directory.path());
        result.insert(QStringLiteral("MIREL_X_API_URL"), simulator.apiURL());
        result.insert(QStringLiteral("MIREL_X_AUTHORIZE_URL"), simulator.authorizeURL());
        // The demo must get along without a session bus.
        if (!m_usesKeyring)
            result.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        return result;
    }

    [[nodiscard]] QStringList arguments(const QByteArray& words) const
    {
        QStringList result = QString::fromUtf8(words).split(u' ', Qt::SkipEmptyParts);
        if (!m_usesKeyring)
            result.prepend(QStringLiteral("--demo"));
        return result;
    }

    [[nodiscard]] ProgramResult mirelctl(const QByteArray& words) const
    {
        return runProgram(programs::mirelctl, arguments(words), environment());
    }

    [[nodiscard]] LibraryFile library() const
    {
        return LibraryFile(directory.filePath(QStringLiteral("mirel.sqlite3")));
    }

    // The first `count` posts of the account.
    [[nodiscard]] QSet<QString> newestPosts(qsizetype count) const
    {
        const QStringList ids = simulator.accountIDs().first(count);
        return {ids.begin(), ids.end()};
    }

    [[nodiscard]] QSet<QString> allPosts() const { return newestPosts(simulator.accountIDs().size()); }

    // Of the last run: status, error message, pages, fetched, created, updated.
    [[nodiscard]] QStringList lastRun() const
    {
        return library()
            .rows("SELECT status, error_message, pages, fetched, created, updated FROM sync_runs "
                  "ORDER BY id DESC LIMIT 1")
            .value(0);
    }

    // Of the last run: the events and the messages of its log, in order.
    [[nodiscard]] QList<QStringList> lastLog() const
    {
        return library().rows("SELECT event, message FROM sync_log_entries WHERE sync_run_id = (SELECT "
                              "max(id) FROM sync_runs) ORDER BY id");
    }

    static void expectSuccess(const ProgramResult& result, const QByteArray& output)
    {
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.output, output);
        EXPECT_EQ(result.errors, "");
    }

    static void expectFailure(const ProgramResult& result, const QByteArray& sentence)
    {
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "mirelctl: " + sentence + '\n');
    }

    SimulatorProcess simulator;
    QTemporaryDir directory;

private:
    bool m_usesKeyring;
};

} // namespace mirel::testing
