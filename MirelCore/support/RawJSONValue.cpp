#include "support/RawJSONValue.h"

#include <QVarLengthArray>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace mirel {

namespace {

using detail::RawJSONKind;

char16_t simpleEscape(char letter)
{
    switch (letter) {
    case 'b':
        return u'\b';
    case 'f':
        return u'\f';
    case 'n':
        return u'\n';
    case 'r':
        return u'\r';
    case 't':
        return u'\t';
    default:
        return static_cast<char16_t>(letter);
    }
}

// The code unit of the escape "\uXXXX" at the start of `text`, or absent when there is none.
std::optional<char16_t> unicodeEscape(QByteArrayView text)
{
    if (text.size() < 6 || text[0] != '\\' || text[1] != 'u')
        return std::nullopt;
    unsigned int unit = 0;
    std::from_chars(text.data() + 2, text.data() + 6, unit, 16);
    return static_cast<char16_t>(unit);
}

// Appends the character of the Unicode escape at the start of `text`; returns how many bytes it takes.
qsizetype appendUnicodeEscape(QByteArrayView text, QString& decoded)
{
    constexpr qsizetype escapeSize = 6;
    const char16_t unit = *unicodeEscape(text);
    if (!QChar::isSurrogate(unit)) {
        decoded.append(QChar(unit));
        return escapeSize;
    }
    const auto following = unicodeEscape(text.sliced(escapeSize));
    if (QChar::isHighSurrogate(unit) && following && QChar::isLowSurrogate(*following)) {
        decoded.append(QChar(unit));
        decoded.append(QChar(*following));
        return 2 * escapeSize;
    }
    decoded.append(QChar::ReplacementCharacter);
    return escapeSize;
}

QString decodeString(QByteArrayView raw, bool isEscaped)
{
    if (!isEscaped)
        return QString::fromUtf8(raw);
    QString decoded;
    decoded.reserve(raw.size());
    while (!raw.isEmpty()) {
        const qsizetype backslash = raw.indexOf('\\');
        if (backslash != 0) {
            const qsizetype plain = backslash < 0 ? raw.size() : backslash;
            decoded.append(QString::fromUtf8(raw.first(plain)));
            raw = raw.sliced(plain);
        } else if (raw[1] == 'u') {
            raw = raw.sliced(appendUnicodeEscape(raw, decoded));
        } else {
            decoded.append(QChar(simpleEscape(raw[1])));
            raw = raw.sliced(2);
        }
    }
    return decoded;
}

// A member of an object on its way into the canonical text.
struct SortedMember
{
    QByteArrayView key;
    quint32 index;
};

bool precedes(const SortedMember& a, const SortedMember& b)
{
    const auto common = static_cast<size_t>(std::min(a.key.size(), b.key.size()));
    const int order = common == 0 ? 0 : std::memcmp(a.key.data(), b.key.data(), common);
    return order == 0 ? a.key.size() < b.key.size() : order < 0;
}

// Keeps the order of equal keys. Objects are mostly small, and std::stable_sort would allocate for each.
void sortByKey(SortedMember* begin, SortedMember* end)
{
    constexpr ptrdiff_t small = 32;
    if (end - begin > small) {
        std::stable_sort(begin, end, precedes);
        return;
    }
    for (SortedMember* unsorted = begin; unsorted != end; ++unsorted)
        std::rotate(std::upper_bound(begin, unsorted, *unsorted, precedes), unsorted, unsorted + 1);
}

char* writeBytes(QByteArrayView bytes, char* output)
{
    std::memcpy(output, bytes.data(), static_cast<size_t>(bytes.size()));
    return output + bytes.size();
}

} // namespace

QByteArrayView RawJSONValue::slice(quint32 begin, quint32 length) const
{
    return QByteArrayView(m_tree->text.constData() + begin, static_cast<qsizetype>(length));
}

QByteArrayView RawJSONValue::rawString() const
{
    return slice(node().begin + 1, node().length - 2);
}

QByteArrayView RawJSONValue::rawKey() const
{
    return slice(node().keyBegin, node().keyLength);
}

bool RawJSONValue::hasKey(QByteArrayView key) const
{
    if (node().isKeyEscaped)
        return decodeString(rawKey(), true).toUtf8() == key;
    return rawKey() == key;
}

QString RawJSONValue::string() const
{
    if (!isString())
        throw RawJSONError(QStringLiteral("The JSON value is not a text."));
    return decodeString(rawString(), node().isEscaped);
}

std::optional<QString> RawJSONValue::stringIfAny() const
{
    if (!isString())
        return std::nullopt;
    return string();
}

// The number when it is written without a fraction and an exponent, and fits.
std::optional<qint64> RawJSONValue::plainInteger() const
{
    if (kind() != Kind::number)
        return std::nullopt;
    const QByteArrayView token = slice(node().begin, node().length);
    qint64 number = 0;
    const char* const end = token.data() + token.size();
    const auto [stop, error] = std::from_chars(token.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

// The number when it is written with a fraction or an exponent, and fits.
std::optional<double> RawJSONValue::realNumber() const
{
    if (kind() != Kind::number)
        return std::nullopt;
    const QByteArrayView token = slice(node().begin, node().length);
    const bool isReal =
        std::any_of(token.begin(), token.end(), [](char c) { return c == '.' || c == 'e' || c == 'E'; });
    bool isInRange = false;
    const double number = isReal ? token.toByteArray().toDouble(&isInRange) : 0;
    return isInRange ? std::optional(number) : std::nullopt;
}

qint64 RawJSONValue::integer() const
{
    if (const auto number = plainInteger())
        return *number;
    constexpr double exactWholeNumbers = 9007199254740992;
    const auto real = realNumber();
    if (!real || *real != std::trunc(*real) || std::abs(*real) > exactWholeNumbers)
        throw RawJSONError(QStringLiteral("The JSON value is not a whole number of 64 bits."));
    return static_cast<qint64>(*real);
}

std::optional<qint64> RawJSONValue::integerPart() const
{
    if (const auto number = plainInteger())
        return number;
    constexpr double beyond = 9223372036854775808.0;
    const auto real = realNumber();
    if (!real || *real < -beyond || *real >= beyond)
        return std::nullopt;
    return static_cast<qint64>(*real);
}

std::optional<RawJSONValue> RawJSONValue::member(QByteArrayView key) const
{
    std::optional<RawJSONValue> last;
    if (!isObject())
        return last;
    for (const RawJSONValue value : children()) {
        if (value.hasKey(key))
            last = value;
    }
    return last;
}

std::optional<RawJSONValue> RawJSONValue::firstMember(QByteArrayView key) const
{
    if (!isObject())
        return std::nullopt;
    for (const RawJSONValue value : children()) {
        if (value.hasKey(key))
            return value;
    }
    return std::nullopt;
}

QString RawJSONValue::key() const
{
    return decodeString(rawKey(), node().isKeyEscaped);
}

RawJSONValue::Children RawJSONValue::children() const
{
    const bool holdsOthers = isArray() || isObject();
    return {m_tree, holdsOthers ? m_index + 1 : node().next, node().next};
}

QByteArray RawJSONValue::canonical() const
{
    QByteArray text(canonicalSize(), Qt::Uninitialized);
    writeCanonical(text.data());
    return text;
}

char* RawJSONValue::writeCanonical(char* output) const
{
    if (isObject())
        return writeObject(output);
    if (!isArray())
        return writeBytes(slice(node().begin, node().length), output);
    *output++ = '[';
    bool isFirst = true;
    for (const RawJSONValue element : children()) {
        if (!isFirst)
            *output++ = ',';
        isFirst = false;
        output = element.writeCanonical(output);
    }
    *output++ = ']';
    return output;
}

char* RawJSONValue::writeObject(char* output) const
{
    QVarLengthArray<SortedMember, 32> members;
    QVarLengthArray<QByteArray, 1> decodedKeys;
    for (const RawJSONValue value : children()) {
        QByteArrayView key = value.rawKey();
        if (value.node().isKeyEscaped) {
            // The bytes of a QByteArray stay in place when the list of them grows.
            decodedKeys.append(decodeString(key, true).toUtf8());
            key = decodedKeys.last();
        }
        members.append({key, value.m_index});
    }
    sortByKey(members.begin(), members.end());
    *output++ = '{';
    bool isFirst = true;
    for (const SortedMember& member : members) {
        if (!isFirst)
            *output++ = ',';
        isFirst = false;
        const RawJSONValue value(m_tree, member.index);
        *output++ = '"';
        output = writeBytes(value.rawKey(), output);
        *output++ = '"';
        *output++ = ':';
        output = value.writeCanonical(output);
    }
    *output++ = '}';
    return output;
}

} // namespace mirel
