#include "TarnwickCore/Text/Numbers.h"

#include <array>
#include <charconv>
#include <clocale>
#include <cstdlib>
#include <locale.h>
#include <string>

namespace tarnwick {
namespace {

// std::from_chars accepts neither a leading plus nor the prefix 0x, so this uses the C function
// with its own locale.
template <typename Number, typename Convert>
std::optional<Number> wholeNumber(std::string_view token, Convert convert) {
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    constexpr std::string_view blanks = " \t\n\v\f\r";
    if (token.empty() || blanks.find(token.front()) != std::string_view::npos)
        return std::nullopt;
    const std::string terminated(token);
    char* end = nullptr;
    const Number number = convert(terminated.c_str(), &end, cLocale);
    if (end != terminated.c_str() + terminated.size())
        return std::nullopt;
    return number;
}

// Digits, after a minus if the type has a sign.
template <typename Integer> std::optional<Integer> wholeInteger(std::string_view digits) {
    Integer number = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    if (error != std::errc{} || stop != end)
        return std::nullopt;
    return number;
}

template <typename Number> std::string fewestDigits(Number number) {
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

} // namespace

std::optional<float> floatOf(std::string_view token) {
    return wholeNumber<float>(token, strtof_l);
}

std::optional<double> doubleOf(std::string_view token) {
    return wholeNumber<double>(token, strtod_l);
}

std::optional<std::int64_t> integerOf(std::string_view digits) {
    return digits.starts_with('-') ? std::nullopt : wholeInteger<std::int64_t>(digits);
}

std::optional<std::uint64_t> unsignedIntegerOf(std::string_view digits) {
    return wholeInteger<std::uint64_t>(digits);
}

std::optional<std::int64_t> signedIntegerOf(std::string_view token) {
    return token.starts_with('+') ? integerOf(token.substr(1)) : wholeInteger<std::int64_t>(token);
}

std::string shortest(float number) {
    return fewestDigits(number);
}

std::string shortest(double number) {
    return fewestDigits(number);
}

double asWritten(float number) {
    return doubleOf(shortest(number)).value_or(number);
}

} // namespace tarnwick
