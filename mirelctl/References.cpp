#include "mirelctl/References.h"

#include "library/OrganizationNames.h"
#include "library/SQLiteStoreError.h"
#include "mirelctl/CommandError.h"
#include "x/PostReference.h"

namespace mirel {

namespace {

template <typename Record>
std::optional<Record> named(const QList<Record>& records, const QString& name)
{
    const QString stored = storedName(name);
    std::optional<Record> found;
    for (const Record& record : records) {
        if (record.name == stored)
            return record;
        if (!found && record.name.compare(stored, Qt::CaseInsensitive) == 0)
            found = record;
    }
    return found;
}

std::optional<qint64> number(const QString& digits)
{
    bool isNumber = false;
    const qint64 id = digits.toLongLong(&isNumber);
    return isNumber ? std::optional(id) : std::nullopt;
}

QString withoutMark(const QString& reference)
{
    return reference.mid(reference.startsWith(u'#') ? 1 : 0);
}

template <typename Record>
std::optional<Record> withID(const QList<Record>& records, const QString& digits)
{
    const auto id = number(digits);
    const auto found =
        std::find_if(records.begin(), records.end(), [&](const Record& each) { return each.id == id; });
    return found != records.end() ? std::optional(*found) : std::nullopt;
}

// `thing` is what the user calls such a record.
template <typename Record>
Record require(const QList<Record>& records, const QString& reference, const QString& thing)
{
    if (const auto found = named(records, reference))
        return *found;
    if (reference.startsWith(u'#')) {
        if (const auto found = withID(records, reference.sliced(1)))
            return *found;
    }
    throw CommandError(QStringLiteral("There is no %1 \"%2\".").arg(thing, reference));
}

// What `requireOne(library, reference)` returns for each reference.
template <typename RequireOne>
auto requireEach(LocalLibraryStore& library, const QStringList& references, RequireOne requireOne)
{
    QList<decltype(requireOne(library, QString()))> found;
    QSet<qint64> ids;
    for (const QString& reference : references) {
        const auto record = requireOne(library, reference);
        if (!ids.contains(record.id))
            found.append(record);
        ids.insert(record.id);
    }
    return found;
}

} // namespace

QString requireTweetID(const QString& reference)
{
    const auto id = tweetID(reference);
    if (!id)
        throw CommandError(QStringLiteral("Enter a valid X post URL or tweet ID."));
    return *id;
}

Bookmark requireBookmark(LocalLibraryStore& library, const QString& reference)
{
    const auto bookmark = library.bookmark(requireTweetID(reference));
    if (!bookmark)
        throw CommandError(QStringLiteral("That X post is not in the local library."));
    return *bookmark;
}

QList<Bookmark> requireBookmarks(LocalLibraryStore& library, const QStringList& references)
{
    return requireEach(library, references, requireBookmark);
}

Tag requireLabel(LocalLibraryStore& library, const QString& reference)
{
    return require(library.tags(), reference, QStringLiteral("label"));
}

QList<Tag> requireLabels(LocalLibraryStore& library, const QStringList& references)
{
    return requireEach(library, references, requireLabel);
}

Folder requireFolder(LocalLibraryStore& library, const QString& reference)
{
    return require(library.folders(), reference, QStringLiteral("folder"));
}

QList<Folder> requireFolders(LocalLibraryStore& library, const QStringList& references)
{
    return requireEach(library, references, requireFolder);
}

BookmarkRule requireRule(LocalLibraryStore& library, const QString& reference)
{
    return require(library.rules(), reference, QStringLiteral("rule"));
}

QList<BookmarkRule> requireRules(LocalLibraryStore& library, const QStringList& references)
{
    return requireEach(library, references, requireRule);
}

QList<BookmarkHighlight> requireHighlights(LocalLibraryStore& library, const QStringList& references)
{
    return requireEach(library, references, [](LocalLibraryStore& store, const QString& reference) {
        const auto found = withID(store.highlights(), withoutMark(reference));
        if (!found)
            throw CommandError(QStringLiteral("There is no highlight \"%1\".").arg(reference));
        return *found;
    });
}

SyncRun requireRun(LocalLibraryStore& library, const QString& reference)
{
    try {
        if (const auto id = number(withoutMark(reference)))
            return library.syncRun(*id);
    } catch (const SQLiteStoreError& error) {
        if (error.errorCase() != SQLiteStoreError::Case::notFound)
            throw;
    }
    throw CommandError(QStringLiteral("There is no sync \"%1\".").arg(reference));
}

std::optional<Tag> labelNamed(LocalLibraryStore& library, const QString& name)
{
    return named(library.tags(), name);
}

std::optional<Folder> folderNamed(LocalLibraryStore& library, const QString& name)
{
    return named(library.folders(), name);
}

QString idText(qint64 id)
{
    return u'#' + QString::number(id);
}

QString counted(qint64 count, const QString& thing)
{
    const QString number = QString::number(count) + u' ' + thing;
    return count == 1 ? number : number + u's';
}

} // namespace mirel
