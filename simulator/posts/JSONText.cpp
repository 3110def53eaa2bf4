#include "simulator/posts/JSONText.h"

namespace mirel::simulator {

namespace {

void appendEscape(QByteArray& json, char16_t unit)
{
    json += "\\u" + QByteArray::number(unit, 16).toUpper().rightJustified(4, '0');
}

void appendUnit(QByteArray& json, QChar unit)
{
    switch (unit.unicode()) {
    case u'"':
        json += "\\\"";
        return;
    case u'\\':
        json += "\\\\";
        return;
    case u'\n':
        json += "\\n";
        return;
    default:
        if (unit.isSurrogate() || unit < u' ')
            appendEscape(json, unit.unicode());
        else
            json += QStringView(&unit, 1).toUtf8();
    }
}

} // namespace

QByteArray jsonString(QStringView text)
{
    QByteArray json;
    json.reserve(text.size() + text.size() / 2 + 2);
    json += '"';
    for (const QChar unit : text) {
        const char16_t code = unit.unicode();
        if (code >= u' ' && code < 0x7f && code != u'"' && code != u'\\')
            json += static_cast<char>(code);
        else
            appendUnit(json, unit);
    }
    return json + '"';
}

QByteArray jsonArray(const QList<QByteArray>& elements)
{
    return '[' + elements.join(',') + ']';
}

JSONObjectText& JSONObjectText::raw(QByteArrayView key, const QByteArray& json)
{
    if (!m_members.isEmpty())
        m_members += ',';
    m_members += '"';
    m_members += key;
    m_members += "\":";
    m_members += json;
    return *this;
}

} // namespace mirel::simulator
