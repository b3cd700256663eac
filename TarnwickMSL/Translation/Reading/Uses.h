// The uses of memory, and views for memory that is used with other types than its declared
// type.
#pragma once

#include "TarnwickMSL/Translation/Reading/Access.h"

#include <llvm/ADT/ArrayRef.h>

#include <cstdint>
#include <vector>

namespace tarnwick::msl::reading {

// A load or store of a root's memory, or an atomic change.
struct Use {
    Place place{};
    llvm::Type* type = nullptr;
    bool isWrite = false;
    bool isAtomic = false;
};
// Throws CompilerFault if a pointer into the root is chosen at run time.
std::vector<Use> usesOf(const llvm::Value& root, const llvm::DataLayout& layout);

// Whether the access is valid for the use. `isShared`: other invocations use the memory too, and
// the bytes beside the value cannot be kept.
bool suits(const Access& access, const Use& use, bool isShared);

// A view of a buffer that can show any value at that place: integers whose size divides the value's
// offset and the sizes of its parts.
View unitView(const Place& place, llvm::Type* type, const llvm::DataLayout& layout);
// The view of `bytes` bytes of memory that suits all its uses.
View commonView(llvm::ArrayRef<Use> uses, std::uint64_t bytes, llvm::LLVMContext& context,
                const llvm::DataLayout& layout);
// The view of `bytes` bytes of memory as words, which smaller values share.
View packedView(std::uint64_t bytes, llvm::LLVMContext& context);

} // namespace tarnwick::msl::reading
