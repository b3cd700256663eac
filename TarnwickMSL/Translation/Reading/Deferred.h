// Instructions that are not written at their own place, because what uses them is written without
// them.
#pragma once

#include <llvm/IR/Instructions.h>

#include <optional>

namespace tarnwick::msl::reading {

// The scalar that a shufflevector repeats in every lane; null if there is no such value.
const llvm::Value* repeatedScalar(const llvm::Value* value);

// The factors of a product of a vector and one scalar; absent for other products.
struct Factor {
    const llvm::Value* vector = nullptr;
    const llvm::Value* splat = nullptr; // the operand that repeats
    const llvm::Value* scalar = nullptr;
};
std::optional<Factor> factorOf(const llvm::BinaryOperator& product);

// The x of a difference x - floor(x) that may be computed in any way; null for other operations.
const llvm::Value* wholeOfFraction(const llvm::BinaryOperator& difference);

bool isAtKnownLane(const llvm::InsertElementInst& insert);

// Whether the instruction is written only where a user needs it whole. Never if a phi uses it.
bool isDeferred(const llvm::Instruction& instruction);

} // namespace tarnwick::msl::reading
