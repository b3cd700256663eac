// The lanes of a value as consecutive words of 32 bits, as they are in memory.
#pragma once

#include "TarnwickMSL/Translation/Passes/Widths/Pairs.h"

namespace tarnwick::msl {

using WordList = llvm::SmallVector<llvm::Value*, 8>;

// Lanes of 1, 2, 4 or 8 bytes: each is one word, whose unused bits are zero, or two. The first byte
// of the first lane is the lowest of the first word; unused bytes are zero.
WordList packed(llvm::ArrayRef<WordList> lanes, std::uint64_t laneBytes, FoldingBuilder& builder);

// A lane of packed words, as one or two words; of less than four bytes, the other bits of its word
// are not cleared.
WordList laneOf(llvm::ArrayRef<llvm::Value*> words, std::uint64_t lane, std::uint64_t laneBytes,
                FoldingBuilder& builder);

} // namespace tarnwick::msl
