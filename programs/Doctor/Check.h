// One line of the doctor's report.
#pragma once

#include <string>
#include <vector>

namespace tarnwick {

enum class CheckResult {
    works,
    absent, // optional, and not there
    fails,  // required, and not there
};

struct Check {
    CheckResult result = CheckResult::works;
    std::string subject; // "device"
    std::string name;    // "llvmpipe"
    std::string text;    // a sentence
    std::string package; // Debian's package that would help; empty: none

    bool operator==(const Check&) const = default;
};

using Checks = std::vector<Check>;

} // namespace tarnwick
