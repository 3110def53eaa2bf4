#include "simulator/Pictures.h"

#include "simulator/posts/RandomSource.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRegularExpression>

namespace mirel::simulator {

namespace {

constexpr int portraitSize = 96;
constexpr int longestSide = 720;

RandomSource randomFor(const QString& name)
{
    const QByteArray hash = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Sha1);
    return RandomSource(hash.left(8).toHex().toULongLong(nullptr, 16), 0x91c, 0);
}

QByteArray encoded(const QImage& image, const char* format, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, quality);
    return bytes;
}

void paintSky(QPainter& painter, const QSize& size, int hue, bool isNight)
{
    QLinearGradient sky(0, 0, 0, size.height());
    sky.setColorAt(0, QColor::fromHsv(hue, 150, isNight ? 60 : 200));
    sky.setColorAt(1, QColor::fromHsv((hue + 40) % 360, 90, isNight ? 130 : 250));
    painter.fillRect(QRect(QPoint(), size), sky);
}

void paintSun(QPainter& painter, const QSize& size, RandomSource& random)
{
    const double radius = size.height() * (0.06 + random.fraction() * 0.12);
    const QPointF centre(size.width() * (0.15 + random.fraction() * 0.7),
                         size.height() * (0.15 + random.fraction() * 0.3));
    QRadialGradient glow(centre, radius * 3);
    glow.setColorAt(0, QColor(255, 250, 225, 170));
    glow.setColorAt(1, QColor(255, 250, 225, 0));
    painter.setBrush(glow);
    painter.drawEllipse(centre, radius * 3, radius * 3);
    painter.setBrush(QColor(255, 248, 220));
    painter.drawEllipse(centre, radius, radius);
}

void paintHills(QPainter& painter, const QSize& size, int hue, RandomSource& random)
{
    constexpr int layers = 4;
    for (int layer = 0; layer < layers; ++layer) {
        const double base = size.height() * (0.5 + 0.13 * layer);
        QPainterPath hill(QPointF(0, size.height()));
        double height = base;
        for (int step = 0; step <= 8; ++step) {
            const double x = size.width() * step / 8.0;
            const double next = base - random.fraction() * size.height() * 0.16;
            hill.cubicTo(x - size.width() / 16.0, height, x - size.width() / 16.0, next, x, next);
            height = next;
        }
        hill.lineTo(size.width(), size.height());
        hill.closeSubpath();
        painter.setBrush(QColor::fromHsv((hue + 20 * layer) % 360, 90 + 30 * layer, 190 - 38 * layer));
        painter.drawPath(hill);
    }
}

void paintHouses(QPainter& painter, const QSize& size, RandomSource& random)
{
    const int count = random.between(0, 5);
    for (int i = 0; i < count; ++i) {
        const double width = size.width() * (0.03 + random.fraction() * 0.04);
        const double left = random.fraction() * (size.width() - width);
        const double top = size.height() * (0.8 + random.fraction() * 0.08);
        painter.setBrush(QColor::fromHsv(random.below(50), 120, 230));
        painter.drawRect(QRectF(left, top, width, width));
        painter.setBrush(QColor::fromHsv(random.below(30), 160, 140));
        painter.drawPolygon(QPolygonF({{left - width * 0.15, top},
                                       {left + width * 0.5, top - width * 0.6},
                                       {left + width * 1.15, top}}));
    }
}

} // namespace

QByteArray Pictures::portrait(const QString& name)
{
    RandomSource random = randomFor(name);
    QImage image(portraitSize, portraitSize, QImage::Format_ARGB32_Premultiplied);
    const int hue = random.below(360);
    image.fill(QColor::fromHsv(hue, 70, 240));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromHsv((hue + 150) % 360, 140, random.between(110, 200)));
    painter.drawEllipse(QPointF(48, 104), 40, 44);
    painter.setBrush(
        QColor::fromHsv(random.between(18, 34), random.between(60, 140), random.between(120, 250)));
    painter.drawEllipse(QPointF(48, 42), 20, 23);
    painter.setBrush(QColor::fromHsv(random.below(45), random.between(40, 200), random.between(30, 150)));
    painter.drawChord(QRectF(26, 15, 44, random.between(36, 52)), 0, 180 * 16);
    painter.end();
    return encoded(image, "PNG", -1);
}

QByteArray Pictures::scene(const QString& name)
{
    static const QRegularExpression pattern(QStringLiteral("-(\\d{2,4})x(\\d{2,4})\\.jpg$"));
    const auto match = pattern.match(name);
    if (!match.hasMatch())
        return {};
    QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    if (std::max(size.width(), size.height()) > longestSide)
        size.scale(longestSide, longestSide, Qt::KeepAspectRatio);
    size = size.expandedTo(QSize(1, 1));
    RandomSource random = randomFor(name.left(match.capturedStart()));
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const int hue = random.below(360);
    paintSky(painter, size, hue, random.oneIn(4));
    paintSun(painter, size, random);
    paintHills(painter, size, (hue + 120) % 360, random);
    paintHouses(painter, size, random);
    painter.end();
    return encoded(image, "JPG", 82);
}

} // namespace mirel::simulator
