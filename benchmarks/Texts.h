// The speed of the parts without a device, which read and write text and data, and of the
// confinement of the process that does.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tarnwick::bench {

struct TextCase {
    std::string name;               // for --only
    std::string what;               // one line, for printing
    std::string unit;               // of `measure` and `bar`
    double bar = 0;                 // maximum of the median, or minimum for a rate
    bool isRate = false;            // greater is better
    std::function<double()> sample; // one measurement of about 10 ms
};

// The measured cases, in the order of printing; `episodes` is a folder of episodes. Throws
// std::runtime_error if it has none.
std::vector<TextCase> textCases(const std::filesystem::path& episodes);

} // namespace tarnwick::bench
