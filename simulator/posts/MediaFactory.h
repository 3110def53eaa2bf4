#pragma once

#include "simulator/posts/RandomSource.h"

#include <QByteArray>
#include <QString>

#include <utility>

namespace mirel::simulator {

// Writes media objects whose pictures the simulator serves.
class MediaFactory
{
public:
    explicit MediaFactory(QString origin)
        : m_origin(std::move(origin))
    {
    }

    using Media = std::pair<QByteArray, QByteArray>;

    // Each returns the media key and the object. `number` makes the key unique.
    [[nodiscard]] Media photo(qint64 number, RandomSource& random) const;
    [[nodiscard]] Media video(qint64 number, RandomSource& random) const;
    [[nodiscard]] Media animatedGIF(qint64 number, RandomSource& random) const;

    // Two sizes of a card's picture, as the `images` of a link.
    [[nodiscard]] QByteArray cardImages(qint64 number) const;

private:
    [[nodiscard]] QString picture(const QString& folder, qint64 number, int width, int height) const;

    QString m_origin;
};

} // namespace mirel::simulator
