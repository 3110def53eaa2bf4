#include "simulator/posts/Content.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace mirel::simulator {

namespace {

QJsonDocument resource(const QString& name)
{
    QFile file(QStringLiteral(":/simulator/content/%1.json").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("The simulator was built without its content %s.", qPrintable(name));
    return QJsonDocument::fromJson(file.readAll());
}

QStringList strings(const QJsonValue& json)
{
    QStringList list;
    for (const QJsonValue& element : json.toArray())
        list.append(element.toString());
    return list;
}

Topic topic(const QJsonObject& json)
{
    const auto list = [&](const char* key) { return strings(json.value(QLatin1StringView(key))); };
    Topic result{json.value(QLatin1StringView("name")).toString(),
                 list("hashtags"),
                 list("bios"),
                 list("sites"),
                 list("titles"),
                 list("sentences"),
                 {}};
    const QJsonObject slotTable = json.value(QLatin1StringView("slots")).toObject();
    for (auto slot = slotTable.begin(); slot != slotTable.end(); ++slot)
        result.slotValues.insert(slot.key(), strings(slot.value()));
    return result;
}

Content load()
{
    Content content;
    for (const QJsonValue& json : resource(QStringLiteral("topics")).array())
        content.topics.append(topic(json.toObject()));
    for (const QJsonValue& json : resource(QStringLiteral("languages")).array()) {
        const QJsonObject object = json.toObject();
        content.languages.append({object.value(QLatin1StringView("code")).toString(),
                                  strings(object.value(QLatin1StringView("names"))),
                                  strings(object.value(QLatin1StringView("sentences")))});
    }
    const QJsonObject people = resource(QStringLiteral("people")).object();
    for (auto list = people.begin(); list != people.end(); ++list)
        content.lists.insert(list.key(), strings(list.value()));
    for (const QJsonValue& place : people.value(QLatin1StringView("places")).toArray())
        content.places.append(place.toObject());
    return content;
}

} // namespace

const Content& Content::shared()
{
    static const Content content = load();
    return content;
}

} // namespace mirel::simulator
