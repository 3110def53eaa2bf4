#include "mirelctl/PostCommands.h"

#include "mirelctl/Answer.h"
#include "mirelctl/InterruptibleCommand.h"

namespace mirel {

namespace {

constexpr int nameWidth = 11;

void describePost(CommandSyntax& syntax, QString& reference)
{
    syntax.addOperand(QStringLiteral("an X post id or a post's address"), reference);
}

Bookmark named(MirelAppModel& model, const QString& reference)
{
    return withLibrary(model, [id = requireTweetID(reference)](LocalLibraryStore& library) {
        return requireBookmark(library, id);
    });
}

// Runs a command of the model for a bookmark. Throws why it failed.
template <typename Start>
void runForBookmark(MirelAppModel& model, const Start& start)
{
    // Tells why there is no connection to X, if there is none.
    requireNoFailure(model);
    // What had been done before the interruption came is no failure.
    if (runInterruptibly(model, start) && model.lastError())
        throw CommandError(QStringLiteral("The command was interrupted."));
    requireNoFailure(model);
}

QString line(const QString& counter, qint64 count)
{
    return paddedToWidth(counter, nameWidth) + QString::number(count) + u'\n';
}

QString textOf(const PostMetrics& metrics)
{
    return line(QStringLiteral("Views"), metrics.views) + line(QStringLiteral("Reposts"), metrics.reposts) +
           line(QStringLiteral("Bookmarks"), metrics.bookmarks) +
           line(QStringLiteral("Replies"), metrics.replies) + line(QStringLiteral("Quotes"), metrics.quotes) +
           line(QStringLiteral("Likes"), metrics.likes);
}

} // namespace

void ThreadCommand::describe(CommandSyntax& syntax)
{
    describePost(syntax, reference);
}

QByteArray ThreadCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    const qint64 id = named(model, reference).id;
    runForBookmark(model, [&] { return model.enrichThread(id); });
    const Bookmark bookmark = named(model, reference);
    const QString sentence = bookmark.thread.isEmpty()
                                 ? QStringLiteral("X told of no thread around that post.")
                                 : QStringLiteral("The thread has %1.")
                                       .arg(counted(bookmark.thread.size(), QStringLiteral("post")));
    return answer(surroundings, bookmark, sentence);
}

void MetricsCommand::describe(CommandSyntax& syntax)
{
    describePost(syntax, reference);
}

QByteArray MetricsCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    const qint64 id = named(model, reference).id;
    runForBookmark(model, [&] { return model.refreshMetrics(id); });
    const PostMetrics metrics = named(model, reference).metrics;
    return surroundings.json ? encodeJSON(metrics) + '\n' : textOf(metrics).toUtf8();
}

void DeleteCommand::describe(CommandSyntax& syntax)
{
    describePost(syntax, reference);
    syntax.addSwitch(QStringLiteral("keep-on-x"), keepsOnX);
}

QByteArray DeleteCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    const Bookmark bookmark = named(model, reference);
    const bool isForX =
        withLibrary(model, [](LocalLibraryStore& library) { return library.preferences().deleteFromX; });
    const bool fromX = isForX && !keepsOnX;
    runForBookmark(model, [&] { return model.deleteBookmark(bookmark, fromX); });
    return answer(surroundings, bookmark,
                  fromX ? QStringLiteral("Deleted the bookmark here and on X.")
                        : QStringLiteral("Deleted the bookmark here; it stays on X."));
}

} // namespace mirel
