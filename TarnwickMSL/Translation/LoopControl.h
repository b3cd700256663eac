// What a program asks of the driver for a loop: to unroll it, or to keep it (SPIR-V 1.6, 3.23).
#pragma once

#include <llvm/IR/Instructions.h>

namespace tarnwick::msl {

enum class LoopControl : std::uint8_t { none, unroll, keep };

// Metadata of a phi of the loop's header.
inline constexpr llvm::StringLiteral unrollMark = "msl.unroll", keepMark = "msl.nounroll";

inline LoopControl markedLoopControl(const llvm::BasicBlock& header) {
    for (const llvm::PHINode& phi : header.phis()) {
        if (phi.getMetadata(unrollMark))
            return LoopControl::unroll;
        if (phi.getMetadata(keepMark))
            return LoopControl::keep;
    }
    return LoopControl::none;
}

} // namespace tarnwick::msl
