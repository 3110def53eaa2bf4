#pragma once

#include "credentials/CredentialVault.h"
#include "library/LocalLibraryStore.h"
#include "model/BookmarkListModel.h"
#include "support/Serial.h"
#include "transport/HTTPTransport.h"
#include "x/MirelSyncService.h"
#include "x/XDirectAPI.h"

#include <QObject>
#include <QProcessEnvironment>
#include <QUuid>
#include <QVariant>

#include <atomic>
#include <functional>
#include <memory>

namespace mirel {

// Every service of the program. Each is present from the start or absent for the whole run; a command that
// needs an absent one does nothing. `transport`, `vault`, `x` and `syncService` share one thread.
struct MirelServices
{
    std::unique_ptr<Serial<LocalLibraryStore>> store;
    std::unique_ptr<Serial<CredentialVault>> vault;
    std::unique_ptr<Serial<HTTPTransport>> transport;
    std::unique_ptr<Serial<XDirectAPI>> x;
    std::unique_ptr<Serial<MirelSyncService>> syncService;
};

// How live() builds the services.
struct LiveOptions
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Makes the vault, on the services thread. Empty: the system's keyring.
    std::function<std::unique_ptr<CredentialVault>()> makeVault;
};

// The application without its screens: the state that they show and the commands that they call. Lives on
// the main thread. Commands never throw: a success is told in `statusMessage`, a failure in `lastError`.
class MirelAppModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(mirel::BookmarkListModel* bookmarks READ bookmarkList CONSTANT)
    Q_PROPERTY(QString libraryFilter READ libraryFilterName NOTIFY placeChanged)
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
    // The last reading of the library failed; `lastError` told why, and older rows may be shown.
    Q_PROPERTY(bool hasListingFailed READ hasListingFailed NOTIFY isLoadingChanged)
    Q_PROPERTY(bool isSyncing READ isSyncing NOTIFY syncChanged)
    // A map with the fields of BookmarkSyncProgress while a sync runs, else null.
    Q_PROPERTY(QVariant syncProgress READ syncProgressVariant NOTIFY syncChanged)
    Q_PROPERTY(bool xConfigured READ xConfigured NOTIFY xConfiguredChanged)
    // Empty: nothing to tell.
    Q_PROPERTY(QString statusMessage READ statusMessageText NOTIFY messagesChanged)
    Q_PROPERTY(QString lastError READ lastErrorText NOTIFY messagesChanged)

public:
    // `lastError` tells why services are absent.
    explicit MirelAppModel(MirelServices services, std::optional<QString> lastError = {});

    // Ends what runs on other threads. Call shutDown() first when commands may be running.
    ~MirelAppModel() override;

    // The model over the user's library. Never throws: a library that cannot be opened yields a model
    // without services, with the error in `lastError`.
    [[nodiscard]] static std::unique_ptr<MirelAppModel> live(const LiveOptions& options = {});

    // Fills the model from the library, and then, without being awaited, finds out what is connected.
    QCoro::Task<> start();

    // Cancels the requests in flight, and those that begin meanwhile, and returns when no command is running.
    // Calls to the keyring are given a moment to end.
    QCoro::Task<> shutDown();

    // Reloads the current page and the counts.
    QCoro::Task<> refreshLibrary();
    // Shows one mailbox, from its first page.
    QCoro::Task<> openMailbox(LibraryFilter filter);
    QCoro::Task<> setLibrarySort(LibrarySort sort);
    QCoro::Task<> nextPage();
    QCoro::Task<> previousPage();

    // Runs a sync. Without a kind it is `initial` on an empty library, else `manual`.
    QCoro::Task<> syncNow(std::optional<SyncRun::Kind> kind, bool fullScan);
    QCoro::Task<> refreshSyncRuns();

    // Finds out whether X works. The last check to start decides, whichever ends last.
    QCoro::Task<> refreshCredentialState();

    // The commands as screens call them: nobody waits for their end.
    Q_INVOKABLE void requestSync(bool fullScan);
    // Ends the running sync after what is being stored; what has arrived stays.
    Q_INVOKABLE void cancelSync();
    Q_INVOKABLE void requestRefresh();
    Q_INVOKABLE void requestNextPage();
    Q_INVOKABLE void requestPreviousPage();
    // Names as in `libraryFilter` and `librarySort`; an unknown one is ignored.
    Q_INVOKABLE void requestMailbox(const QString& filter);
    Q_INVOKABLE void requestSort(const QString& sort);
    Q_INVOKABLE void dismissError();
    Q_INVOKABLE void dismissStatus();

    [[nodiscard]] BookmarkListModel* bookmarkList() { return &m_bookmarks; }
    [[nodiscard]] const QList<Bookmark>& bookmarks() const { return m_bookmarks.bookmarks(); }
    [[nodiscard]] LibraryFilter libraryFilter() const { return m_libraryFilter; }
    [[nodiscard]] LibrarySort librarySort() const { return m_librarySort; }
    [[nodiscard]] qint64 page() const { return m_page; }
    // At least 1.
    [[nodiscard]] qint64 pageCount() const;
    [[nodiscard]] qint64 libraryResultCount() const { return m_libraryResultCount; }
    [[nodiscard]] const LibraryCounts& counts() const { return m_counts; }
    [[nodiscard]] bool hasLibrary() const { return m_services.store != nullptr; }
    [[nodiscard]] bool hasLoaded() const { return m_hasLoaded; }
    [[nodiscard]] bool isLoading() const { return m_isLoading; }
    [[nodiscard]] bool hasListingFailed() const { return m_hasListingFailed; }
    [[nodiscard]] bool isSyncing() const { return m_isSyncing; }
    [[nodiscard]] const std::optional<BookmarkSyncProgress>& syncProgress() const { return m_syncProgress; }
    // Of the last sync of this process that completed.
    [[nodiscard]] const std::optional<BookmarkSyncSummary>& lastSyncSummary() const
    {
        return m_lastSyncSummary;
    }
    [[nodiscard]] const QList<SyncRun>& syncRuns() const { return m_syncRuns; }
    [[nodiscard]] const QList<SyncLogEntry>& syncLogEntries() const { return m_syncLogEntries; }
    [[nodiscard]] bool xConfigured() const { return m_xConfigured; }
    [[nodiscard]] const std::optional<QString>& statusMessage() const { return m_statusMessage; }
    [[nodiscard]] const std::optional<QString>& lastError() const { return m_lastError; }

    // The library's operations, for headless callers; absent when the library could not be opened.
    [[nodiscard]] Serial<LocalLibraryStore>* store() const { return m_services.store.get(); }

Q_SIGNALS:
    void placeChanged();
    void libraryChanged();
    void isLoadingChanged();
    void syncChanged();
    void xConfiguredChanged();
    void messagesChanged();
    void becameIdle();

private:
    class RunningCommand;

    [[nodiscard]] QString libraryFilterName() const { return rawValue(m_libraryFilter); }
    [[nodiscard]] QString librarySortName() const { return rawValue(m_librarySort); }
    [[nodiscard]] QVariant countsVariant() const { return toJSON(m_counts).toVariant(); }
    [[nodiscard]] QVariant syncProgressVariant() const;
    [[nodiscard]] QString statusMessageText() const { return m_statusMessage.value_or(QString()); }
    [[nodiscard]] QString lastErrorText() const { return m_lastError.value_or(QString()); }

    void setStatusMessage(const QString& message);
    void setLastError(std::optional<QString> error);
    // The shared failure step of all commands.
    void fail(const std::exception_ptr& failure);
    void setLoading(bool isLoading);
    void setXConfigured(bool isConfigured);
    void showSyncProgress(const BookmarkSyncProgress& progress);
    void endSync();
    QCoro::Task<> endRequests();
    QCoro::Task<> endVaultCalls();
    QCoro::Task<> endSyncEarly();
    QCoro::Task<> openPage(qint64 page);

    MirelServices m_services;
    BookmarkListModel m_bookmarks;
    LibraryFilter m_libraryFilter = LibraryFilter::all;
    LibrarySort m_librarySort = LibrarySort::newest;
    qint64 m_page = 0;
    qint64 m_libraryResultCount = 0;
    LibraryCounts m_counts;
    bool m_hasLoaded = false;
    bool m_isLoading = false;
    // New rows have arrived since the reading under way began.
    bool m_reloadsAgain = false;
    bool m_hasListingFailed = false;
    bool m_isSyncing = false;
    std::optional<BookmarkSyncProgress> m_syncProgress;
    // Shared with the sync under way, which ends at its next page once it is true.
    std::shared_ptr<std::atomic_bool> m_isSyncCanceled = std::make_shared<std::atomic_bool>(false);
    std::optional<BookmarkSyncSummary> m_lastSyncSummary;
    QList<SyncRun> m_syncRuns;
    QList<SyncLogEntry> m_syncLogEntries;
    bool m_xConfigured = false;
    std::optional<QString> m_statusMessage;
    std::optional<QString> m_lastError;
    QUuid m_connectionValidationGeneration = QUuid::createUuid();
    int m_runningCommands = 0;
};

} // namespace mirel
