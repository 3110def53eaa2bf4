#include "credentials/PropertyList.h"

#include <QFile>
#include <QXmlStreamReader>

namespace mirel {

namespace {

QVariantMap readDictionary(QXmlStreamReader& xml)
{
    QVariantMap dictionary;
    QString key;
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1StringView("key")) {
            key = xml.readElementText();
        } else if (xml.name() == QLatin1StringView("string")) {
            dictionary.insert(key, xml.readElementText());
        } else {
            xml.skipCurrentElement();
        }
    }
    return dictionary;
}

} // namespace

QVariantMap readPropertyList(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QXmlStreamReader xml(&file);
    if (!xml.readNextStartElement() || xml.name() != QLatin1StringView("plist"))
        return {};
    if (!xml.readNextStartElement() || xml.name() != QLatin1StringView("dict"))
        return {};
    const QVariantMap dictionary = readDictionary(xml);
    return xml.hasError() ? QVariantMap() : dictionary;
}

} // namespace mirel
