#pragma once

#include "library/LocalLibraryStore.h"

#include <QStringList>

namespace mirel {

// How the arguments of commands name what is in the library. Each is looked for on the store's thread, and
// CommandError is thrown when it is not there, or what the store throws. A list has each only once.

// X's id of a post that is named by that or by its web address. Throws CommandError when it is neither.
[[nodiscard]] QString requireTweetID(const QString& reference);

// By the id of its post on X or by the post's web address.
[[nodiscard]] Bookmark requireBookmark(LocalLibraryStore& library, const QString& reference);
[[nodiscard]] QList<Bookmark> requireBookmarks(LocalLibraryStore& library, const QStringList& references);

// By name, without regard to case unless two differ in that alone, or by "#" and the id. A name wins.
[[nodiscard]] Tag requireLabel(LocalLibraryStore& library, const QString& reference);
[[nodiscard]] QList<Tag> requireLabels(LocalLibraryStore& library, const QStringList& references);
[[nodiscard]] Folder requireFolder(LocalLibraryStore& library, const QString& reference);
[[nodiscard]] QList<Folder> requireFolders(LocalLibraryStore& library, const QStringList& references);
[[nodiscard]] BookmarkRule requireRule(LocalLibraryStore& library, const QString& reference);
[[nodiscard]] QList<BookmarkRule> requireRules(LocalLibraryStore& library, const QStringList& references);
// By the id, with or without "#".
[[nodiscard]] QList<BookmarkHighlight> requireHighlights(LocalLibraryStore& library,
                                                         const QStringList& references);

// By the id, with or without "#".
[[nodiscard]] SyncRun requireRun(LocalLibraryStore& library, const QString& reference);

// Absent when nothing has that name.
[[nodiscard]] std::optional<Tag> labelNamed(LocalLibraryStore& library, const QString& name);
[[nodiscard]] std::optional<Folder> folderNamed(LocalLibraryStore& library, const QString& name);

// "#7".
[[nodiscard]] QString idText(qint64 id);

// The names of records as a sentence lists them: `"Design", "Work"`.
template <typename Record>
[[nodiscard]] QString quotedNames(const QList<Record>& records)
{
    QStringList names;
    for (const Record& record : records)
        names.append(u'"' + record.name + u'"');
    return names.join(QStringLiteral(", "));
}

template <typename Record>
[[nodiscard]] QList<qint64> idsOf(const QList<Record>& records)
{
    QList<qint64> ids;
    for (const Record& record : records)
        ids.append(record.id);
    return ids;
}

// "1 bookmark" or "3 bookmarks".
[[nodiscard]] QString counted(qint64 count, const QString& thing);

} // namespace mirel
