// The measured errors of functions, from the tables of docs/accuracy.md and docs/library.md.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace tarnwick {

struct MeasuredError {
    std::string of;      // a range of arguments or a part of the result, "[-1, 1]"; may be empty
    std::string worst;   // "0.50 ulp"; without a unit it is absolute
    std::string granted; // "4 ulp", "exact"
};

// The errors of one function in one kind of math. All arguments are measured, or a sample.
struct Accuracy {
    std::vector<MeasuredError> errors;
    bool isOfAllArguments = false;
};

// By the name of the function as the tables have it: "sin", "precise::sin", "sin (half)".
std::map<std::string, Accuracy> measuredAccuracy();

// "Largest error: exact", or a list with a line for each kind of math: "- fast math: 2.19 ulp,
// granted: 5 ulp". Empty for a function that was not measured.
std::string accuracyText(const std::map<std::string, Accuracy>& measured, const std::string& name);

} // namespace tarnwick
