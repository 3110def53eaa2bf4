#include "model/BookmarkListModel.h"

#include "model/DisplayText.h"
#include "support/Text.h"

#include <QSet>

namespace mirel {

namespace {

// The first characters of the first and the last word.
QString initials(const QString& name)
{
    const QStringList words = name.split(u' ', Qt::SkipEmptyParts);
    if (words.isEmpty())
        return {};
    QString result = firstCharacters(words.first(), 1);
    if (words.size() > 1)
        result += firstCharacters(words.last(), 1);
    return result.toUpper();
}

// A still image of a media item: a video without one shows none.
QUrl stillImageURL(const MediaItem& item)
{
    if (item.previewURL)
        return *item.previewURL;
    if (const auto thumbnail = item.youtubeThumbnailURL())
        return *thumbnail;
    return item.kind == MediaKind::photo ? item.url : QUrl();
}

QVariantList labelRows(const QList<Tag>& tags)
{
    QVariantList rows;
    for (const Tag& tag : tags) {
        rows.append(QVariantMap{
            {QStringLiteral("name"), tag.name},
            {QStringLiteral("colorHex"), tag.colorHex},
        });
    }
    return rows;
}

} // namespace

QVariantList BookmarkListModel::mediaRows(const QList<MediaItem>& media)
{
    QVariantList rows;
    for (const MediaItem& item : media) {
        rows.append(QVariantMap{
            {QStringLiteral("url"), stillImageURL(item)},
            {QStringLiteral("kind"), rawValue(item.kind)},
            {QStringLiteral("altText"), item.altText.value_or(QString())},
            {QStringLiteral("width"), item.width.value_or(0)},
            {QStringLiteral("height"), item.height.value_or(0)},
        });
    }
    return rows;
}

int BookmarkListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant BookmarkListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    return value(m_bookmarks[index.row()], role);
}

QVariant BookmarkListModel::value(const Bookmark& bookmark, int role)
{
    switch (role) {
    case BookmarkIDRole:
        return bookmark.id;
    case TweetIDRole:
        return bookmark.tweetID;
    case AuthorIDRole:
        return bookmark.author.id;
    case AuthorNameRole:
        return bookmark.author.name;
    case AuthorUsernameRole:
        return bookmark.author.username;
    case AuthorInitialsRole:
        return initials(bookmark.author.name);
    case ProfileImageURLRole:
        return bookmark.author.profileImageURL.value_or(QUrl());
    case CreatedAtRole:
        return bookmark.createdAt.toDateTime().toLocalTime();
    case TitleRole:
        return displayText(bookmark.contentTitle.value_or(QString()));
    case Qt::DisplayRole:
    case TextRole:
        return displayText(bookmark.contentText.value_or(bookmark.text));
    case SourceURLRole:
        return bookmark.sourceURL;
    case MediaRole:
        return mediaRows(bookmark.media);
    case MetricsRole:
        return toJSON(bookmark.metrics).toVariant();
    case LabelsRole:
        return labelRows(bookmark.tags);
    case IsReadRole:
        return bookmark.isRead;
    case IsFavoriteRole:
        return bookmark.isFavorite;
    default:
        return {};
    }
}

QVariantMap BookmarkListModel::values(const Bookmark& bookmark)
{
    QVariantMap result;
    const QHash<int, QByteArray> roles = names();
    for (auto role = roles.cbegin(); role != roles.cend(); ++role)
        result.insert(QString::fromLatin1(*role), value(bookmark, role.key()));
    return result;
}

int BookmarkListModel::rowOf(qint64 bookmarkID) const
{
    const auto found = std::find_if(m_bookmarks.cbegin(), m_bookmarks.cend(),
                                    [bookmarkID](const Bookmark& each) { return each.id == bookmarkID; });
    return found == m_bookmarks.cend() ? -1 : static_cast<int>(found - m_bookmarks.cbegin());
}

qint64 BookmarkListModel::idAt(int row) const
{
    return row >= 0 && row < count() ? m_bookmarks[row].id : 0;
}

QHash<int, QByteArray> BookmarkListModel::roleNames() const
{
    return names();
}

QHash<int, QByteArray> BookmarkListModel::names()
{
    return {
        {BookmarkIDRole, "bookmarkID"},
        {TweetIDRole, "tweetID"},
        {AuthorIDRole, "authorID"},
        {AuthorNameRole, "authorName"},
        {AuthorUsernameRole, "authorUsername"},
        {AuthorInitialsRole, "authorInitials"},
        {ProfileImageURLRole, "profileImageURL"},
        {CreatedAtRole, "createdAt"},
        {TitleRole, "title"},
        {TextRole, "text"},
        {SourceURLRole, "sourceURL"},
        {MediaRole, "media"},
        {MetricsRole, "metrics"},
        {LabelsRole, "labels"},
        {IsReadRole, "isRead"},
        {IsFavoriteRole, "isFavorite"},
    };
}

void BookmarkListModel::setBookmarks(const QList<Bookmark>& bookmarks)
{
    const int oldCount = count();
    removeMissing(bookmarks);
    QSet<qint64> known;
    for (const Bookmark& bookmark : m_bookmarks)
        known.insert(bookmark.id);
    const auto isKnown = [&known](const Bookmark& bookmark) { return known.contains(bookmark.id); };
    int row = 0;
    while (row < bookmarks.size()) {
        const auto next = std::find_if(bookmarks.cbegin() + row, bookmarks.cend(), isKnown);
        const int newRows = static_cast<int>(next - bookmarks.cbegin()) - row;
        if (newRows > 0)
            insertBookmarks(row, bookmarks.sliced(row, newRows));
        else
            place(row, bookmarks[row]);
        row += std::max(newRows, 1);
    }
    if (count() != oldCount)
        Q_EMIT countChanged();
}

void BookmarkListModel::replaceBookmark(const Bookmark& bookmark)
{
    if (const int row = rowOf(bookmark.id); row >= 0)
        place(row, bookmark);
}

// Whoever shows the rows has less to do for many neighbours at once than for one after the other; so it is
// for those that come.
void BookmarkListModel::removeMissing(const QList<Bookmark>& bookmarks)
{
    QSet<qint64> kept;
    for (const Bookmark& bookmark : bookmarks)
        kept.insert(bookmark.id);
    int last = count() - 1;
    while (last >= 0) {
        int first = last + 1;
        while (first > 0 && !kept.contains(m_bookmarks[first - 1].id))
            --first;
        if (first <= last) {
            beginRemoveRows({}, first, last);
            m_bookmarks.remove(first, last - first + 1);
            endRemoveRows();
        }
        last = first - 2;
    }
}

void BookmarkListModel::insertBookmarks(int row, const QList<Bookmark>& bookmarks)
{
    beginInsertRows({}, row, row + static_cast<int>(bookmarks.size()) - 1);
    m_bookmarks.insert(row, bookmarks.size(), Bookmark());
    std::copy(bookmarks.cbegin(), bookmarks.cend(), m_bookmarks.begin() + row);
    endInsertRows();
}

// Moves the row of that bookmark here, where it is not yet, and brings it up to date. The rows before stand
// as they should.
void BookmarkListModel::place(int row, const Bookmark& bookmark)
{
    const auto found = std::find_if(m_bookmarks.cbegin() + row, m_bookmarks.cend(),
                                    [&bookmark](const Bookmark& other) { return other.id == bookmark.id; });
    Q_ASSERT(found != m_bookmarks.cend());
    const int oldRow = static_cast<int>(found - m_bookmarks.cbegin());
    if (oldRow != row) {
        beginMoveRows({}, oldRow, oldRow, {}, row);
        m_bookmarks.move(oldRow, row);
        endMoveRows();
    }
    if (m_bookmarks[row] != bookmark) {
        m_bookmarks[row] = bookmark;
        Q_EMIT dataChanged(index(row), index(row));
    }
}

} // namespace mirel
