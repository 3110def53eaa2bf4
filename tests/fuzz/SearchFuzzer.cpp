#include "library/LibrarySearchContext.h"
#include "library/LibrarySearchFinding.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace mirel {
namespace {

// A bookmark that holds `text` in every part, so that conditions meet something of themselves.
Bookmark bookmarkOf(const QString& text)
{
    Bookmark bookmark;
    bookmark.text = text;
    bookmark.contentTitle = text;
    bookmark.note = text;
    bookmark.author.name = text;
    bookmark.author.username = text;
    bookmark.quotedPost = QuotedPost{.text = text};
    bookmark.tags = {Tag{.name = text, .slug = text}};
    bookmark.folder = Folder{.name = text, .slug = text};
    return bookmark;
}

// Every query means something, its normal form means the same and is its own, and what explains a search
// agrees with it.
void search(const QString& query)
{
    const auto expression = LibrarySearchExpression::parse(query);
    const QString printed = expression.toString();
    const auto again = LibrarySearchExpression::parse(printed);
    if (again != expression || again.toString() != printed)
        std::abort();

    const Bookmark bookmark = bookmarkOf(query.left(query.size() / 2));
    const auto quoted = [&bookmark](const Bookmark&) {
        return PresentationFacts{.quoted = PresentationFacts::Quoted{.title = bookmark.text}};
    };
    const LibrarySearchContext context(bookmark, quoted);
    if (expression.matches(context) != again.matches(context))
        std::abort();
    const QList<LibrarySearchFinding> findings = explain(expression, context);
    if (findings.size() != static_cast<qsizetype>(expression.conditions().size()))
        std::abort();
    for (const LibrarySearchFinding& finding : findings) {
        if (!finding.matches && !finding.fields.isEmpty())
            std::abort();
    }
}

} // namespace
} // namespace mirel

// The input is taken both as UTF-8 and as UTF-16, where halves of surrogate pairs come up.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto bytes = QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    mirel::search(QString::fromUtf8(bytes));
    QString units(bytes.size() / 2, QChar());
    std::memcpy(units.data(), bytes.constData(), static_cast<std::size_t>(units.size()) * 2);
    mirel::search(units);
    return 0;
}
