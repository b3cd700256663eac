#include "TarnwickSpirv/Instruction.h"

#include <cstring>

namespace tarnwick::spirv {

void append(Words& words, spv::Op op, Operands first, Operands second) {
    const auto count = static_cast<std::uint32_t>(1 + first.size() + second.size());
    words.push_back(count << spv::WordCountShift | static_cast<std::uint32_t>(op));
    words.insert(words.end(), first.begin(), first.end());
    words.insert(words.end(), second.begin(), second.end());
}

Words literal(std::string_view text) {
    Words words(text.size() / sizeof(std::uint32_t) + 1); // with the final zero byte
    std::memcpy(words.data(), text.data(), text.size());
    return words;
}

} // namespace tarnwick::spirv
