#include "model/MirelAppModel.h"

#include "library/SQLiteStoreError.h"
#include "model/DisplayText.h"
#include "model/RunningCommand.h"

namespace mirel {

std::optional<Bookmark> MirelAppModel::selectedBookmark() const
{
    if (!m_selectedBookmarkID)
        return std::nullopt;
    if (m_readerBookmark && m_readerBookmark->id == *m_selectedBookmarkID)
        return m_readerBookmark;
    return listedBookmark(*m_selectedBookmarkID);
}

std::optional<Bookmark> MirelAppModel::listedBookmark(qint64 id) const
{
    for (const BookmarkListModel* const list : {&m_bookmarks, &m_mediaBookmarks}) {
        if (const int row = list->rowOf(id); row >= 0)
            return list->bookmarks()[row];
    }
    return std::nullopt;
}

// Absent when there is no live bookmark with that id.
QCoro::Task<std::optional<Bookmark>> MirelAppModel::readBookmark(qint64 id)
{
    co_return co_await m_services.store->call([id](LocalLibraryStore& library) -> std::optional<Bookmark> {
        try {
            return library.bookmark(id);
        } catch (const SQLiteStoreError& error) {
            if (error.errorCase() == SQLiteStoreError::Case::notFound)
                return std::nullopt;
            throw;
        }
    });
}

void MirelAppModel::selectBookmark(std::optional<qint64> id)
{
    if (m_selectedBookmarkID == id)
        return;
    m_selectedBookmarkID = id;
    showPost();
}

QCoro::Task<> MirelAppModel::openBookmark(qint64 id)
{
    if (!m_services.store)
        co_return;
    const RunningCommand running(*this);
    if (!m_readerBookmark || m_readerBookmark->id != id) {
        rememberNavigation();
        setHighlights({});
    }
    ++m_readerGeneration;
    m_selectedBookmarkID = id;
    showPost();
    try {
        std::optional<Bookmark> bookmark = listedBookmark(id);
        if (!bookmark)
            bookmark = co_await readBookmark(id);
        // The user may have gone on while the read ran.
        if (!bookmark || m_selectedBookmarkID != id)
            co_return;
        setReaderBookmark(bookmark);
        Q_EMIT bookmarkOpened();
        co_await loadReaderContext(id);
    } catch (...) {
        if (m_selectedBookmarkID == id)
            fail(std::current_exception());
    }
}

QCoro::Task<> MirelAppModel::reopenReader(qint64 id)
{
    const quint64 generation = m_readerGeneration;
    std::optional<Bookmark> bookmark;
    try {
        bookmark = co_await readBookmark(id);
    } catch (const std::exception&) {
        // The list stands where the user was; that is enough.
    }
    if (!bookmark || generation != m_readerGeneration)
        co_return;
    if (m_readerBookmark != bookmark)
        setReaderBookmark(bookmark);
    co_await loadReaderContext(id);
}

QCoro::Task<> MirelAppModel::loadReaderContext(qint64 bookmarkID)
{
    const auto isOpen = [this, bookmarkID] { return m_readerBookmark && m_readerBookmark->id == bookmarkID; };
    if (!m_services.store || !isOpen())
        co_return;
    try {
        const QList<BookmarkHighlight> highlights = co_await m_services.store->call(
            [bookmarkID](LocalLibraryStore& library) { return library.highlights(bookmarkID); });
        if (isOpen())
            setHighlights(highlights);
    } catch (...) {
        if (isOpen())
            fail(std::current_exception());
    }
}

void MirelAppModel::setHighlights(const QList<BookmarkHighlight>& highlights)
{
    if (m_highlights == highlights)
        return;
    m_highlights = highlights;
    Q_EMIT highlightsChanged();
}

QCoro::Task<> MirelAppModel::reloadReaderBookmark()
{
    if (!m_services.store || !m_readerBookmark)
        co_return;
    const qint64 id = m_readerBookmark->id;
    try {
        const std::optional<Bookmark> bookmark = co_await readBookmark(id);
        const bool isStillOpen = m_readerBookmark && m_readerBookmark->id == id;
        if (!isStillOpen || m_readerBookmark == bookmark)
            co_return;
        if (!bookmark)
            m_selectedBookmarkID.reset();
        setReaderBookmark(bookmark);
    } catch (...) {
        fail(std::current_exception());
    }
}

void MirelAppModel::setReaderBookmark(const std::optional<Bookmark>& bookmark)
{
    m_readerBookmark = bookmark;
    showPost();
}

// Follows the fields that decide which post is on the screen.
void MirelAppModel::showPost()
{
    Q_EMIT selectionChanged();
    const std::optional<Bookmark> bookmark = m_readerBookmark ? m_readerBookmark : selectedBookmark();
    if (bookmark == m_shownBookmark)
        return;
    const bool isAnother = !bookmark || !m_shownBookmark || bookmark->id != m_shownBookmark->id;
    m_shownBookmark = bookmark;
    if (isAnother)
        m_shownPresentation.reset();
    Q_EMIT shownPostChanged();
    presentShownPost();
}

// Reading a large envelope takes too long for the main thread. One at a time: of the posts that are passed
// over meanwhile, only the last is presented.
QCoro::Task<> MirelAppModel::presentShownPost()
{
    if (!m_services.store || m_isPresenting)
        co_return;
    const RunningCommand running(*this);
    m_isPresenting = true;
    std::optional<Bookmark> presented;
    while (m_shownBookmark && presented != m_shownBookmark) {
        presented = m_shownBookmark;
        const auto present = [bookmark = *presented](LocalLibraryStore&) {
            return PostPresentation(bookmark);
        };
        try {
            PostPresentation presentation = co_await m_services.store->call(present);
            if (presented != m_shownBookmark)
                continue;
            m_shownPresentation = std::move(presentation);
            Q_EMIT shownPostChanged();
        } catch (...) {
            fail(std::current_exception());
        }
    }
    m_isPresenting = false;
}

QVariant MirelAppModel::shownPostVariant() const
{
    if (!m_shownBookmark)
        return QVariant::fromValue(nullptr);
    QVariantMap post = BookmarkListModel::values(*m_shownBookmark);
    post[QStringLiteral("kind")] = m_shownPresentation ? m_shownPresentation->displayLabel() : QString();
    return post;
}

} // namespace mirel
