#pragma once

#include "simulator/posts/Content.h"
#include "simulator/posts/RandomSource.h"

namespace mirel::simulator {

// Writes readable text on one topic, without repeating a sentence before all of them were used.
class Prose
{
public:
    // Draws from `random`, which must outlive it.
    Prose(const Topic& topic, RandomSource& random);

    [[nodiscard]] QString sentence();
    // So many sentences with blanks between them.
    [[nodiscard]] QString paragraph(int sentences);
    [[nodiscard]] QString title();

private:
    [[nodiscard]] QString filled(QString pattern);

    const Topic& m_topic;
    RandomSource& m_random;
    QList<int> m_order;
    qsizetype m_next = 0;
};

} // namespace mirel::simulator
