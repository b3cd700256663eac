// Small arithmetic on measured times.
#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <vector>

namespace tarnwick::bench {

// The milliseconds of one call of `work`.
template <class Work> double milliseconds(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

// All of these require at least one value.
inline double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

// The value below which the share `part` of the values is, [0, 1].
inline double percentile(std::vector<double> values, double part) {
    std::sort(values.begin(), values.end());
    const auto last = static_cast<double>(values.size() - 1);
    return values[static_cast<std::size_t>(std::ceil(part * last))];
}

inline double smallest(const std::vector<double>& values) {
    return *std::min_element(values.begin(), values.end());
}

inline double largest(const std::vector<double>& values) {
    return *std::max_element(values.begin(), values.end());
}

inline double geometricMean(const std::vector<double>& values) {
    double sum = 0;
    for (const double value : values)
        sum += std::log(value);
    return std::exp(sum / static_cast<double>(values.size()));
}

} // namespace tarnwick::bench
