// The variables that a pointer may point into, and the distances by which it moves.
#pragma once

#include "TarnwickMSL/Translation/Passes/Memory/PointersInMemory.h"

#include <llvm/ADT/ArrayRef.h>
#include <llvm/ADT/SetVector.h>
#include <llvm/IR/DataLayout.h>
#include <llvm/IR/Instructions.h>

namespace tarnwick::msl {

inline llvm::Value* baseOf(llvm::Value* pointer) {
    return const_cast<llvm::Value*>(baseOf(static_cast<const llvm::Value*>(pointer)));
}

// Whether the pointer has become numbers: a phi, a select, or an integer that became a pointer.
bool isChoice(const llvm::Value* pointer);

// The root of addresses, the memory of the whole device: the null pointer.
llvm::Value* everywhere(llvm::LLVMContext& context);

using Roots = llvm::SmallSetVector<llvm::Value*, 4>;

// The locals and globals that the pointer may point into, and `everywhere` for an address. Throws
// CompilerFault on a pointer that comes from nowhere else.
Roots rootsOf(llvm::Value* pointer, const PointersInMemory& memory);

// The greatest common divisor of all distances that the pointers can move, in bytes: all distances
// are whole units, so that the index of an array remains an index. 0 if none moves.
std::uint64_t unitOf(llvm::ArrayRef<llvm::Value*> pointers, const PointersInMemory& memory,
                     const llvm::DataLayout& layout);

} // namespace tarnwick::msl
