// Turns pointers that are in memory into numbers of 64 bits.
#pragma once

#include <llvm/ADT/SmallPtrSet.h>
#include <llvm/ADT/SmallVector.h>
#include <llvm/IR/Function.h>

namespace tarnwick::msl {

// The pointer without the steps on top of it.
const llvm::Value* baseOf(const llvm::Value* pointer);

// What `pointers` must know of the conversions that stand for loads and stores of pointers.
struct PointersInMemory {
    // Conversions of pointers that the thread or the threadgroup keeps for itself, and the pointers
    // that it stores. Their numbers are those of variables, unless an address is among them.
    llvm::SmallPtrSet<const llvm::Instruction*, 8> own;
    llvm::SmallVector<llvm::Value*, 8> stored;
    bool ownAreAddresses = false;
    // All other numbers are addresses in the device's memory. The code reads pointers from buffers
    // or writes them there, or converts between integers and pointers.
    bool usesAddresses = false;

    // Whether the number of the conversion is an address.
    bool isAddress(const llvm::Instruction* conversion) const {
        return ownAreAddresses || !own.contains(conversion);
    }
};

// The sentence for pointers that cannot be resolved.
extern const char* const unresolvedPointer;

// Makes conversions of constants instructions. Turns each load of a pointer into a load of an
// integer and a conversion, each store into a conversion and a store, and removes pointers from the
// types of the memory. `mayUseAddresses`: otherwise throws TranslationError on code that uses
// addresses.
PointersInMemory numberPointersInMemory(llvm::Function& main, bool mayUseAddresses);

} // namespace tarnwick::msl
