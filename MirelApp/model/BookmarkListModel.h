#pragma once

#include "records/Bookmark.h"

#include <QAbstractListModel>

namespace mirel {

// The bookmarks of the current page as rows for a list. A row keeps its identity: a refresh removes, inserts,
// moves and updates rows instead of rebuilding them, so that a list view keeps its place and its delegates.
class BookmarkListModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        BookmarkIDRole = Qt::UserRole + 1,
        TweetIDRole,
        AuthorIDRole,
        AuthorNameRole,
        AuthorUsernameRole,
        AuthorInitialsRole,
        ProfileImageURLRole,
        // The post's own date, a QDateTime in local time.
        CreatedAtRole,
        // The title of an article, empty for other posts.
        TitleRole,
        // Plain text for display, with X's HTML escapes resolved; an article's own text when it is known,
        // since its post says no more than a link.
        TextRole,
        SourceURLRole,
        // A list of maps with `url` (a still image), `kind`, `altText`, `width`, `height`.
        MediaRole,
        // A map with the six counters by their names.
        MetricsRole,
        // A list of maps with `name` and `colorHex`.
        LabelsRole,
        IsReadRole,
        IsFavoriteRole,
    };
    Q_ENUM(Role)

    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    // Every role of `bookmark` by its name.
    [[nodiscard]] static QVariantMap values(const Bookmark& bookmark);
    // As in MediaRole.
    [[nodiscard]] static QVariantList mediaRows(const QList<MediaItem>& media);

    // Where the bookmark stands; -1 when it is not among the rows.
    [[nodiscard]] Q_INVOKABLE int rowOf(qint64 bookmarkID) const;

    // The id of the bookmark in that row; 0 when there is no such row.
    [[nodiscard]] Q_INVOKABLE qint64 idAt(int row) const;

    [[nodiscard]] int count() const { return static_cast<int>(m_bookmarks.size()); }
    [[nodiscard]] const QList<Bookmark>& bookmarks() const { return m_bookmarks; }

    // Makes the rows equal to `bookmarks`.
    void setBookmarks(const QList<Bookmark>& bookmarks);
    // Renews the row of that bookmark, if there is one.
    void replaceBookmark(const Bookmark& bookmark);

Q_SIGNALS:
    void countChanged();

private:
    [[nodiscard]] static QVariant value(const Bookmark& bookmark, int role);
    [[nodiscard]] static QHash<int, QByteArray> names();
    void removeMissing(const QList<Bookmark>& bookmarks);
    void insertBookmarks(int row, const QList<Bookmark>& bookmarks);
    void place(int row, const Bookmark& bookmark);

    QList<Bookmark> m_bookmarks;
};

} // namespace mirel
