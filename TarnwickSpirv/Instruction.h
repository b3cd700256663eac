// SPIR-V instructions as words (SPIR-V 1.6, 2.3).
#pragma once

#include <spirv/unified1/spirv.hpp11>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <ranges>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

namespace tarnwick::spirv {

using Id = std::uint32_t;
using Words = std::vector<std::uint32_t>;

// A view of an instruction's operands: of a list in braces or of any array of words. A list in
// braces is valid only during the call to which it is passed.
class Operands : public std::span<const std::uint32_t> {
  public:
    Operands() = default;
    Operands(std::initializer_list<std::uint32_t> list) : span(list.begin(), list.size()) {}
    template <std::ranges::contiguous_range Range>
    requires std::same_as<std::ranges::range_value_t<Range>, std::uint32_t> &&
        (!std::derived_from<std::remove_cvref_t<Range>, Operands>)Operands(const Range& range)
        : span(std::ranges::data(range), std::ranges::size(range)) {}
};

struct Instruction {
    spv::Op op = spv::Op::OpNop;
    Operands operands; // all words after the first; a view of the section
};

// Appends one instruction. The operands are the two lists, one after the other.
void append(Words& words, spv::Op op, Operands first, Operands second = {});

// The words of a literal string as an operand (SPIR-V 1.6, 2.2.1).
Words literal(std::string_view text);

// Calls `take(Instruction)` for each instruction. Stops at a word count of 0 or past the end.
template <typename Take> void eachInstruction(Operands words, const Take& take) {
    for (std::size_t at = 0; at < words.size();) {
        const std::size_t count = words[at] >> spv::WordCountShift;
        if (count == 0 || count > words.size() - at)
            return;
        take(Instruction{static_cast<spv::Op>(words[at] & spv::OpCodeMask),
                         words.subspan(at + 1, count - 1)});
        at += count;
    }
}

} // namespace tarnwick::spirv
