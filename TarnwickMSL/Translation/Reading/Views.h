// The types with which variables of the program itself are viewed: local ones, tables, and
// threadgroup memory.
#pragma once

#include "TarnwickMSL/Translation/Reading/Uses.h"

#include <llvm/IR/GlobalVariable.h>

namespace tarnwick::msl::reading {

// Of all local variables together: the front end's maximum for one. Drivers crash on megabytes.
inline constexpr std::uint64_t mostLocalBytes = 262144;
// Shared by the arguments that point to threadgroup memory if no lengths are set.
inline constexpr std::uint32_t defaultThreadgroupBytes = 16384;

// Whether the access that the view gives the use is there, and valid for it.
bool fits(const View& view, const Use& use, bool isShared, const llvm::DataLayout& layout);

// The declared view if it fits every use, else one of the same size that fits them all. The
// declared one must reach the memory for certain, if another can. Words are the last choice: an
// atomic value is a word, and changes the parts of a word that other invocations use.
View fittingView(const llvm::Value& value, const View& declared, std::uint64_t bytes, bool isShared,
                 const llvm::DataLayout& layout);
// The same for one variable of the type.
View fittingView(const llvm::Value& value, llvm::Type* type, bool isShared,
                 const llvm::DataLayout& layout);

// A variable of the program itself that is written is threadgroup memory: Metal has no others.
bool isWritten(const llvm::GlobalVariable& global, const llvm::DataLayout& layout);

// The element of a table's bytes, as another type than the declared one.
llvm::Constant* elementOf(const llvm::GlobalVariable& table, llvm::Type* type, std::uint64_t index,
                          const llvm::DataLayout& layout);

} // namespace tarnwick::msl::reading
