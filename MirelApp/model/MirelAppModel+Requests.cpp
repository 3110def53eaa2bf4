#include "model/MirelAppModel.h"

namespace mirel {

void MirelAppModel::requestSync(bool fullScan)
{
    if (!m_isSyncing && !m_isDeletingData)
        syncNow({}, fullScan);
}

void MirelAppModel::requestRefresh()
{
    refreshLibrary();
}

void MirelAppModel::requestSyncHistory()
{
    refreshSyncRuns();
}

void MirelAppModel::requestNextPage()
{
    nextPage();
}

void MirelAppModel::requestPreviousPage()
{
    previousPage();
}

void MirelAppModel::requestDestination(const QString& destination)
{
    if (const auto place = fromRawValue<SidebarDestination>(destination))
        show(*place);
}

void MirelAppModel::requestMailbox(const QString& filter)
{
    if (const auto mailbox = fromRawValue<LibraryFilter>(filter))
        openMailbox(*mailbox);
}

void MirelAppModel::requestSearchPreparation()
{
    prepareSearch();
}

void MirelAppModel::requestSearchMailbox(const QString& filter)
{
    if (const auto mailbox = fromRawValue<LibraryFilter>(filter))
        searchMailbox(*mailbox);
}

void MirelAppModel::requestSort(const QString& sort)
{
    if (const auto order = fromRawValue<LibrarySort>(sort))
        setLibrarySort(*order);
}

void MirelAppModel::requestSearch(const QString& query)
{
    setSearchQuery(query);
}

void MirelAppModel::requestReset()
{
    resetRefinements();
}

void MirelAppModel::requestSelection(qint64 bookmarkID)
{
    selectBookmark(bookmarkID > 0 ? std::optional(bookmarkID) : std::nullopt);
}

void MirelAppModel::requestReader(qint64 bookmarkID)
{
    openBookmark(bookmarkID);
}

void MirelAppModel::requestBack()
{
    goBack();
}

void MirelAppModel::requestXOAuth(const QString& clientID, const QString& clientSecret,
                                  const QString& redirectURI)
{
    beginXOAuth(clientID, clientSecret, redirectURI);
}

void MirelAppModel::requestXCallback(const QString& address)
{
    takePastedXCallback(address);
}

void MirelAppModel::requestXCredentials(const QString& clientID, const QString& clientSecret,
                                        const QString& accessToken, const QString& refreshToken,
                                        const QString& userID, const QString& username)
{
    persistXCredentials(clientID, clientSecret, accessToken, refreshToken, userID, username);
}

void MirelAppModel::requestConnectionValidation()
{
    validateConnections();
}

void MirelAppModel::requestCredentialRemoval()
{
    clearCredentials();
}

void MirelAppModel::requestTweet(const QString& reference)
{
    openTweetURL(reference);
}

void MirelAppModel::requestDataDeletion()
{
    deleteAllData();
}

} // namespace mirel
