#include "x/MirelSyncService.h"

#include "x/PageWalk.h"

namespace mirel {

namespace {

constexpr qint64 pageSize = 100;
constexpr qint64 mostPages = 100;

} // namespace

// A local folder of the same name is adopted, and what is in no folder on X stays where it is here.
QCoro::Task<> MirelSyncService::syncFolders(SyncCancellation cancellation)
{
    PageWalk walk(mostPages);
    for (;;) {
        cancellation.throwIfRequested();
        const XPage<XBookmarkFolder> page =
            co_await untilCanceled(cancellation, m_x.bookmarkFolders(walk.token(), pageSize));
        for (const XBookmarkFolder& remote : page.items) {
            cancellation.throwIfRequested();
            const auto import = [remote](LocalLibraryStore& library) {
                return library.createFolder(remote.name, QStringLiteral("Imported from X"), {},
                                            Folder::Source::x, remote.id);
            };
            const Folder folder = co_await m_store.call(import);
            co_await syncFolderPosts(folder, remote.id, cancellation);
        }
        if (!walk.advance(page.nextToken))
            co_return;
    }
}

// Posts that the library does not have are not fetched.
QCoro::Task<> MirelSyncService::syncFolderPosts(Folder folder, QString remoteID,
                                                SyncCancellation cancellation)
{
    PageWalk walk(mostPages);
    for (;;) {
        cancellation.throwIfRequested();
        const XPage<QString> page =
            co_await untilCanceled(cancellation, m_x.folderPostIDs(remoteID, walk.token(), pageSize));
        const auto file = [folderID = folder.id, tweetIDs = page.items](LocalLibraryStore& library) {
            for (const QString& tweetID : tweetIDs) {
                if (const auto bookmark = library.bookmark(tweetID))
                    library.assignFolder(folderID, bookmark->id);
            }
        };
        co_await m_store.call(file);
        if (!walk.advance(page.nextToken))
            co_return;
    }
}

} // namespace mirel
