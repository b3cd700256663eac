// The functions that give other results in fast math than in precise math, each with an example.
#pragma once

#include "tests/TarnwickMSL/Library/Machine.h"

#include <string>
#include <vector>

namespace tarnwick::trials {

struct Difference {
    std::string call; // "pow(-2, 3)"
    Case precise, fast;
    float inPrecise = 0, inFast = 0; // on the device
    double exact = 0;
};

// The examples, computed on the device. Throws std::runtime_error with one sentence.
std::vector<Difference> differences(Machine& machine);

// "| call | exact | precise:: | fast:: | granted in precise math | granted in fast math |"
std::string differencesTable(const std::vector<Difference>& differences);

} // namespace tarnwick::trials
