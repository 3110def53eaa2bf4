#include "simulator/posts/ArticleWriter.h"

#include "simulator/posts/JSONText.h"

namespace mirel::simulator {

namespace {

const QString paragraph = QStringLiteral("unstyled");
const QString atomic = QStringLiteral("atomic");

} // namespace

ArticleWriter::ArticleWriter(const Topic& topic, RandomSource& random, QList<QByteArray> mediaKeys,
                             qint64 embeddedPost)
    : m_random(random)
    , m_prose(topic, random)
    , m_mediaKeys(std::move(mediaKeys))
    , m_embeddedPost(embeddedPost)
    , m_site(random.pick(topic.sites))
{
}

QByteArray ArticleWriter::rich(Spelling spelling)
{
    writeBlocks(2);
    return articleWith(document(spelling));
}

QByteArray ArticleWriter::plain()
{
    writeBlocks(2);
    return articleWith({});
}

QByteArray ArticleWriter::titleOnly()
{
    JSONObjectText article;
    article.text("title", m_prose.title());
    return article.json();
}

void ArticleWriter::writeBlocks(int sections)
{
    appendParagraph(4);
    for (int i = 0; i < sections; ++i)
        writeSection();
    m_blocks.append({QStringLiteral("blockquote"), m_prose.sentence(), {}, {}});
    const auto& code = Content::shared().lists.value(QStringLiteral("code"));
    appendAtomic(
        "MARKDOWN",
        JSONObjectText().text("markdown", QStringLiteral("```\n%1\n```").arg(m_random.pick(code))).json());
    appendParagraph(4);
    appendAtomic("DIVIDER", "{}");
    if (m_mediaKeys.size() > 1) {
        const QByteArray item =
            JSONObjectText().text("mediaId", QString::fromLatin1(m_mediaKeys.at(1))).json();
        const auto& captions = Content::shared().lists.value(QStringLiteral("captions"));
        appendAtomic("MEDIA", JSONObjectText()
                                  .text("caption", m_random.pick(captions))
                                  .raw("mediaItems", jsonArray({item}))
                                  .json());
    }
    appendLinkParagraph();
    appendAtomic("TWEET", JSONObjectText().text("tweetId", QString::number(m_embeddedPost)).json());
    appendParagraph(3);
}

void ArticleWriter::writeSection()
{
    const QString heading = m_random.oneIn(3) ? QStringLiteral("header-one") : QStringLiteral("header-two");
    m_blocks.append({heading, m_prose.title(), {}, {}});
    appendParagraph(m_random.between(3, 5));
    if (m_random.oneIn(2))
        appendList(QStringLiteral("unordered-list-item"), 3);
    else
        appendList(QStringLiteral("ordered-list-item"), 4);
    appendParagraph(m_random.between(3, 5));
}

void ArticleWriter::appendParagraph(int sentences)
{
    Block block{paragraph, m_prose.paragraph(sentences), {}, {}};
    const qsizetype blank = block.text.indexOf(u' ');
    static const QList<QString> styles{QStringLiteral("Bold"), QStringLiteral("Italic"),
                                       QStringLiteral("Strikethrough")};
    if (m_random.oneIn(2))
        block.styles.append({0, blank, m_random.pick(styles)});
    m_blocks.append(block);
}

void ArticleWriter::appendList(const QString& type, int items)
{
    for (int i = 0; i < items; ++i)
        m_blocks.append({type, m_prose.sentence(), {}, {}});
}

void ArticleWriter::appendLinkParagraph()
{
    const QString start = QStringLiteral("The longer version, with the measurements, is in ");
    const QString linked = QStringLiteral("my notes");
    const QString url = QStringLiteral("https://%1/notes/%2").arg(m_site).arg(m_random.between(100, 999));
    m_entities.append({"LINK", JSONObjectText().text("url", url).json()});
    m_blocks.append({paragraph,
                     start + linked + u'.',
                     {},
                     static_cast<int>(m_entities.size()) - 1,
                     start.size(),
                     linked.size()});
}

void ArticleWriter::appendAtomic(const QByteArray& type, const QByteArray& data)
{
    m_entities.append({type, data});
    m_blocks.append({atomic, QStringLiteral(" "), {}, static_cast<int>(m_entities.size()) - 1});
}

QString ArticleWriter::plainText() const
{
    QStringList lines;
    int listNumber = 0;
    for (const Block& block : m_blocks) {
        const bool numbered = block.type == QStringLiteral("ordered-list-item");
        listNumber = numbered ? listNumber + 1 : 0;
        if (numbered)
            lines.append(QStringLiteral("%1. %2").arg(listNumber).arg(block.text));
        else if (block.type == QStringLiteral("unordered-list-item"))
            lines.append(QStringLiteral("- ") + block.text);
        else if (block.type == QStringLiteral("blockquote"))
            lines.append(QStringLiteral("> ") + block.text);
        else
            lines.append(block.text);
    }
    return lines.join(QStringLiteral("\n\n"));
}

QByteArray ArticleWriter::document(Spelling spelling) const
{
    QList<QByteArray> blocks;
    for (const Block& block : m_blocks)
        blocks.append(blockJSON(block, spelling == Spelling::SnakeCase));
    JSONObjectText state;
    state.raw("blocks", jsonArray(blocks));
    state.raw(spelling == Spelling::SnakeCase ? "entities" : "entityMap", entityTable(spelling));
    return state.json();
}

QByteArray ArticleWriter::blockJSON(const Block& block, bool snakeCase) const
{
    QList<QByteArray> styles;
    for (const Style& style : block.styles) {
        styles.append(JSONObjectText()
                          .number("offset", style.offset)
                          .number("length", style.length)
                          .text("style", style.name)
                          .json());
    }
    QList<QByteArray> ranges;
    if (block.entity) {
        ranges.append(JSONObjectText()
                          .number("offset", block.entityOffset)
                          .number("length", block.entityLength)
                          .number("key", *block.entity)
                          .json());
    }
    JSONObjectText object;
    object.text("text", block.text).text("type", block.type);
    if (!snakeCase)
        object.raw("data", "{}");
    return object.raw(snakeCase ? "entity_ranges" : "entityRanges", jsonArray(ranges))
        .raw(snakeCase ? "inline_style_ranges" : "inlineStyleRanges", jsonArray(styles))
        .json();
}

QByteArray ArticleWriter::entityTable(Spelling spelling) const
{
    QList<QByteArray> list;
    JSONObjectText object;
    for (qsizetype i = 0; i < m_entities.size(); ++i) {
        const QByteArray position = QByteArray::number(i);
        JSONObjectText value;
        value.text("type", QString::fromLatin1(m_entities[i].first))
            .text("mutability", u"Mutable")
            .raw("data", m_entities[i].second);
        object.raw(position, value.json());
        if (spelling == Spelling::SnakeCase)
            list.append(value.json());
        else
            list.append(JSONObjectText().raw("key", '"' + position + '"').raw("value", value.json()).json());
    }
    return spelling == Spelling::CamelCaseObject ? object.json() : jsonArray(list);
}

QByteArray ArticleWriter::sideEntities() const
{
    QList<QByteArray> urls;
    QList<QByteArray> posts;
    QList<QByteArray> code;
    for (const auto& [type, data] : m_entities) {
        if (type == "TWEET")
            posts.append("{\"id\":\"" + QByteArray::number(m_embeddedPost) + "\"}");
        else if (type == "LINK")
            urls.append(QByteArray(data).replace("\"url\"", "\"text\""));
        else if (type == "MARKDOWN")
            code.append(QByteArray(data).replace("\"markdown\"", "\"content\""));
    }
    JSONObjectText object;
    return object.raw("urls", jsonArray(urls))
        .raw("code", jsonArray(code))
        .raw("tweets", jsonArray(posts))
        .json();
}

QByteArray ArticleWriter::articleWith(const QByteArray& document)
{
    const QString text = plainText();
    JSONObjectText article;
    article.text("title", m_prose.title())
        .text("preview_text", text.left(200) + QStringLiteral("..."))
        .text("plain_text", text)
        .raw("entities", sideEntities());
    if (!m_mediaKeys.isEmpty())
        article.raw("cover_media", '"' + m_mediaKeys.first() + '"');
    QList<QByteArray> keys;
    for (qsizetype i = 1; i < m_mediaKeys.size(); ++i) {
        const QByteArray quoted = '"' + m_mediaKeys[i] + '"';
        // Both shapes occur, even in one list.
        keys.append(m_random.oneIn(3) ? "{\"media_key\":" + quoted + '}' : quoted);
    }
    article.raw("media_entities", jsonArray(keys));
    if (!document.isEmpty())
        article.raw("content_state", document);
    return article.json();
}

} // namespace mirel::simulator
