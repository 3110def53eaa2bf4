#pragma once

#include <QByteArray>
#include <QString>

namespace mirel::simulator {

// Paints the pictures of the simulated world. A picture follows from its name alone.
struct Pictures
{
    Pictures() = delete;

    // A round portrait in PNG.
    [[nodiscard]] static QByteArray portrait(const QString& name);

    // A landscape in JPEG. Its proportions are those at the end of the name, "-1200x675"; it is never
    // larger than 720 pixels on its long side. Empty when the name holds no size.
    [[nodiscard]] static QByteArray scene(const QString& name);
};

} // namespace mirel::simulator
