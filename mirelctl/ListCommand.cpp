#include "mirelctl/ListCommand.h"

#include "mirelctl/Library.h"

namespace mirel {

QByteArray ListCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    const auto readBatch = [&](qint64 limit, qint64 offset) {
        return withLibrary(
            model, [filter = listing.filter, sort = listing.sort, limit, offset](LocalLibraryStore& library) {
                return library.listBookmarks(filter, limit, offset, sort);
            });
    };
    if (surroundings.json) {
        JSONArrayText bookmarks;
        forEachBookmark(listing, readBatch,
                        [&](const Bookmark& bookmark) { bookmarks.append(encodeJSON(bookmark)); });
        return bookmarks.toUtf8() + '\n';
    }
    QList<QStringList> rows;
    forEachBookmark(listing, readBatch,
                    [&](const Bookmark& bookmark) { rows.append(rowOf(bookmark, surroundings.columns)); });
    return listingText(rows, surroundings.columns);
}

} // namespace mirel
