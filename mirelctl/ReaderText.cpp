#include "mirelctl/ReaderText.h"

#include "mirelctl/BookmarkText.h"
#include "presentation/PostPresentation.h"

namespace mirel {

namespace {

constexpr QLatin1StringView quoteMargin{"> "};

// The block's text with each link's address behind what it links. A range that lies outside of the text adds
// nothing.
QString textWithLinks(const ArticleBlock& block)
{
    QString text = block.text;
    QList<ArticleLinkRange> links;
    for (const ArticleLinkRange& link : block.links) {
        if (link.offset >= 0 && link.offset <= text.size() && link.length > 0 &&
            link.length <= text.size() - link.offset)
            links.append(link);
    }
    // From the back, so that the places in front stay where they are.
    std::stable_sort(links.begin(), links.end(), [](const auto& left, const auto& right) {
        return left.offset + left.length > right.offset + right.length;
    });
    for (const ArticleLinkRange& link : links)
        text.insert(link.offset + link.length, QStringLiteral(" <") + absoluteString(link.url) + u'>');
    return text;
}

// Writes articles, block by block, behind a margin.
class ArticleWriter
{
public:
    ArticleWriter(BookmarkText& text, const QList<EmbeddedPostPreview>& embeddedPosts, QString margin)
        : m_text(text)
        , m_embeddedPosts(embeddedPosts)
        , m_margin(std::move(margin))
    {
    }

    void write(const QList<ArticleBlock>& blocks)
    {
        for (const ArticleBlock& block : blocks) {
            m_number = block.kind == ArticleBlock::Kind::orderedListItem ? m_number + 1 : 0;
            write(block);
        }
    }

private:
    void write(const ArticleBlock& block)
    {
        using enum ArticleBlock::Kind;
        switch (block.kind) {
        case paragraph:
            return writeMarked(block, QString());
        case headingOne:
            return writeMarked(block, QStringLiteral("# "));
        case headingTwo:
            return writeMarked(block, QStringLiteral("## "));
        case headingThree:
            return writeMarked(block, QStringLiteral("### "));
        case unorderedListItem:
            return writeMarked(block, QStringLiteral("- "));
        case orderedListItem:
            return writeMarked(block, QString::number(m_number) + QStringLiteral(". "));
        case blockquote:
            return writeQuoted(textWithLinks(block));
        case divider:
            return m_text.addParagraphs(QStringLiteral("---"), m_margin, m_margin);
        case code:
            return m_text.addLiteral(block.text, m_margin + QStringLiteral("    "));
        case embeddedPost:
            return writeEmbeddedPost(block);
        case media:
            return writeMedia(block);
        }
        Q_UNREACHABLE();
    }

    // The lines behind the first are indented as deep as the mark.
    void writeMarked(const ArticleBlock& block, const QString& mark)
    {
        m_text.addParagraphs(textWithLinks(block), m_margin + mark, m_margin + QString(mark.size(), u' '));
    }

    void writeQuoted(const QString& text)
    {
        m_text.addParagraphs(text, m_margin + quoteMargin, m_margin + quoteMargin);
    }

    void writeEmbeddedPost(const ArticleBlock& block)
    {
        const QString id = block.embeddedPostID.value_or(QString());
        const auto post = std::find_if(m_embeddedPosts.begin(), m_embeddedPosts.end(),
                                       [&](const EmbeddedPostPreview& each) { return each.tweetID == id; });
        QString text = QStringLiteral("[post %1]").arg(id);
        if (post != m_embeddedPosts.end() && post->username)
            text =
                QStringLiteral("[post] ") + authorText(post->authorName.value_or(QString()), *post->username);
        if (post != m_embeddedPosts.end())
            text += QStringLiteral(": ") + post->text;
        writeQuoted(text);
    }

    void writeMedia(const ArticleBlock& block)
    {
        QStringList lines;
        for (const MediaItem& item : block.media)
            lines.append(QStringLiteral("[%1]").arg(mediaText(item)));
        // The text of a cover is its description, which stands in the line already.
        const bool isTold = !block.media.isEmpty() && block.media.first().altText == block.text;
        if (!block.text.isEmpty() && !isTold)
            lines.append(block.text);
        if (lines.isEmpty())
            lines.append(QStringLiteral("[media]"));
        m_text.addParagraphs(lines.join(u'\n'), m_margin, m_margin);
    }

    BookmarkText& m_text;
    const QList<EmbeddedPostPreview>& m_embeddedPosts;
    QString m_margin;
    // Of the item in the ordered list that is being written.
    int m_number = 0;
};

QString linkText(const ExternalLinkPreview& link)
{
    const QString address = absoluteString(link.url);
    return link.title ? *link.title + QStringLiteral(" <") + address + u'>' : address;
}

void addQuotedContent(BookmarkText& text, const QuotedContentPresentation& content, const QuotedPost& post)
{
    const auto add = [&](const QString& paragraphs) {
        text.addParagraphs(paragraphs, quoteMargin, quoteMargin);
    };
    add(post.author ? authorText(post.author->name, post.author->username) : QStringLiteral("Quoted post"));
    add(content.title.value_or(QString()));
    if (content.articleBlocks.isEmpty())
        add(content.previewText.value_or(QString()));
    ArticleWriter(text, content.embeddedPosts, quoteMargin).write(content.articleBlocks);
    for (const ExternalLinkPreview& link : content.externalLinks)
        add(linkText(link));
    // Those of the blocks stand there already.
    for (const MediaItem& item : content.articleBlocks.isEmpty() ? content.media : post.media)
        add(u'[' + mediaText(item) + u']');
}

// The text of a post that is no article, and its thread.
void addPlainPost(BookmarkText& text, const Bookmark& bookmark)
{
    text.addParagraphs(bookmark.contentText.value_or(bookmark.text));
    for (const ThreadPost& post : bookmark.thread) {
        if (post.tweetID != bookmark.tweetID)
            text.addParagraphs(post.text);
    }
}

} // namespace

QByteArray readerText(const Bookmark& bookmark, const QList<BookmarkHighlight>& highlights,
                      std::optional<int> columns)
{
    const PostPresentation presentation(bookmark);
    BookmarkText text(columns);
    text.addHead(bookmark);
    text.addLine(presentation.displayLabel());
    text.addLine(absoluteString(bookmark.sourceURL));
    text.addParagraphs(bookmark.contentTitle.value_or(QString()));
    ArticleWriter(text, presentation.embeddedPosts, {}).write(presentation.articleBlocks);
    if (presentation.articleBlocks.isEmpty())
        addPlainPost(text, bookmark);
    if (presentation.quotedContent && bookmark.quotedPost)
        addQuotedContent(text, *presentation.quotedContent, *bookmark.quotedPost);
    for (const ExternalLinkPreview& link : presentation.externalLinks)
        text.addField(QStringLiteral("Link"), linkText(link));
    if (presentation.articleBlocks.isEmpty()) {
        for (const MediaItem& item : bookmark.media)
            text.addField(QStringLiteral("Media"), mediaText(item));
    }
    text.addOwnFields(bookmark);
    for (const BookmarkHighlight& highlight : highlights)
        text.addField(QStringLiteral("Highlight"), highlight.selectedText);
    return text.toUtf8();
}

} // namespace mirel
