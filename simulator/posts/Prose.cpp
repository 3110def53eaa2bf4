#include "simulator/posts/Prose.h"

namespace mirel::simulator {

Prose::Prose(const Topic& topic, RandomSource& random)
    : m_topic(topic)
    , m_random(random)
    , m_order(random.shuffled(static_cast<int>(topic.sentences.size())))
{
}

QString Prose::sentence()
{
    const int number = m_order.at(m_next);
    m_next = (m_next + 1) % m_order.size();
    return filled(m_topic.sentences.at(number));
}

QString Prose::paragraph(int sentences)
{
    QStringList parts;
    for (int i = 0; i < sentences; ++i)
        parts.append(sentence());
    return parts.join(u' ');
}

QString Prose::title()
{
    return filled(m_random.pick(m_topic.titles));
}

QString Prose::filled(QString pattern)
{
    qsizetype open = pattern.indexOf(u'{');
    while (open >= 0) {
        const qsizetype close = pattern.indexOf(u'}', open);
        const QString name = pattern.mid(open + 1, close - open - 1);
        const QString value = m_random.pick(m_topic.slotValues.value(name));
        pattern.replace(open, close - open + 1, value);
        open = pattern.indexOf(u'{', open + value.size());
    }
    pattern[0] = pattern[0].toUpper();
    return pattern;
}

} // namespace mirel::simulator
