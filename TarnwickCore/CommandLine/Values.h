// The values that an option of a command line takes.
#pragma once

#include "TarnwickBase/PixelSize.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tarnwick {

struct AnyText {};
struct FileName {}; // of a file or folder, not empty

// [least, most]. `unit` is a plural noun and may be empty, as in the records below.
struct WholeNumber {
    std::int64_t least = 0;
    std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    std::string_view unit{};
    bool isHexadecimalToo = false; // after "0x"
};

// [least, most], or (least, most]. The GPU has single precision, which limits the default `most`.
struct Number {
    double least = 0;
    double most = std::numeric_limits<float>::max();
    std::string_view unit{};
    bool excludesLeast = false;
};

// WIDTHxHEIGHT in pixels.
struct SizeInPixels {
    std::int64_t leastWidth = 1, leastHeight = 1;
    std::int64_t most = 16384; // of either side
    bool isEven = false;       // either side
};

// One of the texts that `choices` returns. `listedBy` names the command that lists them if they are
// too many for an error message; otherwise it is empty.
struct OneOf {
    std::vector<std::string_view> (*choices)();
    std::string_view listedBy{};
};

using Values = std::variant<AnyText, FileName, WholeNumber, Number, SizeInPixels, OneOf>;

// "from 1 to 1000"; empty if there are no limits.
std::string range(const Values& values);
// "a whole number from 1 to 1000"; empty if any text is a value.
std::string described(const Values& values);

bool accept(const Values& values, std::string_view text);

// The number of the digits, decimal or hexadecimal after 0x; nothing if `text` is not one.
std::optional<std::uint64_t> unsignedNumberOf(std::string_view text);

// Width and height; nothing if `text` is not WIDTHxHEIGHT.
std::optional<PixelSize> sizeOf(std::string_view text);

} // namespace tarnwick
