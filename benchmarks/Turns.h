// Measures two implementations of the same work in turns, so that other load on the machine affects
// both.
#pragma once

#include "benchmarks/Statistics.h"

#include <algorithm>
#include <ctime>
#include <vector>

namespace tarnwick::bench {

// Milliseconds of the wall clock, and of the CPU time of all threads of this process.
struct Sample {
    double wall = 0, processor = 0;
};

struct TurnTimes {
    double ours = 0, twin = 0; // shortest of the rounds, ms per picture
    double ratio = 0;          // of the two shortest
    double medianRatio = 0;    // median of the ratios of the rounds
    double processorRatio = 0; // of the shortest processor times
};

template <class Work> Sample sample(Work&& work) {
    const std::clock_t start = std::clock();
    const double wall = milliseconds(work);
    return {wall, static_cast<double>(std::clock() - start) * 1000 / CLOCKS_PER_SEC};
}

inline Sample shortest(const std::vector<Sample>& samples) {
    Sample result = samples.front();
    for (const Sample& one : samples)
        result = {std::min(result.wall, one.wall), std::min(result.processor, one.processor)};
    return result;
}

// `rounds` samples of each work; short work is repeated until a sample takes about 25 ms.
template <class Ours, class Twin> TurnTimes inTurns(int rounds, Ours&& ours, Twin&& twin) {
    const double once = milliseconds(ours);
    twin();
    const int times = std::clamp(static_cast<int>(25 / std::max(once, 0.1)), 1, 64);
    auto often = [times](auto& work) {
        for (int i = 0; i < times; i++)
            work();
    };
    std::vector<Sample> ourSamples, twinSamples;
    std::vector<double> ratios;
    for (int round = 0; round < rounds; round++) {
        ourSamples.push_back(sample([&] { often(ours); }));
        twinSamples.push_back(sample([&] { often(twin); }));
        ratios.push_back(ourSamples.back().wall / twinSamples.back().wall);
    }
    const Sample our = shortest(ourSamples), their = shortest(twinSamples);
    return {.ours = our.wall / times,
            .twin = their.wall / times,
            .ratio = our.wall / their.wall,
            .medianRatio = median(ratios),
            .processorRatio = our.processor / their.processor};
}

} // namespace tarnwick::bench
