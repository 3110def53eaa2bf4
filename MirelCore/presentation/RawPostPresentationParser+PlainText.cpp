#include "presentation/RawJSONLookup.h"
#include "presentation/RawPostPresentationParser.h"
#include "support/Text.h"

#include <QRegularExpression>

namespace mirel {

using namespace rawJSONLookup;

namespace {

bool isNewline(QChar character)
{
    const char16_t unit = character.unicode();
    return (unit >= 0x000A && unit <= 0x000D) || unit == 0x0085 || unit == 0x2028 || unit == 0x2029;
}

// Every character that ends a line ends one of its own: between "\r" and "\n" stands an empty line.
QList<QStringView> splitLines(QStringView text)
{
    QList<QStringView> lines;
    qsizetype begin = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!isNewline(text[i]))
            continue;
        lines.append(text.sliced(begin, i - begin));
        begin = i + 1;
    }
    lines.append(text.sliced(begin));
    return lines;
}

// The lines that are not blank, trimmed.
QStringList contentLines(const QList<QStringView>& lines)
{
    QStringList contents;
    for (const QStringView line : lines) {
        if (const auto content = nilIfBlank(line))
            contents.append(*content);
    }
    return contents;
}

// A line of a paragraph's length. The number of code units, which is never smaller, spares most of the
// counting.
bool isLong(const QString& line)
{
    constexpr qsizetype characters = 40;
    return line.size() >= characters && characterCount(line) >= characters;
}

bool isShort(const QString& line)
{
    constexpr qsizetype characters = 100;
    constexpr qsizetype words = 13;
    return (line.size() <= characters || characterCount(line) <= characters) &&
           QStringView(line).split(u' ', Qt::SkipEmptyParts).size() < words;
}

// A rule of thumb: a short line between long ones.
bool isHeading(const QStringList& contents, qsizetype position)
{
    const QString& line = contents[position];
    if (line.endsWith(u'.') || line.endsWith(u'!') || !isShort(line))
        return false;
    const bool isLast = position + 1 == contents.size();
    return !isLast && isLong(contents[position + 1]) && (position == 0 || isLong(contents[position - 1]));
}

ArticleBlock lineBlock(qsizetype lineNumber, const QStringList& contents, qsizetype position)
{
    using Kind = ArticleBlock::Kind;
    static const QRegularExpression orderedItem(QStringLiteral("^\\d+[.)]\\s+"),
                                                QRegularExpression::UseUnicodePropertiesOption);
    const QString& line = contents[position];
    ArticleBlock block;
    block.id = QStringLiteral("fallback-%1").arg(lineNumber);
    if (line.startsWith(QStringLiteral("- ")) || line.startsWith(QStringLiteral("* "))) {
        block.kind = Kind::unorderedListItem;
        block.text = line.sliced(2);
    } else if (const auto match = orderedItem.match(line); match.hasMatch()) {
        block.kind = Kind::orderedListItem;
        block.text = line.sliced(match.capturedEnd());
    } else if (line.startsWith(QStringLiteral("> "))) {
        block.kind = Kind::blockquote;
        block.text = line.sliced(2);
    } else {
        block.kind = isHeading(contents, position) ? Kind::headingTwo : Kind::paragraph;
        block.text = line;
    }
    return block;
}

QString withoutFences(QString code)
{
    static const QRegularExpression opening(QStringLiteral("^```[^\\n]*\\n"));
    static const QRegularExpression closing(QStringLiteral("\\n```$"));
    return code.remove(opening).remove(closing);
}

QList<ArticleBlock> embeddedPostBlocks(const RawJSONValue& article)
{
    QList<ArticleBlock> blocks;
    for (const RawJSONValue post : elementsAt(article, {"entities", "tweets"})) {
        const auto id = firstString(post, {"id", "tweet_id"});
        if (!id)
            continue;
        ArticleBlock block;
        block.id = QStringLiteral("fallback-embed-") + *id;
        block.kind = ArticleBlock::Kind::embeddedPost;
        block.embeddedPostID = id;
        blocks.append(block);
    }
    return blocks;
}

QList<ArticleBlock> codeBlocks(const RawJSONValue& article)
{
    QList<ArticleBlock> blocks;
    qsizetype position = -1;
    for (const RawJSONValue element : elementsAt(article, {"entities", "code"})) {
        ++position;
        const auto code = element.isString() ? element.string() : firstString(element, {"content", "code"});
        const QString text = withoutFences(code.value_or(QString()));
        if (text.isEmpty())
            continue;
        ArticleBlock block;
        block.id = QStringLiteral("fallback-code-%1").arg(position);
        block.kind = ArticleBlock::Kind::code;
        block.text = text;
        blocks.append(block);
    }
    return blocks;
}

} // namespace

QList<ArticleBlock> RawPostPresentationParser::fallbackAtomicBlocks(const RawJSONValue& article) const
{
    QList<ArticleBlock> blocks = embeddedPostBlocks(article);
    for (const QString& key : mediaKeys(elementsAt(article, {"media_entities"}))) {
        const auto item = mediaItem(key);
        if (!item)
            continue;
        ArticleBlock block;
        block.id = QStringLiteral("fallback-media-") + key;
        block.kind = ArticleBlock::Kind::media;
        block.text = item->altText.value_or(QString());
        block.media = {*item};
        blocks.append(block);
    }
    return blocks + codeBlocks(article);
}

QList<ArticleBlock> heuristicBlocks(const QString& text, const QList<ArticleBlock>& atomicBlocks)
{
    const QList<QStringView> lines = splitLines(text);
    const QStringList contents = contentLines(lines);
    QList<ArticleBlock> blocks;
    qsizetype position = 0;
    qsizetype placed = 0;
    for (qsizetype number = 0; number < lines.size(); ++number) {
        if (!lines[number].trimmed().isEmpty())
            blocks.append(lineBlock(number, contents, position++));
        // A line of nothing but white space stands where the editor had an atomic block.
        else if (!lines[number].isEmpty() && placed < atomicBlocks.size())
            blocks.append(atomicBlocks[placed++]);
    }
    return blocks + atomicBlocks.sliced(placed);
}

} // namespace mirel
