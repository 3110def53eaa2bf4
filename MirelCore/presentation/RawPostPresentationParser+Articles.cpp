#include "presentation/RawJSONLookup.h"
#include "presentation/RawPostPresentationParser.h"
#include "support/Text.h"

namespace mirel {

using namespace rawJSONLookup;

namespace {

// A part of a block's text that an entity takes, such as a link.
struct EntityRange
{
    RawJSONValue definition;
    qint64 offset;
    qint64 length;
};

QString lowerCaseString(const RawJSONValue& value, const char* key)
{
    return lowerCased(stringAt(value, {key}).value_or(QString()));
}

// The object that holds the blocks of a rich article, searched in depth. The parser of the text limits that.
std::optional<RawJSONValue> contentState(const RawJSONValue& object)
{
    static constexpr std::array holders{"content_state", "contentState", "content", "body"};
    const auto blocks = object.firstMember("blocks");
    if (blocks && blocks->isArray())
        return object;
    for (const char* const key : holders) {
        const auto held = objectAt(object, {key});
        if (const auto found = held ? contentState(*held) : std::nullopt)
            return found;
    }
    for (const RawJSONValue& member : uniqueMembers(object)) {
        const QString key = member.key();
        const auto isKey = [&](const char* holder) { return key == QLatin1StringView(holder); };
        if (!member.isObject() || std::any_of(holders.begin(), holders.end(), isKey))
            continue;
        if (const auto found = contentState(member))
            return found;
    }
    return std::nullopt;
}

struct NumberedEntity
{
    QString key;
    std::optional<qint64> number;
    RawJSONValue entity;
};

bool precedes(const NumberedEntity& a, const NumberedEntity& b)
{
    return a.number && b.number ? *a.number < *b.number : a.key < b.key;
}

// The values of an entity map in the order of their keys: numeric between two numbers, else by text.
QList<RawJSONValue> orderedEntities(const RawJSONValue& map)
{
    std::vector<NumberedEntity> entities;
    for (const RawJSONValue& entity : uniqueMembers(map))
        entities.push_back({entity.key(), integer(entity.key()), entity});
    std::stable_sort(entities.begin(), entities.end(), [](const auto& a, const auto& b) {
        return a.number.has_value() == b.number.has_value() ? precedes(a, b) : a.number.has_value();
    });
    const auto hasText = [](const NumberedEntity& entity) { return !entity.number; };
    const auto texts = std::find_if(entities.begin(), entities.end(), hasText);
    // Where numbers and texts mix, the rule can contradict itself ("2", "10", "1a"). So the numbers keep
    // their order, and each text goes from the end before all that it precedes, as if it were inserted there.
    QList<RawJSONValue> values;
    auto number = texts;
    auto text = entities.end();
    while (number != entities.begin() || text != texts) {
        const bool isNumber =
            text == texts || (number != entities.begin() && precedes(*std::prev(text), *std::prev(number)));
        values.append((isNumber ? --number : --text)->entity);
    }
    std::reverse(values.begin(), values.end());
    return values;
}

// The entities in the places by which the ranges know them. What is no object keeps its place.
QList<RawJSONValue> entities(const RawJSONValue& document)
{
    if (const auto list = firstObjects(document, {"entities", "entityMap"}))
        return *list;
    const auto map = objectAt(document, {"entityMap"});
    return map ? orderedEntities(*map) : QList<RawJSONValue>();
}

RawJSONValue definition(const RawJSONValue& entity)
{
    const auto value = objectAt(entity, {"value"});
    return value && !value->children().isEmpty() ? *value : entity;
}

QList<EntityRange> entityRanges(const RawJSONValue& block, const QList<RawJSONValue>& entities)
{
    QList<EntityRange> ranges;
    const auto objects = firstObjects(block, {"entity_ranges", "entityRanges"});
    for (const RawJSONValue& range : objects.value_or(QList<RawJSONValue>())) {
        const auto key = integer(range.firstMember("key"));
        if (!key || *key < 0 || *key >= entities.size())
            continue;
        ranges.append({
            .definition = definition(entities[*key]),
            .offset = integer(range.firstMember("offset")).value_or(0),
            .length = integer(range.firstMember("length")).value_or(0),
        });
    }
    return ranges;
}

QList<ArticleStyleRange> styleRanges(const RawJSONValue& block)
{
    QList<ArticleStyleRange> ranges;
    for (const RawJSONValue range : firstElements(block, {"inline_style_ranges", "inlineStyleRanges"})) {
        const auto offset = integer(range.firstMember("offset"));
        const auto length = integer(range.firstMember("length"));
        const auto style = fromRawValue<ArticleStyleRange::Style>(lowerCaseString(range, "style"));
        if (offset && length && style)
            ranges.append({*offset, *length, *style});
    }
    return ranges;
}

QList<ArticleLinkRange> linkRanges(const QList<EntityRange>& entityRanges)
{
    QList<ArticleLinkRange> ranges;
    for (const EntityRange& range : entityRanges) {
        if (lowerCaseString(range.definition, "type") != QStringLiteral("link"))
            continue;
        if (const auto url = parseURL(stringAt(range.definition, {"data", "url"})))
            ranges.append({range.offset, range.length, *url});
    }
    return ranges;
}

ArticleBlock::Kind textKind(const QString& type)
{
    using Kind = ArticleBlock::Kind;
    static const QHash<QString, Kind> kinds{
        {QStringLiteral("header-one"), Kind::headingOne},
        {QStringLiteral("header-two"), Kind::headingTwo},
        {QStringLiteral("header-three"), Kind::headingThree},
        {QStringLiteral("unordered-list-item"), Kind::unorderedListItem},
        {QStringLiteral("ordered-list-item"), Kind::orderedListItem},
        {QStringLiteral("blockquote"), Kind::blockquote},
    };
    return kinds.value(type, Kind::paragraph);
}

} // namespace

QList<ArticleBlock> RawPostPresentationParser::articleBlocks(const RawJSONValue& post,
                                                             const QString& fallbackText) const
{
    const auto article = objectAt(post, {"article"});
    if (!article)
        return {};
    const auto document = contentState(*article);
    const auto source = document ? firstObjects(*document, {"blocks"}) : std::nullopt;
    if (!source || source->isEmpty()) {
        const QString text = stringAt(*article, {"plain_text"}).value_or(fallbackText);
        return prependingCover(*article, heuristicBlocks(text, fallbackAtomicBlocks(*article)));
    }
    const QList<RawJSONValue> known = entities(*document);
    QList<ArticleBlock> blocks;
    for (qsizetype index = 0; index < source->size(); ++index) {
        if (const auto block = richBlock(source->at(index), index, known))
            blocks.append(*block);
    }
    return prependingCover(*article, blocks);
}

std::optional<ArticleBlock> RawPostPresentationParser::richBlock(const RawJSONValue& block, qsizetype index,
                                                                 const QList<RawJSONValue>& entities) const
{
    const QString id = QStringLiteral("block-%1").arg(index);
    const QString type = lowerCaseString(block, "type");
    const QString text = stringAt(block, {"text"}).value_or(QString());
    const QList<EntityRange> ranges = entityRanges(block, entities);
    if (type == QStringLiteral("atomic") && !ranges.isEmpty()) {
        if (const auto atomic = atomicBlock(id, text, ranges.first().definition))
            return atomic;
    }
    if (trimmed(text).isEmpty())
        return std::nullopt;
    ArticleBlock result;
    result.id = id;
    result.kind = textKind(type);
    result.text = text;
    result.styles = styleRanges(block);
    result.links = linkRanges(ranges);
    return result;
}

// Absent when the entity is of another type.
std::optional<ArticleBlock> RawPostPresentationParser::atomicBlock(const QString& id, const QString& text,
                                                                   const RawJSONValue& definition) const
{
    const QString type = lowerCaseString(definition, "type");
    const RawJSONValue data = objectAt(definition, {"data"}).value_or(emptyObject());
    ArticleBlock block;
    block.id = id;
    if (type == QStringLiteral("post") || type == QStringLiteral("tweet")) {
        block.kind = ArticleBlock::Kind::embeddedPost;
        block.embeddedPostID = firstString(data, {"post_id", "tweetId"});
    } else if (type == QStringLiteral("image") || type == QStringLiteral("media")) {
        block.kind = ArticleBlock::Kind::media;
        block.text = stringAt(data, {"caption"}).value_or(QString());
        block.media = mediaItems(mediaKeys(firstElements(data, {"media_items", "mediaItems"})));
    } else if (type == QStringLiteral("divider")) {
        block.kind = ArticleBlock::Kind::divider;
    } else if (type == QStringLiteral("markdown")) {
        block.kind = ArticleBlock::Kind::code;
        block.text = stringAt(data, {"markdown"}).value_or(text);
    } else {
        return std::nullopt;
    }
    return block;
}

// The cover may stand among the blocks, too; then it is there twice.
QList<ArticleBlock> RawPostPresentationParser::prependingCover(const RawJSONValue& article,
                                                               QList<ArticleBlock> blocks) const
{
    const auto key = stringAt(article, {"cover_media"});
    const auto item = key ? mediaItem(*key) : std::nullopt;
    if (!item)
        return blocks;
    ArticleBlock cover;
    cover.id = QStringLiteral("article-cover");
    cover.kind = ArticleBlock::Kind::media;
    cover.text = item->altText.value_or(QString());
    cover.media = {*item};
    blocks.prepend(cover);
    return blocks;
}

} // namespace mirel
