#include "mirelctl/HistoryCommand.h"

#include "mirelctl/Answer.h"
#include "mirelctl/SyncRunText.h"

namespace mirel {

namespace {

// As many as the store gives at once.
constexpr qint64 mostEntries = 5000;
constexpr qint64 usualRuns = 20;

QStringList rowOfRun(const SyncRun& run)
{
    return {idText(run.id), timeText(run.createdAt), rawValue(run.kind), statusText(run), outcomeText(run)};
}

QStringList rowOfEntry(const SyncLogEntry& entry)
{
    QString message = entry.message;
    if (entry.received && entry.requested && entry.cumulative) {
        message += QStringLiteral(": %1 of at most %2 received, %3 so far")
                       .arg(*entry.received)
                       .arg(*entry.requested)
                       .arg(*entry.cumulative);
    }
    return {timeText(entry.createdAt), rawValue(entry.event), message};
}

} // namespace

void HistoryCommand::describe(CommandSyntax& syntax)
{
    syntax.addOptionalOperand(reference);
    syntax.addNumber(QStringLiteral("limit"), limit, 1);
    syntax.addCheck([this] {
        if (reference && limit)
            throw CommandError(
                QStringLiteral("The option --limit is for the list of syncs, not for one sync."));
    });
}

QByteArray HistoryCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    if (reference) {
        const auto entries = withLibrary(model, [wanted = *reference](LocalLibraryStore& library) {
            return library.syncLogEntries(requireRun(library, wanted).id, mostEntries);
        });
        return answerList(surroundings, entries, QStringLiteral("Nothing was noted of that sync."),
                          rowOfEntry);
    }
    const auto runs = withLibrary(model, [most = limit.value_or(usualRuns)](LocalLibraryStore& library) {
        return library.syncRuns(most);
    });
    return answerList(surroundings, runs, QStringLiteral("There was no sync yet."), rowOfRun);
}

} // namespace mirel
