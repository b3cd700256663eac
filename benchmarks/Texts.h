// How fast the parts without a device are: what reads and writes text and data.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tarnwick::bench {

struct TextCase {
    std::string name;               // what --only takes
    std::string what;               // one line, as it is printed
    std::string unit;               // of `measure` and `bar`
    double bar = 0;                 // what the median is to stay below, or to reach
    bool isRate = false;            // more is better
    std::function<double()> sample; // one measurement, taking about a hundredth of a second
};

// What is measured, in the order of printing; `episodes` is a folder of them. Throws
// std::runtime_error where it holds none.
std::vector<TextCase> textCases(const std::filesystem::path& episodes);

} // namespace tarnwick::bench
