// Atomic operations on buffers and threadgroup memory: the library's calls and LLVM's own.
#pragma once

#include "TarnwickMSL/Translation/Spirv/Memory.h"

#include <optional>

namespace tarnwick::msl::spirv {

// The instruction for an OP that stores a new value and returns the old one: see below. Nothing for
// load, store and compare_exchange.
std::optional<spv::Op> atomicChange(llvm::StringRef op, bool isSigned);

// `msl.atomic_OP.TYPE`: OP is load, store, exchange, compare_exchange, or add, sub, and, or, xor,
// min, max, each with or without fetch_ before it. A TYPE that begins with s means signed min and
// max. compare_exchange(pointer, expected, desired) returns the old value.
Id writeAtomicCall(Body& body, Memory& memory, llvm::StringRef op, const llvm::CallInst& call);

Id writeAtomic(Body& body, Memory& memory, const llvm::AtomicRMWInst& change);
// Returns LLVM's pair: the old value, and whether it was the expected value.
Id writeAtomic(Body& body, Memory& memory, const llvm::AtomicCmpXchgInst& exchange);
Id writeAtomicLoad(Body& body, Memory& memory, const llvm::LoadInst& load);
void writeAtomicStore(Body& body, Memory& memory, const llvm::StoreInst& store);

} // namespace tarnwick::msl::spirv
