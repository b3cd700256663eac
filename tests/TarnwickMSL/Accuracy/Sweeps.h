// The functions of one float, each with the range of its arguments. The call, the bound and the
// reference for single arguments are those of the library's cases.
#pragma once

#include "tests/TarnwickMSL/Accuracy/Truth.h"
#include "tests/TarnwickMSL/Library/Cases.h"

#include <limits>
#include <string>
#include <vector>

namespace tarnwick::trials {

struct Sweep {
    std::string name; // of the library: "precise::sin"; of two results, "precise::sincos, sine"
    Case row;         // its body, bound and reference
    Truth truth = nullptr;
    // The arguments for which the language states the bound. In precise math these are all floats,
    // with infinities and NaNs.
    float low = -std::numeric_limits<float>::infinity();
    float high = std::numeric_limits<float>::infinity();
    bool hasSpecials = false;
};

// Sweeps of one truth follow each other. Stops if a row names a case or a truth that does not
// exist.
std::vector<Sweep> sweeps();

} // namespace tarnwick::trials
