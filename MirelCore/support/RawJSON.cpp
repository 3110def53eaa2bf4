#include "support/RawJSON.h"

#include <simdjson.h>

#include <cstring>
#include <limits>

namespace mirel {

namespace {

using detail::RawJSONKind;
using detail::RawJSONNode;
using detail::RawJSONTree;
using namespace simdjson;

RawJSONError notJSON(const char* reason)
{
    return RawJSONError(
        QStringLiteral("The text is not valid JSON: %1").arg(QString::fromUtf8(reason).trimmed()));
}

bool isHexadecimal(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// The place after the escape that begins at `backslash`.
const char* afterEscape(const char* backslash, const char* end)
{
    constexpr std::string_view known = "\"\\/bfnrtu";
    if (end - backslash < 2 || known.find(backslash[1]) == std::string_view::npos)
        throw notJSON("a string has an unknown escape.");
    if (backslash[1] != 'u')
        return backslash + 2;
    if (end - backslash < 6 || !std::all_of(backslash + 2, backslash + 6, isHexadecimal))
        throw notJSON("a string has an incomplete Unicode escape.");
    return backslash + 6;
}

struct ScannedString
{
    // The closing quote.
    const char* end;
    bool isEscaped;
};

// Finds the end of the string whose first byte after the quote is `begin`, and checks its escapes.
ScannedString scanString(const char* begin, const char* end)
{
    const auto find = [](const char* from, char c, const char* to) {
        return static_cast<const char*>(std::memchr(from, c, static_cast<size_t>(to - from)));
    };
    const char* const quote = find(begin, '"', end);
    if (!quote)
        throw notJSON("a string has no end.");
    const char* place = find(begin, '\\', quote);
    if (!place)
        return {quote, false};
    while (place < end && *place != '"')
        place = *place == '\\' ? afterEscape(place, end) : place + 1;
    if (place >= end)
        throw notJSON("a string has no end.");
    return {place, true};
}

// The token is a number by JSON's grammar.
bool isNumber(std::string_view token)
{
    size_t place = 0;
    const auto at = [&](char c) { return place < token.size() && token[place] == c; };
    const auto skipDigits = [&] {
        const size_t first = place;
        while (place < token.size() && token[place] >= '0' && token[place] <= '9')
            ++place;
        return place > first;
    };
    if (at('-'))
        ++place;
    if (at('0'))
        ++place;
    else if (!skipDigits())
        return false;
    if (at('.') && (++place, !skipDigits()))
        return false;
    if (at('e') || at('E')) {
        ++place;
        if (at('+') || at('-'))
            ++place;
        if (!skipDigits())
            return false;
    }
    return place == token.size();
}

RawJSONKind kindOfBareToken(std::string_view token)
{
    if (token == "null")
        return RawJSONKind::null;
    if (token == "true" || token == "false")
        return RawJSONKind::boolean;
    if (isNumber(token))
        return RawJSONKind::number;
    throw notJSON("a value is neither a number, true, false nor null.");
}

std::string_view withoutSpaces(std::string_view text)
{
    constexpr std::string_view spaces = " \t\r\n";
    const size_t first = text.find_first_not_of(spaces);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(spaces) - first + 1);
}

// Fills a tree from the text that it already holds.
class RawJSONBuilder
{
public:
    RawJSONBuilder(RawJSONTree& tree, size_t size)
        : m_tree(tree)
        , m_begin(tree.text.constData())
        , m_size(size)
    {
    }

    void build(ondemand::parser& parser)
    {
        // Also checks that the text is UTF-8.
        ondemand::document document = parser.iterate(m_begin, m_size, m_size + SIMDJSON_PADDING);
        m_tree.nodes.reserve(m_size / 12 + 1);
        const std::string_view content = withoutSpaces({m_begin, m_size});
        if (content.starts_with('{') || content.starts_with('[')) {
            addValue(document.get_value(), RawJSONNode{}, 1);
            // simdjson has no other way to ask whether it is at the end.
            if (document.current_location().error() != OUT_OF_BOUNDS)
                throw notJSON("something follows the value.");
        } else {
            addScalar(content, RawJSONNode{});
        }
    }

private:
    [[nodiscard]] quint32 offset(const char* place) const { return static_cast<quint32>(place - m_begin); }

    // `node` brings the key. Returns the length of the value's canonical text.
    quint32 addValue(ondemand::value value, RawJSONNode node, int depth)
    {
        const ondemand::json_type type = value.type();
        if (type != ondemand::json_type::object && type != ondemand::json_type::array)
            return addScalar(withoutSpaces(value.raw_json_token()), node);
        if (depth > RawJSON::maximumDepth)
            throw RawJSONError(QStringLiteral("The JSON text is nested too deeply."));
        const size_t index = m_tree.nodes.size();
        const bool isObject = type == ondemand::json_type::object;
        node.kind = isObject ? RawJSONKind::object : RawJSONKind::array;
        m_tree.nodes.push_back(node);
        const quint32 length = isObject ? addMembers(value, depth + 1) : addElements(value, depth + 1);
        m_tree.nodes[index].length = length;
        m_tree.nodes[index].next = static_cast<quint32>(m_tree.nodes.size());
        return length;
    }

    quint32 addMembers(ondemand::value value, int depth)
    {
        quint32 length = 1;
        for (ondemand::field field : value.get_object()) {
            const char* const key = field.key().raw();
            const ScannedString scanned = scanString(key, m_begin + m_size);
            RawJSONNode node;
            node.keyBegin = offset(key);
            node.keyLength = static_cast<quint32>(scanned.end - key);
            node.isKeyEscaped = scanned.isEscaped;
            // Two quotes, a colon, and a comma or the closing brace.
            length += node.keyLength + 4 + addValue(field.value(), node, depth);
        }
        return std::max<quint32>(length, 2);
    }

    quint32 addElements(ondemand::value value, int depth)
    {
        quint32 length = 1;
        for (ondemand::value element : value.get_array())
            length += 1 + addValue(element, RawJSONNode{}, depth);
        return std::max<quint32>(length, 2);
    }

    quint32 addScalar(std::string_view token, RawJSONNode node)
    {
        if (token.starts_with('"')) {
            const char* const end = token.data() + token.size();
            const ScannedString scanned = scanString(token.data() + 1, end);
            if (scanned.end + 1 != end)
                throw notJSON("something follows a string.");
            node.kind = RawJSONKind::string;
            node.isEscaped = scanned.isEscaped;
        } else {
            node.kind = kindOfBareToken(token);
        }
        node.begin = offset(token.data());
        node.length = static_cast<quint32>(token.size());
        node.next = static_cast<quint32>(m_tree.nodes.size() + 1);
        m_tree.nodes.push_back(node);
        return node.length;
    }

    RawJSONTree& m_tree;
    const char* m_begin;
    size_t m_size;
};

// The same text with room for what the parser reads past its end. What has room already is not copied. The
// capacity would also count room before the text.
QByteArray padded(QByteArray utf8)
{
    static_assert(RawJSON::padding >= SIMDJSON_PADDING);
    if (utf8.data_ptr().freeSpaceAtEnd() < RawJSON::padding)
        utf8.reserve(utf8.size() + RawJSON::padding);
    return utf8;
}

} // namespace

RawJSON RawJSON::parse(const QByteArray& utf8)
{
    if (utf8.size() > std::numeric_limits<quint32>::max() - padding)
        throw RawJSONError(QStringLiteral("The JSON text is too long."));
    const auto tree = std::make_shared<RawJSONTree>();
    tree->text = padded(utf8);
    try {
        ondemand::parser parser;
        RawJSONBuilder(*tree, static_cast<size_t>(utf8.size())).build(parser);
    } catch (const simdjson_error& error) {
        throw notJSON(error.what());
    }
    return RawJSON(tree);
}

std::optional<RawJSON> RawJSON::parseObject(const QByteArray& utf8, QByteArrayView key)
{
    // Its buffers are as large as the largest text so far, and making them takes longer than reading most
    // texts.
    thread_local dom::parser parser;
    const QByteArray text = padded(utf8);
    const auto size = static_cast<size_t>(text.size());
    const bool fits = parser.capacity() >= size && parser.max_depth() == maximumDepth;
    if (!fits && parser.allocate(size, maximumDepth) != SUCCESS)
        return std::nullopt;
    dom::element root;
    dom::object value;
    const std::string_view name(key.data(), static_cast<size_t>(key.size()));
    // Stricter than parse(): no half surrogate pairs, no numbers beyond 64 bits.
    if (parser.parse(text.constData(), size, false).get(root) != SUCCESS || root[name].get(value) != SUCCESS)
        return std::nullopt;
    try {
        return parse(QByteArray::fromStdString(minify(value)));
    } catch (const RawJSONError&) {
        // Of half a surrogate pair, simdjson lets the second half pass and makes of it what is no UTF-8.
        return std::nullopt;
    }
}

} // namespace mirel
