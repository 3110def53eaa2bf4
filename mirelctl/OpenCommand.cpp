#include "mirelctl/OpenCommand.h"

#include "mirelctl/Library.h"
#include "mirelctl/ReaderText.h"
#include "mirelctl/References.h"

namespace mirel {

void OpenCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperand(QStringLiteral("an X post id or a post's address"), reference);
}

QByteArray OpenCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    using Opened = std::pair<Bookmark, QList<BookmarkHighlight>>;
    const auto [bookmark, highlights] =
        withLibrary(model, [id = requireTweetID(reference)](LocalLibraryStore& library) {
            const Bookmark found = requireBookmark(library, id);
            return Opened{found, library.highlights(found.id)};
        });
    if (surroundings.json)
        return encodeJSON(bookmark) + '\n';
    return readerText(bookmark, highlights, surroundings.columns);
}

} // namespace mirel
