#pragma once

#include <QList>

namespace mirel::simulator {

// Mixes `value` so that neighbouring inputs give unrelated outputs.
[[nodiscard]] constexpr quint64 scrambled(quint64 value)
{
    value += 0x9e3779b97f4a7c15U;
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9U;
    value = (value ^ (value >> 27)) * 0x94d049bb133111ebU;
    return value ^ (value >> 31);
}

// A stream of numbers that depends on nothing but its seed, so that any post can be made at any time
// without the ones before it.
class RandomSource
{
public:
    RandomSource(quint64 seed, quint64 stream, quint64 item)
        : m_state(scrambled(seed ^ scrambled(stream ^ scrambled(item))))
    {
    }

    [[nodiscard]] quint64 next() { return scrambled(m_state += 0x9e3779b97f4a7c15U); }

    // From 0 to `bound` - 1.
    [[nodiscard]] int below(int bound) { return static_cast<int>(next() % static_cast<quint64>(bound)); }

    // Both ends included.
    [[nodiscard]] int between(int lowest, int highest) { return lowest + below(highest - lowest + 1); }

    [[nodiscard]] bool oneIn(int count) { return below(count) == 0; }

    // From 0 to 1, 1 excluded.
    [[nodiscard]] double fraction() { return static_cast<double>(next() >> 11) * 0x1.0p-53; }

    template <typename T>
    [[nodiscard]] const T& pick(const QList<T>& values)
    {
        return values.at(below(static_cast<int>(values.size())));
    }

    // The numbers from 0 to `count` - 1 in random order.
    [[nodiscard]] QList<int> shuffled(int count)
    {
        QList<int> order;
        for (int i = 0; i < count; ++i)
            order.insert(below(i + 1), i);
        return order;
    }

private:
    quint64 m_state;
};

} // namespace mirel::simulator
