// Values of function constants (Metal Shading Language 3.1, 5.8), for a function that is taken from
// a library. Device/FunctionConstants.cpp implements it.
#pragma once

#include "TarnwickMSL/EntryPoint.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::gpu {

// The type of a constant: a scalar, or a vector of 2 to 4 components.
struct DataType {
    msl::Scalar scalar = msl::Scalar::bool_;
    std::uint32_t width = 1;

    bool operator==(const DataType&) const = default;
};

// "float3", "bool"
std::string nameOf(const DataType& type);

// Any thread, one at a time.
class FunctionConstantValues {
  public:
    // One component after another, as the language has them in memory: a bool is a byte. A later
    // value of the same constant replaces the earlier one.
    struct Value {
        std::string name; // empty: by index
        std::uint32_t index = 0;
        DataType type;
        std::array<std::byte, 32> bytes{};

        // A component as an integer, sign- or zero-extended; the bits of a half or float.
        std::uint64_t bitsOf(std::uint32_t component) const;
    };

    // Copies the value of the constant with that index or name.
    void setConstantValue(const void* value, const DataType& type, std::uint32_t index);
    void setConstantValue(const void* value, const DataType& type, std::string_view name);
    // The values of `count` constants with consecutive indices from `first`. Vectors of three
    // components take the space of four.
    void setConstantValues(const void* values, const DataType& type, std::uint32_t first,
                           std::uint32_t count);
    // Removes all values.
    void reset() { values_.clear(); }

    // The last value that was set for the constant; null if the constant has no value.
    const Value* valueOf(const msl::FunctionConstant& constant) const;

  private:
    std::vector<Value> values_;
};

} // namespace tarnwick::gpu
