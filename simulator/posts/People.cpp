#include "simulator/posts/People.h"

#include "simulator/posts/JSONText.h"

#include <QDateTime>

namespace mirel::simulator {

namespace {

constexpr int englishAuthors = 56;

QByteArray metrics(RandomSource& random)
{
    const double fame = random.fraction();
    JSONObjectText object;
    object.number("followers_count", static_cast<qint64>(fame * fame * fame * 240'000) + 12)
        .number("following_count", random.between(20, 2'400))
        .number("tweet_count", random.between(40, 30'000))
        .number("listed_count", random.below(900))
        .number("like_count", random.below(60'000))
        .number("media_count", random.below(4'000));
    return object.json();
}

} // namespace

People::People(quint64 seed, QString origin)
    : m_seed(seed)
    , m_origin(std::move(origin))
{
    const auto& languages = Content::shared().languages;
    for (int i = 0; i < languages.size(); ++i) {
        for (const QString& name : languages.at(i).names)
            m_natives.append({i, name});
    }
}

int People::englishAuthor(RandomSource& random) const
{
    const double fraction = random.fraction();
    return static_cast<int>(m_natives.size()) +
           static_cast<int>(fraction * fraction * static_cast<double>(englishAuthors));
}

int People::nativeAuthor(int language, RandomSource& random) const
{
    QList<int> candidates;
    for (int i = 0; i < m_natives.size(); ++i) {
        if (m_natives.at(i).first == language)
            candidates.append(i);
    }
    return random.pick(candidates);
}

qint64 People::id(int author) const
{
    const quint64 bits = randomFor(author, 1).next();
    // Old accounts have short identifiers. The low digits keep the authors apart.
    const qint64 size = bits % 3 == 0 ? 900'000'000 : 900'000'000'000'000'000;
    const qint64 spread = static_cast<qint64>((bits >> 2) % static_cast<quint64>(size));
    return (spread / 1000 + 10'000'000 / 1000) * 1000 + author;
}

QString People::username(int author) const
{
    const Content& content = Content::shared();
    const QStringList handles = content.lists.value(QStringLiteral("handles"));
    if (author < m_natives.size()) {
        const QString code = content.languages.at(m_natives.at(author).first).code;
        return QStringLiteral("%1_%2%3").arg(handles.at(author % handles.size()), code).arg(author % 10);
    }
    return name(author).section(u' ', 0, 0).left(8) +
           name(author).section(u' ', 1, 1).left(4).replace(u'ö', u'o') + QString::number(author);
}

const Topic& People::topic(int author) const
{
    const auto& topics = Content::shared().topics;
    return topics.at(author % static_cast<int>(topics.size()));
}

QByteArray People::user(int author) const
{
    RandomSource random = randomFor(author, 2);
    const Content& content = Content::shared();
    QString shownName = name(author);
    if (random.oneIn(4))
        shownName += u' ' + random.pick(content.lists.value(QStringLiteral("emoji")));
    const QString number = QString::number(id(author));
    const QDateTime joined =
        QDateTime::fromSecsSinceEpoch(1'230'000'000 + random.below(400'000'000), Qt::UTC);
    JSONObjectText object;
    object.text("id", number)
        .text("name", shownName)
        .text("username", username(author))
        .text("created_at", joined.toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.000'Z'")))
        .text("description", random.pick(topic(author).bios))
        .flag("protected", false)
        .flag("verified", random.oneIn(5));
    // Some accounts have no picture.
    if (!random.oneIn(17)) {
        object.text("profile_image_url",
                    QStringLiteral("%1/media/profile/%2_normal.png").arg(m_origin, number));
    }
    object.raw("public_metrics", metrics(random)).text("verified_type", u"none");
    if (!random.oneIn(3))
        object.text("location", random.pick(content.lists.value(QStringLiteral("locations"))));
    return object.json();
}

QString People::name(int author) const
{
    if (author < m_natives.size())
        return m_natives.at(author).second;
    RandomSource random = randomFor(author, 3);
    const auto& lists = Content::shared().lists;
    return random.pick(lists.value(QStringLiteral("firstNames"))) + u' ' +
           random.pick(lists.value(QStringLiteral("lastNames")));
}

RandomSource People::randomFor(int author, quint64 purpose) const
{
    return RandomSource(m_seed, 0x9e0 + purpose, static_cast<quint64>(author));
}

} // namespace mirel::simulator
