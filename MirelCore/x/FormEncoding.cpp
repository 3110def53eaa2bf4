#include "x/FormEncoding.h"

#include <QUrl>

#include <algorithm>

namespace mirel {

QByteArray queryEncoded(const QList<FormField>& fields)
{
    constexpr auto allowed = "!$'()*+,;:@/?";
    QByteArrayList encoded;
    for (const auto& [name, value] : fields)
        encoded.append(QUrl::toPercentEncoding(name, allowed) + '=' +
                       QUrl::toPercentEncoding(value, allowed));
    return encoded.join('&');
}

QByteArray formEncoded(QList<FormField> fields)
{
    std::stable_sort(fields.begin(), fields.end(),
                     [](const FormField& a, const FormField& b) { return a.first < b.first; });
    return queryEncoded(fields);
}

QByteArray pathSegmentEncoded(const QString& text)
{
    return QUrl::toPercentEncoding(text, "!$&'()*+,;=:@");
}

} // namespace mirel
