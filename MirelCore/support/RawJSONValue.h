#pragma once

#include "support/RawJSONError.h"
#include "support/RawJSONTree.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace mirel {

// One value inside a RawJSON: a view, valid as long as a copy of that RawJSON lives. To be read on any
// thread.
//
// A key that an object repeats: member() answers with its last value, as Qt's reader does, firstMember() with
// its first; children() and the canonical text hold every one.
class RawJSONValue
{
public:
    using Kind = detail::RawJSONKind;
    class Children;

    [[nodiscard]] Kind kind() const { return node().kind; }
    [[nodiscard]] bool isNull() const { return kind() == Kind::null; }
    [[nodiscard]] bool isString() const { return kind() == Kind::string; }
    [[nodiscard]] bool isArray() const { return kind() == Kind::array; }
    [[nodiscard]] bool isObject() const { return kind() == Kind::object; }

    // The text. An escape that is half of a surrogate pair reads as U+FFFD. Throws RawJSONError when this is
    // no string.
    [[nodiscard]] QString string() const;

    // The text when this is a string, else absent.
    [[nodiscard]] std::optional<QString> stringIfAny() const;

    // The whole number, also when it is written as 1.0 or 1e3. Throws RawJSONError when this is no number,
    // has a fraction or does not fit.
    [[nodiscard]] qint64 integer() const;

    // The number without its fraction. Absent when this is no number or does not fit into 64 bits.
    [[nodiscard]] std::optional<qint64> integerPart() const;

    // The value under `key`, given in UTF-8. Absent also when this is no object.
    [[nodiscard]] std::optional<RawJSONValue> member(QByteArrayView key) const;
    [[nodiscard]] std::optional<RawJSONValue> firstMember(QByteArrayView key) const;

    // The key under which an object holds this value; of any other value empty.
    [[nodiscard]] QString key() const;

    // The elements of an array or the values of an object, in the order of the text; of anything else none.
    [[nodiscard]] Children children() const;

    // The number of bytes of the canonical text.
    [[nodiscard]] qsizetype canonicalSize() const { return static_cast<qsizetype>(node().length); }

    // The value as JSON: no white space, the keys of every object ordered by their UTF-8 bytes (a repeated
    // one in the order of the text), numbers and strings byte for byte as sent.
    [[nodiscard]] QByteArray canonical() const;

    // Writes canonicalSize() bytes to `output` and returns the place after them.
    char* writeCanonical(char* output) const;

private:
    friend class RawJSON;

    RawJSONValue(const detail::RawJSONTree* tree, quint32 index)
        : m_tree(tree)
        , m_index(index)
    {
    }

    [[nodiscard]] const detail::RawJSONNode& node() const { return m_tree->nodes[m_index]; }
    [[nodiscard]] QByteArrayView slice(quint32 begin, quint32 length) const;
    [[nodiscard]] QByteArrayView rawString() const;
    [[nodiscard]] QByteArrayView rawKey() const;
    [[nodiscard]] bool hasKey(QByteArrayView key) const;
    [[nodiscard]] std::optional<qint64> plainInteger() const;
    [[nodiscard]] std::optional<double> realNumber() const;
    char* writeObject(char* output) const;

    const detail::RawJSONTree* m_tree;
    quint32 m_index;
};

class RawJSONValue::Children
{
public:
    class Iterator
    {
    public:
        Iterator(const detail::RawJSONTree* tree, quint32 index)
            : m_tree(tree)
            , m_index(index)
        {
        }

        RawJSONValue operator*() const { return {m_tree, m_index}; }
        Iterator& operator++()
        {
            m_index = m_tree->nodes[m_index].next;
            return *this;
        }
        friend bool operator==(const Iterator&, const Iterator&) = default;

    private:
        const detail::RawJSONTree* m_tree;
        quint32 m_index;
    };

    Children(const detail::RawJSONTree* tree, quint32 first, quint32 last)
        : m_begin(tree, first)
        , m_end(tree, last)
    {
    }

    [[nodiscard]] Iterator begin() const { return m_begin; }
    [[nodiscard]] Iterator end() const { return m_end; }
    [[nodiscard]] bool isEmpty() const { return m_begin == m_end; }

private:
    Iterator m_begin;
    Iterator m_end;
};

} // namespace mirel
