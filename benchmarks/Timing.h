#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

namespace mirel {

using Duration = std::chrono::duration<double>;

template <typename Operation>
Duration timeOf(Operation operation)
{
    const auto start = std::chrono::steady_clock::now();
    operation();
    return std::chrono::steady_clock::now() - start;
}

// The middle one of the values, of which there are some, or the mean of the two in the middle.
inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

} // namespace mirel
