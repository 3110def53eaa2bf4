#pragma once

#include "x/FakeX.h"

#include "support/BlockOn.h"
#include "x/MirelSyncService.h"

#include <gtest/gtest.h>

namespace mirel::testing {

// A library on its thread, a fake X, and the services over both on the thread of the test.
class SyncTestBench : public ::testing::Test
{
protected:
    TemporaryLibrary library;
    std::unique_ptr<Serial<LocalLibraryStore>> store = std::make_unique<Serial<LocalLibraryStore>>(
        std::make_shared<ServiceThread>(QStringLiteral("library")), [this] { return library.open(); });
    std::unique_ptr<SQLiteConnection> connection = library.connect();
    FakeX x;
    QList<BookmarkSyncProgress> reports;

    BookmarkSyncProgressHandler collectReports()
    {
        return [this](BookmarkSyncProgress page) -> QCoro::Task<> {
            reports.append(page);
            co_return;
        };
    }

    template <typename Operation>
    auto onStore(Operation operation)
    {
        return blockOn(store->call(operation));
    }

    qint64 storedCount()
    {
        return connection->firstRow("SELECT COUNT(*) AS n FROM bookmarks")->integer("n").value();
    }
};

// The error that `operation` throws; a test failure when it throws none or another.
template <typename ExpectedError, typename Operation>
std::optional<ExpectedError> errorOf(Operation operation)
{
    try {
        operation();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const ExpectedError& error) {
        return error;
    } catch (const std::exception& error) {
        ADD_FAILURE() << "another error was thrown: " << error.what();
    }
    return std::nullopt;
}

} // namespace mirel::testing
