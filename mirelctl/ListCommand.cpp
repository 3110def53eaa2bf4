#include "mirelctl/ListCommand.h"

#include "mirelctl/Library.h"
#include "mirelctl/TextOutput.h"
#include "model/DisplayText.h"

#include <QSet>

namespace mirel {

namespace {

constexpr qint64 batchSize = 500;
constexpr int widestHandle = 16;
constexpr int narrowestText = 20;

// Calls `take` with each bookmark of the listing, in order. Read in batches; a bookmark that moves down
// between two of them, because another process added one above it, is taken once.
template <typename Take>
void forEachBookmark(MirelAppModel& model, const ListCommand& command, Take take)
{
    QSet<qint64> taken;
    qint64 offset = command.offset;
    for (qint64 left = command.limit; left > 0;) {
        const qint64 size = std::min(left, batchSize);
        const QList<Bookmark> batch = readLibrary(
            model, [filter = command.filter, sort = command.sort, size, offset](LocalLibraryStore& library) {
                return library.listBookmarks(filter, size, offset, sort);
            });
        for (const Bookmark& bookmark : batch) {
            if (taken.contains(bookmark.id))
                continue;
            taken.insert(bookmark.id);
            take(bookmark);
        }
        if (batch.size() < size)
            return;
        offset += size;
        left -= size;
    }
}

// One line of the listing, its columns not yet aligned.
struct Row
{
    QString id;
    QString date;
    QString marks;
    QString handle;
    QString text;
};

QString marksOf(const Bookmark& bookmark)
{
    return QString(bookmark.isRead ? u' ' : u'\u2022') + QString(bookmark.isFavorite ? u'\u2605' : u' ');
}

Row rowOf(const Bookmark& bookmark)
{
    const QString& title = bookmark.contentTitle ? *bookmark.contentTitle : bookmark.text;
    return {
        .id = oneLine(bookmark.tweetID),
        .date = bookmark.createdAt.toDateTime().toLocalTime().date().toString(Qt::ISODate),
        .marks = marksOf(bookmark),
        .handle = u'@' + oneLine(bookmark.author.username),
        .text = oneLine(displayText(title)),
    };
}

QString lineOf(const Row& row, int idWidth, int handleWidth, std::optional<int> columns)
{
    const QString handle = truncatedToWidth(row.handle, handleWidth);
    const QString start = paddedToWidth(row.id, idWidth) + QStringLiteral("  ") + row.date +
                          QStringLiteral("  ") + row.marks + QStringLiteral("  ") +
                          paddedToWidth(handle, handleWidth) + QStringLiteral("  ");
    if (!columns)
        return start + row.text;
    return start + truncatedToWidth(row.text, std::max(narrowestText, *columns - displayWidth(start)));
}

QString textOf(const QList<Row>& rows, std::optional<int> columns)
{
    int idWidth = 0;
    int handleWidth = 0;
    for (const Row& row : rows) {
        idWidth = std::max(idWidth, displayWidth(row.id));
        handleWidth = std::max(handleWidth, displayWidth(row.handle));
    }
    if (columns)
        handleWidth = std::min(handleWidth, widestHandle);
    QString text;
    for (const Row& row : rows)
        text += lineOf(row, idWidth, handleWidth, columns) + u'\n';
    return text;
}

} // namespace

QByteArray ListCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    if (surroundings.json) {
        QByteArray array;
        forEachBookmark(model, *this, [&](const Bookmark& bookmark) {
            array += (array.isEmpty() ? '[' : ',') + encodeJSON(bookmark);
        });
        return array.isEmpty() ? QByteArrayLiteral("[]\n") : array + "]\n";
    }
    QList<Row> rows;
    forEachBookmark(model, *this, [&](const Bookmark& bookmark) { rows.append(rowOf(bookmark)); });
    if (rows.isEmpty())
        return QByteArrayLiteral("No bookmarks.\n");
    return textOf(rows, surroundings.columns).toUtf8();
}

} // namespace mirel
