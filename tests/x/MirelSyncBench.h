#pragma once

#include "x/SyncTestBench.h"

namespace mirel::testing {

// The whole sync over a library and a fake X.
class MirelSyncBench : public SyncTestBench
{
protected:
    BookmarkSyncSummary sync(SyncRun::Kind kind, BookmarkSyncMode mode)
    {
        return blockOn(service.sync(kind, mode, collectReports()));
    }
    BookmarkSyncSummary syncQuickly() { return sync(SyncRun::Kind::manual, BookmarkSyncMode::incremental); }
    BookmarkSyncSummary syncFully() { return sync(SyncRun::Kind::manual, BookmarkSyncMode::full); }

    // The posts that are bookmarked, on one page.
    void bookmarkPosts(int first, int last)
    {
        x.answer = [first, last](int) { return makePage(first, last); };
    }

    // Calls `change(AppPreferences&)` on what the user prefers.
    template <typename Change>
    void prefer(Change change)
    {
        onStore([change](LocalLibraryStore& it) {
            AppPreferences preferences = it.preferences();
            change(preferences);
            it.savePreferences(preferences);
        });
    }
    void preferThreads()
    {
        prefer([](AppPreferences& it) { it.threadEnrichment = AppPreferences::ThreadEnrichment::automatic; });
    }

    // The post of that number as the library has it.
    Bookmark stored(int number)
    {
        const auto bookmark =
            onStore([number](LocalLibraryStore& it) { return it.bookmark(makePost(number).tweetID); });
        if (!bookmark)
            ADD_FAILURE() << "there is no post number " << number;
        return bookmark.value_or(Bookmark{});
    }
    // The name of the folder in which it is, or empty.
    std::string folderOf(int number)
    {
        const auto folder = stored(number).folder;
        return folder ? folder->name.toStdString() : std::string();
    }

    SyncRun lastRun()
    {
        return onStore([](LocalLibraryStore& it) { return it.syncRuns(1).value(0); });
    }

    // "event: message" of each entry of the last run.
    std::vector<std::string> story()
    {
        const qint64 id = lastRun().id;
        std::vector<std::string> lines;
        for (const SyncLogEntry& entry :
             onStore([id](LocalLibraryStore& it) { return it.syncLogEntries(id, 100); }))
            lines.push_back((rawValue(entry.event) + QStringLiteral(": ") + entry.message).toStdString());
        return lines;
    }

    MirelSyncService service{x, *store, library.clock.clock()};
};

} // namespace mirel::testing
