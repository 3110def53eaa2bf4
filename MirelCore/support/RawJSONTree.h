#pragma once

#include <QByteArray>

#include <vector>

namespace mirel::detail {

enum class RawJSONKind : quint8 { null, boolean, number, string, array, object };

// One value of a RawJSONTree. Offsets count bytes of the text.
struct RawJSONNode
{
    // The key under which an object holds this value, without its quotes.
    quint32 keyBegin = 0;
    quint32 keyLength = 0;
    // Of a scalar: its token, with the quotes of a string.
    quint32 begin = 0;
    // Of a scalar: the length of its token. Of an array or object: the length of its canonical text.
    quint32 length = 0;
    // The node after this value and all that it holds.
    quint32 next = 0;
    RawJSONKind kind = RawJSONKind::null;
    bool isKeyEscaped = false;
    bool isEscaped = false;
};

// A JSON text and its values in the order of the text: the children of a node follow it.
struct RawJSONTree
{
    // Has room for the padding that the parser reads past its end.
    QByteArray text;
    std::vector<RawJSONNode> nodes;
};

} // namespace mirel::detail
