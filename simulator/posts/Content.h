#pragma once

#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

namespace mirel::simulator {

// A theme that people post about, with the pieces that its texts are made of.
struct Topic
{
    QString name;
    QStringList hashtags;
    QStringList bios;
    QStringList sites;
    QStringList titles;
    QStringList sentences;
    // What may stand for "{name}" in a title or sentence.
    QHash<QString, QStringList> slotValues;
};

struct Language
{
    QString code;
    QStringList names;
    QStringList sentences;
};

// The tables that the posts are made from, read once from the program's resources.
struct Content
{
    QList<Topic> topics;
    QList<Language> languages;
    // Lists by name: names, emoji, captions and the like.
    QHash<QString, QStringList> lists;
    QList<QJsonObject> places;

    // The one copy. Safe to read from any thread.
    [[nodiscard]] static const Content& shared();
};

} // namespace mirel::simulator
