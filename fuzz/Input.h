// The input of a target, and random choices made from it.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwick::fuzz {

inline std::string_view textOf(const std::uint8_t* bytes, std::size_t size) {
    return {reinterpret_cast<const char*>(bytes), size};
}

} // namespace tarnwick::fuzz
