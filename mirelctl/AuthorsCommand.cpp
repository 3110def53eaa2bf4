#include "mirelctl/AuthorsCommand.h"

#include "mirelctl/Answer.h"

namespace mirel {

void AuthorsCommand::describe(CommandSyntax& syntax)
{
    syntax.addOptionalOperand(search);
}

QByteArray AuthorsCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    const auto summaries =
        withLibrary(model, [text = search.value_or(QString())](LocalLibraryStore& library) {
            return library.authorSummaries(text);
        });
    return answerList(surroundings, summaries, QStringLiteral("No authors."),
                      [](const AuthorSummary& summary) {
                          return QStringList{
                              counted(summary.bookmarkCount, QStringLiteral("bookmark")),
                              u'@' + summary.author.username,
                              summary.author.name,
                          };
                      });
}

} // namespace mirel
