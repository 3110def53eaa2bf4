#pragma once

#include "credentials/CredentialVault.h"
#include "library/LocalLibraryStore.h"
#include "model/BookmarkListModel.h"
#include "model/BrowserAuthenticationSession.h"
#include "model/NavigationSnapshot.h"
#include "presentation/PostPresentation.h"
#include "support/Serial.h"
#include "transport/HTTPTransport.h"
#include "x/MirelSyncService.h"
#include "x/XDirectAPI.h"
#include "x/XOAuthService.h"

#include <QObject>
#include <QProcessEnvironment>
#include <QPromise>
#include <QUuid>
#include <QVariant>

#include <functional>
#include <memory>

namespace mirel {

// Every service of the program. Each is present from the start or absent for the whole run; a command that
// needs an absent one does nothing. `transport`, `vault`, `x`, `syncService` and `oauth` share one thread.
struct MirelServices
{
    std::unique_ptr<Serial<LocalLibraryStore>> store;
    std::unique_ptr<Serial<CredentialVault>> vault;
    std::unique_ptr<Serial<HTTPTransport>> transport;
    std::unique_ptr<Serial<XDirectAPI>> x;
    std::unique_ptr<Serial<MirelSyncService>> syncService;
    std::unique_ptr<Serial<XOAuthService>> oauth;
    // Makes the platform's way to sign in on a page of the web. Empty: there is none.
    std::function<std::unique_ptr<WebAuthenticationSession>()> makeWebAuthenticationSession;
    // What the program keeps to be quicker, and may lose at any time. Empty: nowhere.
    QString cacheDirectory;
};

// How live() builds the services.
struct LiveOptions
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Makes the vault, on the services thread. Empty: the system's keyring.
    std::function<std::unique_ptr<CredentialVault>()> makeVault;
    // Shows the page of a sign-in, and returns whether it could. Empty: the user's browser does.
    BrowserAuthenticationSession::OpenPage openPage;
    SearchPreparation searchPreparation = SearchPreparation::onDemand;
};

// The application without its screens: the state that they show and the commands that they call. Lives on
// the main thread. Commands never throw: a success is told in `statusMessage`, a failure in `lastError`.
class MirelAppModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(mirel::BookmarkListModel* bookmarks READ bookmarkList CONSTANT)
    Q_PROPERTY(mirel::BookmarkListModel* mediaBookmarks READ mediaBookmarkList CONSTANT)
    Q_PROPERTY(QString selection READ selectionName NOTIFY placeChanged)
    Q_PROPERTY(QString libraryFilter READ libraryFilterName NOTIFY placeChanged)
    // The mailbox that is listed: the inbox on the Today screen.
    Q_PROPERTY(QString listedFilter READ listedFilterName NOTIFY placeChanged)
    Q_PROPERTY(QString searchQuery READ searchQuery NOTIFY placeChanged)
    // Something narrows the mailbox, be it a query or a filter.
    Q_PROPERTY(bool isRefined READ isRefined NOTIFY placeChanged)
    Q_PROPERTY(bool canGoBack READ canGoBack NOTIFY historyChanged)
    // The destination to which goBack() leads; empty when there is none.
    Q_PROPERTY(QString placeBehind READ placeBehindName NOTIFY historyChanged)
    Q_PROPERTY(QString librarySort READ librarySortName NOTIFY placeChanged)
    // Counted from 0.
    Q_PROPERTY(qint64 page READ page NOTIFY placeChanged)
    Q_PROPERTY(qint64 pageCount READ pageCount NOTIFY libraryChanged)
    Q_PROPERTY(qint64 libraryResultCount READ libraryResultCount NOTIFY libraryChanged)
    // A map with `all`, `inbox`, `read`, `favorites`, `archive`.
    Q_PROPERTY(QVariant counts READ countsVariant NOTIFY libraryChanged)
    Q_PROPERTY(bool hasLibrary READ hasLibrary CONSTANT)
    // The first listing has arrived or failed.
    Q_PROPERTY(bool hasLoaded READ hasLoaded NOTIFY isLoadingChanged)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
    // The last reading of the library failed, and older rows may be shown.
    Q_PROPERTY(bool hasListingFailed READ hasListingFailed NOTIFY isLoadingChanged)
    // Why it failed; `lastError` told it too, but may tell of something else by now.
    Q_PROPERTY(QString listingError READ listingErrorText NOTIFY isLoadingChanged)
    // The library is being read, or will be once the reading under way has ended.
    Q_PROPERTY(bool isReadingLibrary READ isReadingLibrary NOTIFY isLoadingChanged)
    // 0: none.
    Q_PROPERTY(qint64 selectedBookmarkID READ selectedBookmarkIDNumber NOTIFY selectionChanged)
    Q_PROPERTY(bool isReaderOpen READ isReaderOpen NOTIFY selectionChanged)
    // The post of the reader, or else the selected one: a map with the roles of BookmarkListModel and `kind`,
    // what the post is called, which is empty until it is known. Null when there is none.
    Q_PROPERTY(QVariant shownPost READ shownPostVariant NOTIFY shownPostChanged)
    Q_PROPERTY(bool isSyncing READ isSyncing NOTIFY syncChanged)
    // A map with the fields of BookmarkSyncProgress while a sync runs, else null.
    Q_PROPERTY(QVariant syncProgress READ syncProgressVariant NOTIFY syncChanged)
    // Newest first: the last 20 runs, as maps with the fields of SyncRun, and the last 1,000 log entries of
    // all runs, with those of SyncLogEntry; instants are dates, and what is absent is left out.
    Q_PROPERTY(QVariantList syncRuns READ syncRunsVariant NOTIFY syncRunsChanged)
    Q_PROPERTY(QVariantList syncLogEntries READ syncLogEntriesVariant NOTIFY syncRunsChanged)
    Q_PROPERTY(bool xConfigured READ xConfigured NOTIFY xConfiguredChanged)
    // The browser shows X's sign-in, and has not returned.
    Q_PROPERTY(bool isAuthorizingX READ isAuthorizingX NOTIFY isAuthorizingXChanged)
    // The page of that sign-in, else empty.
    Q_PROPERTY(QUrl xAuthorizationURL READ xAuthorizationURL NOTIFY isAuthorizingXChanged)
    // The addresses to which X may return, of which one is registered with X.
    Q_PROPERTY(QStringList xRedirectURIs READ xRedirectURIs CONSTANT)
    // A long command runs, and those like it have to wait.
    Q_PROPERTY(bool isWorking READ isWorking NOTIFY isWorkingChanged)
    // Empty: nothing to tell.
    Q_PROPERTY(QString statusMessage READ statusMessageText NOTIFY messagesChanged)
    Q_PROPERTY(QString lastError READ lastErrorText NOTIFY messagesChanged)

public:
    // `lastError` tells why services are absent. `now` decides when a sync is due.
    explicit MirelAppModel(MirelServices services, std::optional<QString> lastError = {},
                           Clock now = Instant::now);

    // Ends what runs on other threads. Call shutDown() first when commands may be running.
    ~MirelAppModel() override;

    // The model over the user's library. Never throws: a library that cannot be opened yields a model
    // without services, with the error in `lastError`.
    [[nodiscard]] static std::unique_ptr<MirelAppModel> live(const LiveOptions& options = {});

    // Fills the model from the library: load(). Then, without being awaited, finds out what is connected, and
    // syncs if that is due.
    QCoro::Task<> start();
    QCoro::Task<> load();

    // Cancels the requests in flight, and those that begin meanwhile, and returns when no command is running.
    // Calls to the keyring are given a moment to end. A sync that nobody canceled stays `running` in the
    // history.
    QCoro::Task<> shutDown();

    // Goes to a destination of the sidebar, without refinements and from the first page.
    QCoro::Task<> show(SidebarDestination destination);
    // Shows one mailbox, from its first page.
    QCoro::Task<> openMailbox(LibraryFilter filter);
    // Shows the library narrowed to one author, label or folder.
    QCoro::Task<> openLibrary(std::optional<qint64> authorID, std::optional<qint64> tagID,
                              std::optional<qint64> folderID);
    // Opens a bookmark in the reader. One that does not exist leaves the reader as it was.
    QCoro::Task<> openBookmark(qint64 id);
    // Runs a search expression; the other refinements stay.
    QCoro::Task<> runSearch(QString query);
    // The search as one types: the first letter runs a search, the next ones replace its query, so that
    // going back leads to where the search began.
    QCoro::Task<> setSearchQuery(QString query);
    // Does in small parts what the first search would have to do at once. Ends early when the model shuts
    // down.
    QCoro::Task<> prepareSearch();
    // Searches another mailbox for the same.
    QCoro::Task<> searchMailbox(LibraryFilter filter);
    QCoro::Task<> resetRefinements();
    // Returns to the last place that show(), openMailbox(), openLibrary(), openBookmark() or runSearch()
    // left; 50 are remembered. Without one it closes the reader.
    QCoro::Task<> goBack();

    // Reloads the current page and the counts. One reading at a time: calls during a reading share the next
    // one, and end with it, so that only the newest place is read after the one under way.
    QCoro::Task<> refreshLibrary();
    // Reloads all bookmarks with media.
    QCoro::Task<> refreshMedia();
    // Selects what the listing holds, on all pages.
    QCoro::Task<> selectAllLibraryResults();
    QCoro::Task<> setLibrarySort(LibrarySort sort);
    QCoro::Task<> nextPage();
    QCoro::Task<> previousPage();
    // Highlights one row, or none.
    void selectBookmark(std::optional<qint64> id);

    // Reloads the labels, folders, rules and authors, all of them or none.
    QCoro::Task<> refreshOrganization();

    // Runs a sync. Without a kind it is `initial` on an empty library, else `manual`.
    QCoro::Task<> syncNow(std::optional<SyncRun::Kind> kind, bool fullScan);
    // Runs an `automatic` sync when the user wants such, X is connected, none is running, and the last
    // attempt, whatever came of it, ended at least the chosen interval ago.
    QCoro::Task<> syncIfDue();
    QCoro::Task<> refreshSyncRuns();
    // Cancels a running sync and returns when it has ended; what has arrived stays.
    QCoro::Task<> endSyncEarly();

    // Asks X for the present counters of a post.
    QCoro::Task<> refreshMetrics(qint64 bookmarkID);
    // Fetches the author's own thread around a post from X, unless that was done before.
    QCoro::Task<> enrichThread(qint64 bookmarkID);
    // Deletes a bookmark here and, when `removeFromX` or else the preferences say so, before that on X.
    QCoro::Task<> deleteBookmark(Bookmark bookmark, std::optional<bool> removeFromX = {});
    // Reads one bookmark anew, wherever it is shown.
    QCoro::Task<> refreshBookmarkPresentation(qint64 bookmarkID);

    // Finds out whether X works. The last check to start decides, whichever ends last.
    QCoro::Task<> refreshCredentialState();
    // Shows and saves the preferences; those that cannot be saved stay on the screen.
    QCoro::Task<> savePreferences(AppPreferences preferences);

    // Connects an account with tokens that the user already has. A blank field keeps what is stored. Tokens
    // that X refuses stay stored.
    QCoro::Task<> persistXCredentials(QString clientID, QString clientSecret, QString accessToken,
                                      QString refreshToken, QString userID, QString username);
    // Shows X's sign-in in the browser, in place of one that it may show already. Its callback comes by
    // handleOpenURL().
    QCoro::Task<> beginXOAuth(QString clientID, QString clientSecret, QString redirectURI);
    // Takes the address to which X sent the browser, also that of the page of Mirel's web site that hands it
    // on, for a browser that could not return to Mirel.
    QCoro::Task<> takePastedXCallback(QString address);
    // Gives up the sign-in that the browser shows; its callback then comes too late.
    Q_INVOKABLE void cancelXAuthorization();
    // Asks X whether the connection still works, if there is one.
    QCoro::Task<> validateConnections();
    // Removes all secrets from the keyring, and gives up a sign-in.
    QCoro::Task<> clearCredentials();

    // Takes a link from outside: the callback of a sign-in, or one that names a post.
    QCoro::Task<> handleOpenURL(QUrl url);
    // Opens the post that the user's text names, when it is in the library.
    QCoro::Task<> openTweetURL(QString text);

    // Removes everything: the library's rows, the secrets and the caches. Ends a sync and a sign-in first.
    QCoro::Task<> deleteAllData();

    // The commands as screens call them: nobody waits for their end.
    Q_INVOKABLE void requestSync(bool fullScan);
    // As endSyncEarly().
    Q_INVOKABLE void cancelSync();
    Q_INVOKABLE void requestRefresh();
    Q_INVOKABLE void requestSyncHistory();
    Q_INVOKABLE void requestNextPage();
    Q_INVOKABLE void requestPreviousPage();
    // Names as in `selection`, `libraryFilter` and `librarySort`; an unknown one is ignored.
    Q_INVOKABLE void requestDestination(const QString& destination);
    Q_INVOKABLE void requestMailbox(const QString& filter);
    Q_INVOKABLE void requestSearchMailbox(const QString& filter);
    Q_INVOKABLE void requestSort(const QString& sort);
    Q_INVOKABLE void requestSearch(const QString& query);
    // The user is about to search.
    Q_INVOKABLE void requestSearchPreparation();
    Q_INVOKABLE void requestReset();
    // 0: none.
    Q_INVOKABLE void requestSelection(qint64 bookmarkID);
    Q_INVOKABLE void requestReader(qint64 bookmarkID);
    Q_INVOKABLE void requestBack();
    Q_INVOKABLE void requestXOAuth(const QString& clientID, const QString& clientSecret,
                                   const QString& redirectURI);
    // The address to which X sent the browser, as the user pasted it.
    Q_INVOKABLE void requestXCallback(const QString& address);
    Q_INVOKABLE void requestXCredentials(const QString& clientID, const QString& clientSecret,
                                         const QString& accessToken, const QString& refreshToken,
                                         const QString& userID, const QString& username);
    Q_INVOKABLE void requestConnectionValidation();
    Q_INVOKABLE void requestCredentialRemoval();
    // An X post id or a post's web address.
    Q_INVOKABLE void requestTweet(const QString& reference);
    Q_INVOKABLE void requestDataDeletion();
    Q_INVOKABLE void dismissError();
    Q_INVOKABLE void dismissStatus();

    [[nodiscard]] BookmarkListModel* bookmarkList() { return &m_bookmarks; }
    [[nodiscard]] const QList<Bookmark>& bookmarks() const { return m_bookmarks.bookmarks(); }
    [[nodiscard]] BookmarkListModel* mediaBookmarkList() { return &m_mediaBookmarks; }
    [[nodiscard]] const QList<Bookmark>& mediaBookmarks() const { return m_mediaBookmarks.bookmarks(); }
    [[nodiscard]] SidebarDestination selection() const { return m_selection; }
    [[nodiscard]] LibraryFilter libraryFilter() const { return m_libraryFilter; }
    [[nodiscard]] LibraryFilter listedFilter() const;
    [[nodiscard]] const LibraryRefinements& refinements() const { return m_refinements; }
    [[nodiscard]] const QString& searchQuery() const { return m_refinements.query; }
    [[nodiscard]] bool isRefined() const { return m_refinements != LibraryRefinements{}; }
    [[nodiscard]] bool canGoBack() const { return !m_navigationHistory.isEmpty(); }
    // The row that the list highlights.
    [[nodiscard]] std::optional<qint64> selectedBookmarkID() const { return m_selectedBookmarkID; }
    // The bookmark of that id, as the reader, the listing or the media list holds it.
    [[nodiscard]] std::optional<Bookmark> selectedBookmark() const;
    [[nodiscard]] const std::optional<Bookmark>& readerBookmark() const { return m_readerBookmark; }
    [[nodiscard]] bool isReaderOpen() const { return m_readerBookmark.has_value(); }
    // The many on which the bulk commands work; independent of the one highlighted row.
    [[nodiscard]] const QSet<qint64>& selectedBookmarkIDs() const { return m_selectedBookmarkIDs; }
    [[nodiscard]] const AppPreferences& preferences() const { return m_preferences; }
    [[nodiscard]] LibrarySort librarySort() const { return m_librarySort; }
    [[nodiscard]] qint64 page() const { return m_page; }
    // At least 1.
    [[nodiscard]] qint64 pageCount() const { return pageCount(m_libraryResultCount, m_preferences.pageSize); }
    // The pages that `results` take; at least 1, for any size.
    [[nodiscard]] static qint64 pageCount(qint64 results, qint64 pageSize);
    [[nodiscard]] qint64 libraryResultCount() const { return m_libraryResultCount; }
    [[nodiscard]] const LibraryCounts& counts() const { return m_counts; }
    [[nodiscard]] bool hasLibrary() const { return m_services.store != nullptr; }
    [[nodiscard]] bool hasLoaded() const { return m_hasLoaded; }
    [[nodiscard]] bool isLoading() const { return m_isLoading; }
    [[nodiscard]] bool isReadingLibrary() const { return m_isReadingLibrary; }
    [[nodiscard]] bool hasListingFailed() const { return m_listingError.has_value(); }
    [[nodiscard]] bool isSyncing() const { return m_isSyncing; }
    [[nodiscard]] const std::optional<BookmarkSyncProgress>& syncProgress() const { return m_syncProgress; }
    // Of the last sync of this process that completed.
    [[nodiscard]] const std::optional<BookmarkSyncSummary>& lastSyncSummary() const
    {
        return m_lastSyncSummary;
    }
    // By name, authors by the number of their bookmarks.
    [[nodiscard]] const QList<TagSummary>& tagSummaries() const { return m_organization.tagSummaries; }
    [[nodiscard]] const QList<FolderSummary>& folderSummaries() const
    {
        return m_organization.folderSummaries;
    }
    [[nodiscard]] const QList<BookmarkRule>& rules() const { return m_organization.rules; }
    [[nodiscard]] const QList<AuthorSummary>& authorSummaries() const
    {
        return m_organization.authorSummaries;
    }
    // Of the open post, newest first.
    [[nodiscard]] const QList<BookmarkHighlight>& highlights() const { return m_highlights; }
    // The posts whose thread is being fetched.
    [[nodiscard]] const QSet<qint64>& enrichingThreadBookmarkIDs() const
    {
        return m_enrichingThreadBookmarkIDs;
    }
    [[nodiscard]] const QList<SyncRun>& syncRuns() const { return m_syncRuns; }
    [[nodiscard]] const QList<SyncLogEntry>& syncLogEntries() const { return m_syncLogEntries; }
    [[nodiscard]] bool xConfigured() const { return m_xConfigured; }
    [[nodiscard]] bool isAuthorizingX() const { return m_xAuthenticationSession != nullptr; }
    [[nodiscard]] const QUrl& xAuthorizationURL() const { return m_xAuthorizationURL; }
    [[nodiscard]] static QStringList xRedirectURIs() { return XOAuthService::supportedRedirectURIs; }
    [[nodiscard]] bool isWorking() const { return m_isWorking; }
    [[nodiscard]] const std::optional<QString>& statusMessage() const { return m_statusMessage; }
    [[nodiscard]] const std::optional<QString>& lastError() const { return m_lastError; }

    // The library's operations, for headless callers; absent when the library could not be opened.
    [[nodiscard]] Serial<LocalLibraryStore>* store() const { return m_services.store.get(); }

Q_SIGNALS:
    void placeChanged();
    void historyChanged();
    void libraryChanged();
    void isLoadingChanged();
    void selectionChanged();
    // openBookmark() has shown its bookmark, be it the one that the reader showed already.
    void bookmarkOpened();
    // A link from outside that is no callback of a sign-in is about to be followed.
    void linkFollowed();
    void shownPostChanged();
    void organizationChanged();
    void highlightsChanged();
    void syncChanged();
    void enrichingThreadsChanged();
    void syncRunsChanged();
    void xConfiguredChanged();
    void isAuthorizingXChanged();
    void isWorkingChanged();
    void messagesChanged();

private:
    class RunningCommand;

    // What one reading of the library lists.
    struct ListedPage
    {
        LibraryFilter filter = LibraryFilter::inbox;
        LibraryRefinements refinements;
        LibrarySort sort = LibrarySort::newest;
        qint64 page = 0;
        qint64 pageSize = 0;

        friend bool operator==(const ListedPage&, const ListedPage&) = default;
    };

    struct Organization
    {
        QList<TagSummary> tagSummaries;
        QList<FolderSummary> folderSummaries;
        QList<BookmarkRule> rules;
        QList<AuthorSummary> authorSummaries;
    };

    [[nodiscard]] QString selectionName() const { return rawValue(m_selection); }
    [[nodiscard]] QString listedFilterName() const { return rawValue(listedFilter()); }
    [[nodiscard]] QString placeBehindName() const;
    [[nodiscard]] qint64 selectedBookmarkIDNumber() const { return m_selectedBookmarkID.value_or(0); }
    [[nodiscard]] QVariant shownPostVariant() const;
    [[nodiscard]] QString libraryFilterName() const { return rawValue(m_libraryFilter); }
    [[nodiscard]] QString librarySortName() const { return rawValue(m_librarySort); }
    [[nodiscard]] QVariant countsVariant() const { return toJSON(m_counts).toVariant(); }
    [[nodiscard]] QVariant syncProgressVariant() const;
    [[nodiscard]] QVariantList syncRunsVariant() const;
    [[nodiscard]] QVariantList syncLogEntriesVariant() const;
    [[nodiscard]] QString statusMessageText() const { return m_statusMessage.value_or(QString()); }
    [[nodiscard]] QString lastErrorText() const { return m_lastError.value_or(QString()); }

    [[nodiscard]] QString listingErrorText() const { return m_listingError.value_or(QString()); }

    void setStatusMessage(const QString& message);
    void setLastError(std::optional<QString> error);
    // The shared failure step of all commands.
    void fail(const std::exception_ptr& failure);
    void failUnlessDeleted(const QUuid& generation, const std::exception_ptr& failure);
    void setLoading(bool isLoading);
    void setWorking(bool isWorking);
    void setXConfigured(bool isConfigured);
    QCoro::Task<bool> isXConnected();
    QCoro::Task<> saveXUsername(QString username);
    using ChangeXCredentials =
        std::function<std::optional<XCredentials>(const std::optional<XCredentials>& stored)>;
    QCoro::Task<> changeXCredentials(ChangeXCredentials change);
    void startXAuthentication(const PendingXAuthorization& pending);
    void endXAuthentication(WebAuthenticationSession::Outcome outcome);
    void setXAuthentication(std::unique_ptr<WebAuthenticationSession> session, const QUrl& page = {});
    QCoro::Task<> abandonXAuthorization();
    QCoro::Task<> completeXAuthorization(QUrl callbackURL);
    void forgetLibrary();
    void showSyncProgress(const BookmarkSyncProgress& progress);
    void endSync();
    QCoro::Task<> readPreferences();
    QCoro::Task<> connectAndSync();
    QCoro::Task<> awaitLeftBehind(SyncCancellation cancellation);
    QCoro::Task<> endRequests(int round);
    QCoro::Task<> endVaultCalls();
    [[nodiscard]] std::optional<Instant> lastSyncAttempt() const;

    [[nodiscard]] NavigationSnapshot currentPlace() const;
    void rememberNavigation();
    void closeReader();
    void tellPlace();
    QCoro::Task<> refreshDestination();

    [[nodiscard]] ListedPage listedPage() const;
    QCoro::Task<> openPage(qint64 page);
    QCoro::Task<> readLibrary();
    QCoro::Task<bool> readPage();
    QCoro::Task<> readForWaiting(std::shared_ptr<QPromise<void>> waiting);
    void endLibraryReading();
    void dropMissingSelection();

    [[nodiscard]] std::optional<Bookmark> listedBookmark(qint64 id) const;
    QCoro::Task<std::optional<Bookmark>> readBookmark(qint64 id);
    QCoro::Task<> reopenReader(qint64 id);
    QCoro::Task<> reloadReaderBookmark();
    QCoro::Task<> loadReaderContext(qint64 bookmarkID);
    void setHighlights(const QList<BookmarkHighlight>& highlights);
    void setReaderBookmark(const std::optional<Bookmark>& bookmark);
    void showPost();
    QCoro::Task<> presentShownPost();

    MirelServices m_services;
    Clock m_now;
    AppPreferences m_preferences;
    BookmarkListModel m_bookmarks;
    BookmarkListModel m_mediaBookmarks;
    SidebarDestination m_selection = SidebarDestination::today;
    LibraryFilter m_libraryFilter = LibraryFilter::inbox;
    LibrarySort m_librarySort = LibrarySort::newest;
    LibraryRefinements m_refinements;
    qint64 m_page = 0;
    qint64 m_libraryResultCount = 0;
    LibraryCounts m_counts;
    bool m_hasLoaded = false;
    bool m_isLoading = false;
    bool m_isReadingLibrary = false;
    // Ends with the reading that follows the one under way; null when nobody waits for it.
    std::shared_ptr<QPromise<void>> m_waitingRefresh;
    std::optional<QString> m_listingError;
    std::optional<qint64> m_selectedBookmarkID;
    QSet<qint64> m_selectedBookmarkIDs;
    std::optional<Bookmark> m_readerBookmark;
    // Grows whenever the user opens, closes or changes what is in the reader.
    quint64 m_readerGeneration = 0;
    std::optional<Bookmark> m_shownBookmark;
    std::optional<PostPresentation> m_shownPresentation;
    bool m_isPresenting = false;
    // Oldest first.
    QList<NavigationSnapshot> m_navigationHistory;
    Organization m_organization;
    QList<BookmarkHighlight> m_highlights;
    bool m_isSyncing = false;
    std::optional<BookmarkSyncProgress> m_syncProgress;
    // Of the sync under way.
    // Of the sync that began last.
    SyncCancellation m_syncCancellation;
    QFuture<void> m_syncEnded;
    std::optional<BookmarkSyncSummary> m_lastSyncSummary;
    QSet<qint64> m_enrichingThreadBookmarkIDs;
    QList<SyncRun> m_syncRuns;
    QList<SyncLogEntry> m_syncLogEntries;
    bool m_xConfigured = false;
    bool m_isWorking = false;
    // Present while the browser shows `m_xAuthorizationURL`.
    std::unique_ptr<WebAuthenticationSession> m_xAuthenticationSession;
    QUrl m_xAuthorizationURL;
    // The attempt that began last; null when it was given up.
    QUuid m_xAuthorizationAttempt;
    std::optional<QString> m_statusMessage;
    std::optional<QString> m_lastError;
    QUuid m_connectionValidationGeneration = QUuid::createUuid();
    // Renewed when all data is deleted.
    QUuid m_libraryGeneration = QUuid::createUuid();
    bool m_isPreparingSearch = false;
    bool m_isShuttingDown = false;
    bool m_isDeletingData = false;
    int m_runningCommands = 0;
};

} // namespace mirel
