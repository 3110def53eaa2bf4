#include "library/LocalLibraryStore.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <chrono>
#include <cstdio>

namespace mirel {
namespace {

double milliseconds(const std::function<void()>& operation)
{
    const auto start = std::chrono::steady_clock::now();
    operation();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

void run(const QString& path)
{
    std::unique_ptr<LocalLibraryStore> store;
    std::printf("open %.0f ms\n", milliseconds([&] { store = std::make_unique<LocalLibraryStore>(path); }));
    for (const char* query : {"kamor", "kamor", "\"a chart\"", "label:work", "author:mia", "has:media", "is:unread", "http", "is:unread has:media kamor label:x author:mia",
                              "type:article", "type:article", "type:link", "has:links is:unread type:quote kamor author:mia", "zzzz"}) {
        LibraryRefinements refinements{.query = QString::fromUtf8(query)};
        qint64 total = 0;
        const double time = milliseconds([&] {
            total = store->searchBookmarksPage(LibraryFilter::all, refinements, 50, 0, LibrarySort::newest)
                        .totalCount;
        });
        std::printf("%-50s %8.1f ms %lld\n", query, time, static_cast<long long>(total));
    }
    for (auto sort : {LibrarySort::newest, LibrarySort::newest, LibrarySort::oldest, LibrarySort::author, LibrarySort::author}) {
        std::printf("count sort %.1f ms\n", milliseconds([&] { (void)store->matchingBookmarkIDs(LibraryFilter::all, {.query = QStringLiteral("kamor")}, sort); }));
        std::printf("list %.1f ms\n", milliseconds([&] { (void)store->listBookmarks(LibraryFilter::all, 50, 0, sort); }));
    }
    std::printf("counts %.1f ms\n", milliseconds([&] { (void)store->libraryCounts(); }));
    const auto size = store->indexSize();
    std::printf("%lld bytes a bookmark\n", static_cast<long long>(size.bytes / std::max<qint64>(1, size.bookmarks)));
}

} // namespace
} // namespace mirel

int main(int argumentCount, char** arguments)
{
    QCoreApplication application(argumentCount, arguments);
    mirel::run(QString::fromUtf8(arguments[1]));
}
