#include "mirelctl/SearchCommands.h"

#include "library/LibrarySearchContext.h"
#include "library/LibrarySearchFinding.h"
#include "mirelctl/Answer.h"

namespace mirel {

namespace {

QStringList matchingTweetIDs(MirelAppModel& model, const SearchCommand& command)
{
    return withLibrary(model, [command](LocalLibraryStore& library) {
        const auto tweetIDs = library.tweetIDs();
        QStringList matching;
        for (const qint64 id : library.matchingBookmarkIDs(
                 command.listing.filter, {.query = command.expression}, command.listing.sort)) {
            if (const auto found = tweetIDs.constFind(id); found != tweetIDs.cend())
                matching.append(*found);
        }
        return matching;
    });
}

QByteArray idsText(const QStringList& ids, const CommandSurroundings& surroundings)
{
    if (surroundings.json)
        return writeJSON(QJsonArray::fromStringList(ids)) + '\n';
    QByteArray text;
    for (const QString& id : ids)
        text += oneLine(id).toUtf8() + '\n';
    return text;
}

// Below a match: each condition with the fields that it matched in.
QString findingsText(const QList<LibrarySearchFinding>& findings)
{
    QList<QStringList> rows;
    for (const LibrarySearchFinding& finding : findings) {
        const QString fields = finding.fields.join(QStringLiteral(", "));
        rows.append({QStringLiteral("   "), finding.condition,
                     !finding.matches   ? QStringLiteral("no match")
                     : fields.isEmpty() ? QStringLiteral("matches everything")
                                        : fields});
    }
    return alignedLines(rows, {});
}

// What a search found, as it comes in.
class SearchOutput
{
public:
    SearchOutput(const SearchCommand& command, const CommandSurroundings& surroundings)
        : m_surroundings(surroundings)
        , m_explains(command.why)
        , m_expression(LibrarySearchExpression::parse(command.expression))
    {
    }

    void take(const Bookmark& bookmark)
    {
        if (m_surroundings.json)
            m_items.append(encodeJSON(bookmark));
        else
            m_rows.append(rowOf(bookmark, m_surroundings.columns));
        if (!m_explains)
            return;
        const auto findings = explain(m_expression, LibrarySearchContext(bookmark));
        if (m_surroundings.json)
            m_why.append(encodeJSON(findings));
        else
            m_findings.append(findingsText(findings));
    }

    [[nodiscard]] QByteArray toUtf8(qint64 totalCount) const
    {
        if (m_surroundings.json) {
            return "{\"items\":" + m_items.toUtf8() + ",\"totalCount\":" + QByteArray::number(totalCount) +
                   (m_explains ? ",\"why\":" + m_why.toUtf8() : QByteArray()) + "}\n";
        }
        const QByteArray text = listingText(m_rows, m_surroundings.columns);
        return m_findings.isEmpty() ? text : interleaved(text);
    }

private:
    [[nodiscard]] QByteArray interleaved(const QByteArray& text) const
    {
        QByteArray result;
        const QByteArrayList lines = text.split('\n');
        for (qsizetype i = 0; i < m_findings.size(); ++i)
            result += lines[i] + '\n' + m_findings[i].toUtf8();
        return result;
    }

    const CommandSurroundings& m_surroundings;
    bool m_explains;
    LibrarySearchExpression m_expression;
    JSONArrayText m_items;
    JSONArrayText m_why;
    QList<QStringList> m_rows;
    QStringList m_findings;
};

void remarkOn(const SearchCommand& command, qint64 totalCount, const CommandSurroundings& surroundings)
{
    if (surroundings.json)
        return;
    const QString understood = LibrarySearchExpression::parse(command.expression).toString();
    if (understood != command.expression)
        surroundings.remark(understood.isEmpty() ? QStringLiteral("Understood as everything.")
                                                 : QStringLiteral("Understood as: ") + understood);
    surroundings.remark(totalCount == 1 ? QStringLiteral("1 match.")
                                        : QStringLiteral("%1 matches.").arg(totalCount));
}

} // namespace

void SearchCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperand(QStringLiteral("a search expression"), expression);
    listing.describe(syntax);
    syntax.addSwitch(QStringLiteral("ids"), ids);
    syntax.addSwitch(QStringLiteral("why"), why);
    syntax.addCheck([this] {
        if (ids && why)
            throw CommandError(QStringLiteral("The options --ids and --why do not go together."));
    });
}

QByteArray SearchCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    if (ids)
        return idsText(matchingTweetIDs(model, *this), surroundings);
    qint64 totalCount = 0;
    SearchOutput output(*this, surroundings);
    const auto readBatch = [&](qint64 limit, qint64 offset) {
        const auto page = withLibrary(model, [command = *this, limit, offset](LocalLibraryStore& library) {
            return library.searchBookmarksPage(command.listing.filter, {.query = command.expression}, limit,
                                               offset, command.listing.sort);
        });
        totalCount = page.totalCount;
        return page.items;
    };
    forEachBookmark(listing, readBatch, [&](const Bookmark& bookmark) { output.take(bookmark); });
    remarkOn(*this, totalCount, surroundings);
    return output.toUtf8(totalCount);
}

void CountCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperand(QStringLiteral("a search expression"), expression);
    syntax.addChoice(QStringLiteral("filter"), filter);
}

QByteArray CountCommand::run(MirelAppModel& model, const CommandSurroundings&) const
{
    const qint64 count = withLibrary(model, [command = *this](LocalLibraryStore& library) {
        return library.countBookmarks(command.filter, {.query = command.expression});
    });
    return QByteArray::number(count) + '\n';
}

} // namespace mirel
