// Values of function constants (Metal Shading Language 3.1, 5.8) that are fixed when a program is
// compiled.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::msl {

// One component: an integer (false is 0, true is 1; values of ulong wrap around) or a fraction.
struct ConstantNumber {
    bool isReal = false;
    std::int64_t integer = 0;
    double real = 0;

    bool operator==(const ConstantNumber&) const = default;
};

struct ConstantValue {
    std::string name;                    // the constant's, without namespaces
    std::vector<ConstantNumber> numbers; // one for each component

    bool operator==(const ConstantValue&) const = default;
};

struct ConstantValues {
    std::vector<ConstantValue> values;
    // Constants without a value here have none for ever: they are zero, and
    // is_function_constant_defined is false. Default: the module takes their values later, as
    // specialisation constants.
    bool othersAreUndefined = false;

    bool operator==(const ConstantValues&) const = default;
};

} // namespace tarnwick::msl
