// The target of a pointer as a root and a byte offset.
#pragma once

#include <llvm/ADT/SmallVector.h>
#include <llvm/ADT/StringRef.h>
#include <llvm/IR/DataLayout.h>
#include <llvm/IR/Value.h>

#include <cstdint>

namespace tarnwick::msl::reading {

// `scale` bytes for each unit of a value that is known only at run time.
struct Term {
    const llvm::Value* index = nullptr;
    std::int64_t scale = 0;
    // The offset before the term was added. It identifies the member of a struct that the term
    // indexes, if the optimiser has moved a constant from the index into the offset.
    std::int64_t before = 0;
};

struct Place {
    // An alloca, a global variable, or the conversion of an address to a pointer.
    const llvm::Value* root = nullptr;
    std::int64_t offset = 0; // bytes, without the terms
    llvm::SmallVector<Term, 2> terms;
    // Whether the terms are known to add no negative number of bytes; false for other roots than
    // allocas.
    bool isRising = false;
    bool isOfWords = false; // a step of a loop over words of memory, whatever their types
    // Whether each step is into the value that the step before reached, so that each term counts
    // elements of the array that its step names.
    bool isTyped = true;
};

// The metadata of such a step.
constexpr llvm::StringLiteral wordStep = "msl.words";

// The address that the root is converted from; null for a variable.
const llvm::Value* addressOf(const llvm::Value* root);

// Throws CompilerFault on a pointer that does not come from one root.
Place placeOf(const llvm::Value* pointer, const llvm::DataLayout& layout);

} // namespace tarnwick::msl::reading
