#include "TarnwickGPU/FunctionConstants.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace tarnwick::gpu {

namespace {

struct ScalarRow {
    const char* name;
    std::size_t bytes;
    bool isSigned;
};

// In the order of msl::Scalar.
constexpr std::array<ScalarRow, 11> scalars{{{"bool", 1, false},
                                             {"char", 1, true},
                                             {"uchar", 1, false},
                                             {"short", 2, true},
                                             {"ushort", 2, false},
                                             {"int", 4, true},
                                             {"uint", 4, false},
                                             {"half", 2, false},
                                             {"float", 4, false},
                                             {"long", 8, true},
                                             {"ulong", 8, false}}};
static_assert(scalars.size() == static_cast<std::size_t>(msl::Scalar::uint64) + 1);

const ScalarRow& rowOf(const DataType& type) {
    return scalars[static_cast<std::size_t>(type.scalar)];
}

FunctionConstantValues::Value made(const void* value, const DataType& type) {
    FunctionConstantValues::Value made{.name = {}, .type = type};
    std::memcpy(made.bytes.data(), value, rowOf(type).bytes * type.width);
    return made;
}

} // namespace

std::string nameOf(const DataType& type) {
    return rowOf(type).name + (type.width > 1 ? std::to_string(type.width) : "");
}

std::uint64_t FunctionConstantValues::Value::bitsOf(std::uint32_t component) const {
    const ScalarRow& row = rowOf(type);
    std::uint64_t bits = 0;
    std::memcpy(&bits, bytes.data() + component * row.bytes, row.bytes);
    const std::uint64_t sign = std::uint64_t{1} << (8 * row.bytes - 1);
    return row.isSigned && (bits & sign) ? bits | ~(sign | (sign - 1)) : bits;
}

void FunctionConstantValues::setConstantValue(const void* value, const DataType& type,
                                              std::uint32_t index) {
    values_.push_back(made(value, type));
    values_.back().index = index;
}

void FunctionConstantValues::setConstantValue(const void* value, const DataType& type,
                                              std::string_view name) {
    values_.push_back(made(value, type));
    values_.back().name = name;
}

void FunctionConstantValues::setConstantValues(const void* values, const DataType& type,
                                               std::uint32_t first, std::uint32_t count) {
    const std::size_t stride = rowOf(type).bytes * (type.width == 3 ? 4 : type.width);
    for (std::uint32_t n = 0; n < count; ++n)
        setConstantValue(static_cast<const std::byte*>(values) + n * stride, type, first + n);
}

const FunctionConstantValues::Value*
FunctionConstantValues::valueOf(const msl::FunctionConstant& constant) const {
    const auto found = std::find_if(values_.rbegin(), values_.rend(), [&](const Value& value) {
        return value.name.empty() ? value.index == constant.index : value.name == constant.name;
    });
    return found == values_.rend() ? nullptr : &*found;
}

} // namespace tarnwick::gpu
