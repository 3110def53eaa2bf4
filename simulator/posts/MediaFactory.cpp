#include "simulator/posts/MediaFactory.h"

#include "simulator/posts/Content.h"
#include "simulator/posts/JSONText.h"

#include <QSize>

namespace mirel::simulator {

namespace {

QSize photoSize(RandomSource& random)
{
    static const QList<QSize> sizes{{1200, 675},  {1500, 600},  {900, 1600},
                                    {1080, 1080}, {1536, 2048}, {2048, 1365}};
    return random.pick(sizes);
}

QByteArray playlist(const QString& base)
{
    JSONObjectText variant;
    variant.text("content_type", u"application/x-mpegURL")
        .text("url", base + QStringLiteral("/list.m3u8?tag=21"));
    return variant.json();
}

QByteArray film(const QString& base, int bitRate, int height)
{
    JSONObjectText variant;
    variant.number("bit_rate", bitRate)
        .text("content_type", u"video/mp4")
        .text("url", QStringLiteral("%1/%2p.mp4?tag=21").arg(base).arg(height));
    return variant.json();
}

QList<QByteArray> inAnyOrder(const QList<QByteArray>& variants, RandomSource& random)
{
    QList<QByteArray> result;
    for (const int position : random.shuffled(static_cast<int>(variants.size())))
        result.append(variants.at(position));
    return result;
}

} // namespace

MediaFactory::Media MediaFactory::photo(qint64 number, RandomSource& random) const
{
    const QByteArray key = "3_" + QByteArray::number(number);
    const QSize size = photoSize(random);
    JSONObjectText object;
    object.text("media_key", QString::fromLatin1(key))
        .text("type", u"photo")
        .text("url", picture(QStringLiteral("photo"), number, size.width(), size.height()))
        .number("width", size.width())
        .number("height", size.height());
    if (random.oneIn(2))
        object.text("alt_text", random.pick(Content::shared().lists.value(QStringLiteral("captions"))));
    return {key, object.json()};
}

MediaFactory::Media MediaFactory::video(qint64 number, RandomSource& random) const
{
    const QByteArray key = (random.oneIn(2) ? "7_" : "13_") + QByteArray::number(number);
    const bool upright = random.oneIn(3);
    const int width = upright ? 720 : 1280;
    const int height = upright ? 1280 : 720;
    const QString base = QStringLiteral("%1/media/video/%2").arg(m_origin).arg(number);
    const QList<QByteArray> variants = inAnyOrder(
        {film(base, 256'000, 270), film(base, 832'000, 360), film(base, 2'176'000, 720), playlist(base)},
        random);
    JSONObjectText object;
    object.text("media_key", QString::fromLatin1(key))
        .text("type", u"video")
        .number("width", width)
        .number("height", height)
        .number("duration_ms", random.between(4'000, 600'000))
        .text("preview_image_url", picture(QStringLiteral("preview"), number, width, height))
        .raw("variants", jsonArray(variants))
        .raw("public_metrics", "{\"view_count\":" + QByteArray::number(random.below(90'000)) + '}');
    return {key, object.json()};
}

MediaFactory::Media MediaFactory::animatedGIF(qint64 number, RandomSource& random) const
{
    const QByteArray key = "16_" + QByteArray::number(number);
    const int width = random.between(240, 498);
    const QString base = QStringLiteral("%1/media/video/%2").arg(m_origin).arg(number);
    JSONObjectText object;
    object.text("media_key", QString::fromLatin1(key))
        .text("type", u"animated_gif")
        .number("width", width)
        .number("height", 280)
        .text("preview_image_url", picture(QStringLiteral("preview"), number, width, 280))
        .raw("variants", jsonArray({film(base, 0, 280)}));
    return {key, object.json()};
}

QByteArray MediaFactory::cardImages(qint64 number) const
{
    JSONObjectText large;
    large.text("url", picture(QStringLiteral("card"), number, 800, 419))
        .number("width", 800)
        .number("height", 419);
    JSONObjectText small;
    small.text("url", picture(QStringLiteral("card"), number, 150, 150))
        .number("width", 150)
        .number("height", 150);
    return jsonArray({large.json(), small.json()});
}

QString MediaFactory::picture(const QString& folder, qint64 number, int width, int height) const
{
    return QStringLiteral("%1/media/%2/%3-%4x%5.jpg")
        .arg(m_origin, folder)
        .arg(number)
        .arg(width)
        .arg(height);
}

} // namespace mirel::simulator
