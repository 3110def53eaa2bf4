#include "model/MirelAppModel.h"

#include "model/RunningCommand.h"
#include "support/FileManager.h"

namespace mirel {

QCoro::Task<> MirelAppModel::deleteAllData()
{
    if (!m_services.store || !m_services.vault)
        co_return;
    const RunningCommand running(*this);
    m_isDeletingData = true;
    bool isDone = false;
    try {
        // Either would bring back what is removed here.
        co_await endSyncEarly();
        co_await abandonXAuthorization();
        m_libraryGeneration = QUuid::createUuid();
        co_await m_services.store->call([](LocalLibraryStore& library) { library.purgeAllLocalData(); });
        co_await m_services.vault->call([](CredentialVault& vault) { return vault.clearAll(); });
        const auto removeCaches = [directory = m_services.cacheDirectory](LocalLibraryStore&) {
            // On this thread, since there may be many files. Caches that stay are no failure.
            if (!directory.isEmpty())
                FileManager::standard().removeDirectory(directory);
        };
        co_await m_services.store->call(removeCaches);
        isDone = true;
    } catch (...) {
        fail(std::current_exception());
    }
    m_isDeletingData = false;
    if (!isDone) {
        // Some secrets may be gone.
        co_await refreshCredentialState();
        co_return;
    }
    forgetLibrary();
    setStatusMessage(QStringLiteral("All local Mirel data and credentials were deleted."));
    co_await start();
}

// Takes off the screen what is no longer stored.
void MirelAppModel::forgetLibrary()
{
    m_preferences = {};
    m_bookmarks.setBookmarks({});
    m_mediaBookmarks.setBookmarks({});
    m_selectedBookmarkID.reset();
    m_selectedBookmarkIDs.clear();
    m_navigationHistory.clear();
    closeReader();
    setHighlights({});
    m_page = 0;
    m_refinements = {};
    Q_EMIT historyChanged();
    tellPlace();
}

} // namespace mirel
