#pragma once

#include "mirelctl/CommandSurroundings.h"
#include "mirelctl/Library.h"
#include "mirelctl/References.h"
#include "mirelctl/TextOutput.h"
#include "support/JSONCoding.h"

namespace mirel {

// Standard output of a command that ends with `record`: that as JSON, or `sentence` for people.
template <typename Record>
[[nodiscard]] QByteArray answer(const CommandSurroundings& surroundings, const Record& record,
                                const QString& sentence)
{
    return surroundings.json ? encodeJSON(record) + '\n' : oneLine(sentence).toUtf8() + '\n';
}

// Standard output of a command that lists `records`: those as JSON, or for people one line each, which
// `rowOf(record)` gives in columns, or `sentenceForNone`.
template <typename Record, typename RowOf>
[[nodiscard]] QByteArray answerList(const CommandSurroundings& surroundings, const QList<Record>& records,
                                    const QString& sentenceForNone, const RowOf& rowOf)
{
    if (surroundings.json || records.isEmpty())
        return answer(surroundings, records, sentenceForNone);
    QList<QStringList> rows;
    for (const Record& record : records)
        rows.append(rowOf(record));
    return alignedLines(rows, surroundings.columns).toUtf8();
}

// How a command ends that changes the library.
template <typename Record>
struct Outcome
{
    Record record;
    QString sentence;
};

// Calls `file(bookmark)` for each bookmark that is named. Throws before the first when one is not there. The
// outcome has them as they are then, and the sentence ends with their number.
template <typename File>
[[nodiscard]] Outcome<QList<Bookmark>> fileBookmarks(LocalLibraryStore& library,
                                                     const QStringList& references,
                                                     const QString& sentenceStart, const File& file)
{
    const QList<Bookmark> bookmarks = requireBookmarks(library, references);
    QList<Bookmark> filed;
    for (const Bookmark& bookmark : bookmarks)
        file(bookmark);
    for (const Bookmark& bookmark : bookmarks)
        filed.append(library.bookmark(bookmark.id));
    return {filed, sentenceStart + counted(filed.size(), QStringLiteral("bookmark")) + u'.'};
}

// Standard output of a command whose `operation(LocalLibraryStore&)` returns its Outcome. Throws as
// withLibrary() does.
template <typename Operation>
[[nodiscard]] QByteArray answerOutcome(MirelAppModel& model, const CommandSurroundings& surroundings,
                                       const Operation& operation)
{
    const auto outcome = withLibrary(model, operation);
    return answer(surroundings, outcome.record, outcome.sentence);
}

} // namespace mirel
