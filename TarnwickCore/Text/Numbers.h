// Numbers as text, the same in every locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

// The float that the whole of `token` denotes in the syntax of strtof (C17, 7.22.1.3): decimal or
// hexadecimal, "inf", "nan". Nothing if there is other text before or after the number.
std::optional<float> floatOf(std::string_view token);
// The same for a double.
std::optional<double> doubleOf(std::string_view token);

// The number that `digits`, ASCII digits, denotes. Nothing if it is empty, has other characters, or
// does not fit.
std::optional<std::int64_t> integerOf(std::string_view digits);
// The same, with an optional plus or minus before the digits.
std::optional<std::int64_t> signedIntegerOf(std::string_view token);
// The same for numbers from 0 to 2^64 - 1.
std::optional<std::uint64_t> unsignedIntegerOf(std::string_view digits);

// The fewest digits that read back as the same number.
std::string shortest(float number);
std::string shortest(double number);

// The double with the same shortest digits as the float: 0.1F becomes 0.1. For formats that have
// doubles only, such as JSON.
double asWritten(float number);

} // namespace tarnwick
