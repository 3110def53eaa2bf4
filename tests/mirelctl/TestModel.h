#pragma once

#include "credentials/InMemoryCredentialVault.h"
#include "model/MirelAppModel.h"
#include "testing/TemporaryLibrary.h"
#include "x/XAPIError.h"

#include <QCoro/QCoroTimer>
#include <QTimer>

#include <atomic>

namespace mirel::testing {

// An X whose bookmarks stand in pages, for the commands. A page that is no page hangs until it is canceled.
class PagedX : public XDirectAPI
{
public:
    explicit PagedX(QList<std::optional<QList<SyncedBookmark>>> pages)
        : m_pages(std::move(pages))
    {
    }

    QCoro::Task<XBookmarkPage> bookmarks(std::optional<QString> paginationToken, qint64) override
    {
        const qsizetype index = paginationToken ? paginationToken->toLongLong() : 0;
        const auto page = m_pages[index];
        if (!page) {
            hangs = true;
            co_await waitForCancel();
            throw XAPIError::http(499, QStringLiteral("canceled"));
        }
        const bool isLast = index + 1 == m_pages.size();
        co_return XBookmarkPage{.items = *page,
                                .nextToken =
                                    isLast ? std::nullopt : std::optional(QString::number(index + 1)),
                                .resultCount = page->size()};
    }

    QCoro::Task<XUser> currentUser() override
    {
        requireOnline();
        if (isSilent)
            co_await waitForCancel();
        co_return XUser{QStringLiteral("42"), QStringLiteral("Ada"), QStringLiteral("ada")};
    }

    QCoro::Task<XPage<XBookmarkFolder>> bookmarkFolders(std::optional<QString>, qint64) override
    {
        co_return XPage<XBookmarkFolder>{.items = folders};
    }
    QCoro::Task<XPage<QString>> folderPostIDs(QString, std::optional<QString>, qint64) override
    {
        co_return XPage<QString>{.items = postsInFolders};
    }
    QCoro::Task<PostMetrics> metrics(QString) override
    {
        requireOnline();
        if (isSilent) {
            hangs = true;
            co_await waitForCancel();
            throw XAPIError::http(499, QStringLiteral("canceled"));
        }
        co_return std::as_const(counters);
    }
    QCoro::Task<QList<ThreadPost>> conversation(QString, QString) override
    {
        requireOnline();
        co_return std::as_const(thread);
    }
    QCoro::Task<> deleteBookmark(QString tweetID) override
    {
        requireOnline();
        removed.append(tweetID);
        co_return;
    }

    void cancel() { m_cancellation.setInterval(0); }

    std::atomic<bool> hangs = false;
    bool isOffline = false;
    // Answers only once it is canceled.
    bool isSilent = false;

    QList<XBookmarkFolder> folders;
    // In each folder.
    QStringList postsInFolders;
    QList<ThreadPost> thread;
    PostMetrics counters;
    // The posts that were taken out of the bookmarks.
    QStringList removed;

private:
    void requireOnline() const
    {
        if (isOffline)
            throw XAPIError::http(503, QStringLiteral("down"));
    }
    QCoro::Task<> waitForCancel()
    {
        m_cancellation.start(std::chrono::hours(1));
        co_await m_cancellation;
    }

    QList<std::optional<QList<SyncedBookmark>>> m_pages;
    QTimer m_cancellation;
};

// Ends what PagedX lets hang.
class CancelingTransport : public HTTPTransport
{
public:
    explicit CancelingTransport(PagedX& x)
        : m_x(x)
    {
    }
    QCoro::Task<HTTPResponse> data(HTTPRequest) override
    {
        throw std::logic_error("No command sends itself.");
    }
    void cancelAll() override { m_x.cancel(); }

private:
    PagedX& m_x;
};

// A model over a temporary library and a PagedX, with a connected account unless `hasCredentials` is false.
struct TestModel
{
    explicit TestModel(QList<std::optional<QList<SyncedBookmark>>> pages = {}, bool hasCredentials = true)
    {
        MirelServices services;
        services.store = std::make_unique<Serial<LocalLibraryStore>>(
            std::make_shared<ServiceThread>(QStringLiteral("library")), [this] { return library.open(); });
        const auto thread = std::make_shared<ServiceThread>(QStringLiteral("services"));
        services.vault = std::make_unique<Serial<CredentialVault>>(
            thread, [hasCredentials]() -> std::unique_ptr<CredentialVault> {
                return std::make_unique<InMemoryCredentialVault>(
                    hasCredentials ? std::optional(XCredentials{}) : std::nullopt);
            });
        services.x = std::make_unique<Serial<XDirectAPI>>(
            thread, [&]() -> std::unique_ptr<XDirectAPI> { return std::make_unique<PagedX>(pages); });
        x = static_cast<PagedX*>(&services.x->unguarded());
        services.transport =
            std::make_unique<Serial<HTTPTransport>>(thread, [&]() -> std::unique_ptr<HTTPTransport> {
                return std::make_unique<CancelingTransport>(*x);
            });
        services.syncService = std::make_unique<Serial<MirelSyncService>>(thread, [&] {
            return std::make_unique<MirelSyncService>(*x, *services.store, library.clock.clock());
        });
        model = std::make_unique<MirelAppModel>(std::move(services));
    }

    TemporaryLibrary library;
    // Lives as long as the model.
    PagedX* x = nullptr;
    std::unique_ptr<MirelAppModel> model;
};

} // namespace mirel::testing
