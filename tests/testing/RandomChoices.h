#pragma once

#include <QtGlobal>

#include <iterator>
#include <random>

namespace mirel::testing {

// Choices that a seed determines, the same on every machine.
class RandomChoices
{
public:
    explicit RandomChoices(unsigned int seed)
        : m_engine(seed)
    {
    }

    // From 0 to `limit` - 1.
    int below(int limit) { return static_cast<int>(m_engine() % static_cast<unsigned int>(limit)); }

    // True once in `outOf` times.
    bool chance(int outOf) { return below(outOf) == 0; }

    // One of the elements, of which there are some.
    template <typename Container>
    const auto& oneOf(const Container& container)
    {
        return *std::next(std::begin(container), below(static_cast<int>(std::size(container))));
    }

private:
    std::mt19937 m_engine;
};

} // namespace mirel::testing
