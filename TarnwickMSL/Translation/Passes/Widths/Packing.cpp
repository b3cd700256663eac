#include "TarnwickMSL/Translation/Passes/Widths/Packing.h"

namespace tarnwick::msl {

using namespace llvm;

static constexpr std::uint64_t wordBytes = 4;

WordList packed(ArrayRef<WordList> lanes, std::uint64_t laneBytes, FoldingBuilder& builder) {
    WordList words((lanes.size() * laneBytes + wordBytes - 1) / wordBytes, builder.getInt32(0));
    std::uint64_t at = 0;
    for (const WordList& lane : lanes) {
        for (std::uint64_t part = 0; part < lane.size(); ++part) {
            const std::uint64_t byte = at + part * wordBytes;
            Value*& into = words[byte / wordBytes];
            into = builder.CreateOr(into, builder.CreateShl(lane[part], byte % wordBytes * 8));
        }
        at += laneBytes;
    }
    return words;
}

WordList laneOf(ArrayRef<Value*> words, std::uint64_t lane, std::uint64_t laneBytes,
                FoldingBuilder& builder) {
    const std::uint64_t byte = lane * laneBytes;
    Value* first = words[byte / wordBytes];
    if (laneBytes == 2 * wordBytes)
        return {first, words[byte / wordBytes + 1]};
    return {builder.CreateLShr(first, byte % wordBytes * 8)};
}

} // namespace tarnwick::msl
