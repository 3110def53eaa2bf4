#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

namespace mirel {

// A name and its value in a query or form.
using FormField = QPair<QString, QString>;

// The fields, in their order, as the text of a URL's query. What a query allows stays as it is, "+" included;
// only "&" and "=" are escaped besides, which would end a field.
[[nodiscard]] QByteArray queryEncoded(const QList<FormField>& fields);

// The same, ordered by name so that equal requests look equal.
[[nodiscard]] QByteArray formEncoded(QList<FormField> fields);

// `text` as one segment of a URL's path: whatever a segment cannot hold is percent-encoded, "/" included, so
// that an identifier never reaches another path.
[[nodiscard]] QByteArray pathSegmentEncoded(const QString& text);

} // namespace mirel
