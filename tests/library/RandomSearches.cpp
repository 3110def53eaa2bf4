#include "library/RandomSearches.h"

#include "library/LibrarySearchContext.h"
#include "library/SearchableText.h"

namespace mirel::testing {

namespace {

QStringList valuesOf(const QString& key)
{
    if (key == u"has") {
        return {QStringLiteral("media"),         QStringLiteral("no-media"),      QStringLiteral("nomedia"),
                QStringLiteral("without-media"), QStringLiteral("without_media"), QStringLiteral("notes"),
                QStringLiteral("links"),         QStringLiteral("article"),       QStringLiteral("nonsense")};
    }
    if (key == u"is") {
        return {QStringLiteral("untagged"), QStringLiteral("archived"), QStringLiteral("active"),
                QStringLiteral("inbox"),    QStringLiteral("favorite"), QStringLiteral("favorited"),
                QStringLiteral("thread"),   QStringLiteral("threads"),  QStringLiteral("read"),
                QStringLiteral("unread"),   QStringLiteral("nonsense")};
    }
    if (key == u"type") {
        return {QStringLiteral("article"),       QStringLiteral("articles"), QStringLiteral("tweet"),
                QStringLiteral("tweets"),        QStringLiteral("quote"),    QStringLiteral("quotes"),
                QStringLiteral("thread"),        QStringLiteral("threads"),  QStringLiteral("link"),
                QStringLiteral("links"),         QStringLiteral("external"), QStringLiteral("external-link"),
                QStringLiteral("external_link"), QStringLiteral("video"),    QStringLiteral("videos"),
                QStringLiteral("image"),         QStringLiteral("images"),   QStringLiteral("photo"),
                QStringLiteral("photos")};
    }
    if (key == u"source") {
        return {QStringLiteral("bookmark"), QStringLiteral("bookmarks"), QStringLiteral("x"),
                QStringLiteral("other")};
    }
    return {};
}

} // namespace

RandomSearches::RandomSearches(unsigned int seed)
    : m_random(seed)
{
}

void RandomSearches::lookFor(const QList<Bookmark>& bookmarks)
{
    m_bookmarks = bookmarks;
}

LibraryRefinements RandomSearches::refinements()
{
    LibraryRefinements wanted;
    if (!m_random.chance(12))
        wanted.query = expression();
    if (!m_random.chance(3))
        return wanted;
    const auto sometimes = [this] { return m_random.chance(5); };
    if (sometimes())
        wanted.authorID = rowID();
    if (sometimes())
        wanted.contentType = m_random.oneOf(rawValues(LibraryContentType())).value;
    if (sometimes())
        wanted.folderID = rowID();
    if (sometimes())
        wanted.tagID = rowID();
    if (sometimes())
        wanted.media = m_random.oneOf(rawValues(LibraryMediaRefinement())).value;
    if (sometimes())
        wanted.hasNotes = m_random.chance(2);
    if (sometimes())
        wanted.source = LibrarySourceRefinement::xBookmarks;
    if (sometimes())
        wanted.dateFrom = date();
    if (sometimes())
        wanted.dateTo = date();
    return wanted;
}

QString RandomSearches::expression()
{
    return m_random.chance(10) ? garbage() : term(m_random.below(4));
}

QString RandomSearches::term(int depth)
{
    if (depth == 0)
        return condition();
    const auto operand = [&] { return term(depth - 1); };
    switch (m_random.below(5)) {
    case 0:
        return operand() + QStringLiteral(" OR ") + operand();
    case 1:
        return operand() + QStringLiteral(" and ") + operand();
    case 2:
        return QStringLiteral("NOT ") + operand();
    case 3:
        return u'(' + operand() + QStringLiteral(" Or ") + operand() + u')';
    default:
        return operand() + u' ' + operand();
    }
}

QString RandomSearches::condition()
{
    if (m_random.chance(2)) {
        const QString text = inSomeCase(needle());
        return m_random.chance(3) ? text : u'"' + text + u'"';
    }
    static const QStringList keys{
        QStringLiteral("tag"),  QStringLiteral("label"),  QStringLiteral("collection"),
        QStringLiteral("is"),   QStringLiteral("folder"), QStringLiteral("author"),
        QStringLiteral("has"),  QStringLiteral("is"),     QStringLiteral("type"),
        QStringLiteral("type"), QStringLiteral("url"),    QStringLiteral("source"),
        QStringLiteral("has"),  QStringLiteral("other")};
    const QString key = m_random.oneOf(keys);
    const QString text = value(key);
    const QString at = m_random.chance(8) ? QStringLiteral("@") : QString();
    return inSomeCase(key) + QStringLiteral(":\"") + at + inSomeCase(text) + at + u'"';
}

QString RandomSearches::value(const QString& key)
{
    const QStringList known = valuesOf(key);
    if (!known.isEmpty())
        return m_random.oneOf(known);
    if (m_bookmarks.isEmpty() || m_random.chance(6))
        return needle();
    const Bookmark& bookmark = m_random.oneOf(m_bookmarks);
    if (key == u"author")
        return m_random.chance(2) ? bookmark.author.username : bookmark.author.name.mid(m_random.below(3), 6);
    if (key == u"url")
        return absoluteString(bookmark.sourceURL).mid(m_random.below(12));
    const bool isFolder = key == u"folder" || key == u"collection";
    if (isFolder && bookmark.folder)
        return m_random.chance(2) ? bookmark.folder->slug : bookmark.folder->name;
    if (!isFolder && !bookmark.tags.isEmpty()) {
        const Tag& tag = m_random.oneOf(bookmark.tags);
        return m_random.chance(2) ? tag.slug : tag.name;
    }
    return QStringLiteral("work");
}

QString RandomSearches::garbage()
{
    static const QStringList pieces{
        QStringLiteral("("),      QStringLiteral(")"),       QStringLiteral("\""),   QStringLiteral(":"),
        QStringLiteral("OR"),     QStringLiteral("AND"),     QStringLiteral("not"),  QStringLiteral(" "),
        QStringLiteral("label:"), QStringLiteral(":x"),      QStringLiteral("has:"), QStringLiteral("engine"),
        QStringLiteral("@"),      QStringLiteral("label:@"), QStringLiteral("\n")};
    QString text;
    for (int i = m_random.below(9); i > 0; --i)
        text += m_random.oneOf(pieces) + (m_random.chance(2) ? QStringLiteral(" ") : QString());
    return m_random.chance(3) ? text + needle() : text;
}

QString RandomSearches::needle()
{
    if (m_bookmarks.isEmpty() || m_random.chance(10))
        return QStringLiteral("nowhere");
    const Bookmark& bookmark = m_random.oneOf(m_bookmarks);
    const LibrarySearchContext context(bookmark);
    const QString text = QString::fromUtf8(searchableText(bookmark, context.quotedContent()));
    if (m_random.chance(6)) {
        const int length = 100 + m_random.below(60);
        return text.mid(m_random.below(static_cast<int>(text.size()) + 1), length);
    }
    return text.mid(m_random.below(static_cast<int>(text.size()) + 1), 1 + m_random.below(24));
}

QString RandomSearches::inSomeCase(const QString& text)
{
    switch (m_random.below(4)) {
    case 0:
        return text.toUpper();
    case 1:
        return text.toLower();
    default:
        return text;
    }
}

std::optional<qint64> RandomSearches::rowID()
{
    return m_random.below(8);
}

std::optional<Instant> RandomSearches::date()
{
    if (m_bookmarks.isEmpty())
        return Instant();
    return m_random.oneOf(m_bookmarks).createdAt;
}

} // namespace mirel::testing
