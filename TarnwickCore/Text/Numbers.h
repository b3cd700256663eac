// Numbers as text, the same in every locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

// The float that the whole of `token` spells in strtof's syntax (C17, 7.22.1.3): decimal or
// hexadecimal, "inf", "nan". Nothing when anything stands before or after the number.
std::optional<float> floatOf(std::string_view token);
// The same for a double.
std::optional<double> doubleOf(std::string_view token);

// The number that the ASCII digits of `digits` spell. Nothing when it has other characters, is
// empty, or does not fit.
std::optional<std::int64_t> integerOf(std::string_view digits);
// The same, with a plus or a minus allowed before the digits.
std::optional<std::int64_t> signedIntegerOf(std::string_view token);
// The digits again, for numbers from 0 to 2^64 - 1.
std::optional<std::uint64_t> unsignedIntegerOf(std::string_view digits);

// The fewest digits that read back as the same number.
std::string shortest(float number);
std::string shortest(double number);

// The double that has the float's own shortest digits, so that 0.1F is written as 0.1 where there
// are doubles only, as in JSON.
double asWritten(float number);

} // namespace tarnwick
