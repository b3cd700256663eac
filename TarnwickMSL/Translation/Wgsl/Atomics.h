// Atomic operations on buffers and threadgroup memory: the library's calls and LLVM's own.
#pragma once

#include "TarnwickMSL/Translation/Wgsl/Memory.h"

#include <optional>

namespace tarnwick::msl::wgsl {

// `msl.atomic_OP.TYPE`, as the library calls them (docs/compiler.md). Absent for a store.
std::optional<Expression> writeAtomicCall(Body& body, Memory& memory, llvm::StringRef op,
                                          const llvm::CallInst& call);

Expression writeAtomic(Body& body, Memory& memory, const llvm::AtomicRMWInst& change);
// The old value; `exchanged` is set to whether it was the expected one.
Expression writeAtomic(Body& body, Memory& memory, const llvm::AtomicCmpXchgInst& exchange);
Expression writeAtomicLoad(Body& body, Memory& memory, const llvm::LoadInst& load);
void writeAtomicStore(Body& body, Memory& memory, const llvm::StoreInst& store);

} // namespace tarnwick::msl::wgsl
